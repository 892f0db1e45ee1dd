// The floating-point mode around everything that zelkovan.so shows and that looks at numbers: the same bits in any mode,
// the caller's mode as it was, and the host's services in the usual one. (All calculations: tests/corpus/modes_test.cpp.)
#include "tests/support/modes.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "tests/abi/bare_host.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double signalling = std::numeric_limits<double>::signaling_NaN();

constexpr std::uint32_t flags_of_exceptions = 0x003F;
constexpr std::uint32_t division_by_zero = 0x0004;

class ModesOfCallers : public testing::Test {
protected:
    static void SetUpTestSuite() { ensure_host(); }
};

// ---- Exported routines

const std::vector<double> numbers{0.0,   -0.0, 5e-324, -5e-324, 3e-310, 1e-300, 1e-9,   0.03125, 0.1,
                                  -0.7,  1.0,  -0.99,  1.7,     -1.0,   2.5,    -3.0,   12.25,   690,
                                  745.5, 1e17, 1e308,  -1e308,  inf,    -inf,   missing};

using Kernel = double (*)(double x, double y);

const std::vector<Kernel> kernels{
    [](double x, double) { return zexpm1(x); },
    [](double x, double) { return zln1px(x); },
    [](double x, double y) { return zlnSumOfExp(x, y); },
    [](double x, double y) {
        const double values[] = {x, y, 0.1, -3e-310};
        return zvasum(values, 4);
    },
    [](double x, double y) {
        const double values[] = {x, y, 5e-324};
        return zvamx(values, 3);
    },
    [](double x, double y) {
        std::int32_t status = 0;
        const double power = zpower(&status, x, y);
        return status == 0 ? power : static_cast<double>(-status);
    },
};

struct Answers {
    std::vector<std::uint64_t> bits;
    bool mode_kept = true;
};

// Of every kernel and every pair of numbers. Nothing but the kernels, and moves, in that mode.
Answers answers_in(const FloatingPointMode& mode) {
    Answers answers;
    for (const Kernel kernel : kernels) {
        for (const double x : numbers) {
            for (const double y : numbers) {
                set_mode(mode);
                const volatile double answer = kernel(x, y);
                answers.mode_kept = mode_is(mode) && answers.mode_kept;
                set_mode(usual_mode);
                answers.bits.push_back(answer != answer ? bits(missing) : bits(answer));
            }
        }
    }
    return answers;
}

TEST_F(ModesOfCallers, KernelsHaveTheSameBits) {
    const Answers usual = answers_in(usual_mode);
    ASSERT_EQ(usual.bits.size(), 6 * numbers.size() * numbers.size());
    for (const FloatingPointMode& mode : other_modes) {
        const Answers got = answers_in(mode);
        EXPECT_EQ(got.bits, usual.bits) << mode.name;
        EXPECT_TRUE(got.mode_kept) << mode.name;
    }
}

// A signalling NaN is missing as any other, and is no exception.
TEST_F(ModesOfCallers, MissingValuesAreCounted) {
    const std::array counters{fncnmis, fnccmis, fncmis};
    const std::array expected{2.0, 2.0, 1.0};
    for (const FloatingPointMode& mode : other_modes) {
        double values[] = {signalling, 5e-324, 0.0, missing};
        struct {
            HostCallContext head{};
            ArgSlot slots[4]{};
        } record;
        record.head.count = 4;
        for (std::size_t i = 0; i < 4; ++i) record.slots[i] = {ZELKOVAN_TYPE_NUMERIC, 0, {}, &values[i]};
        for (std::size_t i = 0; i < counters.size(); ++i) {
            double missing_values = -1.0;
            set_mode(mode);
            const std::uint32_t status = counters[i](&record.head, &missing_values);
            const bool kept = mode_is(mode);
            set_mode(usual_mode);
            EXPECT_EQ(status, 0U) << mode.name;
            EXPECT_EQ(missing_values, expected[i]) << mode.name;
            EXPECT_TRUE(kept) << mode.name;
        }
    }
}

// ---- A call's way through

const FloatingPointMode* callers_mode = &usual_mode;
std::uint32_t flags_before = 0;
std::uint32_t control_after = 0;

std::uint32_t in_callers_mode(HostCallContext* context, double* result) {
    set_mode(*callers_mode);
    _mm_setcsr(_mm_getcsr() | flags_before);
    const std::uint32_t status = fncfin(context, result);
    control_after = _mm_getcsr();
    set_mode(usual_mode);
    return status;
}

// A date is asked of the host: day 17667 whatever the arguments, in MXCSR's usual mode.
TEST_F(ModesOfCallers, ServicesAreCalledInTheUsualMode) {
    int modes = 0;
    for (const FloatingPointMode& mode : other_modes) {
        if ((mode.x87 & 0x3F) == 0x3F && mode.control == usual_mode.control) continue;
        BareHost host;
        callers_mode = &mode;
        Call{"COUPNCD", {17577, 21138, 2, "ACT/360"}}.through(in_callers_mode);
        ASSERT_FALSE(host.modes.empty()) << mode.name;
        for (const std::uint32_t control : host.modes) {
            EXPECT_EQ(control & ~flags_of_exceptions, usual_mode.control) << mode.name;
        }
        ++modes;
    }
    EXPECT_EQ(modes, 9);
}

// Refusals leave by other ways than answers.
TEST_F(ModesOfCallers, ModesAreKeptOnEveryWayOut) {
    struct Made {
        const char* name;
        std::vector<Arg> arguments;
    };
    const std::vector<Made> calls{
        {"SLN", {10000, 1000, 5}},
        {"SLN", {10000}},
        {"NONE", {1}},
        {"", {}},
        {"SLN", {10000, missing, 5}},
        {"SLN", {absent, 1, 5}},
        {"SLN", {1, 1, 1, 1}},
        {"XIRR", {-100, 110, 0, 365}},
        {"IRR", {-100, 150}},
        {"XIRR", {100, 110, 0, 365}},
        {"DISC", {1, 2, 3, 4, "bad"}},
    };
    for (const FloatingPointMode& mode : other_modes) {
        callers_mode = &mode;
        for (const Made& call : calls) {
            Call{call.name, call.arguments}.through(in_callers_mode);
            EXPECT_EQ(control_after & ~flags_of_exceptions, mode.control) << mode.name << ", " << call.name;
        }
    }
}

// 10000/3 is inexact. Flags that the caller had stay, and those of the call come along.
TEST_F(ModesOfCallers, FlagsAreRaisedAndNeverCleared) {
    constexpr std::uint32_t inexact = 0x0020;
    for (const FloatingPointMode& mode : other_modes) {
        callers_mode = &mode;
        for (const std::uint32_t before : {std::uint32_t{0}, division_by_zero}) {
            flags_before = before;
            EXPECT_EQ(Call("SLN", {10000, 0, 3}).through(in_callers_mode).status, STATUS_SUCCESS) << mode.name;
            EXPECT_EQ(control_after & (division_by_zero | inexact), before | inexact) << mode.name;
        }
        flags_before = 0;
    }
}

}  // namespace
}  // namespace finance::test
