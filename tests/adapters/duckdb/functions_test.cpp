// Every function of the catalogue: its example, its missing values, its counts of arguments. Expected results are the
// catalogue's, which its own tests compare with the module's.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "catalogue_calls.hpp"
#include "database.hpp"

namespace finance::test {

namespace {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::ResultKind;

// A date as the number of its day, which DuckDB counts.
std::string as_double(const Calculation& calculation, const std::string& call) {
    if (calculation.result != ResultKind::date) return call;
    return "CAST(" + call + " - DATE '1960-01-01' AS DOUBLE)";
}

std::uint64_t bits(double x) { return std::bit_cast<std::uint64_t>(x); }

double example_result(const Database& database, const Calculation& calculation) {
    const std::string result{calculation.example.result};
    if (calculation.result != ResultKind::date) return std::strtod(result.c_str(), nullptr);
    return std::strtod(database.value("SELECT DATE '" + result + "' - DATE '1960-01-01'").c_str(), nullptr);
}

TEST(DuckdbFunctions, AnswerEveryExample) {
    const Database database;
    for (const Calculation& calculation : catalogue::calculations()) {
        const std::string call = sql_call(calculation, sql_arguments(calculation));
        const auto answer = database.doubles("SELECT " + as_double(calculation, call));
        ASSERT_EQ(answer.size(), 1U) << call;
        ASSERT_TRUE(answer[0]) << call;
        EXPECT_EQ(bits(*answer[0]), bits(example_result(database, calculation))) << call;
    }
}

// In a table of three chunks one argument is missing in every third row, and in a row from 64 to 127 of each 1000.
std::string sometimes(const std::string& missing, const std::string& argument) {
    return "CASE WHEN i % 3 = 1 OR i % 1000 BETWEEN 64 AND 127 THEN " + missing + " ELSE " + argument + " END";
}

bool is_missing_row(std::size_t i) { return i % 3 == 1 || (i % 1000 >= 64 && i % 1000 <= 127); }

void expect_missing_rows(const Database& database, const Calculation& calculation, std::size_t parameter,
                         const std::string& missing) {
    auto arguments = sql_arguments(calculation);
    arguments[parameter] = sometimes(missing, arguments[parameter]);
    const std::string call = sql_call(calculation, arguments);
    const auto answers =
        database.doubles("SELECT " + as_double(calculation, call) + " FROM range(5000) rows(i) ORDER BY i");
    ASSERT_EQ(answers.size(), 5000U) << call;
    const std::uint64_t expected = bits(example_result(database, calculation));
    for (std::size_t i = 0; i < answers.size(); ++i) {
        ASSERT_EQ(answers[i].has_value(), !is_missing_row(i)) << call << " row " << i;
        ASSERT_EQ(bits(answers[i].value_or(0.0)), answers[i] ? expected : 0) << call << " row " << i;
    }
}

TEST(DuckdbFunctions, MissingArgumentsMakeMissingResults) {
    const Database database;
    for (const Calculation& calculation : catalogue::calculations()) {
        for (std::size_t i = 0; i < sql_arguments(calculation).size(); ++i) {
            const std::string type = sql_type(calculation.parameters[i]);
            expect_missing_rows(database, calculation, i, "CAST(NULL AS " + type + ")");
            if (type == "DOUBLE") expect_missing_rows(database, calculation, i, "CAST('nan' AS DOUBLE)");
        }
    }
}

std::string of_nulls(const Calculation& calculation, std::size_t count) {
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < count; ++i) {
        const bool known = i < calculation.parameters.size();
        arguments.push_back("CAST(NULL AS " + (known ? sql_type(calculation.parameters[i]) : "DOUBLE") + ")");
    }
    return "SELECT " + sql_call(calculation, arguments);
}

TEST(DuckdbFunctions, TakeTheirCountsOfArgumentsAndNoOther) {
    const Database database;
    for (const Calculation& calculation : catalogue::calculations()) {
        std::size_t fewest = 0;
        for (const auto& parameter : calculation.parameters) fewest += parameter.need == Need::optional ? 0U : 1U;
        const std::size_t most = calculation.parameters.size();
        for (std::size_t count = fewest - 1; count <= most + 1; ++count) {
            const std::string said = database.value(of_nulls(calculation, count));
            if (count >= fewest && count <= most) {
                EXPECT_EQ(said, "NULL") << calculation.name << ' ' << count;
            } else {
                EXPECT_NE(said.find("No function matches"), said.npos)
                    << calculation.name << ' ' << count << ": " << said;
            }
        }
    }
}

TEST(DuckdbFunctions, AreListedAndExplained) {
    const Database database;
    EXPECT_EQ(database.value("SELECT count(*) FROM fin_functions()"), std::to_string(catalogue::calculations().size()));
    EXPECT_EQ(database.value("SELECT usage FROM fin_functions() WHERE name = 'fin_price'"),
              "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])");
    EXPECT_EQ(database.value("SELECT over_rows FROM fin_functions() WHERE name = 'fin_npv'"),
              "fin_npv(rate, list(flows ORDER BY day, flows))");
    EXPECT_EQ(database.value("SELECT over_rows FROM fin_functions() WHERE name = 'fin_xirr'"),
              "fin_xirr(list(values ORDER BY dates, values), list(dates ORDER BY dates, values))");
    // Every function that is listed is there, by DuckDB's own account.
    EXPECT_EQ(database.value("SELECT count(DISTINCT f.name) FROM fin_functions() f "
                             "JOIN duckdb_functions() d ON d.function_name = f.name AND d.function_type = 'scalar'"),
              std::to_string(catalogue::calculations().size()));
    for (const std::string way : {"try", "why"}) {
        EXPECT_EQ(
            database.value("SELECT count(DISTINCT function_name) FROM duckdb_functions() WHERE function_name LIKE "
                           "'fin\\_" +
                           way + "\\_%' ESCAPE '\\'"),
            std::to_string(catalogue::calculations().size()));
    }
    for (const char* name : {"PMT", "pmt", "fin_pmt", "FIN_PMT"}) {
        const std::string text = database.value("SELECT fin_help('" + std::string{name} + "')");
        EXPECT_TRUE(text.starts_with("fin_pmt(rate, nper, pv [, fv [, type]])")) << text;
    }
    EXPECT_EQ(database.value("SELECT fin_help('nothing')"), "fin_help: there is no calculation nothing");
    EXPECT_EQ(database.value("SELECT fin_help(NULL)"), "NULL");
}

}  // namespace

}  // namespace finance::test
