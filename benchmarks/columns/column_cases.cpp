#include "benchmarks/columns/column_cases.hpp"

#include "benchmarks/columns/bond_tables.hpp"

namespace finance::bench {

namespace {

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

// A loan that is paid back in equal periods.
void periodic_flows(Table& table, Random& random) {
    table.rows = rows_of_lists;
    table.add_lists([&](int i) { return i == 0 ? -1e6 : random.uniform(5000, 9000); });
}

void periodic_present_value(Table& table, Random& random) {
    table.rows = rows_of_lists;
    table.add([&] { return random.uniform(0.001, 0.011); });
    periodic_flows(table, random);
}

void schedule(Table& table, Random& random) {
    table.rows = rows_of_lists;
    table.add([&] { return random.uniform(1, 1e6); });
    table.add_lists([&](int) { return random.uniform(0.001, 0.011); });
}

void modified_rate(Table& table, Random& random) {
    periodic_flows(table, random);
    table.add([&] { return random.uniform(0.001, 0.011); });
    table.add([&] { return random.uniform(0.001, 0.011); });
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

// From a period of the first five to one of the next.
void asset_in_span(Table& table, Random& random) {
    asset(table, random);
    table.add([&] { return random.whole(0, 5); });
    table.add([&] { return random.whole(6, 10); });
}

// cost, date of purchase, end of the first period, salvage, period, rate, basis
void prorated(Table& table, Random& random) {
    table.add([&] { return random.uniform(1e4, 1e6); });
    table.add([&] { return day_2008 + random.whole(0, 300); });
    table.add([&] { return day_2008 + random.whole(301, 365); });
    table.add([&] { return random.uniform(1e2, 1e4); });
    table.add([&] { return random.whole(0, 9); });
    table.add([&] { return random.uniform(0.05, 0.15); });
    table.add(Argument{"30/360"});
}

// rate, periods, amount, first and last period, timing
void interest_of_span(Table& table, Random& random) {
    annuity(table, random);
    table.add([&] { return random.whole(1, 6); });
    table.add([&] { return random.whole(7, 12); });
    table.add(Argument{0});
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
    {"ODDFPRICE", "60 coupons", odd_first_price_60},
    {"ODDFPRICE", "2 to 60 coupons, ACTUAL", odd_first_price_any},
    {"ODDFYIELD", "60 coupons", odd_first_yield_60},
    {"ODDFYIELD", "2 to 60 coupons, ACTUAL", odd_first_yield_any},
    {"ODDLPRICE", "30/360", odd_last_price},
    {"ODDLYIELD", "ACTUAL", odd_last_yield},
    {"ACCRINT", "30/360, up to 1000 days", accrued},
    {"AMORDEGRC", "30/360", prorated},
    {"AMORLINC", "30/360", prorated},
    {"CUMIPMT", "12 to 400 periods", interest_of_span},
    {"CUMPRINC", "12 to 400 periods", interest_of_span},
    {"FVSCHEDULE", "250 rates", schedule},
    {"IRR", "250 flows", periodic_flows},
    {"MIRR", "250 flows", modified_rate},
    {"NPV", "250 flows", periodic_present_value},
    {"VDB", "0 to 5 until 6 to 10 of 10 to 40 years", asset_in_span},
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
