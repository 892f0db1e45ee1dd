// A record used again: what the module finds in it call after call, and that each call is the one that evaluate makes.
#include "host/prepared_call.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/fake_modules.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::EmbeddedHost;
using host::Evaluation;
using host::PreparedCall;

using Lines = std::vector<std::string>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

void expect_same(const Evaluation& got, const Evaluation& alone, const std::string& what) {
    EXPECT_EQ(got.status, alone.status) << what;
    EXPECT_EQ(bits(got.value), bits(alone.value)) << what;
    EXPECT_EQ(got.flagged, alone.flagged) << what;
    EXPECT_EQ(got.log, alone.log) << what;
    EXPECT_EQ(got.notes, alone.notes) << what;
}

// Numbers are read where they are: the record is laid out once, and follows them.
TEST(PreparedCall, NumbersStayInPlace) {
    const EmbeddedHost host{real_module()};
    PreparedCall call{"PMT"};
    std::array<double, 3> numbers{};
    const std::vector<std::array<double, 3>> rows{{0.005, 360, 200000}, {nan, 12, 100}, {0.01, 24, 100},
                                                  {0.01, 2.5, 100},     {-1, 24, 100},  {0.02, 36, nan}};
    call.lay_out(3, 0, numbers.data());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        numbers = rows[row];
        const std::vector<Argument> arguments{numbers.begin(), numbers.end()};
        expect_same(call.make(host), host.evaluate("PMT", arguments), "row " + std::to_string(row));
    }
}

// A mark left behind would be the first one of the call after it.
TEST(PreparedCall, MarksAreTakenBack) {
    const EmbeddedHost host{real_module()};
    PreparedCall call{"PMT"};
    std::array<double, 3> numbers{nan, 360, 200000};
    call.lay_out(3, 0, numbers.data());
    EXPECT_EQ(call.make(host).flagged, 1);
    numbers = {0.005, 2.5, 200000};
    EXPECT_EQ(call.make(host).flagged, 2);
    numbers = {0.005, 360, 200000};
    EXPECT_EQ(call.make(host).flagged, -1);
    EXPECT_EQ(call.make(host).value, -1199.1010503055047);
}

TEST(PreparedCall, TextsAreSetAnewInTheirPlaces) {
    const EmbeddedHost host{real_module()};
    PreparedCall call{"YEARFRAC"};
    const std::array<double, 3> numbers{0, 90, nan};
    call.lay_out(3, 0b100, numbers.data());
    for (const char* basis : {"ACT/360", "act/365 ", "nonsense", "", "30/360"}) {
        call.set_text(2, basis);
        expect_same(call.make(host), host.evaluate("YEARFRAC", {0, 90, basis}), basis);
    }
    call.set_text(2, std::string_view{});
    expect_same(call.make(host), host.evaluate("YEARFRAC", {0, 90, std::string_view{}}), "no text");
}

// The module says what it finds: type and flag byte, then the value.
TEST(PreparedCall, LaidOutAnewWhereKindsChange) {
    const EmbeddedHost host{fake_module("good")};
    PreparedCall call{"DESCRIBE"};
    const std::array<double, 3> first{1.5, 2.5, 3.5};
    const std::array<double, 3> second{4.5, 5.5, 6.5};
    call.lay_out(3, 0b010, first.data());
    EXPECT_EQ(call.make(host).log, (Lines{"1/0 1.5", "2/0 no text", "1/0 3.5"})) << "before a text is set";
    call.set_text(1, "one");
    EXPECT_EQ(call.make(host).log, (Lines{"1/0 1.5", "2/0 'one'", "1/0 3.5"}));
    call.lay_out(3, 0b010, first.data());
    EXPECT_EQ(call.make(host).log, (Lines{"1/0 1.5", "2/0 'one'", "1/0 3.5"})) << "lies so already";
    call.lay_out(3, 0b010, second.data());
    call.set_text(1, "two");
    EXPECT_EQ(call.make(host).log, (Lines{"1/0 4.5", "2/0 'two'", "1/0 6.5"})) << "other numbers";
    call.lay_out(3, 0b101, second.data());
    call.set_text(0, "a");
    call.set_text(2, "c");
    EXPECT_EQ(call.make(host).log, (Lines{"2/0 'a'", "1/0 5.5", "2/0 'c'"})) << "other texts";
    call.lay_out(1, 0, second.data());
    EXPECT_EQ(call.make(host).log, (Lines{"1/0 4.5"})) << "fewer arguments";
    call.lay_out(0, 0, nullptr);
    EXPECT_EQ(call.make(host).log, (Lines{})) << "none";
}

TEST(PreparedCall, AsManyArgumentsAsBits) {
    const EmbeddedHost host{fake_module("good")};
    PreparedCall call{"SUM"};
    std::array<double, PreparedCall::most_arguments + 1> ones{};
    ones.fill(1.0);
    call.lay_out(PreparedCall::most_arguments, 0, ones.data());
    EXPECT_EQ(call.make(host).value, 32.0);
    EXPECT_THROW(call.lay_out(ones.size(), 0, ones.data()), std::length_error);
    EXPECT_EQ(call.make(host).value, 32.0) << "the record is as it was";
}

// Not even where the host was made for junk or for notes that are limited.
TEST(PreparedCall, HostBytesAreClear) {
    const EmbeddedHost host{fake_module("good"), {.note_mode = 88, .junk_in_host_bits = true}};
    PreparedCall call{"DESCRIBE"};
    const double number = 1.5;
    call.lay_out(1, 0, &number);
    const Evaluation got = call.make(host);
    EXPECT_EQ(got.log, (Lines{"1/0 1.5"}));
    EXPECT_EQ(got.value, 0.0) << "mode byte";
}

}  // namespace
}  // namespace finance::test
