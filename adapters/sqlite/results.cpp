#include "adapters/sqlite/results.hpp"

#include <algorithm>
#include <limits>

#include "adapters/sqlite/date_values.hpp"
#include "catalogue/host_date.hpp"

namespace finance::sqlite {

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

void give_value(sqlite3_context* context, const catalogue::Calculation& calculation, double value) {
    if (calculation.result == catalogue::ResultKind::date) {
        give_date(context, value);
    } else {
        sqlite3_result_double(context, value);
    }
}

void give_answer(sqlite3_context* context, const catalogue::Calculation& calculation, const adapters::Answer& answer) {
    if (answer.verdict == adapters::Verdict::missing) {
        sqlite3_result_null(context);
    } else if (answer.verdict == adapters::Verdict::refused) {
        give_error(context, answer.refusal);
    } else {
        give_value(context, calculation, answer.value);
    }
}

}  // namespace finance::sqlite
