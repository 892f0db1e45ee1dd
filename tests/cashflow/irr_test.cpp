// IRR: values, refusals, the root finder's codes and its searches. Random lists: irr_lists_test.cpp.
#include "cashflow/irr.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <vector>

#include "abi/arguments.hpp"
#include "cashflow/root_search.hpp"
#include "tests/cashflow/flow_lists.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr const char* digits_60 = "60 digits, tests/reference/cash_flows.py";
constexpr const char* by_hand = "by hand";
constexpr const char* literal_model = "tests/model/irr.py";

// ---- The calculation

const std::vector<ValueCase> values{
    // one change of sign
    {"IRR/two flows", "IRR", {-100, 110}, 0.1, by_hand, 32},
    {"IRR/two flows, the other way round", "IRR", {100, -110}, 0.1, by_hand, 32},
    {"IRR/a loss", "IRR", {-100, 50}, -0.5, by_hand, 32},
    {"IRR/nothing gained", "IRR", {-100, 60, 40}, 0.0, by_hand},
    {"IRR/1000 %", "IRR", {-10, 110}, 10.0, by_hand, 32},
    {"IRR/all but lost", "IRR", {-1e15, 1}, 1e-15 - 1.0, by_hand, 8},
    {"IRR/three periods", "IRR", {-1000, 0, 0, 1331}, 0.1, by_hand, 32},
    {"IRR/project", "IRR", {-2500, 610, 745, 0, 880, 1230}, 0.10486460774349103, digits_60, 64},
    {"IRR/project cut short", "IRR", {-2500, 610, 745, 0, 880}, -0.042999258535552476, digits_60, 256},
    {"IRR/half is lost in two years", "IRR", {-100, 20, 30}, -0.3432235637169978, digits_60, 64},
    {"IRR/zeros between the blocks", "IRR", {-1000, 0, -0.0, 1331, 0, 0}, 0.1, by_hand, 32},

    // zeros at the ends
    {"IRR/zeros in front", "IRR", {0, 0, 0, -100, 110}, 0.1, by_hand, 32},
    {"IRR/zeros behind", "IRR", {-100, 110, 0, -0.0, 0}, 0.1, by_hand, 32},
    {"IRR/zeros at both ends", "IRR", {0, -1000, 0, 0, 1331, 0}, 0.1, by_hand, 32},
    {"IRR/zeros around several changes", "IRR", {0, 0, -100, 230, -132, 0}, 0.1, "10 % or 20 %", 1024},

    // units of all sizes: the logarithms of flows far from 1 have fewer digits for their difference
    {"IRR/tiny", "IRR", {-1e-300, 1.1e-300}, 0.1, by_hand, 4096},
    {"IRR/large", "IRR", {-1e302, 1.1e302}, 0.10000000000009868, literal_model, 4096},
    {"IRR/smallest", "IRR", {-4.9406564584124654e-324, 4.9406564584124654e-324}, 0.0, by_hand},
    {"IRR/huge",
     "IRR",
     {-1e308, 1.1e308, 1.1e307},
     (1.1 + std::sqrt(1.21 + 0.44)) / 2.0 - 1.0,
     "u^2 = 1.1 u + 0.11 for u = 1 + rate",
     4096},
    {"IRR/huge, several changes", "IRR", {-7e307, 1.61e308, -9.24e307}, 0.1, "10 % or 20 %", 4096},
    {"IRR/tiny, several changes", "IRR", {-1e-308, 2.3e-308, -1.32e-308}, 0.1, "10 % or 20 %", 4096},
    {"IRR/1e300 beside 1e-200", "IRR", {-1e300, 1e300, 1e-200}, 0.0, by_hand, 0},

    // several changes: from just below 1 downwards, from just above 1 upwards, Laguerre's method
    {"IRR/10 % and 20 %", "IRR", {-100, 230, -132}, 0.1, "the root nearest to 1 below it", 1024},
    {"IRR/10 % and -50 %", "IRR", {-100, 160, -55}, 0.1, "(1 - 1.1 z) (1 - z/2), the one below 1", 1024},
    {"IRR/-50 % and -75 %", "IRR", {8, -6, 1}, -0.5, "(z - 2) (z - 4)", 1024},
    {"IRR/a third method", "IRR", {-4, 4, 9, -18, 8}, -0.25346017588263203, digits_60, 1024},
    {"IRR/a third method, far away", "IRR", {15, -2, 4, -11, 5, 14, -4}, -0.726743099238359, digits_60, 1024},
    {"IRR/a root below 0 is a rate below -1", "IRR", {18, 19, -8, 1}, -2.401073806328747, digits_60, 64},

    // the value is small beside the largest flow where the search stops: at 100 % a double root, at 0, 10 % and 20 % four
    // roots, the last list has none
    {"IRR/stop beside a double root", "IRR", {-100, 490, -760, 360}, 1.000258331182574, literal_model},
    {"IRR/stop among roots", "IRR", {1, -4.3, 6.92, -4.94, 1.32}, 0.010752688173064628, literal_model},
    {"IRR/stop far from a root", "IRR", {-2, 72, 5, 76, 28, 73, -1e12}, 65.70168220864251, literal_model},

    // the last step leads below 0, or is infinite: a stop is a stop
    {"IRR/stop outside", "IRR", {-2, 7, -9, 5, -1}, -2.999999999996, literal_model},
    {"IRR/stop without slope", "IRR", {2, -5, 3, 1, -1}, -1.0, literal_model},
};

