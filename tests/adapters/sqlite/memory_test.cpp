// Memory: given back, flat over many rows, and its lack an error like any other.
#include <gtest/gtest.h>
#include <malloc.h>

#include <array>

#include "tests/adapters/sqlite/database.hpp"
#include "tests/adapters/sqlite/memory_faults.hpp"

namespace finance::test {

namespace {

// Each uses what the extension has: a scalar, an aggregate with two lists and a text that is wrong in the last row, a
// window, the tables.
constexpr std::array statements{
    "SELECT fin_price('2025-01-20', '2030-11-15', 0.05, 0.06, 100, 2, 'ACTUAL'), fin_coupncd('2025-01-20', "
    "'2030-11-15', 2)",
    "WITH flow(v, d) AS (VALUES (-1000, '2023-01-01'), (600, '2024-01-01'), (600, '2025-01-01')) "
    "SELECT fin_xirr(v, d, 0.1), fin_xnpv(0.1, v, d), fin_irr(v) FROM flow",
    "WITH flow(id, v) AS (VALUES (1, -1000), (2, 600), (3, 600), (4, 1)) "
    "SELECT fin_npv(0.1, v) OVER (ORDER BY id ROWS 1 PRECEDING) FROM flow",
    "SELECT fin_npv(1, value) FROM (SELECT 1 AS value UNION ALL SELECT 'x')",
    "SELECT fin_sln(1, 2, 'three')",
    "SELECT fin_try_sln(1, 2, 'three'), fin_why_sln(1, 2, 'three'), fin_why_sln(1, 2, 0)",
    "SELECT fin_try_npv(1, value), fin_why_npv(1, value) FROM (SELECT 1 AS value UNION ALL SELECT 'x')",
    "SELECT name, documentation FROM fin_functions WHERE kind = 'aggregate'",
    "SELECT sum(interest) FROM fin_schedule_loan(0.01, 12, 1000)",
    "SELECT * FROM fin_schedule_loan(0.01, 1.5, 1000)",
};

TEST(SqliteMemory, IsGivenBack) {
    { const Database first; }  // what SQLite keeps once it has begun
    const sqlite3_int64 before = sqlite3_memory_used();
    {
        const Database database;
        for (const char* sql : statements) {
            for (int i = 0; i < 10; ++i) (void)database.run(sql);
        }
        EXPECT_GT(sqlite3_memory_used(), before);
    }
    EXPECT_EQ(sqlite3_memory_used(), before);
}

// Every request of each statement fails once; then the statement answers as it did before.
TEST(SqliteMemory, ItsLackIsAnError) {
    const Database database;
    int failed = 0;
    for (const char* sql : statements) {
        const Outcome usual = database.run(sql);
        const sqlite3_int64 before = sqlite3_memory_used();
        for (int n = 1; n < 10'000; ++n) {
            fail_sqlite_request(n);
            const Outcome outcome = database.run(sql);
            fail_sqlite_request(0);
            if (outcome == usual) break;
            EXPECT_NE(outcome.error, "") << sql << ", request " << n;
            ++failed;
        }
        EXPECT_EQ(database.run(sql), usual) << sql;
        EXPECT_LT(sqlite3_memory_used(), before + 20'000) << sql;  // SQLite's own caches
    }
    EXPECT_GT(failed, 100);
}

TEST(SqliteMemory, OfAnAggregateIsLimitedBySqlite) {
    const Database database;
    const std::string sql =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) SELECT fin_npv(0.1, i) FROM "
        "n";
    const sqlite3_int64 unlimited = sqlite3_hard_heap_limit64(sqlite3_memory_used() + 1'000'000);
    EXPECT_EQ(database.error(sql), "out of memory");
    sqlite3_hard_heap_limit64(unlimited);
    EXPECT_NEAR(database.number(sql), 110.0, 1e-6);  // the sum of k / 1.1^k is 1.1 / 0.1^2
}

// Of the whole program; a sanitizer's allocator says 0.
std::size_t bytes_in_use() {
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Also for rows that are null and rows in which a text is read.
TEST(SqliteMemory, StaysFlatOverAMillionRows) {
    const Database database;
    const auto run = [&](int rows) {
        return database.value(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(rows) +
            ") SELECT count(fin_price('2025-01-20', '2030-11-15', 0.05, iif(i % 10, i / 1e7, NULL), 100, "
            "2, 'ACTUAL')) FROM n");
    };
    EXPECT_EQ(run(10'000), SqlValue{std::int64_t{9'000}});
    const std::size_t before = bytes_in_use();
    EXPECT_EQ(run(1'000'000), SqlValue{std::int64_t{900'000}});
    EXPECT_LT(bytes_in_use(), before + 100'000);
}

}  // namespace

}  // namespace finance::test
