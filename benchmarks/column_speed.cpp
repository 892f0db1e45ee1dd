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
#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "host/batch.hpp"

namespace {

using namespace finance::host;

constexpr std::size_t usual_rows = 8192;
constexpr std::size_t rows_of_lists = 512;
constexpr int flows = 250;  // in a list
constexpr int runs = 41;

class Random {
public:
    double uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(random_() >> 11U) * 0x1p-53;
    }
    double whole(int low, int high) {
        return low + static_cast<double>(random_() % static_cast<std::uint64_t>(high - low + 1));
    }

private:
    std::mt19937_64 random_{1};
};

struct Table {
    std::vector<std::vector<double>> values{};  // a column each
    std::vector<Column> columns{};
    std::vector<Column> columns_of_calls{};  // the same: each value of a list is a column
    std::vector<std::int64_t> starts{};      // of the lists
    std::size_t rows = usual_rows;

    void add(const std::function<double()>& draw) {
        values.emplace_back(rows);
        std::generate(values.back().begin(), values.back().end(), draw);
        columns.push_back(Column::numbers(values.back().data()));
        columns_of_calls.push_back(columns.back());
    }
    void add(const Argument& constant) {
        columns.emplace_back(constant);
        columns_of_calls.emplace_back(constant);
    }
    // Of a table without lists.
    void take_out(std::ptrdiff_t column) {
        columns.erase(columns.begin() + column);
        columns_of_calls = columns;
    }
    // draw(i) is the i-th value of a row's list.
    void add_lists(const std::function<double(int i)>& draw) {
        std::vector<double>& list = values.emplace_back();
        starts.assign(1, 0);
        for (std::size_t row = 0; row < rows; ++row) {
            for (int i = 0; i < flows; ++i) list.push_back(draw(i));
            starts.push_back(static_cast<std::int64_t>(list.size()));
        }
        columns.push_back(Column::lists(list.data(), starts.data()));
        for (int i = 0; i < flows; ++i) {
            columns_of_calls.push_back(Column::numbers(list.data() + i, std::ptrdiff_t{flows} * sizeof(double)));
        }
    }
};

struct Case {
    const char* name;         // of the calculation
    const char* description;  // of the rows
    void (*fill)(Table& table, Random& random);
};

// ---- The tables

constexpr double day_2008 = 17532;  // 1 January 2008
constexpr std::chrono::sys_days epoch{std::chrono::year{1960} / 1 / 1};

void annuity(Table& table, Random& random) {
    table.add([&] { return random.uniform(0.001, 0.011); });
    table.add([&] { return random.whole(12, 400); });
    table.add([&] { return random.uniform(1, 1e6); });
}

void two_dates(Table& table, Random& random) {
    table.add([&] { return day_2008 + random.whole(0, 3000); });
    table.add([&] { return day_2008 + random.whole(3001, 12000); });
}

void year_fraction(Table& table, Random& random) {
    two_dates(table, random);
    table.add(Argument{"30/360"});
}

void year_fraction_actual(Table& table, Random& random) {
    two_dates(table, random);
    table.add(Argument{"ACTUAL"});
}

void discount(Table& table, Random& random) {
    two_dates(table, random);
    table.add([&] { return random.uniform(80, 99); });
    table.add([&] { return 100.0; });
    table.add(Argument{"ACT/360"});
}

void constant_principal(Table& table, Random& random) {
    table.add([&] { return random.uniform(0.001, 0.011); });
    table.add([&] { return random.whole(1, 12); });
    table.add([&] { return random.whole(12, 400); });
    table.add([&] { return random.uniform(1, 1e6); });
}

// settlement, maturity, rate, yield or price, redemption, frequency, basis
void bond(Table& table, Random& random, int fewest_coupons, int most_coupons, double low, double high,
          bool month_ends) {
    std::vector<double> maturities;
    table.add([&] {
        const int months = 6 * static_cast<int>(random.whole(fewest_coupons, most_coupons)) - 2;
        const std::chrono::year_month from{std::chrono::year{2008}, std::chrono::February};
        const std::chrono::year_month month = from + std::chrono::months{months};
        const bool at_end = month_ends && random.whole(1, 10) == 1;
        const std::chrono::sys_days day = at_end ? std::chrono::sys_days{month / std::chrono::last}
                                                 : std::chrono::sys_days{month / static_cast<int>(random.whole(1, 28))};
        maturities.push_back(static_cast<double>((day - epoch).count()));
        return day_2008 + 31 + random.whole(14, 28);
    });
    std::size_t next = 0;
    table.add([&] { return maturities[next++]; });
    table.add([&] { return random.uniform(0.01, 0.09); });
    table.add([&] { return random.uniform(low, high); });
    table.add(Argument{100});
    table.add(Argument{2});
    table.add(Argument{"30/360"});
}

