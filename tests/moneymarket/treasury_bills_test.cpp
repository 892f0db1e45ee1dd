// TBILLEQ, TBILLPRICE, TBILLYIELD: values, refusals, order of checks, identities.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr const char* precise = "60 digits, tests/reference/moneymarket.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"TBILLPRICE/62 days, 0.09",
     "TBILLPRICE",
     {host_date(2008, 3, 31), host_date(2008, 6, 1), 0.09},
     98.45,
     precise,
     4},
    {"TBILLPRICE/-62 days, 0.09",
     "TBILLPRICE",
     {host_date(2008, 3, 31), host_date(2008, 1, 29), 0.09},
     101.55,
     precise,
     4},
    {"TBILLPRICE/50.5 days, 0.0312", "TBILLPRICE", {100.25, 150.75, 0.0312}, 99.56233333333333, precise, 4},
    {"TBILLPRICE/99999 days, 0.09", "TBILLPRICE", {1, 100000, 0.09}, -2399.975, precise, 4},
    {"TBILLYIELD/62 days, 98.45",
     "TBILLYIELD",
     {host_date(2008, 3, 31), host_date(2008, 6, 1), 98.45},
     0.09141696292534264,
     precise,
     4},
    {"TBILLYIELD/62 days, 101.5",
     "TBILLYIELD",
     {host_date(2008, 3, 31), host_date(2008, 6, 1), 101.5},
     -0.08580962974733831,
     precise,
     4},
    {"TBILLYIELD/50.5 days, 99.1", "TBILLYIELD", {100.25, 150.75, 99.1}, 0.06474108561209341, precise, 4},
    {"TBILLEQ/62 days, 0.0914",
     "TBILLEQ",
     {host_date(2008, 3, 31), host_date(2008, 6, 1), 0.0914},
     0.09415149356594302,
     precise,
     4},
    {"TBILLEQ/182 days, 0.09", "TBILLEQ", {1000, 1182, 0.09}, 0.09559979046621267, precise, 4},
    // beyond half a year an ulp of t counts 1 / (t - 1/2) times: 730 times on the first day
    {"TBILLEQ/183 days, 0.09", "TBILLEQ", {1000, 1183, 0.09}, 0.09561234756894087, precise, 8192},
    {"TBILLEQ/182 days, 0.0001", "TBILLEQ", {1000, 1182, 0.0001}, 0.00010139401491964317, precise, 4},
    {"TBILLEQ/183 days, 0.0001", "TBILLEQ", {1000, 1183, 0.0001}, 0.00010139402904133986, precise, 8388608},
    {"TBILLEQ/364 days, 0.0525", "TBILLEQ", {1000, 1364, 0.0525}, 0.05544667596056162, precise, 64},
    {"TBILLEQ/1000 days, 0.3", "TBILLEQ", {1000, 2000, 0.3}, 1.2183054177935166, precise, 64},
    {"TBILLEQ/365 days, 0.9", "TBILLEQ", {1000, 1365, 0.9}, 4.7612340378281335, precise, 64},
    {"TBILLPRICE/maturity before settlement", "TBILLPRICE", {400, 40, 0.05}, 105.0, by_hand, 1},
    {"TBILLPRICE/maturity at settlement", "TBILLPRICE", {400, 400, 0.05}, 100.0, by_hand},
    {"TBILLPRICE/a term of years gives a negative price", "TBILLPRICE", {1, 7201, 0.1}, -100.0, by_hand},
    {"TBILLPRICE/dates need not be whole", "TBILLPRICE", {0.5, 36.5, 0.1}, 99.0, by_hand},
    {"TBILLPRICE/infinite maturity", "TBILLPRICE", {1, inf, 0.1}, -inf, by_hand},
    {"TBILLPRICE/both dates infinite", "TBILLPRICE", {inf, inf, 0.1}, not_a_number, "infinite less infinite"},
    {"TBILLYIELD/price of par", "TBILLYIELD", {100, 136, 100}, 0.0, by_hand},
    {"TBILLYIELD/half of par for 36 days", "TBILLYIELD", {100, 136, 50}, 10.0, by_hand},
    {"TBILLYIELD/infinite maturity", "TBILLYIELD", {100, inf, 50}, 0.0, by_hand},
    {"TBILLYIELD/infinite price", "TBILLYIELD", {100, 136, inf}, not_a_number, "infinite over infinite"},
    {"TBILLEQ/36 days", "TBILLEQ", {100, 136, 1}, 365.0 / 324.0, by_hand},
    {"TBILLEQ/a fraction of a day", "TBILLEQ", {100.25, 100.5, 0.36}, 365.0 * 0.36 / (360.0 - 0.09), by_hand, 1},
    {"TBILLEQ/short, price 0", "TBILLEQ", {100, 280, 2}, inf, "730 / 0"},
    {"TBILLEQ/short, price below 0", "TBILLEQ", {100, 280, 4}, 365.0 * 4 / (360.0 - 720), by_hand},
    {"TBILLEQ/long, infinite rate", "TBILLEQ", {100, 300, inf}, not_a_number, "infinite over infinite"},
    {"TBILLEQ/182.5 days", "TBILLEQ", {1000, 1182.5, 0.09}, not_a_number, "t is a half: 0 / 0"},
    {"TBILLEQ/infinite maturity", "TBILLEQ", {100, inf, 0.1}, not_a_number, "infinite over infinite"},
};

