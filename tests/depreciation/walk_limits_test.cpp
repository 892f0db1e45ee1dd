// DDB and VDB on both sides of where closed forms take over, and the bits of jumps over equal amounts.
#include <gtest/gtest.h>

#include "tests/calendar/dates.hpp"
#include "tests/depreciation/literal_walks.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double accuracy = 1e-12;
constexpr std::int32_t longest = 50'000'000;
constexpr std::int32_t longest_of_denormals = 10'000'000;

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_handler();
    EXPECT_EQ(got.status, STATUS_SUCCESS) << name;
    return got.value;
}

struct Asset {
    double cost;
    double salvage;
    double life;
    double factor;
};

void expect_same(const char* what, double got, double walked, const Asset& a, DrawnSpan span) {
    EXPECT_TRUE(same_value(got, walked)) << what << ' ' << a.cost << ' ' << a.salvage << ' ' << a.life << ' ' << span.s
                                         << ' ' << span.e << ' ' << a.factor << ": " << got << ", " << walked;
}

void expect_bits_of_vdb(const Asset& a, DrawnSpan span, int flag) {
    if (a.life == static_cast<double>(span.e - span.s)) return;  // cost - salvage, without a walk
    const DecliningAsset asset{a.cost, a.cost - a.salvage, a.life, a.factor};
    const double got = value_of("VDB", {a.cost, a.salvage, a.life, span.s, span.e, a.factor, flag});
    const double walked =
        flag == 1 ? literal_declining<double>(asset, span.s, span.e) : literal_switching<double>(asset, span.s, span.e);
    expect_same(flag == 1 ? "VDB" : "VDB with a switch", got, walked, a, span);
}

void expect_bits_of_ddb(const Asset& a, std::int32_t period) {
    const double got = value_of("DDB", {a.cost, a.salvage, a.life, period, a.factor});
    expect_same("DDB", got, literal_double<double>(a.cost, a.salvage, a.life, a.factor, period), a, {0, period});
}

// Without a salvage that is reached the exact sums are powers of what a period leaves.
void expect_exact(const Asset& a, DrawnSpan span) {
    const auto left = [&](double i) { return power(Precise{1.0} - Precise{a.factor} / a.life, Precise{i}) * a.cost; };
    const auto check = [&](const char* what, double got, const Precise& exact) {
        EXPECT_LE((magnitude(exact - got) / magnitude(exact)).rounded(), accuracy)
            << what << ' ' << a.cost << ' ' << a.life << ' ' << span.s << ' ' << span.e << ": " << got << ", "
            << exact.rounded();
    };
    const Precise sum = left(span.s) - left(span.e);
    check("VDB", value_of("VDB", {a.cost, a.salvage, a.life, span.s, span.e, a.factor, 1}), sum);
    check("VDB with a switch", value_of("VDB", {a.cost, a.salvage, a.life, span.s, span.e, a.factor, 0}), sum);
    check("DDB", value_of("DDB", {a.cost, a.salvage, a.life, span.e, a.factor}), left(span.e - 1.0) - left(span.e));
}

TEST(WalkLimits, LoopsUpToThemExactBeyond) {
    constexpr Asset tiny{1e-290, 1e-292, 2e9, 2.0};
    for (const std::int32_t e : {longest_of_denormals - 1, longest_of_denormals}) {
        expect_bits_of_vdb(tiny, {12345, e}, 1);
        expect_bits_of_vdb(tiny, {0, e}, 0);
        expect_bits_of_ddb(tiny, e);
    }
    for (const std::int32_t e : {longest_of_denormals + 1, 2 * longest_of_denormals}) expect_exact(tiny, {12345, e});
    if (drawn(40) < 40) return;  // the others take a release build seconds
    constexpr Asset usual{1e6, 1e3, 2e9, 2.0};
    expect_bits_of_vdb(usual, {12345, longest}, 1);
    expect_bits_of_ddb(usual, longest);
    expect_exact(usual, {longest, longest + 1});
}

// A straight line to the end of the life: equal amounts, of which the last may be one that salvage ends.
TEST(WalkLimits, StraightLinesKeepTheBits) {
    Draws draw{31};
    for (int i = 0; i < drawn(60); ++i) {
        const double life = std::floor(draw.log_between(1e5, 3e6)) + (draw.whole(0, 2) == 0 ? 0.3 : 0.0);
        const double cost = draw.log_between(1e-3, 1e9);
        const Asset a{cost, cost * draw.between(-1.0, 0.99), life, draw.log_between(0.1, 20.0)};
        const auto last = static_cast<std::int32_t>(life);
        const auto s = static_cast<std::int32_t>(draw.whole(0, 2) == 0 ? 0 : draw.whole(0, last - 1));
        expect_bits_of_vdb(a, {s, draw.whole(0, 1) == 0 ? last : static_cast<std::int32_t>(draw.whole(s + 1, last))},
                           0);
    }
    if (drawn(40) == 40) expect_bits_of_vdb({1e6, 0.0, 2147483647.0, 0.5}, {70'000'000, 100'000'000}, 0);
}

// Rates of decline so small that amounts are equal for thousands of periods, or do not move the sum at all: jumps of all
// lengths, salvages that are reached within one.
TEST(WalkLimits, EqualAmountsKeepTheBits) {
    Draws draw{32};
    for (int i = 0; i < drawn(250); ++i) {
        const double life = draw.log_between(1e4, 1e6);
        const double cost = either_sign(draw, draw.log_between(1e-3, 1e9)) * (draw.whole(0, 9) == 0 ? 1e-305 : 1.0);
        const double rate = draw.log_between(1e-21, draw.whole(0, 1) == 0 ? 1e-17 : 1e-11);
        const double salvage =
            draw.whole(0, 1) == 0 ? draw_salvage(draw, cost) : cost - cost * rate * draw.between(0.0, life);
        const Asset a{cost, salvage, life, rate * life};
        const DrawnSpan span = draw_span(draw, life);
        expect_bits_of_vdb(a, span, 1);
        expect_bits_of_vdb(a, span, 0);
        expect_bits_of_ddb(a, span.e);
    }
}

// A billion equal amounts: sums of a power of two are exact.
TEST(WalkLimits, BillionsOfEqualAmounts) {
    constexpr double life = 0x1p30;
    EXPECT_EQ(value_of("VDB", {1.0, -1.0, life, 1, life, 0x1p-60, 1}), (life - 1.0) * 0x1p-90);
    EXPECT_EQ(value_of("VDB", {0.0, -1.0, life, 1, life, 2, 0}), (life - 1.0) * 0x1p-30);
    EXPECT_EQ(value_of("DDB", {1.0, -1.0, life, life, 0x1p-60}), 0x1p-90);
}

// q = 2, where what is left alternates in sign, by amounts that are not exact too; and settled ones.
TEST(WalkLimits, AlternationsKeepTheBits) {
    Draws draw{33};
    for (int i = 0; i < drawn(60); ++i) {
        const double life = std::floor(draw.log_between(1e3, 3e5));
        const double cost = either_sign(draw, draw.log_between(1e-3, 1e9));
        const double factor = draw.whole(0, 1) == 0 ? 2.0 * life : life * (2.0 - draw.log_between(1e-17, 1e-2));
        const Asset a{cost, 0.0 - draw.log_between(0.1, 1e3) * std::abs(cost), life, factor};
        const DrawnSpan span = draw_span(draw, life);
        expect_bits_of_vdb(a, span, 1);
        expect_bits_of_ddb(a, span.e);
    }
}

}  // namespace
}  // namespace finance::test
