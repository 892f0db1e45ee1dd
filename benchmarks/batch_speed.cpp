// What a row of a batch costs beside the bare call of the dispatcher: PMT over 100,000 rows of three columns. The bare
// call has one record, and moves three value pointers. Best of 101 runs each, in turn; prints nanoseconds a row and
// ratios.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <random>
#include <vector>

#include "host/batch.hpp"
#include "host/call_frame.hpp"

namespace {

using namespace finance::host;

constexpr std::size_t rows = 100'000;
constexpr int runs = 101;

struct Table {
    std::vector<double> rate, nper, pv, payment;
};

Table make_table() {
    std::mt19937_64 random{1};
    const auto uniform = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random() >> 11U) * 0x1p-53;
    };
    Table table;
    for (std::size_t i = 0; i < rows; ++i) {
        table.rate.push_back(uniform(0.001, 0.011));
        table.nper.push_back(static_cast<double>(static_cast<int>(uniform(12, 400))));
        table.pv.push_back(uniform(1, 1e6));
    }
    table.payment.resize(rows);
    return table;
}

void bare_calls(const EmbeddedHost& host, Table& table) {
    const Dispatcher dispatcher = host.dispatcher();
    CallFrame& frame = CallFrame::of_this_thread();
    const std::array<Argument, 3> samples{0.0, 0.0, 0.0};
    frame.fill("PMT", samples, 0, false);
    for (std::size_t i = 0; i < rows; ++i) {
        frame.slot(1).value = &table.rate[i];
        frame.slot(2).value = &table.nper[i];
        frame.slot(3).value = &table.pv[i];
        dispatcher(frame.context(), &table.payment[i]);
    }
}

void single_calls(const EmbeddedHost& host, Table& table) {
    for (std::size_t i = 0; i < rows; ++i) {
        table.payment[i] = host.evaluate("PMT", {table.rate[i], table.nper[i], table.pv[i]}).value;
    }
}

void batch(const EmbeddedHost& host, Table& table, unsigned threads) {
    const std::array<Column, 3> columns{Column::numbers(table.rate.data()), Column::numbers(table.nper.data()),
                                        Column::numbers(table.pv.data())};
    (void)host.evaluate_rows({.name = "PMT", .columns = columns, .rows = rows, .results = table.payment.data()},
                             threads);
}

template <typename Run>
double seconds(Run run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main() {
    const EmbeddedHost host{ZELKOVAN_MODULE};
    Table table = make_table();
    std::array<double, 4> best{};
    best.fill(std::numeric_limits<double>::infinity());
    for (int run = 0; run < runs; ++run) {
        best[0] = std::min(best[0], seconds([&] { bare_calls(host, table); }));
        best[1] = std::min(best[1], seconds([&] { batch(host, table, 1); }));
        best[2] = std::min(best[2], seconds([&] { batch(host, table, 2); }));
        best[3] = std::min(best[3], seconds([&] { single_calls(host, table); }));
    }
    constexpr std::array names{"bare dispatcher", "batch", "batch, two threads", "evaluate"};
    for (std::size_t i = 0; i < best.size(); ++i) {
        std::printf("%-20s %7.1f ns a row, %.2f of the bare call\n", names[i], 1e9 * best[i] / rows, best[i] / best[0]);
    }
}
