#include "call_table.hpp"

#include <gtest/gtest.h>

#include "catalogue_calls.hpp"

namespace finance::test {

namespace {

duckdb_value list_of(const std::vector<double>& numbers) {
    std::vector<duckdb_value> values;
    for (const double number : numbers) values.push_back(duckdb_create_double(number));
    duckdb_logical_type type = duckdb_create_logical_type(DUCKDB_TYPE_DOUBLE);
    duckdb_value none = nullptr;
    duckdb_value list = duckdb_create_list_value(type, values.empty() ? &none : values.data(), values.size());
    duckdb_destroy_logical_type(&type);
    for (duckdb_value& value : values) duckdb_destroy_value(&value);
    return list;
}

void append(duckdb_appender appender, duckdb_value value) {
    EXPECT_EQ(duckdb_append_value(appender, value), DuckDBSuccess);
    duckdb_destroy_value(&value);
}

}  // namespace

duckdb_value value_of(const EngineCall& call, std::size_t parameter) {
    const Entry& entry = call.entries[parameter];
    if (entry.is_text) return duckdb_create_varchar(entry.text.c_str());
    if (is_list(call.calculation->parameters[parameter].kind)) return list_of(entry.numbers);
    return duckdb_create_double(entry.numbers.at(0));
}

CallTable::CallTable(const Database& database, std::vector<EngineCall> calls)
    : database_{database}, calls_{std::move(calls)} {
    std::string columns = "id BIGINT";
    for (std::size_t i = 0; const std::string& type : sql_types(calls_.at(0))) {
        columns.append(", c").append(std::to_string(i++)).append(" ").append(type);
    }
    database.run("CREATE TABLE calls(" + columns + ")");
    duckdb_appender appender = nullptr;
    EXPECT_EQ(duckdb_appender_create(database.connection(), nullptr, "calls", &appender), DuckDBSuccess);
    for (std::size_t row = 0; row < calls_.size(); ++row) {
        append(appender, duckdb_create_int64(static_cast<std::int64_t>(row)));
        for (std::size_t i = 0; i < calls_[row].entries.size(); ++i) append(appender, value_of(calls_[row], i));
        EXPECT_EQ(duckdb_appender_end_row(appender), DuckDBSuccess);
    }
    EXPECT_EQ(duckdb_appender_destroy(&appender), DuckDBSuccess);
}

CallTable::~CallTable() { database_.run("DROP TABLE calls"); }

std::string CallTable::call(bool dates_as_date) const {
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < calls_[0].entries.size(); ++i) {
        const std::string column = std::string{"c"}.append(std::to_string(i));
        const catalogue::Kind kind = calls_[0].calculation->parameters[i].kind;
        if (!dates_as_date || !catalogue::is_dated(kind)) {
            arguments.push_back(column);
        } else if (is_list(kind)) {
            arguments.push_back("list_transform(" + column + ", lambda d: DATE '1960-01-01' + d::INTEGER)");
        } else {
            arguments.push_back("DATE '1960-01-01' + " + column + "::INTEGER");
        }
    }
    return sql_call(*calls_[0].calculation, arguments);
}

}  // namespace finance::test
