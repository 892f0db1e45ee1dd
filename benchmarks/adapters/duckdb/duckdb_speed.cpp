// What a row of fin_price costs in DuckDB beside the embedded host's batch call on as many threads, the sum of the prices
// as the answer. Once with a column of yields and the rest constant, once with a column for each argument. The goal is
// 1.5 of the batch. Then as many flows in lists of ten beside single calls of the host, which read nothing from a table.
// Then fin_try_price over the same columns, over as many rows that are refused, and over a table in which every fiftieth is;
// beside it DuckDB's own TRY of a tenth of the refused rows. Best of 11 runs each, in turn.
//
//     duckdb_speed [ROWS [THREADS]]     a million rows and one thread where they are not given
#include <duckdb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"

namespace {

using namespace finance;
using host::Argument;
using host::Column;

constexpr int runs = 11;
constexpr double goal = 1.5;
constexpr double settlement = 23761;  // 2025-01-20
constexpr double maturity = 25886;    // 2030-11-15

class Duckdb {
public:
    Duckdb() {
        duckdb_config config = nullptr;
        duckdb_create_config(&config);
        duckdb_set_config(config, "allow_unsigned_extensions", "true");
        if (duckdb_open_ext(nullptr, &database_, config, nullptr) == DuckDBError ||
            duckdb_connect(database_, &connection_) == DuckDBError) {
            std::exit(1);
        }
        duckdb_destroy_config(&config);
    }
    ~Duckdb() {
        duckdb_disconnect(&connection_);
        duckdb_close(&database_);
    }
    Duckdb(const Duckdb&) = delete;
    Duckdb& operator=(const Duckdb&) = delete;

