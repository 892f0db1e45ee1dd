#include "tests/support/tables.hpp"

#include <gtest/gtest.h>

#include <cstdio>

namespace finance::test {

namespace {

std::string digits(double x) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g (%016lx)", x, bits(x));
    return text;
}

void expect_value(const ValueCase& row, const Outcome& got, const char* way) {
    const bool close = row.ulps == 0.0 ? same_value(got.value, row.expected)
                                       : units_in_last_place(got.value, row.expected) <= row.ulps;
    EXPECT_EQ(got.status, STATUS_SUCCESS) << row.id << ' ' << way;
    EXPECT_TRUE(close) << row.id << ' ' << way << ": got " << digits(got.value) << ", expected " << digits(row.expected)
                       << ", " << units_in_last_place(got.value, row.expected) << " ulp apart; from " << row.source;
    EXPECT_TRUE(got.flagged.empty()) << row.id << ' ' << way;
    EXPECT_TRUE(got.host_bytes_kept) << row.id << ' ' << way;
}

void expect_refusal(const RefusalCase& row, const Outcome& got, Status status, const char* way) {
    EXPECT_EQ(got.status, status) << row.id << ' ' << way;
    EXPECT_EQ(got.flagged, row.flagged) << row.id << ' ' << way;
    EXPECT_EQ(got.written, row.written) << row.id << ' ' << way;
    if (row.written) {
        EXPECT_EQ(bits(got.value), bits(MISSING_VALUE)) << row.id << ' ' << way;
    }
    EXPECT_TRUE(got.host_bytes_kept) << row.id << ' ' << way;
}

}  // namespace

void check_values(const std::vector<ValueCase>& cases) {
    ASSERT_FALSE(cases.empty());
    for (const ValueCase& row : cases) {
        expect_value(row, Call{row.name, row.arguments}.through_handler(), "through the handler");
        expect_value(row, Call{row.name, row.arguments}.through_dispatcher(), "through the dispatcher");
    }
}

void check_refusals(const std::vector<RefusalCase>& cases) {
    ASSERT_FALSE(cases.empty());
    for (const RefusalCase& row : cases) {
        expect_refusal(row, Call{row.name, row.arguments}.through_handler(), row.status, "through the handler");
        expect_refusal(row, Call{row.name, row.arguments}.through_dispatcher(), STATUS_INVALID_ARGUMENT,
                       "through the dispatcher");
    }
}

int check_argument_rules(const std::string& name, const std::vector<Arg>& good,
                         const std::vector<ArgumentRules>& rules) {
    EXPECT_EQ(good.size(), rules.size()) << name;
    EXPECT_EQ(Call(name, good).through_handler().status, STATUS_SUCCESS) << name;
    std::vector<RefusalCase> cases;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const int position = static_cast<int>(i) + 1;
        const auto with = [&](const Arg& bad, const char* what, Status status) {
            std::vector<Arg> arguments = good;
            arguments[i] = bad;
            cases.push_back({name + '/' + std::to_string(position) + ' ' + what, name, arguments, status, {position}});
        };
        if (rules[i].required) {
            with(absent, "absent", STATUS_INVALID_ARGUMENT);
            with(missing, "missing", STATUS_MISSING_RESULT);
        }
        for (const Arg& bad : rules[i].bad_values) with(bad, digits(bad.number()).c_str(), STATUS_INVALID_ARGUMENT);
    }
    check_refusals(cases);
    return static_cast<int>(cases.size());
}

}  // namespace finance::test