void price_60(Table& table, Random& random) { bond(table, random, 60, 60, 0.01, 0.09, false); }
void price_any(Table& table, Random& random) { bond(table, random, 2, 60, 0.01, 0.09, true); }
void yield_60(Table& table, Random& random) { bond(table, random, 60, 60, 70.0, 130.0, false); }
void yield_any(Table& table, Random& random) { bond(table, random, 2, 60, 90.0, 110.0, true); }
void duration_60(Table& table, Random& random) {
    bond(table, random, 60, 60, 0.01, 0.09, false);
    table.take_out(4);
}

// A loan of 20 years that is paid back on any days.
void dated_flows(Table& table, Random& random) {
    constexpr double days = 7300.0;
    table.add_lists([&](int i) { return i == 0 ? -1e6 : random.uniform(5000, 9000); });
    table.add_lists([&](int i) { return day_2008 + (i == 0 ? 0.0 : random.whole(1, static_cast<int>(days))); });
}

void dated_present_value(Table& table, Random& random) {
    table.rows = rows_of_lists;
    table.add([&] { return random.uniform(0.01, 0.2); });
    dated_flows(table, random);
}

void dated_rate(Table& table, Random& random) {
    table.rows = rows_of_lists;
    dated_flows(table, random);
}

void interest_at_maturity(Table& table, Random& random) {
    two_dates(table, random);
    table.add([&] { return day_2008 - random.whole(1, 3000); });
    table.add([&] { return random.uniform(0.01, 0.1); });
    table.add([&] { return random.uniform(0.01, 0.1); });
    table.add(Argument{"30/360"});
}

void coupons(Table& table, Random& random) {
    two_dates(table, random);
    table.add([&] { return 2.0; });
    table.add(Argument{"30/360"});
}

void coupons_actual(Table& table, Random& random) {
    two_dates(table, random);
    table.add([&] { return 2.0; });
    table.add(Argument{"ACTUAL"});
}

void bill(Table& table, Random& random) {
    table.add([&] { return day_2008 + random.whole(0, 3000); });
    table.add([&] { return day_2008 + random.whole(3001, 3300); });
    table.add([&] { return random.uniform(0.01, 0.1); });
}

void fractional_price(Table& table, Random& random) {
    table.add([&] { return random.uniform(1, 200); });
    table.add([&] { return random.whole(2, 64); });
}

void periodic_rate(Table& table, Random& random) {
    table.add([&] { return random.whole(12, 400); });
    table.add([&] { return random.uniform(-2000, -1000); });
    table.add([&] { return random.uniform(10000, 100000); });
}

void periods(Table& table, Random& random) {
    table.add([&] { return random.uniform(0.001, 0.011); });
    table.add([&] { return random.uniform(-2000, -1000); });
    table.add([&] { return random.uniform(10000, 50000); });
}

void compounded(Table& table, Random& random) {
    table.add([&] { return random.uniform(0.01, 0.2); });
    table.add([&] { return random.whole(1, 365); });
}

void asset(Table& table, Random& random) {
    table.add([&] { return random.uniform(1e4, 1e6); });
    table.add([&] { return random.uniform(1e2, 1e4); });
    table.add([&] { return random.whole(10, 40); });
}

void asset_in_period(Table& table, Random& random) {
    asset(table, random);
    table.add([&] { return random.whole(1, 10); });
}

constexpr Case cases[] = {
    {"DB", "1 to 10 of 10 to 40 years", asset_in_period},
    {"DDB", "1 to 10 of 10 to 40 years", asset_in_period},
    {"EFFECT", "1 to 365 periods", compounded},
    {"NOMINAL", "1 to 365 periods", compounded},
    {"NPER", "a loan", periods},
    {"RATE", "12 to 400 periods", periodic_rate},
    {"SLN", "10 to 40 years", asset},
    {"SYD", "1 to 10 of 10 to 40 years", asset_in_period},
    {"ISPMT", "1 to 12 of 12 to 400 periods", constant_principal},
    {"PMT", "12 to 400 periods", annuity},
    {"XIRR", "250 flows", dated_rate},
    {"XNPV", "250 flows", dated_present_value},
    {"YEARFRAC", "30/360", year_fraction},
    {"YEARFRAC", "ACTUAL", year_fraction_actual},
    {"DISC", "ACT/360", discount},
    {"PRICE", "60 coupons", price_60},
    {"PRICE", "2 to 60 coupons, a tenth at month's ends", price_any},
    {"DURATION", "60 coupons", duration_60},
    {"YIELD", "60 coupons", yield_60},
    {"YIELD", "2 to 60 coupons, a tenth at month's ends", yield_any},
    {"PRICEMAT", "30/360", interest_at_maturity},
    {"COUPDAYBS", "30/360", coupons},
    {"COUPDAYS", "ACTUAL", coupons_actual},
    {"COUPNCD", "30/360", coupons},
    {"COUPNUM", "30/360", coupons},
    {"TBILLEQ", "up to 6300 days", bill},
    {"DOLLARDE", "2 to 64 parts", fractional_price},
};

// ---- The runs

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
    for (const Case& of : cases) {
        if (wanted.empty() || std::ranges::count(wanted, of.name) > 0)
            same = run(host, other ? *other : host, of) && same;
    }
    return same ? 0 : 1;
}
