// Arguments beyond every range: each call has an end and an answer or a refusal, and nothing undefined on the way (the
// sanitized builds watch).
#include <gtest/gtest.h>

#include <limits>

#include "tests/calendar/dates.hpp"
#include "tests/support/call.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();

struct Calculation {
    const char* name;
    std::vector<double> usual;
};

const std::vector<Calculation> calculations{
    {"SLN", {1000, 100, 5}},
    {"SYD", {1000, 100, 5, 2}},
    {"DB", {1000, 100, 5, 2, 7}},
    {"DDB", {1000, 100, 5, 2, 2}},
    {"VDB", {1000, 100, 5, 1, 3, 2, 0}},
    {"AMORLINC", {1000, host_date(2008, 8, 19), host_date(2008, 12, 31), 100, 1, 0.15, 1}},
    {"AMORDEGRC", {1000, host_date(2008, 8, 19), host_date(2008, 12, 31), 100, 1, 0.15, 1}},
};

const std::vector<double> far{inf,
                              -inf,
                              1e300,
                              -1e300,
                              9007199254740992.0,
                              -0x1p63,
                              -0x1p62,
                              2147483648.0,
                              -2147483649.0,
                              2147483647.0,
                              4294967297.0,
                              -4294967295.0,
                              1e-300,
                              5e-324,
                              -5e-324,
                              std::numeric_limits<double>::max()};

// Handled whatever the numbers: success without a flag, or a refusal that names one argument.
void expect_settled(const Calculation& calculation, const std::vector<double>& numbers) {
    const Outcome got = Call{calculation.name, {numbers.begin(), numbers.end()}}.through_dispatcher();
    const bool answered = got.status == STATUS_SUCCESS && got.flagged.empty();
    const bool refused = got.status == STATUS_INVALID_ARGUMENT && got.flagged.size() == 1;
    EXPECT_TRUE(answered || refused) << calculation.name;
    EXPECT_TRUE(got.written && got.host_bytes_kept) << calculation.name;
}

TEST(OutOfRange, OneArgumentFarAway) {
    int calls = 0;
    for (const Calculation& calculation : calculations) {
        for (std::size_t i = 0; i < calculation.usual.size(); ++i) {
            for (const double x : far) {
                std::vector<double> numbers = calculation.usual;
                numbers[i] = x;
                expect_settled(calculation, numbers);
                ++calls;
            }
        }
    }
    EXPECT_EQ(calls, 38 * static_cast<int>(far.size()));
}

TEST(OutOfRange, SeveralArgumentsFarAway) {
    Draws draw{31};
    for (int i = 0; i < drawn(4000); ++i) {
        const Calculation& calculation = calculations[static_cast<std::size_t>(draw.whole(0, 6))];
        std::vector<double> numbers = calculation.usual;
        for (double& x : numbers) {
            if (draw.whole(0, 2) == 0) x = far[static_cast<std::size_t>(draw.whole(4, 15))];
        }
        expect_settled(calculation, numbers);
    }
}

}  // namespace
}  // namespace finance::test
