// DOLLARDE and DOLLARFR: values, refusals, the way there and back.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr double two_to_63 = 9223372036854775808.0;
constexpr const char* precise = "60 digits, tests/reference/moneymarket.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"DOLLARDE/1.02, 16 parts", "DOLLARDE", {1.02, 16}, 1.125, precise, 4},
    {"DOLLARDE/1.1, 32 parts", "DOLLARDE", {1.1, 32}, 1.3125000000000002, precise, 4},
    {"DOLLARDE/-1.02, 16 parts", "DOLLARDE", {-1.02, 16}, -1.125, precise, 4},
    {"DOLLARDE/99.16, 32 parts", "DOLLARDE", {99.16, 32}, 99.49999999999999, precise, 4},
    {"DOLLARDE/0.7, 8 parts", "DOLLARDE", {0.7, 8}, 0.875, precise, 4},
    {"DOLLARDE/-0.7, 8 parts", "DOLLARDE", {-0.7, 8}, -0.875, precise, 4},
    {"DOLLARDE/5.123456789, 2147483647 parts", "DOLLARDE", {5.123456789, 2147483647}, 5.574890473193902, precise, 4},
    {"DOLLARDE/2.005, 128 parts", "DOLLARDE", {2.005, 128}, 2.039062499999999, precise, 4},
    {"DOLLARDE/1.5, 10 parts", "DOLLARDE", {1.5, 10}, 1.5, precise, 4},
    {"DOLLARDE/1.25, 100 parts", "DOLLARDE", {1.25, 100}, 1.25, precise, 4},
    {"DOLLARDE/1.125, 1000 parts", "DOLLARDE", {1.125, 1000}, 1.125, precise, 4},
    {"DOLLARDE/1.05, 11 parts", "DOLLARDE", {1.05, 11}, 1.454545454545455, precise, 4},
    {"DOLLARFR/1.125, 16 parts", "DOLLARFR", {1.125, 16}, 1.02, precise, 4},
    {"DOLLARFR/1.125, 32 parts", "DOLLARFR", {1.125, 32}, 1.04, precise, 4},
    {"DOLLARFR/-1.125, 16 parts", "DOLLARFR", {-1.125, 16}, -1.02, precise, 4},
    {"DOLLARFR/99.5, 32 parts", "DOLLARFR", {99.5, 32}, 99.16, precise, 4},
    {"DOLLARFR/-0.875, 8 parts", "DOLLARFR", {-0.875, 8}, -0.7, precise, 4},
    {"DOLLARFR/1.5, 10 parts", "DOLLARFR", {1.5, 10}, 1.5, precise, 4},
    {"DOLLARFR/1.25, 100 parts", "DOLLARFR", {1.25, 100}, 1.25, precise, 4},
    {"DOLLARFR/2.6, 11 parts", "DOLLARFR", {2.6, 11}, 2.066, precise, 4},
    {"DOLLARFR/3.0390625, 128 parts", "DOLLARFR", {3.0390625, 128}, 3.005, precise, 4},
    {"DOLLARFR/1.5, 2147483647 parts", "DOLLARFR", {1.5, 2147483647}, 1.10737418235, precise, 4},
    // one part is the whole: the price itself
    {"DOLLARDE/1 part", "DOLLARDE", {17.375, 1}, 17.375, by_hand},
    {"DOLLARFR/1 part", "DOLLARFR", {17.375, 1}, 17.375, by_hand},
    {"DOLLARDE/1 part, negative", "DOLLARDE", {-17.375, 1}, -17.375, by_hand},
    {"DOLLARDE/zero", "DOLLARDE", {0, 8}, 0.0, by_hand},
    {"DOLLARDE/negative zero is zero", "DOLLARDE", {-0.0, 8}, 0.0, by_hand},
    {"DOLLARFR/zero", "DOLLARFR", {0, 8}, 0.0, by_hand},

    // decimals: 8 parts take one, 10 too, 11 two
    {"DOLLARDE/8 parts", "DOLLARDE", {1.25, 8}, 1.3125, "1 + 10 * 0.25 / 8"},
    {"DOLLARDE/10 parts", "DOLLARDE", {1.5, 10}, 1.5, by_hand},
    {"DOLLARDE/20 parts", "DOLLARDE", {1.5, 20}, 3.5, "1 + 100 * 0.5 / 20"},
    {"DOLLARFR/20 parts", "DOLLARFR", {3.5, 20}, 3.1, "3 + 0.5 * 20 / 100"},
    {"DOLLARDE/parts 2^32 + 8", "DOLLARDE", {1.25, two_to_32 + 8}, 1.3125, "32 bits: 8"},
    {"DOLLARDE/parts within 1e-12 of 8", "DOLLARDE", {1.25, 8.000000000001}, 1.3125, by_hand},
    {"DOLLARDE/10^9 parts", "DOLLARDE", {1.25, 1e9}, 1.25, by_hand},
    {"DOLLARDE/10^9 + 1 parts", "DOLLARDE", {1.25, 1000000001.0}, 1.0 + 2500000000.0 / 1000000001.0, "ten decimals", 1},

    // a whole price, and one within five units of 2^-53 of it, is given back; never below zero
    {"DOLLARDE/whole", "DOLLARDE", {3, 8}, 3.0, by_hand},
    {"DOLLARDE/an ulp above 3", "DOLLARDE", {3.0 + 0x1p-51, 8}, 3.0, "4 units of 2^-53, 15 allowed"},
    {"DOLLARDE/three ulps above 3", "DOLLARDE", {3.0 + 0x3p-51, 8}, 3.0, "12 units of 2^-53, 15 allowed"},
    {"DOLLARDE/four ulps above 3", "DOLLARDE", {3.0 + 0x4p-51, 8}, 3.0 + 0x5p-51, "10/8 of 16 units, 15 allowed"},
    {"DOLLARDE/four ulps below -3", "DOLLARDE", {-3.0 - 0x4p-51, 8}, -3.0 - 0x5p-51, "10/8 of it"},
    {"DOLLARDE/two ulps below -3", "DOLLARDE", {-3.0 - 0x2p-51, 4}, -3.0 - 0x5p-51, "10/4 of it: no whole price"},
    {"DOLLARDE/negative whole", "DOLLARDE", {-3, 8}, -3.0, by_hand},
    {"DOLLARFR/an ulp above 3 stays one", "DOLLARFR", {3.0 + 0x1p-51, 8}, 3.0 + 0x1p-51, "0.8 ulp, rounded"},

    // whole units up to 2^31 - 1
    {"DOLLARDE/largest whole", "DOLLARDE", {2147483647.5, 8}, 2147483647.625, "10 * 0.5 / 8"},
    {"DOLLARDE/smallest whole", "DOLLARDE", {-2147483648.5, 8}, -2147483648.625, "10 * -0.5 / 8"},
    {"DOLLARFR/largest whole", "DOLLARFR", {2147483647.625, 8}, 2147483647.5, "0.625 * 8 / 10"},
};