TEST(TreasuryBills, Values) { check_values(values); }

const std::vector<RefusalCase> refusals{
    // TBILLEQ compares the dates after its rate, TBILLYIELD before its price, TBILLPRICE never
    {"TBILLEQ/same day", "TBILLEQ", {100, 100, 0.1}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLEQ/maturity before settlement", "TBILLEQ", {100, 99, 0.1}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLEQ/same day, rate missing", "TBILLEQ", {100, 100, missing}, STATUS_MISSING_RESULT, {3}},
    {"TBILLEQ/same day, rate absent", "TBILLEQ", {100, 100, absent}, STATUS_INVALID_ARGUMENT, {3}},
    {"TBILLEQ/same day, rate 0", "TBILLEQ", {100, 100, 0}, STATUS_INVALID_ARGUMENT, {3}},
    {"TBILLEQ/both dates infinite", "TBILLEQ", {inf, inf, 0.1}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLYIELD/same day", "TBILLYIELD", {100, 100, 98}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLYIELD/maturity before settlement", "TBILLYIELD", {100, 99, 98}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLYIELD/same day, price missing", "TBILLYIELD", {100, 100, missing}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLYIELD/same day, price absent", "TBILLYIELD", {100, 100, absent}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLYIELD/same day, price 0", "TBILLYIELD", {100, 100, 0}, STATUS_INVALID_ARGUMENT, {2}},
    {"TBILLPRICE/maturity before settlement, rate 0", "TBILLPRICE", {100, 99, 0}, STATUS_INVALID_ARGUMENT, {3}},

    // two faults at once: the first argument is named
    {"TBILLEQ/settlement missing, maturity bad", "TBILLEQ", {missing, 0, 0.1}, STATUS_MISSING_RESULT, {1}},
    {"TBILLPRICE/settlement bad, maturity missing", "TBILLPRICE", {0, missing, 0.1}, STATUS_INVALID_ARGUMENT, {1}},
    {"TBILLYIELD/maturity absent, price missing", "TBILLYIELD", {100, absent, missing}, STATUS_INVALID_ARGUMENT, {2}},

    // no yield has that price: no argument is at fault, and the result is left alone
    {"TBILLEQ/no root, 200 days", "TBILLEQ", {100, 300, 2}, STATUS_INVALID_ARGUMENT, {}, false},
    {"TBILLEQ/no root, 400 days", "TBILLEQ", {100, 500, 0.9001}, STATUS_INVALID_ARGUMENT, {}, false},
};

TEST(TreasuryBills, Refusals) { check_refusals(refusals); }

TEST(TreasuryBills, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules positive{true, {0, -0.0, -1e-300, -5, -inf}};
    int calls = 0;
    for (const char* name : {"TBILLEQ", "TBILLPRICE", "TBILLYIELD"}) {
        calls += check_argument_rules(name, {100, 200, 0.05}, {positive, positive, positive});
    }
    EXPECT_EQ(calls, 63);
}

// ---- Identities

struct Bill {
    double settlement;
    double days;
    double rate;
    [[nodiscard]] double maturity() const { return settlement + days; }
    [[nodiscard]] double price() const { return 1.0 - rate * days / 360.0; }  // of 1
};

// Of any positive price.
Bill any_bill(int shortest, int longest) {
    const double settlement = *rc::gen::inRange(1, 40000) / 4.0;
    const double days = *rc::gen::inRange(shortest, longest);
    return {settlement, days, *rc::gen::inRange(1, 990) / 1000.0 * 360.0 / days};
}

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

RC_GTEST_PROP(TreasuryBillIdentities, YieldOfThePriceEarnsTheDiscount, ()) {
    const Bill b = any_bill(1, 3000);
    const double price = value_of("TBILLPRICE", {b.settlement, b.maturity(), b.rate});
    RC_ASSERT(std::abs(price - 100.0 * b.price()) <= 1e-12 * 100.0);
    const double yield = value_of("TBILLYIELD", {b.settlement, b.maturity(), price});
    RC_ASSERT(std::abs(price * (1.0 + yield * b.days / 360.0) - 100.0) <= 1e-10);
}

// Up to 182 days: simple interest on 365 days.
RC_GTEST_PROP(TreasuryBillIdentities, ShortEquivalentYieldIsSimpleInterest, ()) {
    const Bill b = any_bill(1, 183);
    const double y = value_of("TBILLEQ", {b.settlement, b.maturity(), b.rate});
    RC_ASSERT(std::abs(b.price() * (1.0 + y * b.days / 365.0) - 1.0) <= 1e-12);
}

// Beyond: half a year's interest earns interest for the rest of the term.
RC_GTEST_PROP(TreasuryBillIdentities, LongEquivalentYieldSolvesItsEquation, ()) {
    const Bill b = any_bill(183, 3000);
    const double y = value_of("TBILLEQ", {b.settlement, b.maturity(), b.rate});
    RC_ASSERT(y > 0.0);
    const double worth = b.price() * (1.0 + y / 2.0) * (1.0 + y * (b.days / 365.0 - 0.5));
    RC_ASSERT(std::abs(worth - 1.0) <= 1e-10);
}

// A negative price p has a yield only where (1 + y/2) (1 + (t - 1/2) y) = 1/p has a root: where the least value of the
// left side, -(t - 1)^2 / (2 t - 1) at its vertex, is not above 1/p.
RC_GTEST_PROP(TreasuryBillIdentities, NegativePricesMayHaveNoRoot, ()) {
    const double days = *rc::gen::inRange(183, 3000);
    const double rate = 360.0 / days * (1.0 + *rc::gen::inRange(1, 5000) / 1000.0);
    const double t = days / 365.0;
    const double p = 1.0 - rate * days / 360.0;
    const double least = -(1.0 - t) * (1.0 - t) / (2.0 * t - 1.0);
    RC_PRE(std::abs(least - 1.0 / p) > 1e-6);
    const Outcome got = Call{"TBILLEQ", {100, 100 + days, rate}}.through_dispatcher();
    RC_ASSERT((got.status == STATUS_SUCCESS) == (least < 1.0 / p));
    RC_ASSERT(got.written == (got.status == STATUS_SUCCESS));
    RC_ASSERT(got.flagged.empty());
}

}  // namespace
}  // namespace finance::test
