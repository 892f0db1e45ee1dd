#include "adapters/sqlite/catalogue_table.hpp"

#include <array>
#include <string>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/results.hpp"
#include "adapters/sqlite/signatures.hpp"
#include "catalogue/wording.hpp"

namespace finance::sqlite {

using catalogue::Calculation;

namespace {

std::string argument_names(const Calculation& calculation) {
    std::string text;
    for (const auto& parameter : calculation.parameters) text.append(text.empty() ? "" : ", ").append(parameter.name);
    return text;
}

using Give = void (*)(sqlite3_context*, const Calculation&);

// In the order of the declaration.
constexpr std::array<Give, 13> columns{
    [](sqlite3_context* context, const Calculation& c) { give_text(context, adapters::function_name(c)); },
    [](sqlite3_context* context, const Calculation& c) {
        give_text(context, adapters::is_scalar(c) ? "scalar" : "aggregate");
    },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, catalogue::family_of(c).title); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, argument_names(c)); },
    [](sqlite3_context* context, const Calculation& c) {
        sqlite3_result_int64(context, static_cast<sqlite3_int64>(fewest_arguments(c)));
    },
    [](sqlite3_context* context, const Calculation& c) {
        sqlite3_result_int64(context, static_cast<sqlite3_int64>(c.parameters.size()));
    },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, catalogue::result_words(c.result)); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, c.answers); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, sql_usage(c)); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, c.formula); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, c.remarks); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, c.failure); },
    [](sqlite3_context* context, const Calculation& c) { give_text(context, sql_documentation(c)); },
};

}  // namespace

int CatalogueRows::plan(sqlite3_vtab&, sqlite3_index_info& info) {
    info.estimatedRows = static_cast<sqlite3_int64>(catalogue::calculations().size());
    info.estimatedCost = static_cast<double>(info.estimatedRows);
    return SQLITE_OK;
}

void CatalogueRows::begin(std::span<sqlite3_value*>) { row_ = 0; }

bool CatalogueRows::at_end() const { return row_ >= catalogue::calculations().size(); }

void CatalogueRows::column(sqlite3_context* context, int i) const {
    columns.at(static_cast<std::size_t>(i))(context, catalogue::calculations()[row_]);
}

}  // namespace finance::sqlite
