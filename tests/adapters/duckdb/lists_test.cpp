// Lists, written out and gathered from rows. Expected values by hand: a return of 10 % a year, of 20 %; sums of flows
// discounted at 100 % are sums of halves.
#include <gtest/gtest.h>

#include <string>

#include "database.hpp"

namespace finance::test {

namespace {

struct ListCase {
    const char* id;
    const char* sql;
    const char* expected;
};

constexpr ListCase cases[] = {
    {"npv/halves", "fin_npv(1, [2, 4, 8])", "3.0"},  // 1 + 1 + 1
    {"npv/integers and decimals", "fin_npv(1.0, [2.0, 4.5])", "2.125"},
    {"npv/no flows", "fin_npv(0.1, []::DOUBLE[])", "0.0"},
    {"npv/empty literal", "fin_npv(0.1, [])", "0.0"},
    {"npv/list left out", "fin_npv(0.1)", "0.0"},
    {"npv/no list", "fin_npv(0.1, NULL::DOUBLE[])", "NULL"},
    {"npv/null in list", "fin_npv(1, [2, NULL, 8])", "NULL"},
    {"npv/nan in list", "fin_npv(1, [2, 'nan'::DOUBLE, 8])", "NULL"},
    {"npv/faulty rate", "fin_npv(0, [2, 4])", "NPV: argument 1 (rate): 0 is not above 0"},
    {"irr/a tenth", "round(fin_irr([-100, 110]), 12)", "0.1"},
    {"irr/no flows", "fin_irr([]::DOUBLE[])", "IRR: "},
    {"mirr/a list is one argument", "fin_mirr(range(-1, 999)::DOUBLE[], -5, 0.1)",
     "MIRR: argument 2 (financeRate): -5 is not above 0"},
    {"mirr/list first", "round(fin_mirr([-100, 110], 0.5, 0.5), 12)", "0.1"},  // one period: no reinvesting
    {"fvschedule", "fin_fvschedule(1000, [1, 0.5])", "3000.0"},                // 1000 * 2 * 1.5
    // 2021 and 2022 have 365 days.
    {"xirr/dates", "round(fin_xirr([-100, 0, 121], [DATE '2021-01-01', '2022-01-01', '2023-01-01']), 10)", "0.1"},
    {"xirr/days", "round(fin_xirr([-100, 121], [0, 730]), 10)", "0.1"},
    {"xirr/guess", "round(fin_xirr([-100, 121], [0, 730], 0.3), 10)", "0.1"},
    {"xnpv/dates", "fin_xnpv(1, [8, 4], [DATE '2021-01-01', DATE '2022-01-01'])", "10.0"},  // 8 + 4 / 2
    {"xnpv/null date", "fin_xnpv(1, [8, 4], [DATE '2021-01-01', NULL])", "NULL"},
    {"xnpv/unpaired", "fin_xnpv(1, [8, 4, 2], [DATE '2021-01-01', DATE '2022-01-01'])", "XNPV: 3 values, but 2 dates"},
    // Three values and two dates are no two of each and a guess.
    {"xirr/unpaired", "fin_xirr([-100, 121, 3], [0, 730])", "XIRR: 3 values, but 2 dates"},
};

TEST(DuckdbLists, AreAnswered) {
    const Database database;
    for (const ListCase& row : cases) {
        const std::string said = database.value("SELECT " + std::string{row.sql});
        if (std::string{row.expected} == "IRR: ") {
            EXPECT_TRUE(said.starts_with(row.expected)) << row.id << ": " << said;
        } else {
            EXPECT_EQ(said, row.expected) << row.id;
        }
    }
}

void make_flows(const Database& database) {
    database.run("CREATE TABLE flows(deal INTEGER, flow DOUBLE, day DATE)");
    // Deal 1: 10 % a year, out of order. Deal 2: 20 %. Deal 3 has a missing flow.
    database.run(
        "INSERT INTO flows VALUES (1, 121, '2023-01-01'), (2, 120, '2022-01-01'), (1, -100, '2021-01-01'), "
        "(3, 5, '2021-01-01'), (2, -100, '2021-01-01'), (3, NULL, '2022-01-01'), (1, 0, '2022-01-01')");
}

TEST(DuckdbLists, AreGatheredFromTheRowsOfAGroup) {
    const Database database;
    make_flows(database);
    const Table table = database.query(
        "SELECT deal, round(fin_irr(list(flow ORDER BY day, flow)), 10), "
        "round(fin_xirr(list(flow ORDER BY day, flow), list(day ORDER BY day, flow)), 10) "
        "FROM flows GROUP BY deal ORDER BY deal");
    ASSERT_EQ(table.error, "");
    ASSERT_EQ(table.rows.size(), 3U);
    using Row = std::vector<std::optional<std::string>>;
    EXPECT_EQ(table.rows[0], (Row{"1", "0.1", "0.1"}));
    EXPECT_EQ(table.rows[1], (Row{"2", "0.2", "0.2"}));
    EXPECT_EQ(table.rows[2], (Row{"3", std::nullopt, std::nullopt}));
    EXPECT_EQ(database.value("SELECT fin_irr(list(flow)) FROM flows WHERE deal = 4"), "NULL");
    EXPECT_EQ(database
                  .value("SELECT fin_why_irr(list(flow ORDER BY day) FILTER (WHERE flow IS NOT NULL)) "
                         "FROM flows WHERE deal = 3")
                  .substr(0, 14),
              "IRR: no answer");
}

// Of 6000 deals every third is only received; the others have 100 %.
TEST(DuckdbLists, OneGroupWithoutARateEndsNoQuery) {
    const Database database;
    database.run("CREATE TABLE deals AS SELECT i, [IF(i % 3 = 0, 1.0, -1.0), 2.0] AS flows FROM range(6000) rows(i)");
    for (const std::string call : {"fin_irr(flows)", "fin_mirr(flows, 0.1, 0.1)"}) {
        EXPECT_EQ(
            database.value("SELECT count(r) || ' ' || round(min(r), 12) || ' ' || count(*) FILTER (WHERE r IS NULL) "
                           "FROM (SELECT " +
                           call + " AS r FROM deals)"),
            "4000 1.0 2000")
            << call;
    }
    EXPECT_EQ(database.value("SELECT count(fin_mirr(flows, IF(i = 5000, 0, 0.1), 0.1)) FROM deals"),
              "MIRR: argument 2 (financeRate): 0 is not above 0");
}

// Once written down as a macro, a list in order is used like an aggregate.
TEST(DuckdbLists, AMacroGathersThemLikeAnAggregate) {
    const Database database;
    make_flows(database);
    database.run("CREATE MACRO irr_of(flow, moment) AS fin_irr(list(flow ORDER BY moment, flow))");
    database.run(
        "CREATE MACRO xirr_of(flow, moment) AS fin_xirr(list(flow ORDER BY moment, flow), list(moment ORDER BY moment, "
        "flow))");
    const Table table = database.query(
        "SELECT deal, round(irr_of(flow, day), 10), round(xirr_of(flow, day), 10) FROM flows WHERE deal < 3 "
        "GROUP BY deal HAVING irr_of(flow, day) > 0.05 ORDER BY deal");
    ASSERT_EQ(table.error, "");
    ASSERT_EQ(table.rows.size(), 2U);
    using Row = std::vector<std::optional<std::string>>;
    EXPECT_EQ(table.rows[0], (Row{"1", "0.1", "0.1"}));
    EXPECT_EQ(table.rows[1], (Row{"2", "0.2", "0.2"}));
}

TEST(DuckdbLists, AreGatheredFromTheRowsOfAWindow) {
    const Database database;
    make_flows(database);
    // Each row's flow and the one before it, at 100 %: -50; -50 + 0; 0 + 121 / 4.
    const Table table = database.query(
        "SELECT fin_npv(1, list(flow) OVER (ORDER BY day ROWS BETWEEN 1 PRECEDING AND CURRENT ROW)) v "
        "FROM flows WHERE deal = 1 ORDER BY v");
    ASSERT_EQ(table.error, "");
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[0][0], "-50.0");
    EXPECT_EQ(table.rows[1][0], "-50.0");
    EXPECT_EQ(table.rows[2][0], "30.25");
}

// Flow k of a deal is 2^k, 10 flows: at 100 % each is worth 1. 30,000 deals over four threads.
TEST(DuckdbLists, ManyGroupsInManyThreads) {
    const Database database;
    database.run("SET threads = 4");
    database.run(
        "CREATE VIEW doubling AS SELECT i % 30000 deal, i // 30000 + 1 k, 2.0 ** (i // 30000 + 1) flow "
        "FROM range(300000) rows(i)");
    EXPECT_EQ(database.value("SELECT count(*) || ' ' || min(v) || ' ' || max(v) FROM "
                             "(SELECT fin_npv(1, list(flow ORDER BY k)) v FROM doubling GROUP BY deal)"),
              "30000 10.0 10.0");
}

// Lists of row i are 8 i and 4 i, which a year at 100 % makes 8 i + 2 i, and as many more of 0 as its place says; every
// seventh has a NULL. In order, in another, some left out, and one that is refused.
TEST(DuckdbLists, ManyTogether) {
    const Database database;
    database.run(
        "CREATE TABLE pairs AS SELECT i, list_concat([8.0 * i, IF(i % 7 = 3, NULL, 4.0 * i)], "
        "[0.0 FOR k IN range(i % 5)]) AS amounts, [IF(k = 0, 0.0, 365.0) FOR k IN range(2 + i % 5)] AS days "
        "FROM range(10000) rows(i)");
    for (const std::string rows : {"", "WHERE i % 3 = 0", "ORDER BY hash(i)"}) {
        const std::string from = " FROM (FROM pairs " + rows + ")";
        EXPECT_EQ(database.value("SELECT count(*) FILTER (WHERE fin_xnpv(1, amounts, days) IS DISTINCT FROM "
                                 "IF(i % 7 = 3, NULL, 10.0 * i)) || ' of ' || (count(*) > 3000)" +
                                 from),
                  "0 of true")
            << rows;
    }
    EXPECT_EQ(database.value("SELECT sum(fin_xnpv(1, amounts, IF(i = 5005, [0.0, 0.5], days))) FROM pairs"),
              "XNPV: argument 3 (dates, value 2): 0.5 is not a whole number");
    EXPECT_EQ(database.value("SELECT sum(fin_xnpv(1, amounts, IF(i = 5005, [0.0], days))) FROM pairs"),
              "XNPV: 2 values, but 1 dates");
    EXPECT_EQ(database.value("SELECT sum(fin_xnpv(1, amounts, IF(i = 5005, [0.0, 20240115.0], days))) FROM pairs")
                  .substr(0, 46),
              "XNPV: argument 3 (dates, value 2): 20240115 is");
}

// Row i: 2 at 100 % is worth 1; a rate of 0 is refused, lists of two lengths are none of a call, a NULL is missing.
TEST(DuckdbLists, AreTriedAndExplained) {
    const Database database;
    const std::string from = " FROM range(5000) rows(i)";
    const std::string npv = "_npv(IF(i % 3 = 0, 0.0, 1.0), IF(i % 3 = 1, [2.0, NULL], [2.0]))";
    EXPECT_EQ(database.value("SELECT count(v) || ' ' || min(v) || ' ' || max(v) FROM (SELECT fin_try" + npv + " v" +
                             from + ")"),
              "1666 1.0 1.0");
    EXPECT_EQ(database.value("SELECT count(s) || ' ' || min(s) FROM (SELECT fin_why" + npv + " s" + from + ")"),
              "1667 NPV: argument 1 (rate): 0 is not above 0");
    const std::string xnpv = "_xnpv(1, [2.0, 4.0], IF(i % 5 = 0, [0.0], IF(i % 5 = 1, [0.0, 2e7], [0.0, 365.0])))";
    EXPECT_EQ(database.value("SELECT count(v) || ' ' || min(v) || ' ' || max(v) FROM (SELECT fin_try" + xnpv + " v" +
                             from + ")"),
              "3000 4.0 4.0");  // 2 + 4 / 2
    EXPECT_EQ(database.value("SELECT count(s) || ' ' || max(s) FROM (SELECT fin_why" + xnpv + " s" + from + ")"),
              "2000 XNPV: argument 3 (dates, value 2): 20000000 is no day of the years 1 to 9999, counted from "
              "1960-01-01");
    EXPECT_EQ(database.value("SELECT fin_why_xnpv(1, [2.0, 4.0], [0.0])"), "XNPV: 2 values, but 1 dates");
}

// Flows of 1 at 100 % come to 1 - 2^-n, and the call has a million arguments.
TEST(DuckdbLists, MayBeLong) {
    const Database database;
    EXPECT_EQ(database.value("SELECT fin_npv(1, list(1.0)) FROM range(1000000)"), "1.0");
}

}  // namespace

}  // namespace finance::test
