// How values of DuckDB become arguments and answers. Sources stand in the rows.
#include <gtest/gtest.h>

#include <string>

#include "database.hpp"

namespace finance::test {

namespace {

struct ValueCase {
    const char* id;
    const char* sql;       // of one value
    const char* expected;  // as DuckDB writes it
};

constexpr ValueCase cases[] = {
    // ---- Numbers: DuckDB makes DOUBLE of every kind
    {"number/integers", "fin_sln(10000, 1000::SMALLINT, 5::UTINYINT)", "1800.0"},  // (10000 - 1000) / 5
    {"number/decimals", "fin_sln(10000.5, 1000.25, 5.0)", "1800.05"},              // 9000.25 / 5
    {"number/hugeint", "fin_sln(10000::HUGEINT, 1000, 5)", "1800.0"},
    {"number/left out", "fin_pmt(0.5, 1, -100)", "150.0"},  // one period: 100 * 1.5
    {"number/null literal", "fin_pmt(0.5, 1, NULL)", "NULL"},
    // ---- Dates: the same day in each way to write it. 2025-01-20 is 65 years, 17 leap days and 19 days after 1960-01-01
    {"date/date", "fin_coupncd(DATE '2025-01-20', DATE '2030-11-15', 2)", "2025-05-15"},  // half years before maturity
    {"date/days", "fin_coupncd(23761, 25886, 2)", "2025-05-15"},                          // 23725 + 17 + 19
    {"date/date again", "fin_coupncd(DATE '2025-01-20', DATE '1960-01-01' + 25886, 2)", "2025-05-15"},
    {"date/before 1960", "fin_couppcd(DATE '1700-01-20', DATE '1700-11-15', 2)", "1699-11-15"},
    // ---- Fractions of a day count for a bill: 0.09 * 61.5 / 360 = 0.015375; 61.5 days from 03-31 12:00 to 06-01 00:00
    {"timestamp/noon", "round(fin_tbillprice(TIMESTAMP '2008-03-31 12:00:00', TIMESTAMP '2008-06-01', 0.09), 10)",
     "98.4625"},
    {"timestamp/whole days",
     "fin_tbillprice(TIMESTAMP '2008-03-31', TIMESTAMP '2008-06-01', 0.09) = "
     "fin_tbillprice(DATE '2008-03-31', DATE '2008-06-01', 0.09)",
     "true"},
    {"timestamp/before 1970 and its noon",
     "round(fin_tbillprice(TIMESTAMP '1965-03-31 12:00:00', TIMESTAMP '1965-06-01', 0.09), 10)", "98.4625"},
    {"timestamp/not where days are whole", "fin_coupnum(TIMESTAMP '2025-01-20', TIMESTAMP '2030-11-15', 2) IS NULL",
     "No function matches"},
    // ---- A basis by keyword, by code, by code as text: 182 actual days of 2024 over 360
    {"basis/keyword", "fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', 'ACT/360') = 182 / 360", "true"},
    {"basis/lower case", "fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', 'act/360') = 182 / 360", "true"},
    {"basis/code", "fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', 2) = 182 / 360", "true"},
    {"basis/code as text", "fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', '2') = 182 / 360", "true"},
    {"basis/as double", "fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', 2.0::DOUBLE) = 182 / 360", "true"},
    // ---- TRY makes NULL of a refusal
    {"try/refused", "TRY(fin_sln(10000, 1000, 0))", "NULL"},
    {"try/answered", "TRY(fin_sln(10000, 1000, 5))", "1800.0"},
    // ---- An answer that is itself missing: no rate makes two payments to one side worth nothing
    {"missing/no rate", "fin_xirr([1, 2], [0, 365])", "NULL"},
    {"missing/no rate, periods", "fin_irr([1, 2])", "NULL"},
    {"missing/no negative flow", "fin_mirr([1, 2], 0.1, 0.1)", "NULL"},
    {"missing/no signs", "fin_rate(10, 1, 1)", "NULL"},
    {"missing/why", "fin_why_irr([1, 2])",
     "IRR: no answer: the flows do not change sign: a rate needs money paid and money received"},
    // ---- An answer that does not solve, or is infinite
    {"unsolved/rate", "fin_rate(120, -200, 0, 30000)", "NULL"},
    {"unsolved/yield", "fin_yield(DATE '2025-01-20', DATE '2030-11-15', 0.05, 1e9, 100, 2)", "NULL"},
    {"unsolved/one day", "fin_xirr([100], [21550])", "NULL"},
    {"infinite", "fin_npv(0.1, ['inf'::DOUBLE, 1])", "NULL"},
};

TEST(DuckdbValues, BecomeArgumentsAndAnswers) {
    const Database database;
    for (const ValueCase& row : cases) {
        const std::string said = database.value("SELECT " + std::string{row.sql});
        const std::string expected = row.expected;
        if (expected == "No function matches") {
            EXPECT_NE(said.find(expected), said.npos) << row.id << ": " << said;
        } else {
            EXPECT_EQ(said, expected) << row.id;
        }
    }
}

// The same call as a constant, which DuckDB folds, and over a column.
TEST(DuckdbValues, BasesMayDifferFromRowToRow) {
    const Database database;
    // 182 actual days; 180 days of months of 30. A third of the rows is NULL, one basis is longer than a string keeps
    // within itself.
    const Table table = database.query(
        "SELECT b, count(*), min(f), max(f) FROM (SELECT b, fin_yearfrac(DATE '2024-01-01', DATE '2024-07-01', b) f "
        "FROM (SELECT CASE i % 6 WHEN 0 THEN 'ACT/360' WHEN 1 THEN '30/360' WHEN 2 THEN '2' WHEN 3 THEN "
        "'2.00000000000000000000' END b FROM range(60000) rows(i))) GROUP BY b ORDER BY b");
    ASSERT_EQ(table.error, "");
    ASSERT_EQ(table.rows.size(), 5U);
    const std::string actual = "0.5055555555555555";  // 182 / 360 in double
    const std::vector<std::vector<std::string>> expected{{"2", "10000", actual, actual},
                                                         {"2.00000000000000000000", "10000", actual, actual},
                                                         {"30/360", "10000", "0.5", "0.5"},
                                                         {"ACT/360", "10000", actual, actual}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (std::size_t k = 0; k < expected[i].size(); ++k) EXPECT_EQ(table.rows[i][k], expected[i][k]);
    }
    EXPECT_EQ(table.rows[4][1], "20000");
    EXPECT_EQ(table.rows[4][2], std::nullopt);
}

// Rows of three chunks: an answer, a refusal, a day that nobody means, a NULL, and again.
TEST(DuckdbValues, AreTriedAndExplained) {
    const Database database;
    database.run(
        "CREATE TABLE loans AS SELECT i, IF(i % 4 = 3, NULL, DATE '2025-01-20') AS day, "
        "IF(i % 4 = 2, DATE '12345-01-01', DATE '2030-11-15') AS last, IF(i % 4 = 1, 2.5, 2.0) AS frequency "
        "FROM range(6000) rows(i)");
    const auto shares = [&](const std::string& call) {
        const Table table = database.query("SELECT i % 4, count(*), min(s), max(s) FROM (SELECT i, " + call +
                                           "::VARCHAR AS s FROM loans) GROUP BY i % 4 ORDER BY i % 4");
        EXPECT_EQ(table.error, "");
        return table.rows;
    };
    using Row = std::vector<std::optional<std::string>>;
    const auto all = [](const char* place, std::optional<std::string> text) { return Row{place, "1500", text, text}; };
    const std::string not_whole = "COUPNUM: argument 3 (frequency): 2.5 is not a whole number";
    // 25 times 400 years, 146,097 days each, after 2345-01-01, day 140619.
    const std::string no_day =
        "COUPNUM: argument 2 (maturity): 3793044 is no day of the years 1 to 9999, counted from 1960-01-01";
    EXPECT_EQ(shares("fin_try_coupnum(day, last, frequency)"),
              (std::vector<Row>{all("0", "12.0"), all("1", {}), all("2", {}), all("3", {})}));
    EXPECT_EQ(shares("fin_why_coupnum(day, last, frequency)"),
              (std::vector<Row>{all("0", {}), all("1", not_whole), all("2", no_day), all("3", {})}));
    EXPECT_EQ(shares("fin_try_coupncd(day, last, frequency)"),
              (std::vector<Row>{all("0", "2025-05-15"), all("1", {}), all("2", {}), all("3", {})}));
    EXPECT_EQ(shares("fin_why_coupncd(day, last, frequency)")[0], all("0", {}));
}

struct Refused {
    const char* sql;
    const char* sentence;
};

constexpr Refused refusals[] = {
    {"fin_price(DATE '2008-02-15', DATE '2017-11-15', 0.0575, 0.065, 100, 2.5)",
     "PRICE: argument 6 (frequency): 2.5 is not a whole number"},
    {"fin_sln(10000, 1000, 0)", "SLN: argument 3 (life): 0 is not above 0"},
    {"fin_mirr([1, 2], 0, 0.1)", "MIRR: argument 2 (financeRate): 0 is not above 0"},
    {"fin_nominal(0.1, 0.5)", "NOMINAL: argument 2 (periodsPerYear): 0.5 is not a whole number"},
    {"fin_coupncd('infinity'::DATE, DATE '2030-11-15', 2)",
     "COUPNCD: argument 1 (settlement): inf is no day of the years 1 to 9999, counted from 1960-01-01"},
};

TEST(DuckdbValues, RefusalsEndTheQueryWithTheirSentence) {
    const Database database;
    for (const Refused& row : refusals) EXPECT_EQ(database.value("SELECT " + std::string{row.sql}), row.sentence);
    // In a table it is the first refused row that is named; after the error the connection goes on.
    EXPECT_EQ(database.value("SELECT sum(fin_sln(10000, 1000, 3000 - i)) FROM range(5000) rows(i)"),
              "SLN: argument 3 (life): 0 is not above 0");
    EXPECT_EQ(database.value("SELECT count(TRY(fin_sln(10000, 1000, 3000 - i))) FROM range(5000) rows(i)"), "3000");
    EXPECT_EQ(database.value("SELECT count(CASE WHEN i < 3000 THEN fin_sln(10000, 1000, 3000 - i) END) "
                             "FROM range(5000) rows(i)"),
              "3000");
}

// A shell shows the sentence on a terminal.
TEST(DuckdbValues, SentencesHaveNoControlCharacters) {
    const Database database;
    const std::string hostile = "('a' || chr(10) || 'b' || chr(27) || '[2Jc' || chr(155) || chr(8238))";
    EXPECT_EQ(
        database.value("SELECT fin_yearfrac(DATE '2024-01-15', DATE '2024-07-15', " + hostile + ')').substr(0, 75),
        R"(YEARFRAC: argument 3 (basis): 'a\nb\x1B[2Jc\u009B\u202E' is not a day-count)");
    EXPECT_EQ(database.value("SELECT fin_help(" + hostile + ')'),
              R"(fin_help: there is no calculation a\nb\x1B[2Jc\u009B\u202E)");
    const std::string sentence = database.value("SELECT fin_help(repeat('x', 1000000))");
    EXPECT_EQ(sentence, "fin_help: there is no calculation " + std::string(57, 'x') + "...");
}

}  // namespace

}  // namespace finance::test
