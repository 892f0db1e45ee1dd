#include "adapters/sqlite/results.hpp"

#include <algorithm>
#include <limits>

#include "adapters/sqlite/date_values.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::sqlite {

namespace {

void give_date(sqlite3_context* context, double host_days) {
    if (const auto text = catalogue::iso_date(host_days)) {
        give_text(context, *text);
    } else {
        sqlite3_result_double(context, number_of_host_days(host_days));
    }
}

}  // namespace

void give_text(sqlite3_context* context, std::string_view text) {
    // SQLITE_TRANSIENT, which is a number made a pointer: SQLite copies the text.
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);  // NOLINT
}

void give_error(sqlite3_context* context, std::string_view sentence) {
    constexpr std::size_t longest = std::numeric_limits<int>::max();
    sqlite3_result_error(context, sentence.data(), static_cast<int>(std::min(sentence.size(), longest)));
}

void give_answer(sqlite3_context* context, const catalogue::Calculation& calculation, std::optional<double> value) {
    if (!value) return sqlite3_result_null(context);
    if (calculation.result == catalogue::ResultKind::date) return give_date(context, *value);
    sqlite3_result_double(context, *value);
}

}  // namespace finance::adapters::sqlite