TEST(FractionalPrices, Values) { check_values(values); }

// Beyond 2^31 the whole part means nothing; there is an answer all the same, and nothing undefined on the way.
TEST(FractionalPrices, PricesBeyond32Bits) {
    int calls = 0;
    for (const double x : {two_to_31, -two_to_31 - 1, two_to_53, -two_to_63, 1e300, -1e300, inf, -inf}) {
        for (const char* name : {"DOLLARDE", "DOLLARFR"}) {
            for (const double f : {1.0, 8.0, 2147483647.0}) {
                const Outcome got = Call{name, {x, f}}.through_dispatcher();
                EXPECT_EQ(got.status, STATUS_SUCCESS) << name << ' ' << x << ' ' << f;
                EXPECT_TRUE(got.written && got.flagged.empty()) << name << ' ' << x << ' ' << f;
                ++calls;
            }
        }
    }
    EXPECT_EQ(calls, 48);
}

const std::vector<RefusalCase> refusals{
    {"DOLLARDE/both missing", "DOLLARDE", {missing, missing}, STATUS_MISSING_RESULT, {1}},
    {"DOLLARDE/price absent, parts bad", "DOLLARDE", {absent, 0}, STATUS_INVALID_ARGUMENT, {1}},
    {"DOLLARFR/price missing, parts bad", "DOLLARFR", {missing, 0.5}, STATUS_MISSING_RESULT, {1}},
    {"DOLLARFR/parts 0.5", "DOLLARFR", {1, 0.5}, STATUS_INVALID_ARGUMENT, {2}},
    {"DOLLARFR/parts -8", "DOLLARFR", {1, -8}, STATUS_INVALID_ARGUMENT, {2}},
    {"DOLLARDE/a whole price does not excuse the parts", "DOLLARDE", {3, 0}, STATUS_INVALID_ARGUMENT, {2}},
};

TEST(FractionalPrices, Refusals) { check_refusals(refusals); }

TEST(FractionalPrices, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules price{true, {}};
    const ArgumentRules parts{true,
                              {0, -0.0, -8, 0.5, 8.5, 8.00000000001, two_to_31, two_to_32, two_to_53 + 2, 1e16, 1e300,
                               inf, -inf, -1e300, -two_to_63}};
    int calls = 0;
    for (const char* name : {"DOLLARDE", "DOLLARFR"}) calls += check_argument_rules(name, {1.25, 8}, {price, parts});
    EXPECT_EQ(calls, 38);
}

// ---- There and back

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

// k parts of f: the decimal price is whole + k / f, the written one whole and k as decimals.
RC_GTEST_PROP(FractionalPriceIdentities, WrittenPartsAreTheParts, ()) {
    const int f = *rc::gen::inRange(1, 20000);
    const int k = *rc::gen::inRange(0, f);
    const int whole = *rc::gen::inRange(0, 100000);
    const int sign = *rc::gen::element(-1, 1);
    int tens = 1;
    while (tens < f) tens *= 10;
    const double written = sign * (whole + static_cast<double>(k) / tens);
    const double decimal = sign * (whole + static_cast<double>(k) / f);
    const double allowed = 1e-15 * (whole + 1.0);
    RC_ASSERT(std::abs(value_of("DOLLARDE", {written, f}) - decimal) <= 10.0 * allowed);
    RC_ASSERT(std::abs(value_of("DOLLARFR", {decimal, f}) - written) <= allowed);
}

RC_GTEST_PROP(FractionalPriceIdentities, BackAndForthGivesThePrice, ()) {
    const int f = *rc::gen::inRange(1, 1000000000);
    const double price = *rc::gen::inRange(-1000000000, 1000000000) / 1024.0;
    const double there = value_of("DOLLARFR", {price, f});
    RC_ASSERT(std::abs(value_of("DOLLARDE", {there, f}) - price) <= 1e-14 * (std::abs(price) + 1.0));
    RC_PRE(std::trunc(value_of("DOLLARDE", {price, f})) == std::trunc(price));  // less than a unit in parts
    RC_ASSERT(std::abs(value_of("DOLLARFR", {value_of("DOLLARDE", {price, f}), f}) - price) <=
              1e-14 * (std::abs(price) + 1.0));
}

}  // namespace
}  // namespace finance::test
