// exp, log and pow: against 200 bits, and with and without the processor's fused multiply-add.
#include "elementary/functions.hpp"

#include <gtest/gtest.h>

#include "tests/elementary/doubles.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

void expect_within(const char* name, const Worst& worst, double below) {
    EXPECT_LT(worst.error(), below) << name;
    EXPECT_GT(worst.error(), 0.49) << name << ": no draw is near a half, which rounding alone makes";
}

// The worst seen is near the bound; a coefficient that is off by one digit is beyond it.
TEST(Elementary, Errors) {
    DoubleDraws draws{51};
    Worst exps;
    Worst logs;
    Worst pows;
    Worst exps_less_1;
    Worst logs_of_1_and;
    for (int i = 0; i < 100'000; ++i) {
        const double x = draws.between(-700.0, 700.0);
        exps.add(error_in_ulps(elementary::exp(x), exponential(Precise{x})));
        const double z = i % 2 == 0 ? draws.between(0.9, 1.1) : std::exp(x);
        logs.add(error_in_ulps(elementary::log(z), logarithm(Precise{z})));
        const double base = draws.between(0.5, 1.5);
        const double y = draws.between(-900.0, 900.0);
        pows.add(error_in_ulps(elementary::pow(base, y), power(Precise{base}, Precise{y})));
        const double s = i % 2 == 0 ? draws.between(-1.0, 1.0)
                                    : std::ldexp(draws.between(-1.0, 1.0), -static_cast<int>(draws.index(60)));
        exps_less_1.add(error_in_ulps(elementary::expm1(s), exponential_less_1(Precise{s})));
        const double t = i % 3 == 0 ? std::exp(x) : 0.99 * s;
        logs_of_1_and.add(error_in_ulps(elementary::log1p(t), logarithm_of_1_and(Precise{t})));
    }
    expect_within("exp", exps, 0.511);
    expect_within("log", logs, 0.52);
    expect_within("pow", pows, 0.52);
    expect_within("expm1", exps_less_1, 2.5);
    expect_within("log1p", logs_of_1_and, 0.7);
}

void expect_same(const char* name, double x, double y, double a, double b) {
    EXPECT_TRUE(same_answer(a, b)) << name << std::hexfloat << ' ' << x << ' ' << y << ": " << a << ", not " << b;
}

void expect_same_everywhere(double x, double y) {
    namespace fast = elementary::by_instruction;
    namespace exact = elementary::without_instruction;
    expect_same("exp", x, 0.0, exact::exp(x), fast::exp(x));
    expect_same("expm1", x, 0.0, exact::expm1(x), fast::expm1(x));
    expect_same("log", x, 0.0, exact::log(x), fast::log(x));
    expect_same("log1p", x, 0.0, exact::log1p(x), fast::log1p(x));
    expect_same("pow", x, y, exact::pow(x, y), fast::pow(x, y));
    expect_same("fused", x, y, exact::fused(x, y, x), fast::fused(x, y, x));
}

TEST(Elementary, SameBitsWithoutTheInstruction) {
    if (!elementary::has_fused_multiply_add) GTEST_SKIP() << "this processor has no fused multiply-add";
    for (const double x : edge_doubles) {
        for (const double y : edge_doubles) expect_same_everywhere(x, y);
    }
    DoubleDraws draws{52};
    for (int i = 0; i < 30'000; ++i) {
        expect_same_everywhere(draws.exponent(), draws.between(-2.0, 2.0));
        expect_same_everywhere(draws.number(), draws.between(-2.0, 2.0));
        const auto [base, power] = draws.power();
        expect_same_everywhere(base, power);
    }
}

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct EdgeRow {
    const char* id;
    double (*function)(double);
    double x;
    double expected;
};

// By the limits of the functions; numbers beside them by 200 bits.
TEST(Elementary, Edges) {
    const std::vector<EdgeRow> rows{
        {"e^0", elementary::exp, 0.0, 1.0},
        {"e^-0", elementary::exp, -0.0, 1.0},
        {"what adds nothing to 1", elementary::exp, 0x1p-60, 1.0},
        {"e^infinity", elementary::exp, inf, inf},
        {"e^-infinity", elementary::exp, -inf, 0.0},
        {"e^NaN", elementary::exp, nan, nan},
        {"the largest", elementary::exp, 0x1.62e42fefa39efp+9, 0x1.fffffffffff2ap+1023},
        {"too large", elementary::exp, 0x1.62e42fefa39f0p+9, inf},
        {"the smallest", elementary::exp, -0x1.74910d52d3051p+9, 5e-324},
        {"too small", elementary::exp, -0x1.74910d52d3052p+9, 0.0},
        {"far too large", elementary::exp, 1e300, inf},
        {"far too small", elementary::exp, -1e300, 0.0},
        {"e^-0 - 1 keeps its sign", elementary::expm1, -0.0, -0.0},
        {"e^tiny - 1", elementary::expm1, 5e-324, 5e-324},
        {"e^-infinity - 1", elementary::expm1, -inf, -1.0},
        {"e^infinity - 1", elementary::expm1, inf, inf},
        {"e^NaN - 1", elementary::expm1, nan, nan},
        {"ln 1", elementary::log, 1.0, 0.0},
        {"ln 0", elementary::log, 0.0, -inf},
        {"ln -0", elementary::log, -0.0, -inf},
        {"ln -1", elementary::log, -1.0, nan},
        {"ln -infinity", elementary::log, -inf, nan},
        {"ln infinity", elementary::log, inf, inf},
        {"ln NaN", elementary::log, nan, nan},
        {"ln of the smallest", elementary::log, 5e-324, -0x1.74385446d71c3p+9},
        {"ln of the largest", elementary::log, 0x1.fffffffffffffp+1023, 0x1.62e42fefa39efp+9},
        {"ln(1 + -0)", elementary::log1p, -0.0, -0.0},
        {"ln(1 + tiny)", elementary::log1p, 5e-324, 5e-324},
        {"ln(1 - 1)", elementary::log1p, -1.0, -inf},
        {"ln(1 - 2)", elementary::log1p, -2.0, nan},
        {"ln(1 + infinity)", elementary::log1p, inf, inf},
        {"ln(1 + NaN)", elementary::log1p, nan, nan},
    };
    for (const EdgeRow& row : rows) {
        const double got = row.function(row.x);
        EXPECT_TRUE(same_answer(got, row.expected)) << row.id << std::hexfloat << ": " << got;
    }
}

}  // namespace
}  // namespace finance::test