TEST(Irr, Values) { check_values(values); }

// What the host keeps beside the name is none of them, though it be no number.
TEST(Irr, TheNameIsNoFlow) {
    Call call{"IRR", {-100, 110}};
    auto* name = static_cast<CharacterDescriptor*>(slots_of(call.context())[0].value);
    std::fill(std::begin(name->host_owned), std::end(name->host_owned), std::uint8_t{0xFF});
    const Outcome got = call.through_dispatcher();
    EXPECT_EQ(got.status, STATUS_SUCCESS);
    EXPECT_NEAR(got.value, 0.1, 1e-14);
}

// A double root is met to the square root of what the sum shows.
TEST(Irr, DoubleRoot) {
    for (const std::vector<Arg>& flows : {std::vector<Arg>{-1, 2, -1}, {1, -2, 1}, {0, 5, -10, 5}}) {
        const Outcome got = Call{"IRR", flows}.through_handler();
        EXPECT_EQ(got.status, STATUS_SUCCESS);
        EXPECT_NEAR(got.value, 0.0, 1e-5);
    }
}

const std::vector<RefusalCase> refusals{
    // a missing or absent flow, wherever it stands: the result is missing, no argument is named
    {"IRR/first missing", "IRR", {missing, 110}, STATUS_MISSING_RESULT, {}},
    {"IRR/last missing", "IRR", {-100, 110, missing}, STATUS_MISSING_RESULT, {}},
    {"IRR/first absent", "IRR", {absent, 110}, STATUS_MISSING_RESULT, {}},
    {"IRR/last absent", "IRR", {-100, 110, absent}, STATUS_MISSING_RESULT, {}},
    {"IRR/missing and absent", "IRR", {-100, missing, absent, 110}, STATUS_MISSING_RESULT, {}},
    {"IRR/another NaN", "IRR", {-100, nan, 110}, STATUS_MISSING_RESULT, {}},
    {"IRR/the only flow missing", "IRR", {missing}, STATUS_MISSING_RESULT, {}},
    {"IRR/missing among flows of one sign", "IRR", {100, missing, 110}, STATUS_MISSING_RESULT, {}},

    // no rate
    {"IRR/one flow", "IRR", {-100}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/positive", "IRR", {100, 110}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/negative", "IRR", {-100, -110, 0}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/zeros", "IRR", {0, -0.0, 0}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/one flow and zeros", "IRR", {0, -100, 0}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/nothing solves it", "IRR", {1, -1, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/infinite", "IRR", {-inf, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/infinite, several changes", "IRR", {-100, inf, -100}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/rate above the largest double", "IRR", {-1e-300, 1e300}, STATUS_INVALID_ARGUMENT, {}},
    {"IRR/stop at no number", "IRR", {-3, 6, 0, -6, 3}, STATUS_INVALID_ARGUMENT, {}},  // 0/0, although 0 % solves it

    // a rate there is, 94 % below 0, that none of the searches reaches
    {"IRR/out of reach", "IRR", {15, -4, 18, -1}, STATUS_INVALID_ARGUMENT, {}},
};

TEST(Irr, Refusals) { check_refusals(refusals); }

TEST(Irr, NoFlows) {
    const Outcome got = Call{"IRR", {}}.through_handler();
    EXPECT_EQ(got.status, STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(bits(got.value), bits(MISSING_VALUE));
    EXPECT_TRUE(got.flagged.empty());
    const Outcome counted = Call{"IRR", {}}.through_dispatcher();  // too few arguments to begin with
    EXPECT_EQ(counted.status, STATUS_INVALID_ARGUMENT);
    EXPECT_FALSE(counted.written);
}

TEST(Irr, MostFlows) {
    // 1000 for 10 a period, so many that they might as well never end: 1 %
    std::vector<Arg> flows(32767, 10);
    flows.front() = -1000;
    const Outcome most = Call{"IRR", flows}.through_dispatcher();
    EXPECT_EQ(most.status, STATUS_SUCCESS);
    EXPECT_NEAR(most.value, 0.01, 1e-15);
    flows.emplace_back(10);
    const Outcome too_many = Call{"IRR", flows}.through_handler();
    EXPECT_EQ(too_many.status, STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(bits(too_many.value), bits(MISSING_VALUE));
    EXPECT_TRUE(too_many.flagged.empty());
}

TEST(Irr, MostFlowsOfChangingSign) {
    std::vector<double> flows(32767, 10.0);
    flows.front() = -1000.0;
    flows.back() = -1e6;
    const Answer answer = solve_periodic(flows);
    EXPECT_EQ(answer.code, IRR_SOLVED);
    EXPECT_LE(worth_at(flows, answer.rate).relative, 1e-9);
}

// ---- The root finder's codes

TEST(ZirrS, BadRequests) {
    EXPECT_EQ(solve_periodic({-100, 110}, -1.0).code, IRR_BAD_REQUEST);
    EXPECT_EQ(solve_periodic({-100, 110}, -1e-300).code, IRR_BAD_REQUEST);
    EXPECT_EQ(solve_periodic({}).code, IRR_BAD_REQUEST);
    EXPECT_EQ(solve_periodic({-100}).code, IRR_BAD_REQUEST);
    std::vector<double> flows(32768, 1.0);
    flows.front() = -1.0;
    EXPECT_EQ(solve_periodic(flows).code, IRR_BAD_REQUEST);
    flows.pop_back();
    EXPECT_NE(solve_periodic(flows).code, IRR_BAD_REQUEST);
    IrrRequest no_callback{};
    no_callback.x0 = 1.0;
    no_callback.n = 2;
    EXPECT_EQ(zirr_s(&no_callback), -999);
    no_callback.n = -5;
    EXPECT_EQ(zirr_s(&no_callback), -999);
}

TEST(ZirrS, CodesOfNoAnswer) {
    EXPECT_EQ(solve_periodic({0, 0, -0.0}).code, -994);
    EXPECT_EQ(solve_periodic({nan, nan}).code, -994);  // read as 0
    EXPECT_EQ(solve_periodic({1, 2, 3}).code, 1);
    EXPECT_EQ(solve_periodic({0, -5}).code, 1);
    EXPECT_EQ(solve_periodic({1, -1, 1}).code, 1);
    EXPECT_EQ(solve_periodic({15, -4, 18, -1}).code, 1);
    // (z-1)^3 = 1, met at 2: just above 1 there is no slope, the step has no end; Laguerre's radicand is always negative
    EXPECT_EQ(solve_periodic({-2, 3, -3, 1}).code, 1);
    EXPECT_EQ(solve_periodic({-1e300, 1e-300}).code, -993);  // z is 1e600
    EXPECT_EQ(solve_periodic({-1e-300, 1e300}).code, -997);  // z is 1e-600
    const std::array one_sign{1.0, 0.0, 2.0};
    double z = 0.0;
    EXPECT_EQ(root_of_one_change({one_sign.data(), 3}, &z), -995);
}

// A stop is a success of the root finder, whatever it comes to: the calculation refuses what is no number.
TEST(ZirrS, AStopAtNoNumberHasARateThatIsNone) {
    const Answer answer = solve_periodic({-3, 6, 0, -6, 3});
    EXPECT_EQ(answer.code, 0);
    EXPECT_TRUE(std::isnan(answer.rate));
}

TEST(ZirrS, MissingFlowsAreZeros) {
    const Answer answer = solve_periodic({nan, -1000, nan, nan, 1331, nan});
    EXPECT_EQ(answer.code, 0);
    EXPECT_NEAR(answer.rate, 0.1, 1e-14);
}

TEST(ZirrS, PeriodsPerUnit) {
    EXPECT_NEAR(solve_periodic({-100, 110}, 12.0).rate, std::pow(1.1, 12.0) - 1.0, 1e-13);
    EXPECT_NEAR(solve_periodic({-100, 110}, 0.5).rate, std::sqrt(1.1) - 1.0, 1e-14);
    EXPECT_NEAR(solve_periodic({-100, 110}, 0.0).rate, std::log(1.1), 1e-14);   // continuous
    EXPECT_NEAR(solve_periodic({-100, 110}, -0.0).rate, std::log(1.1), 1e-14);  // not below 0
    // a root below 0: a whole number of periods only
    EXPECT_EQ(solve_periodic({18, 19, -8, 1}, 0.0).code, -997);
    EXPECT_EQ(solve_periodic({18, 19, -8, 1}, 0.5).code, -997);
    EXPECT_NEAR(solve_periodic({18, 19, -8, 1}, 2.0).rate, 1.401073806328747 * 1.401073806328747 - 1.0, 1e-12);
    // z^12 overflows, z^12 is 0
    EXPECT_EQ(solve_periodic({-1e30, 1}, 12.0).code, -997);
    EXPECT_EQ(solve_periodic({-1, 1e30}, 12.0).code, -997);
}

TEST(ZirrS, SeveralRootsAreTold) {
    ensure_host();
    const auto told = [](std::vector<double> flows) {
        IrrRequest request{};
        request.x0 = 1.0;
        request.n = static_cast<std::int32_t>(flows.size());
        request.callback = [](std::int32_t i, void* context) { return static_cast<const double*>(context)[i]; };
        request.context = flows.data();
        EXPECT_EQ(zirr_s(&request), IRR_SOLVED);
        return request.severalRoots;
    };
    EXPECT_FALSE(told({-100, 110}));
    EXPECT_FALSE(told({-100, 0, -5, 0, 110}));  // zeros change no sign
    EXPECT_TRUE(told({-100, 230, -132}));
    EXPECT_TRUE(told({-100, 0, 230, 0, -1}));
}

TEST(Zirr, GivesTheRateOrTheMissingValue) {
    ensure_host();
    const auto flow = [](std::int32_t i, void* context) { return static_cast<const double*>(context)[i]; };
    std::array solvable{-100.0, 110.0};
    std::int32_t status = 77;
    EXPECT_NEAR(zirr(2, flow, solvable.data(), &status, 1.0), 0.1, 1e-14);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bits(zirr(1, flow, solvable.data(), &status, 1.0)), bits(MISSING_VALUE));
    EXPECT_EQ(status, -999);
    EXPECT_EQ(bits(zirr(2, nullptr, nullptr, &status, 1.0)), bits(MISSING_VALUE));
    EXPECT_EQ(status, -999);
}

TEST(Cashflow, ReadsTheArgumentAfterTheName) {
    Call call{"IRR", {-100, 110, absent}};
    EXPECT_EQ(cashflow(0, call.context()), -100.0);
    EXPECT_EQ(cashflow(1, call.context()), 110.0);
    EXPECT_EQ(bits(cashflow(2, call.context())), bits(MISSING_VALUE));
}

}  // namespace
}  // namespace finance::test
