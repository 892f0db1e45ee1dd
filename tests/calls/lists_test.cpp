// The lists of a call.
#include "calls/lists.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace finance::test {
namespace {

using host::Argument;

const catalogue::Calculation& of(const char* name) { return *catalogue::find(name); }

TEST(Lists, UnrollWhereTheyStand) {
    const std::array<double, 2> values{-100.0, 110.0};
    const std::array<double, 2> dates{20000.0, 20365.0};
    const std::array<Argument, 3> scalars{0.1, 0.0, 0.0};
    const std::array<std::span<const double>, 3> lists{{{}, values, dates}};
    const auto arguments = calls::unrolled(of("XNPV"), scalars, lists);
    ASSERT_EQ(arguments.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(arguments[i].number(), (std::array{0.1, -100.0, 110.0, 20000.0, 20365.0}[i])) << i;
    }
}

struct OrderCase {
    const char* id;
    const char* calculation;
    std::vector<double> before;
    std::vector<double> after;
};

constexpr double not_there = std::numeric_limits<double>::quiet_NaN();

const OrderCase order_cases[] = {
    {"newest first", "XIRR", {60, 50, -100, 730, 365, 0}, {-100, 50, 60, 0, 365, 730}},
    {"a guess stays behind", "XIRR", {60, -100, 365, 0, 0.1}, {-100, 60, 0, 365, 0.1}},
    {"a rate stays before", "XNPV", {0.1, 60, -100, 365, 0}, {0.1, -100, 60, 0, 365}},
    {"one day keeps its order", "XNPV", {0.1, 3, 2, 1, 5, 5, 0}, {0.1, 1, 3, 2, 0, 5, 5}},
    {"in order", "XIRR", {-100, 60, 0, 365}, {-100, 60, 0, 365}},
    {"no dates", "NPV", {0.1, 3, 2, 1}, {0.1, 3, 2, 1}},
    {"a value is missing", "XIRR", {not_there, -100, 365, 0}, {not_there, -100, 365, 0}},
    {"a date is none", "XIRR", {60, -100, 365.5, 0}, {60, -100, 365.5, 0}},
};

TEST(Lists, DatesAscend) {
    for (const OrderCase& row : order_cases) {
        SCOPED_TRACE(row.id);
        std::vector<Argument> arguments{row.before.begin(), row.before.end()};
        calls::put_in_order_of_dates(of(row.calculation), arguments);
        ASSERT_EQ(arguments.size(), row.after.size());
        for (std::size_t i = 0; i < row.after.size(); ++i) {
            if (std::isnan(row.after[i])) continue;
            EXPECT_EQ(arguments[i].number(), row.after[i]) << i;
        }
    }
}

std::string snake(std::string_view name) { return "the_" + std::string{name}; }

struct PairCase {
    const char* id;
    const char* calculation;
    std::vector<std::size_t> sizes;  // by parameter given
    const char* words;               // as the_NAME
    const char* named;
};

const std::vector<PairCase> pairs{
    {"uneven",
     "XNPV",
     {0, 3, 2},
     "the_values and the_dates do not pair up: 3 and 2 values",
     "XNPV: 3 values, but 2 dates"},
    {"the second longer",
     "XIRR",
     {2, 3, 0},
     "the_values and the_dates do not pair up: 2 and 3 values",
     "XIRR: 2 values, but 3 dates"},
    {"even", "XNPV", {7, 2, 2}, "", ""},
    {"both empty", "XIRR", {0, 0}, "", ""},
    {"the second not given", "XIRR", {2}, "", ""},
    {"one list beside a number", "NPV", {0, 3}, "", ""},
    {"no list", "SLN", {1, 2, 3}, "", ""},
};

TEST(Lists, TwoOfACallPairUp) {
    for (const PairCase& row : pairs) {
        SCOPED_TRACE(row.id);
        const auto lists =
            calls::unpaired(of(row.calculation), row.sizes.size(), [&](std::size_t i) { return row.sizes[i]; });
        EXPECT_EQ(lists ? calls::pairing_words(*lists, snake) : "", row.words);
        EXPECT_EQ(lists ? calls::named_pairing_words(of(row.calculation), *lists) : "", row.named);
    }
}

}  // namespace
}  // namespace finance::test