    // The only value, or 0 where there is none.
    double value(const std::string& sql) {
        duckdb_result result{};
        if (duckdb_query(connection_, sql.c_str(), &result) == DuckDBError) {
            std::printf("%s\n", duckdb_result_error(&result));
            std::exit(1);
        }
        const double value = duckdb_column_count(&result) > 0 ? duckdb_value_double(&result, 0, 0) : 0.0;
        duckdb_destroy_result(&result);
        return value;
    }

private:
    duckdb_database database_ = nullptr;
    duckdb_connection connection_ = nullptr;
};

struct Bonds {
    unsigned threads = 1;
    std::vector<double> settlement, maturity, rate, yield, redemption, frequency, price;
};

Bonds make_bonds(std::size_t rows, unsigned threads) {
    Bonds bonds;
    bonds.threads = threads;
    for (std::size_t i = 0; i < rows; ++i) bonds.yield.push_back(0.03 + static_cast<double>(i % 50'000) * 1e-6);
    bonds.settlement.assign(rows, ::settlement);
    bonds.maturity.assign(rows, ::maturity);
    bonds.rate.assign(rows, 0.05);
    bonds.redemption.assign(rows, 100);
    bonds.frequency.assign(rows, 2);
    bonds.price.resize(rows);
    return bonds;
}

double sum(const std::vector<double>& values) {
    double total = 0.0;
    for (const double value : values) total += value;
    return total;
}

template <std::size_t count>
double batch(Bonds& bonds, const std::array<Column, count>& columns) {
    (void)adapters::shared_host().evaluate_rows(
        {.name = "PRICE", .columns = columns, .rows = bonds.price.size(), .results = bonds.price.data()},
        bonds.threads);
    return sum(bonds.price);
}

double batch_of_yields(Bonds& bonds) {
    return batch<7>(bonds, {Argument{settlement}, Argument{maturity}, Argument{0.05},
                            Column::numbers(bonds.yield.data()), Argument{100}, Argument{2}, Argument{"ACTUAL"}});
}

double batch_of_columns(Bonds& bonds) {
    return batch<7>(
        bonds, {Column::numbers(bonds.settlement.data()), Column::numbers(bonds.maturity.data()),
                Column::numbers(bonds.rate.data()), Column::numbers(bonds.yield.data()),
                Column::numbers(bonds.redemption.data()), Column::numbers(bonds.frequency.data()), Argument{"ACTUAL"}});
}

constexpr std::size_t flows_a_list = 10;

double calls_of_lists(std::size_t rows) {
    double total = 0.0;
    std::array<Argument, 1 + flows_a_list> arguments{0.1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    for (std::size_t row = 0; row < rows / flows_a_list; ++row) {
        for (std::size_t k = 0; k < flows_a_list; ++k) arguments[1 + k] = row + k;
        total += adapters::shared_host().evaluate("NPV", arguments).value;
    }
    return total;
}

struct Measured {
    double best = std::numeric_limits<double>::infinity();  // seconds
    double answer = 0.0;

    template <typename Run>
    void measure(Run run) {
        const auto start = std::chrono::steady_clock::now();
        answer = run();
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
};

// Both must have done the same work: the sums agree but for their order.
void report(const char* what, const Measured& host, const Measured& duckdb, std::size_t calls) {
    const double nanoseconds = 1e9 / static_cast<double>(calls);
    std::printf("%-26s host %6.1f ns, DuckDB %6.1f ns a call: %.2f%s\n", what, nanoseconds * host.best,
                nanoseconds * duckdb.best, duckdb.best / host.best,
                std::abs(host.answer / duckdb.answer - 1) < 1e-9 ? "" : ", SUMS DIFFER");
}

void report_try(const char* what, const Measured& measured, const Measured& plain, std::size_t calls) {
    const double nanoseconds = 1e9 * measured.best / static_cast<double>(calls);
    std::printf("%-26s %7.1f ns a row, %.2f of fin_price; %.0f answers\n", what, nanoseconds,
                nanoseconds / (1e9 * plain.best / plain.answer), measured.answer);
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t rows = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
    const std::string threads = argc > 2 ? argv[2] : "1";
    Duckdb duckdb;
    duckdb.value("LOAD '" ZELKOVAN_DUCKDB_EXTENSION "'");
    duckdb.value("SET threads = " + threads);
    duckdb.value(
        "CREATE TABLE bonds AS SELECT DATE '2025-01-20' settlement, DATE '2030-11-15' maturity, 0.05::DOUBLE rate, "
        "0.03 + (i % 50000) * 1e-6 yield, 100::DOUBLE redemption, 2::DOUBLE frequency, 'ACTUAL' basis "
        "FROM range(" +
        std::to_string(rows) + ") rows(i)");
    duckdb.value("CREATE TABLE deals AS SELECT [(i + k)::DOUBLE FOR k IN range(10)] flows FROM range(" +
                 std::to_string(rows / flows_a_list) + ") rows(i)");
    Bonds bonds = make_bonds(rows, static_cast<unsigned>(std::stoul(threads)));
    const std::string columns = "price(settlement, maturity, rate, yield, redemption, frequency, basis)";
    const std::string refused = "price(settlement, maturity, rate, yield, redemption, frequency + 0.5, basis)";
    const std::string some =
        "price(settlement, maturity, rate, yield, redemption, IF(rowid % 50 = 7, 2.5, frequency), basis)";
    std::array<Measured, 6> measured;
    std::array<Measured, 6> tried;
    for (int run = 0; run < runs; ++run) {
        measured[0].measure([&] { return batch_of_yields(bonds); });
        measured[1].measure([&] {
            return duckdb.value(
                "SELECT sum(fin_price(DATE '2025-01-20', DATE '2030-11-15', 0.05, yield, 100, 2, 'ACTUAL')) FROM "
                "bonds");
        });
        measured[2].measure([&] { return batch_of_columns(bonds); });
        measured[3].measure([&] {
            return duckdb.value(
                "SELECT sum(fin_price(settlement, maturity, rate, yield, redemption, frequency, basis)) FROM bonds");
        });
        tried[0].measure([&] { return duckdb.value("SELECT count(fin_" + columns + ") FROM bonds"); });
        tried[1].measure([&] { return duckdb.value("SELECT count(fin_try_" + columns + ") FROM bonds"); });
        tried[2].measure([&] { return duckdb.value("SELECT count(fin_try_" + refused + ") FROM bonds"); });
        tried[3].measure([&] { return duckdb.value("SELECT count(fin_try_" + some + ") FROM bonds"); });
        tried[4].measure([&] { return duckdb.value("SELECT count(fin_why_" + refused + ") FROM bonds"); });
        tried[5].measure(
            [&] { return duckdb.value("SELECT count(TRY(fin_" + refused + ")) FROM bonds WHERE rowid % 10 = 0"); });
        measured[4].measure([&] { return calls_of_lists(rows); });
        measured[5].measure([&] { return duckdb.value("SELECT sum(fin_npv(0.1, flows)) FROM deals"); });
    }
    report("PRICE, one column", measured[0], measured[1], rows);
    report("PRICE, seven columns", measured[2], measured[3], rows);
    std::printf("(goal: %.2f)\n", goal);
    report("NPV of lists of ten", measured[4], measured[5], rows / flows_a_list);
    report_try("fin_price", tried[0], tried[0], rows);
    report_try("fin_try_price", tried[1], tried[0], rows);
    report_try("the same, rows refused", tried[2], tried[0], rows);
    report_try("the same, one in fifty", tried[3], tried[0], rows);
    report_try("fin_why_price, refused", tried[4], tried[0], rows);
    report_try("TRY, rows refused", tried[5], tried[0], rows / 10);
}
