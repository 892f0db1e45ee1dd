// Aggregates and window functions: nulls, order, arguments that may not change, frames against the aggregate over the same
// rows.
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

namespace {

Database with_flows(const std::string& values) {
    Database database;
    database.execute("CREATE TABLE flow(id INTEGER PRIMARY KEY, rate, amount, day); INSERT INTO flow VALUES " + values);
    return database;
}

// Rates whose powers are exact.
TEST(SqliteAggregates, GatherTheRowsOfAGroup) {
    const Database database =
        with_flows("(1, 0.25, 5, NULL), (2, 0.25, 25, NULL), (3, 1.0, 4, NULL), (4, 1.0, 8, NULL)");
    EXPECT_EQ(database.run("SELECT fin_npv(rate, amount) FROM flow GROUP BY rate ORDER BY rate").values,
              (std::vector<SqlValue>{20.0, 4.0}));  // 5 / 1.25 + 25 / 1.5625; 4 / 2 + 8 / 4
    EXPECT_EQ(database.number("SELECT fin_fvschedule(100, rate) FROM flow"), 625.0);  // 1.25 * 1.25 * 2 * 2 * 100
}

TEST(SqliteAggregates, TakeRowsInTheOrderOfASubqueryOrWindow) {
    const Database database = with_flows("(1, NULL, 8, NULL), (2, NULL, 4, NULL)");
    EXPECT_EQ(database.number("SELECT fin_npv(1, amount) FROM (SELECT * FROM flow ORDER BY id)"), 5.0);  // 8/2 + 4/4
    EXPECT_EQ(database.number("SELECT fin_npv(1, amount) FROM (SELECT * FROM flow ORDER BY id DESC)"), 4.0);
    EXPECT_EQ(database.run("SELECT fin_npv(1, amount) OVER (ORDER BY id DESC) FROM flow ORDER BY id DESC").values,
              (std::vector<SqlValue>{2.0, 4.0}));
}

// Doubling in 365 days is a rate of 1; the first row is the day that flows are discounted to, wherever it lies.
TEST(SqliteAggregates, DoNotSortDatedFlows) {
    const Database database = with_flows("(1, NULL, -1, '2023-01-01'), (2, NULL, 2, '2024-01-01')");
    EXPECT_NEAR(database.number("SELECT fin_xirr(amount, day) FROM flow"), 1.0, 1e-9);
    EXPECT_NEAR(database.number("SELECT fin_xirr(amount, day, 0.5) FROM flow"), 1.0, 1e-9);
    EXPECT_EQ(database.number("SELECT fin_xnpv(3, amount, day) FROM (SELECT * FROM flow ORDER BY id)"), -0.5);
    EXPECT_EQ(database.number("SELECT fin_xnpv(3, amount, day) FROM (SELECT * FROM flow ORDER BY id DESC)"), -2.0);
}

TEST(SqliteAggregates, AreNullWithoutRowsAndWithANull) {
    const Database database = with_flows("(1, 0.5, 8, '2023-01-01'), (2, 0.5, NULL, '2024-01-01')");
    EXPECT_EQ(database.value("SELECT fin_npv(0.5, amount) FROM flow WHERE id > 2"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_npv(0.5, amount) FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_npv(NULL, id) FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_xirr(amount, day) FROM flow"), SqlValue{});
    EXPECT_EQ(database.number("SELECT fin_npv(0.5, amount) FILTER (WHERE amount IS NOT NULL) FROM flow"), 8 / 1.5);
}

// There is no rate at which money that is only received is worth nothing.
TEST(SqliteAggregates, AreNullWhereTheAnswerIsMissing) {
    const Database database = with_flows("(1, NULL, 1, '2023-01-01'), (2, NULL, 2, '2024-01-01')");
    EXPECT_EQ(database.value("SELECT fin_xirr(amount, day) FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_irr(amount) FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_mirr(amount, 0.1, 0.1) FROM flow"), SqlValue{});
    EXPECT_EQ(database.text("SELECT fin_why_irr(amount) FROM flow"),
              "IRR: no answer: the flows do not change sign: a rate needs money paid and money received");
}

// Deal 1 doubles, deal 2 is only received: a rate that breaks its rule still ends the query.
TEST(SqliteAggregates, OneGroupWithoutARateEndsNoQuery) {
    const Database database = with_flows("(1, 1, -1, NULL), (2, 1, 2, NULL), (3, 2, 1, NULL), (4, 2, 2, NULL)");
    EXPECT_EQ(database.run("SELECT fin_irr(amount) FROM flow GROUP BY rate ORDER BY rate").values,
              (std::vector<SqlValue>{1.0, {}}));
    EXPECT_EQ(database.run("SELECT fin_mirr(amount, 0.1, 0.1) IS NULL FROM flow GROUP BY rate ORDER BY rate").values,
              (std::vector<SqlValue>{std::int64_t{0}, std::int64_t{1}}));
    EXPECT_EQ(database.error("SELECT fin_mirr(amount, 0, 0.1) FROM flow GROUP BY rate"),
              "MIRR: argument 2 (financeRate): 0 is not above 0");
}

// 8 / 2 + 4 / 4 is 5. A row that cannot be read spoils the frames that it is in, and no other.
TEST(SqliteAggregates, AreTriedAndExplained) {
    const Database database = with_flows("(1, 1, 8, 1), (2, 1, 4, 1), (3, 1, 'x', 2), (4, 0, 4, 3), (5, 0, 4, 3)");
    EXPECT_EQ(database.run("SELECT fin_try_npv(rate, amount) FROM flow GROUP BY day ORDER BY day").values,
              (std::vector<SqlValue>{5.0, {}, {}}));
    EXPECT_EQ(database.run("SELECT fin_why_npv(rate, amount) FROM flow GROUP BY day ORDER BY day").values,
              (std::vector<SqlValue>{
                  {}, "NPV: argument 2 (flows): 'x' is not a number", "NPV: argument 1 (rate): 0 is not above 0"}));
    EXPECT_EQ(database.value("SELECT fin_why_npv(rate, id) FROM flow"),
              SqlValue{"NPV: argument 1 (rate): must be the same in every row"});
    EXPECT_EQ(database.value("SELECT fin_try_npv(rate, id) FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_why_npv(NULL, 'x') FROM flow"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_why_npv(1, amount) FROM flow WHERE id > 5"), SqlValue{});
    EXPECT_EQ(database.value("SELECT fin_why_npv(1, v) FROM (SELECT NULL v UNION ALL SELECT x'00')"),
              SqlValue{"NPV: argument 2 (flows): a blob is not a number"});
    const std::string frames = "(1, amount) OVER (ORDER BY id ROWS 1 PRECEDING) FROM flow ORDER BY id";
    EXPECT_EQ(database.run("SELECT fin_try_npv" + frames).values, (std::vector<SqlValue>{4.0, 5.0, {}, {}, 3.0}));
    const SqlValue unreadable = "NPV: argument 2 (flows): 'x' is not a number";
    EXPECT_EQ(database.run("SELECT fin_why_npv" + frames).values,
              (std::vector<SqlValue>{{}, {}, unreadable, unreadable, {}}));
}

TEST(SqliteAggregates, CountAListAsOneArgument) {
    const std::string thousand =
        " FROM (WITH RECURSIVE n(i) AS (SELECT -1 UNION ALL SELECT i + 1 FROM n WHERE i < 998) SELECT i FROM n)";
    const Database database;
    EXPECT_EQ(database.error("SELECT fin_mirr(i, -5, 0.1)" + thousand),
              "MIRR: argument 2 (financeRate): -5 is not above 0");
    EXPECT_EQ(database.error("SELECT fin_xnpv(0.1, i, i + 0.5 * (i = 1))" + thousand),
              "XNPV: argument 3 (dates, value 3): 1.5 is not a whole number");
}

TEST(SqliteAggregates, RefuseInWords) {
    const Database database = with_flows("(1, 0.5, 8, '2023-01-01'), (2, 0.25, 'x', '2023-02-30')");
    constexpr std::array<std::array<const char*, 2>, 4> cases{{
        {"fin_npv(rate, id)", "NPV: argument 1 (rate): must be the same in every row"},
        {"fin_npv(0.5, amount)", "NPV: argument 2 (flows): 'x' is not a number"},
        {"fin_xirr(id, day)",
         "XIRR: argument 2 (dates): '2023-02-30' is not a date: text as in 2008-02-15, days since 1960-01-01, or a "
         "Julian "
         "day"},
        {"fin_npv(0, id)", "NPV: argument 1 (rate): 0 is not above 0"},
    }};
    for (const auto& [call, sentence] : cases) {
        EXPECT_EQ(database.error(std::string{"SELECT "} + call + " FROM flow"), sentence) << call;
    }
    EXPECT_EQ(database.error("SELECT fin_irr(1, 2)"), "wrong number of arguments to function fin_irr()");
    EXPECT_EQ(database.error("SELECT fin_npv(1)"), "wrong number of arguments to function fin_npv()");
    EXPECT_EQ(database.error("SELECT fin_xirr(1, 2, 3, 4)"), "wrong number of arguments to function fin_xirr()");
}

// ---- Windows

struct Frame {
    const char* sql;
    int from, to;  // rows of the frame, from the current one
    int left_out = 1000;
};

constexpr int unbounded = 100'000;

constexpr Frame frames[] = {
    {"BETWEEN UNBOUNDED PRECEDING AND CURRENT ROW", -unbounded, 0},
    {"BETWEEN UNBOUNDED PRECEDING AND UNBOUNDED FOLLOWING", -unbounded, unbounded},
    {"BETWEEN CURRENT ROW AND UNBOUNDED FOLLOWING", 0, unbounded},
    {"BETWEEN CURRENT ROW AND CURRENT ROW", 0, 0},
    {"BETWEEN 3 PRECEDING AND CURRENT ROW", -3, 0},
    {"BETWEEN 5 PRECEDING AND 2 PRECEDING", -5, -2},
    {"BETWEEN 2 FOLLOWING AND 6 FOLLOWING", 2, 6},
    {"BETWEEN 90 PRECEDING AND 10 FOLLOWING", -90, 10},
    {"BETWEEN 2 PRECEDING AND 2 FOLLOWING EXCLUDE CURRENT ROW", -2, 2, 0},
};

constexpr int row_count = 300;

// Random amounts, of which one in 29 is null; days need not ascend.
Database with_random_flows() {
    std::mt19937_64 random{7};
    std::string values;
    for (int id = 1; id <= row_count; ++id) {
        const std::string amount =
            random() % 29 == 0 ? "NULL" : std::to_string(static_cast<int>(random() % 2000) - 900);
        values += (id > 1 ? ", (" : "(") + std::to_string(id) + ", 0.03, " + amount + ", " +
                  std::to_string(20000 + random() % 5000) + ')';
    }
    return with_flows(values);
}

// The call over the rows from `from` to `to` alone.
std::vector<SqlValue> one_by_one(const Database& database, const std::string& call, const Frame& frame) {
    Statement statement{
        database.get(),
        "SELECT " + call + " FROM (SELECT * FROM flow WHERE id BETWEEN ?1 AND ?2 AND id <> ?3 ORDER BY id)"};
    std::vector<SqlValue> values;
    for (int id = 1; id <= row_count; ++id) {
        statement.bind(1, std::int64_t{id + frame.from});
        statement.bind(2, std::int64_t{id + frame.to});
        statement.bind(3, std::int64_t{id + frame.left_out});
        const Outcome outcome = statement.run();
        EXPECT_EQ(outcome.error, "");
        values.push_back(outcome.values.at(0));
    }
    return values;
}

TEST(SqliteWindows, AnswerForTheRowsOfTheFrame) {
    const Database database = with_random_flows();
    int answered = 0;
    for (const std::string call :
         {"fin_npv(rate, amount)", "fin_xnpv(0.05, amount, day)", "fin_fvschedule(100, amount)"}) {
        for (const Frame& frame : frames) {
            const std::string sql =
                "SELECT " + call + " OVER (ORDER BY id ROWS " + frame.sql + ") FROM flow ORDER BY id";
            const Outcome outcome = database.run(sql);
            EXPECT_EQ(outcome.error, "") << sql;
            EXPECT_EQ(outcome.values, one_by_one(database, call, frame)) << sql;
            for (const SqlValue& value : outcome.values) answered += std::holds_alternative<double>(value) ? 1 : 0;
        }
    }
    EXPECT_EQ(answered, 4335);
}

TEST(SqliteAggregates, KeepTheOrderOfASubqueryWithinGroups) {
    const Database database = with_random_flows();
    const std::string from = " FROM (SELECT * FROM flow WHERE amount IS NOT NULL ORDER BY day DESC, id)";
    const Outcome groups = database.run("SELECT fin_npv(1, amount)" + from + " GROUP BY id % 7 ORDER BY id % 7");
    std::vector<SqlValue> one_by_one;
    for (const char group : {'0', '1', '2', '3', '4', '5', '6'}) {
        one_by_one.push_back(database.value("SELECT fin_npv(1, amount)" + from + " WHERE id % 7 = " + group));
    }
    EXPECT_EQ(groups.values, one_by_one);
}

TEST(SqliteWindows, AnswerForEachPartition) {
    const Database database =
        with_flows("(1, 0.25, 5, NULL), (2, 1.0, 4, NULL), (3, 0.25, 25, NULL), (4, 1.0, 8, NULL)");
    EXPECT_EQ(
        database.run("SELECT fin_npv(rate, amount) OVER (PARTITION BY rate ORDER BY id) FROM flow ORDER BY id").values,
        (std::vector<SqlValue>{4.0, 2.0, 20.0, 4.0}));
}

// The rate changes from row to row, but never within a frame; then within the second.
TEST(SqliteWindows, CompareArgumentsWithinTheFrameOnly) {
    const Database database = with_flows("(1, 0.25, 5, NULL), (2, 1.0, 4, NULL), (3, 3.0, 8, NULL)");
    EXPECT_EQ(database.run("SELECT fin_npv(rate, amount) OVER (ORDER BY id ROWS CURRENT ROW) FROM flow").values,
              (std::vector<SqlValue>{4.0, 2.0, 2.0}));
    EXPECT_EQ(database.error("SELECT fin_npv(rate, amount) OVER (ORDER BY id ROWS 1 PRECEDING) FROM flow"),
              "NPV: argument 1 (rate): must be the same in every row");
}

}  // namespace

}  // namespace finance::test
