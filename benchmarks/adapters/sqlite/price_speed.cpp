// What a row costs: PRICE over a table of a million bonds, beside what cannot be saved: a function of seven arguments that
// only adds them up, and the embedded host's calls of PRICE over the same rows, a call each, as SQLite hands them over. Goal:
// fin_price takes no more than 1.3 times the sum of the two. Dates stand in the table as days; once more as text. Then
// fin_try_price, over the same rows and over rows that are all refused, for a number of coupons that is not whole or a date
// that is none. Best of five runs each, in turn.
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"

namespace {

using finance::host::Argument;
using finance::host::Column;

constexpr int rows = 1'000'000;
constexpr int runs = 5;
constexpr double goal = 1.3;

using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

void check(const Database& database, int status) {
    if (status != SQLITE_OK) throw std::runtime_error{sqlite3_errmsg(database.get())};
}

void execute(const Database& database, const std::string& sql) {
    check(database, sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

void add_up(sqlite3_context* context, int count, sqlite3_value** values) {
    double sum = 0.0;
    for (int i = 0; i < count; ++i) sum += sqlite3_value_double(values[i]);
    sqlite3_result_double(context, sum);
}

Database prepared() {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open(":memory:", &opened);
    Database database{opened, sqlite3_close};
    check(database, status);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
    check(database, sqlite3_load_extension(opened, SQLITE_EXTENSION, nullptr, nullptr));
    check(database, sqlite3_create_function(opened, "add_up", 7, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, add_up,
                                            nullptr, nullptr));
    const std::string numbers =
        "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(rows - 1) + ')';
    execute(database,
            "CREATE TABLE bond(settlement, maturity, rate, yield, redemption, frequency, basis);"
            "CREATE TABLE dated(settlement, maturity, rate, yield, redemption, frequency, basis);");
    execute(database, "INSERT INTO bond " + numbers +
                          " SELECT 17577, 20000 + i % 5000, 0.0575, 0.02 + i % 1000 * 1e-4, 100.0, 2, 0 FROM n");
    execute(
        database,
        "INSERT INTO dated SELECT date('1960-01-01', settlement || ' days'), date('1960-01-01', maturity || ' days'), "
        "rate, yield, redemption, frequency, basis FROM bond");
    return database;
}

// The sum over all rows, so that every answer is there.
double run(const Database& database, const std::string& call, const std::string& table) {
    const std::string sql = "SELECT sum(" + call + ") FROM " + table;
    sqlite3_stmt* statement = nullptr;
    check(database, sqlite3_prepare_v2(database.get(), sql.c_str(), -1, &statement, nullptr));
    sqlite3_step(statement);
    const double sum = sqlite3_column_double(statement, 0);
    check(database, sqlite3_finalize(statement));
    return sum;
}

struct Bonds {
    std::vector<double> maturity, yield, price;

    Bonds() : price(rows) {
        for (int i = 0; i < rows; ++i) {
            maturity.push_back(20000 + i % 5000);
            yield.push_back(0.02 + i % 1000 * 1e-4);
        }
    }

    double calls() {
        const std::array<Column, 7> columns{Argument{17577},  Column::numbers(maturity.data()),
                                            Argument{0.0575}, Column::numbers(yield.data()),
                                            Argument{100.0},  Argument{2},
                                            Argument{0}};
        (void)finance::adapters::shared_host().evaluate_rows({.name = "PRICE",
                                                              .columns = columns,
                                                              .rows = rows,
                                                              .results = price.data(),
                                                              .instructions = ZELKOVAN_INSTRUCTIONS_NONE});
        double sum = 0.0;
        for (const double one : price) sum += one;
        return sum;
    }
};

template <typename Run>
double nanoseconds_a_row(Run once, double& sum) {
    const auto start = std::chrono::steady_clock::now();
    sum = once();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / rows;
}

}  // namespace

int main() try {
    const Database database = prepared();
    const std::string arguments = "(settlement, maturity, rate, yield, redemption, frequency, basis)";
    Bonds bonds;
    const std::string refused = "(settlement, maturity, rate, yield, redemption, 2.5, basis)";
    const std::string unreadable = "('none', maturity, rate, yield, redemption, frequency, basis)";
    std::array<double, 8> best{};
    best.fill(std::numeric_limits<double>::infinity());
    std::array<double, 8> sums{};
    const auto keep = [&](std::size_t i, auto once) { best[i] = std::min(best[i], nanoseconds_a_row(once, sums[i])); };
    for (int i = 0; i < runs; ++i) {
        keep(0, [&] { return run(database, "add_up" + arguments, "bond"); });
        keep(1, [&] { return bonds.calls(); });
        keep(2, [&] { return run(database, "fin_price" + arguments, "bond"); });
        keep(3, [&] { return run(database, "fin_price" + arguments, "dated"); });
        keep(4, [&] { return run(database, "fin_try_price" + arguments, "bond"); });
        keep(5, [&] { return run(database, "fin_try_price" + refused, "bond"); });
        keep(6, [&] { return run(database, "fin_try_price" + unreadable, "bond"); });
        keep(7, [&] { return run(database, "length(fin_why_price" + refused + ")", "bond"); });
    }
    const double least = best[0] + best[1];
    std::printf("adding up seven arguments   %6.1f ns a row\n", best[0]);
    std::printf("calls of PRICE              %6.1f\n", best[1]);
    std::printf("fin_price                   %6.1f   %.2f of the sum, goal %.2f\n", best[2], best[2] / least, goal);
    std::printf("fin_price, dates as text    %6.1f   %.2f\n", best[3], best[3] / least);
    std::printf("fin_try_price               %6.1f   %.2f of fin_price\n", best[4], best[4] / best[2]);
    std::printf("the same, rows refused      %6.1f   %.2f\n", best[5], best[5] / best[2]);
    std::printf("the same, no dates          %6.1f   %.2f\n", best[6], best[6] / best[2]);
    std::printf("fin_why_price, refused      %6.1f   %.2f\n", best[7], best[7] / best[2]);
    const bool same =
        sums[1] == sums[2] && sums[2] == sums[3] && sums[4] == sums[2] && sums[5] == 0.0 && sums[6] == 0.0;
    if (!same) std::printf("the sums differ: %.17g %.17g %.17g\n", sums[1], sums[2], sums[3]);
    return same ? 0 : 1;
} catch (const std::exception& fault) {
    std::fprintf(stderr, "sqlite_speed: %s\n", fault.what());
    return 2;
}
