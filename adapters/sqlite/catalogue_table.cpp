#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/functions.hpp"
#include "adapters/sqlite/tables.hpp"
#include "adapters/sqlite/values.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters::sqlite {

using catalogue::Calculation;

namespace {

std::string argument_names(const Calculation& calculation) {
    std::string text;
    for (const auto& parameter : calculation.parameters) text.append(text.empty() ? "" : ", ").append(parameter.name);
    return text;
}

void put(sqlite3_context* context, std::string_view text) { give_text(context, text); }
void put(sqlite3_context* context, std::size_t count) {
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(count));
}

template <auto of>
void give(sqlite3_context* context, const Calculation& calculation) {
    put(context, std::invoke(of, calculation));
}

struct Column {
    std::string_view declared;
    void (*give)(sqlite3_context* context, const Calculation& calculation);
};

constexpr std::array columns{
    Column{"name TEXT", give<function_name>},
    Column{"kind TEXT", give<[](const Calculation& c) { return is_scalar(c) ? "scalar" : "aggregate"; }>},
    Column{"family TEXT", give<[](const Calculation& c) { return catalogue::family_of(c).title; }>},
    Column{"arguments TEXT", give<argument_names>},
    Column{"fewest INTEGER", give<fewest_arguments>},
    Column{"most INTEGER", give<[](const Calculation& c) { return c.parameters.size(); }>},
    Column{"result TEXT", give<[](const Calculation& c) { return catalogue::result_words(c.result); }>},
    Column{"answers TEXT", give<&Calculation::answers>},
    Column{"usage TEXT", give<sql_usage>},
    Column{"formula TEXT", give<&Calculation::formula>},
    Column{"remarks TEXT", give<&Calculation::remarks>},
    Column{"failure TEXT", give<&Calculation::failure>},
    Column{"documentation TEXT", give<sql_documentation>},
};

constexpr auto all_declared = [] {
    std::array<char, 256> text{"CREATE TABLE x"};  // zeros after it
    char* end = std::ranges::find(text, char{});
    for (const Column& column : columns) {
        *end++ = &column == columns.data() ? '(' : ',';
        end = std::ranges::copy(column.declared, end).out;
    }
    *end = ')';
    return text;
}();

}  // namespace

const char* const CatalogueRows::declaration = all_declared.data();

int CatalogueRows::plan(sqlite3_vtab&, sqlite3_index_info& info) {
    info.estimatedRows = static_cast<sqlite3_int64>(catalogue::calculations().size());
    info.estimatedCost = static_cast<double>(info.estimatedRows);
    return SQLITE_OK;
}

void CatalogueRows::begin(std::span<sqlite3_value*>) { row_ = 0; }

bool CatalogueRows::at_end() const { return row_ >= catalogue::calculations().size(); }

void CatalogueRows::column(sqlite3_context* context, int i) const {
    columns.at(static_cast<std::size_t>(i)).give(context, catalogue::calculations()[row_]);
}

}  // namespace finance::adapters::sqlite
