// Table-valued functions: the list of functions and the payments of a loan.
#include <gtest/gtest.h>

#include "adapters/common/engine_call.hpp"
#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

namespace {

TEST(SqliteFunctionTable, HasARowForEachCalculation) {
    const Database database;
    std::vector<SqlValue> expected;
    for (const auto& calculation : catalogue::calculations()) {
        expected.insert(expected.end(),
                        {adapters::function_name(calculation), std::string{calculation.answers},
                         std::string{calculation.formula}, adapters::is_scalar(calculation) ? "scalar" : "aggregate"});
    }
    EXPECT_EQ(database.run("SELECT name, answers, formula, kind FROM fin_functions").values, expected);
}

// Against what SQLite says is registered.
TEST(SqliteFunctionTable, SaysWhichNumbersOfArgumentsThereAre) {
    const Database database;
    for (const std::string prefix : {"fin_", "fin_try_", "fin_why_"}) {
        EXPECT_EQ(database.run("SELECT name, fewest, most, most - fewest + 1 FROM fin_functions").values,
                  database
                      .run("SELECT f.name, min(narg), max(narg), count(*) FROM fin_functions f JOIN "
                           "pragma_function_list p ON p.name = '" +
                           prefix + "' || substr(f.name, 5) GROUP BY f.name ORDER BY f.name")
                      .values);
    }
}

TEST(SqliteFunctionTable, SaysHowTheyAreCalled) {
    const Database database;
    const auto usage = [&](const std::string& name) {
        return database.text("SELECT usage FROM fin_functions WHERE name = '" + name + '\'');
    };
    EXPECT_EQ(usage("fin_price"), "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])");
    EXPECT_EQ(usage("fin_npv"), "fin_npv(rate, flows)");
    EXPECT_EQ(usage("fin_xirr"), "fin_xirr(values, dates [, guess])");
    EXPECT_EQ(database.text("SELECT arguments FROM fin_functions WHERE name = 'fin_sln'"), "cost, salvage, life");
    EXPECT_EQ(database.text("SELECT substr(documentation, 1, length(usage)) FROM fin_functions WHERE name = 'fin_npv'"),
              "fin_npv(rate, flows)");
}

TEST(SqliteFunctionTable, StandsInViewsOfAnUntrustedSchema) {
    const Database database;
    database.execute(
        "PRAGMA trusted_schema = OFF; CREATE VIEW names AS SELECT name FROM fin_functions;"
        "CREATE VIEW loan AS SELECT payment FROM fin_schedule_loan(1, 2, 300);");
    EXPECT_EQ(database.run("SELECT name FROM names WHERE name = 'fin_irr'").values, std::vector<SqlValue>{"fin_irr"});
    EXPECT_EQ(database.run("SELECT payment FROM loan").values, (std::vector<SqlValue>{-400.0, -400.0}));
}

// ---- Loans

// At 100 % a period 300 are paid back in two payments of 400: interest 300 and 200, 100 and 200 of the principal.
TEST(SqliteLoan, PaysPeriodByPeriod) {
    const Database database;
    EXPECT_EQ(database.run("SELECT * FROM fin_schedule_loan(1, 2, 300)").values,
              (std::vector<SqlValue>{std::int64_t{1}, -400.0, -300.0, -100.0, 200.0, std::int64_t{2}, -400.0, -200.0,
                                     -200.0, 0.0}));
}

TEST(SqliteLoan, AddsUp) {
    const Database database;
    EXPECT_EQ(database.value("SELECT count(*) FROM fin_schedule_loan(0.005, 360, 200000)"),
              SqlValue{std::int64_t{360}});
    EXPECT_EQ(
        database.value("SELECT max(abs(payment - interest - principal)) < 1e-9 AND abs(sum(principal) + 200000) < 1e-6 "
                       "FROM fin_schedule_loan(0.005, 360, 200000)"),
        SqlValue{std::int64_t{1}});
    EXPECT_EQ(
        database.run("SELECT payment, interest, principal FROM fin_schedule_loan(0.005, 360, 200000) WHERE period = 13")
            .values,
        database
            .run("SELECT fin_pmt(0.005, 360, 200000), fin_ipmt(0.005, 13, 360, 200000), fin_ppmt(0.005, 13, "
                 "360, 200000)")
            .values);
}

TEST(SqliteLoan, TakesItsArgumentsFromAnotherTable) {
    const Database database;
    database.execute(
        "CREATE TABLE loan(name, rate, nper, pv);"
        "INSERT INTO loan VALUES ('a', 1, 2, 300), ('b', NULL, 2, 100), ('c', 1, '2', 600);");
    EXPECT_EQ(database
                  .run("SELECT name, period, balance FROM loan, fin_schedule_loan(loan.rate, loan.nper, loan.pv) "
                       "ORDER BY name, period")
                  .values,
              (std::vector<SqlValue>{"a", std::int64_t{1}, 200.0, "a", std::int64_t{2}, 0.0, "c", std::int64_t{1},
                                     400.0, "c", std::int64_t{2}, 0.0}));
    EXPECT_EQ(
        database.run("SELECT rate, nper, pv FROM fin_schedule_loan WHERE pv = 100 AND nper = 1 AND rate = 0.5").values,
        (std::vector<SqlValue>{0.5, 1.0, 100.0}));
    EXPECT_EQ(database.run("SELECT period FROM fin_schedule_loan(1, 3, 3) ORDER BY period DESC").values,
              (std::vector<SqlValue>{std::int64_t{3}, std::int64_t{2}, std::int64_t{1}}));
}

TEST(SqliteLoan, CalculatesNoMoreRowsThanAreRead) {
    const Database database;
    EXPECT_EQ(database.run("SELECT period FROM fin_schedule_loan(1e-12, 2000000000, 4e9) LIMIT 2").values,
              (std::vector<SqlValue>{std::int64_t{1}, std::int64_t{2}}));
}

TEST(SqliteLoan, RefusesInWords) {
    const Database database;
    const auto error = [&](const std::string& arguments) {
        return database.error("SELECT * FROM fin_schedule_loan" + arguments);
    };
    EXPECT_EQ(error("(0.01, 2.5, 100)"), "fin_schedule_loan: argument 2 (nper): 2.5 is not a whole number");
    EXPECT_EQ(error("(0.01, 0, 100)"), "fin_schedule_loan: argument 2 (nper): 0 is below 1");
    EXPECT_EQ(error("(1e-12, 3000000000, 100)"),
              "fin_schedule_loan: argument 2 (nper): 3000000000 does not fit a count (1 to 2147483647)");
    EXPECT_EQ(error("(0.5, 4294967297, 100)"), "fin_schedule_loan: argument 2 (nper): 4294967297 is above 2147483647");
    EXPECT_EQ(error("('x', 2, 100)"), "fin_schedule_loan: argument 1 (rate): 'x' is not a number");
    EXPECT_EQ(error("(1, 2)"), "fin_schedule_loan(rate, nper, pv): an argument is not given");
    EXPECT_EQ(error(""), "fin_schedule_loan(rate, nper, pv): an argument is not given");
    EXPECT_EQ(error("(1, 2, 3, 4)"), "too many arguments on fin_schedule_loan() - max 3");
}

TEST(SqliteLoan, HasNoRowsForANull) {
    const Database database;
    EXPECT_EQ(database.run("SELECT * FROM fin_schedule_loan(0.01, NULL, 100)"), Outcome{});
}

}  // namespace

}  // namespace finance::test
