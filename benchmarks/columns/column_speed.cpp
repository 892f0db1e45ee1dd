// What a row of a column costs: batches in which every row is a call of its own, beside the same batches side by side, by
// each set of instructions. Bits are compared first. Best of so many runs, in turn; prints nanoseconds a row and ratios.
//
//     column_speed [--calls-of MODULE] [NAME...]
//
// With another build of the module its calls are what is compared with.
#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/columns/column_cases.hpp"

namespace {

using namespace finance::host;
using finance::bench::Case;
using finance::bench::Random;
using finance::bench::Table;

constexpr int runs = 41;

double nanoseconds_a_row(const EmbeddedHost& host, const Batch& batch) {
    const auto start = std::chrono::steady_clock::now();
    (void)host.evaluate_rows(batch);
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() /
           static_cast<double>(batch.rows);
}

constexpr std::array<std::uint32_t, 3> ways{ZELKOVAN_INSTRUCTIONS_NONE, ZELKOVAN_INSTRUCTIONS_SSE2,
                                            ZELKOVAN_INSTRUCTIONS_AVX2};

bool same_bits(const std::vector<double>& a, const std::vector<double>& b) {
    return std::ranges::equal(
        a, b, {}, [](double x) { return std::bit_cast<std::uint64_t>(x); },
        [](double x) { return std::bit_cast<std::uint64_t>(x); });
}

bool run(const EmbeddedHost& host, const EmbeddedHost& host_of_calls, const Case& of) {
    Table table;
    Random random;
    of.fill(table, random);
    std::array<std::vector<double>, ways.size()> results;
    std::array<double, ways.size()> best;
    best.fill(std::numeric_limits<double>::infinity());
    for (int i = 0; i < runs; ++i) {
        for (std::size_t way = 0; way < ways.size(); ++way) {
            results[way].resize(table.rows);
            const bool calls = ways[way] == ZELKOVAN_INSTRUCTIONS_NONE;
            const Batch batch{.name = of.name,
                              .columns = calls ? table.columns_of_calls : table.columns,
                              .rows = table.rows,
                              .results = results[way].data(),
                              .instructions = ways[way]};
            const EmbeddedHost& by = calls ? host_of_calls : host;
            best[way] = std::min(best[way], nanoseconds_a_row(by, batch));
        }
    }
    const bool same = same_bits(results[0], results[1]) && same_bits(results[0], results[2]);
    std::printf("| %s, %s | %.1f | %.1f | %.1f | %.1f | %.1f |%s\n", of.name, of.description, best[0], best[1],
                best[0] / best[1], best[2], best[0] / best[2], same ? "" : " BITS DIFFER");
    return same;
}

}  // namespace

int main(int argc, char** argv) {
    const EmbeddedHost host{ZELKOVAN_MODULE};
    std::vector<std::string_view> wanted(argv + 1, argv + argc);
    std::optional<EmbeddedHost> other;
    if (wanted.size() > 1 && wanted[0] == "--calls-of") {
        other.emplace(std::filesystem::path{wanted[1]});
        wanted.erase(wanted.begin(), wanted.begin() + 2);
    }
    std::puts("| column | call ns | SSE2 ns | times | AVX2 ns | times |\n|---|---:|---:|---:|---:|---:|");
    bool same = true;
    for (const Case& of : finance::bench::column_cases()) {
        if (wanted.empty() || std::ranges::count(wanted, of.name) > 0)
            same = run(host, other ? *other : host, of) && same;
    }
    return same ? 0 : 1;
}
