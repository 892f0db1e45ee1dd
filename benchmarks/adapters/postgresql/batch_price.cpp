// Nanoseconds a row of PRICE by the embedded host's calls, one a row, on the seven columns that price_speed.sh makes:
//
//     batch_price ROWS
//
// The best of three.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "adapters/common/engine_call.hpp"

int main(int argc, char** argv) {
    using finance::host::Column;
    const std::size_t rows = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (rows == 0) {
        std::fputs("usage: batch_price ROWS\n", stderr);
        return 2;
    }
    constexpr double settlement = 23761.0;  // 2025-01-20
    constexpr double maturity = 25886.0;    // 2030-11-15
    const std::vector<double> settlements(rows, settlement);
    const std::vector<double> maturities(rows, maturity);
    const std::vector<double> rates(rows, 0.05);
    const std::vector<double> redemptions(rows, 100.0);
    const std::vector<double> frequencies(rows, 2.0);
    const std::vector<finance::host::Argument> bases(rows, finance::host::Argument{"30/360"});
    std::vector<double> yields(rows);
    for (std::size_t row = 0; row < rows; ++row) yields[row] = 0.01 + static_cast<double>((row + 1) * 17 % 90) / 1000.0;
    std::vector<double> prices(rows);
    const Column columns[] = {Column::numbers(settlements.data()), Column::numbers(maturities.data()),
                              Column::numbers(rates.data()),       Column::numbers(yields.data()),
                              Column::numbers(redemptions.data()), Column::numbers(frequencies.data()),
                              Column::arguments(bases.data())};
    double best = 1e300;
    for (int run = 0; run < 3; ++run) {
        const auto start = std::chrono::steady_clock::now();
        const auto refused =
            finance::adapters::shared_host().evaluate_rows({.name = "PRICE",
                                                            .columns = columns,
                                                            .rows = rows,
                                                            .results = prices.data(),
                                                            .instructions = ZELKOVAN_INSTRUCTIONS_NONE},
                                                           1);
        const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
        if (refused != 0) return 1;
        best = std::min(best, taken.count() / static_cast<double>(rows));
    }
    std::printf("%.1f\n", best);
    return 0;
}
