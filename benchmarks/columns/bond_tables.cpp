#include "benchmarks/columns/bond_tables.hpp"

#include <chrono>

namespace finance::bench {

namespace {

double days_from_epoch(std::chrono::sys_days day) {
    constexpr std::chrono::sys_days epoch{std::chrono::year{1960} / 1 / 1};
    return static_cast<double>((day - epoch).count());
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
        maturities.push_back(days_from_epoch(day));
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

// settlement, maturity, issue, first coupon date, rate, yield or price, redemption, frequency, basis: the first coupon is
// paid four months after settlement's, or ten.
void odd_first(Table& table, Random& random, int fewest_coupons, int most_coupons, double low, double high,
               const char* basis) {
    std::vector<double> maturities;
    std::vector<double> first_coupons;
    table.add([&] {
        const std::chrono::year_month settled{std::chrono::year{2008}, std::chrono::February};
        const auto day = std::chrono::day(static_cast<unsigned>(random.whole(1, 28)));
        const std::chrono::year_month first = settled + std::chrono::months{random.whole(1, 2) == 1 ? 4 : 10};
        const std::chrono::months later{6 * static_cast<int>(random.whole(fewest_coupons, most_coupons))};
        first_coupons.push_back(days_from_epoch(first / day));
        maturities.push_back(days_from_epoch((first + later) / day));
        return day_2008 + 31 + random.whole(14, 28);
    });
    std::size_t next = 0;
    table.add([&] { return maturities[next++]; });
    table.add([&] { return day_2008 + random.whole(-60, 40); });
    next = 0;
    table.add([&] { return first_coupons[next++]; });
    table.add([&] { return random.uniform(0.01, 0.09); });
    table.add([&] { return random.uniform(low, high); });
    table.add(Argument{100});
    table.add(Argument{2});
    table.add(Argument{basis});
}

// settlement, maturity, last interest date, rate, yield or price, redemption, frequency, basis
void odd_last(Table& table, Random& random, double low, double high, const char* basis) {
    table.add([&] { return day_2008 + random.whole(100, 250); });
    table.add([&] { return day_2008 + random.whole(251, 500); });
    table.add([&] { return day_2008 + random.whole(0, 99); });
    table.add([&] { return random.uniform(0.01, 0.09); });
    table.add([&] { return random.uniform(low, high); });
    table.add(Argument{100});
    table.add(Argument{2});
    table.add(Argument{basis});
}

}  // namespace

void odd_first_price_60(Table& table, Random& random) { odd_first(table, random, 60, 60, 0.01, 0.09, "30/360"); }
void odd_first_price_any(Table& table, Random& random) { odd_first(table, random, 2, 60, 0.01, 0.09, "ACTUAL"); }
void odd_first_yield_60(Table& table, Random& random) { odd_first(table, random, 60, 60, 70.0, 130.0, "30/360"); }
void odd_first_yield_any(Table& table, Random& random) { odd_first(table, random, 2, 60, 90.0, 110.0, "ACTUAL"); }
void odd_last_price(Table& table, Random& random) { odd_last(table, random, 0.01, 0.09, "30/360"); }
void odd_last_yield(Table& table, Random& random) { odd_last(table, random, 90.0, 110.0, "ACTUAL"); }

// issue, first interest date, settlement, rate, par, frequency, basis
void accrued(Table& table, Random& random) {
    table.add([&] { return day_2008 + random.whole(0, 100); });
    table.add([&] { return day_2008 + random.whole(101, 300); });
    table.add([&] { return day_2008 + random.whole(101, 1000); });
    table.add([&] { return random.uniform(0.01, 0.09); });
    table.add(Argument{1000});
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

}  // namespace finance::bench
