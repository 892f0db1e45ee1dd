#include "benchmarks/columns/column_cases.hpp"

#include <chrono>

namespace finance::bench {

namespace {

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

}  // namespace

std::span<const Case> column_cases() { return cases; }

}  // namespace finance::bench
