// Scalar functions: how values are read, nulls, numbers of arguments, and what SQLite lets them be used for.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "adapters/common/engine_call.hpp"
#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

namespace {

// SLN is (cost - salvage) / life.
TEST(SqliteScalars, ReadNumbersOfEachKind) {
    const Database database;
    for (const char* cost : {"10000", "10000.0", "'10000'", "' 1e4 '", "cast('10000' AS TEXT)"}) {
        EXPECT_EQ(database.number(std::string{"SELECT fin_sln("} + cost + ", 1000, 5)"), 1800.0) << cost;
    }
}

TEST(SqliteScalars, RefuseWhatIsNoNumber) {
    const Database database;
    constexpr std::array<std::array<const char*, 2>, 6> cases{{
        {"'abc'", "'abc' is not a number"},
        {"''", "'' is not a number"},
        {"'1000x'", "'1000x' is not a number"},
        {"'0x10'", "'0x10' is not a number"},
        {"'nan'", "'nan' is not a number"},
        {"x'3130'", "a blob is not a number"},
    }};
    for (const auto& [sql, reason] : cases) {
        EXPECT_EQ(database.error(std::string{"SELECT fin_sln(10000, "} + sql + ", 5)"),
                  std::string{"SLN: argument 2 (salvage): "} + reason);
    }
}

TEST(SqliteScalars, ShowNoMoreThanTheStartOfALongText) {
    const Database database;
    const std::string sentence =
        database.error("SELECT fin_sln(10000, 'a' || replace(hex(zeroblob(2000)), '00', 'é'), 5)");
    std::string start = "a";  // with the dots it has 60 characters
    for (int i = 0; i < 56; ++i) start += "é";
    EXPECT_EQ(sentence, "SLN: argument 2 (salvage): '" + start + "...' is not a number");
}

// A shell shows the sentence on a terminal.
TEST(SqliteScalars, ShowNoControlCharacters) {
    const Database database;
    for (const char* const call :
         {"fin_sln(10000, $, 5)", "fin_yearfrac('2024-01-15', '2024-07-15', $)", "fin_coupncd($, '2024-07-15', 2)"}) {
        std::string sql = "SELECT ";
        sql.append(call).replace(sql.find('$'), 1,
                                 "'a' || char(10) || 'b' || char(27) || '[2Jc' || char(155) || char(8238)");
        const std::string sentence = database.error(sql);
        EXPECT_NE(sentence.find(R"('a\nb\x1B[2Jc\u009B\u202E' is not a)"), std::string::npos) << sentence;
    }
}

// Under 30/360 from 2024-01-15 to 2024-07-15 are 180 days of 360; under ACT/360 182.
TEST(SqliteScalars, ReadABasisByKeywordOrCode) {
    const Database database;
    constexpr std::array<std::array<const char*, 2>, 7> cases{{{"'30/360'", "0.5"},
                                                               {"0", "0.5"},
                                                               {"0.0", "0.5"},
                                                               {"'0'", "0.5"},
                                                               {"'act/360'", "182.0 / 360"},
                                                               {"2", "182.0 / 360"},
                                                               {"'2'", "182.0 / 360"}}};
    for (const auto& [basis, expected] : cases) {
        const std::string sql = std::string{"SELECT fin_yearfrac('2024-01-15', '2024-07-15', "} + basis + ')';
        EXPECT_EQ(database.number(sql), database.number(std::string{"SELECT "} + expected)) << sql;
    }
    EXPECT_EQ(database.error("SELECT fin_yearfrac('2024-01-15', '2024-07-15', x'30')"),
              "YEARFRAC: argument 3 (basis): a blob is not a day-count basis");
}

// ---- Nulls

std::string call_with(const catalogue::Calculation& calculation, std::size_t count, std::size_t null,
                      const char* other) {
    std::string arguments;
    for (std::size_t i = 0; i < count; ++i) {
        arguments.append(i > 0 ? ", " : "").append(i == null ? "NULL" : other);
    }
    return "SELECT " + adapters::function_name(calculation) + '(' + arguments + ')';
}

// Also beside arguments that would be refused: no calculation takes a blob.
TEST(SqliteScalars, AreNullWhereAnArgumentIs) {
    const Database database;
    for (const auto& calculation : catalogue::calculations()) {
        if (!adapters::is_scalar(calculation)) continue;
        const std::size_t all = calculation.parameters.size();
        for (std::size_t count = adapters::fewest_parameters(calculation); count <= all; ++count) {
            for (std::size_t null = 0; null < count; ++null) {
                const std::string sql = call_with(calculation, count, null, "x'00'");
                EXPECT_EQ(database.value(sql), SqlValue{}) << sql;
            }
        }
    }
}

TEST(SqliteScalars, AreNullWhereTheAnswerIsMissing) {
    const Database database;  // an effective rate below -1 has no root
    EXPECT_EQ(database.value("SELECT fin_nominal(-2, 12)"), SqlValue{});
}

// ---- Tried, and explained

struct Tried {
    const char* call;  // after fin_
    SqlValue value;
    SqlValue reason;
};

// (10000 - 1000) / 5 is 1800. NULL in an argument needs no reason.
TEST(SqliteScalars, AreTriedAndExplained) {
    const Database database;
    const std::array<Tried, 7> cases{{
        {"sln(10000, 1000, 5)", 1800.0, {}},
        {"sln(10000, 1000, 0)", {}, "SLN: argument 3 (life): 0 is not above 0"},
        {"sln(10000, 'abc', 5)", {}, "SLN: argument 2 (salvage): 'abc' is not a number"},
        {"sln(10000, NULL, 'abc')", {}, {}},
        {"coupncd(20240115, '2030-11-15', 2)",
         {},
         "COUPNCD: argument 1 (settlement): 17803180.5 is no day of the years 1 to 9999, counted from 1960-01-01"},
        {"coupncd('2025-01-20', '2030-11-15', 2)", "2025-05-15", {}},
        {"nominal(-2, 12)", {}, "NOMINAL: the answer is a missing value"},
    }};
    for (const auto& [call, value, reason] : cases) {
        EXPECT_EQ(database.value(std::string{"SELECT fin_try_"} + call), value) << call;
        EXPECT_EQ(database.value(std::string{"SELECT fin_why_"} + call), reason) << call;
    }
}

// ---- Numbers of arguments

TEST(SqliteScalars, HaveNoOtherNumberOfArguments) {
    const Database database;
    int checked = 0;
    for (const auto& calculation : catalogue::calculations()) {
        if (!adapters::is_scalar(calculation)) continue;
        const std::string sentence =
            "wrong number of arguments to function " + adapters::function_name(calculation) + "()";
        for (const std::size_t count :
             {adapters::fewest_parameters(calculation) - 1, calculation.parameters.size() + 1}) {
            EXPECT_EQ(database.error(call_with(calculation, count, 0, "1")), sentence);
            ++checked;
        }
    }
    EXPECT_EQ(checked, 2 * std::ranges::count_if(catalogue::calculations(), adapters::is_scalar));
}

TEST(SqliteScalars, LeaveOutArgumentsFromTheEnd) {
    const Database database;  // (1 + 1)^2 is 4: the payment is -(4 pv + fv) / 3, half of it at the start of the period
    EXPECT_EQ(database.number("SELECT fin_pmt(1, 2, 300)"), -400.0);
    EXPECT_EQ(database.number("SELECT fin_pmt(1, 2, 300, 300)"), -500.0);
    EXPECT_EQ(database.number("SELECT fin_pmt(1, 2, 300, 300, 1)"), -250.0);
}

// ---- Flags

TEST(SqliteScalars, AreDeterministicAndInnocuous) {
    const Database database;
    const std::string all = "SELECT count(*) FROM pragma_function_list WHERE name LIKE 'fin\\_%' ESCAPE '\\'";
    const auto registered = std::get<std::int64_t>(database.value(all));
    EXPECT_GT(registered, std::ssize(catalogue::calculations())) << "some once for each number of arguments";
    const std::string flags = std::to_string(SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS);
    EXPECT_EQ(database.value(all + " AND flags & " + flags + " = " + flags), SqlValue{registered});
    EXPECT_EQ(database.value("SELECT count(DISTINCT name) FROM pragma_function_list WHERE name LIKE 'fin\\_%' ESCAPE "
                             "'\\'"),
              SqlValue{3 * std::ssize(catalogue::calculations())})
        << "fin_try_ and fin_why_ of each";
}

TEST(SqliteScalars, StandInGeneratedColumnsIndexesAndViews) {
    const Database database;
    database.execute(
        "PRAGMA trusted_schema = OFF;"
        "CREATE TABLE asset(cost, salvage, life, yearly AS (fin_sln(cost, salvage, life)),"
        "                   kept AS (fin_sln(cost, salvage, life)) STORED);"
        "CREATE INDEX by_yearly ON asset(fin_sln(cost, salvage, life));"
        "CREATE VIEW dear AS SELECT fin_sln(cost, salvage, life) AS yearly FROM asset WHERE yearly > 1000;"
        "INSERT INTO asset(cost, salvage, life) VALUES (10000, 1000, 5), (500, 0, 10), (NULL, 0, 10);");
    EXPECT_EQ(database.run("SELECT yearly, kept FROM asset ORDER BY rowid").values,
              (std::vector<SqlValue>{1800.0, 1800.0, 50.0, 50.0, {}, {}}));
    EXPECT_EQ(database.run("SELECT * FROM dear").values, std::vector<SqlValue>{1800.0});
    const std::string by_index = "SELECT cost FROM asset WHERE fin_sln(cost, salvage, life) = 50";
    EXPECT_EQ(database.run(by_index).values, std::vector<SqlValue>{std::int64_t{500}});
    EXPECT_NE(told(database.run("EXPLAIN QUERY PLAN " + by_index).values.back()).find("by_yearly"), std::string::npos);
    EXPECT_EQ(database.error("INSERT INTO asset(cost, salvage, life) VALUES (1, 0, 0)").substr(0, 4), "SLN:");
    EXPECT_EQ(database.value("SELECT count(*) FROM asset"), SqlValue{std::int64_t{3}});
}

// ---- Texts in another encoding

TEST(SqliteScalars, ReadTextsOfA16BitDatabase) {
    const Database database;
    database.execute(
        "PRAGMA encoding = 'UTF-16'; CREATE TABLE bond(settlement, maturity);"
        "INSERT INTO bond VALUES ('2025-01-20', '2030-11-15');");
    EXPECT_EQ(database.text("PRAGMA encoding").substr(0, 6), "UTF-16");
    EXPECT_EQ(database.text("SELECT fin_coupncd(settlement, maturity, 2, '30/360') FROM bond"), "2025-05-15");
}

}  // namespace

}  // namespace finance::test
