// The day-count basis as an argument: every form it takes, on records made by hand.
#include "abi/basis.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "abi/arguments.hpp"
#include "tests/abi/bare_host.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double untouched = 1234.5;
constexpr std::int32_t fails = -1;
constexpr std::int32_t unset = 99;

std::string padded(std::string text, std::size_t size) {
    text.resize(size, ' ');
    return text;
}

// Reads slot 2 of a record; the code, or fails.
std::int32_t read(Call& call, const std::string& id) {
    double result = untouched;
    Arguments in{call.context(), &result, call.count()};
    std::int32_t basis = unset;
    const bool accepted = in.basis(2, basis);
    const std::uint8_t flags = slots_of(call.context())[2].flags;
    EXPECT_EQ(flags & 0xFE, 0xFE) << id;
    if (accepted) {
        EXPECT_EQ(in.status(), STATUS_SUCCESS) << id;
        EXPECT_EQ(result, untouched) << id;
        EXPECT_EQ(flags & ZELKOVAN_FLAG_INVALID, 0) << id;
        return basis;
    }
    EXPECT_EQ(in.status(), STATUS_INVALID_ARGUMENT) << id;
    EXPECT_EQ(bits(result), ZELKOVAN_MISSING_VALUE_BITS) << id;
    EXPECT_EQ(flags & ZELKOVAN_FLAG_INVALID, 1) << id;
    EXPECT_EQ(basis, unset) << id;
    return fails;
}

struct Row {
    std::string id;
    Arg basis;
    std::int32_t expected;
};

// Each row with the host's mark in the type byte, and without.
void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        for (const bool marked : {true, false}) {
            Call call{"YEARFRAC", {1, row.basis}};
            std::uint8_t& type = slots_of(call.context())[2].type;
            ASSERT_NE(type & ZELKOVAN_TYPE_HOST_MARK, 0);
            if (!marked) type = static_cast<std::uint8_t>(type & ~ZELKOVAN_TYPE_HOST_MARK);
            EXPECT_EQ(read(call, row.id), row.expected) << row.id << (marked ? ", marked" : "");
        }
    }
}

TEST(Basis, Numbers) {
    check({
        {"0", 0, 0},
        {"1", 1, 1},
        {"2", 2, 2},
        {"3", 3, 3},
        {"4", 4, 4},
        {"truncated", 2.9, 2},
        {"truncated from above 4", 4.7, 4},
        {"just below 5", 4.999999999999999, 4},
        {"toward zero from below", -0.5, 0},
        {"-0", -0.0, 0},
        {"just above -1", -0.9999999999999999, 0},
        {"-1", -1, fails},
        {"5", 5, fails},
        {"5.5", 5.5, fails},
        {"6", 6, fails},
        {"1e300", 1e300, fails},
        {"-1e300", -1e300, fails},
        {"infinity", inf, fails},
        {"-infinity", -inf, fails},
        {"2^31", 2147483648.0, fails},
        {"-2^31", -2147483648.0, fails},
        {"2^32 + 2 is not 2", 4294967298.0, fails},
        {"missing is ACTUAL", missing, 1},
        {"any NaN is ACTUAL", std::numeric_limits<double>::quiet_NaN(), 1},
        {"without a value pointer it is missing", absent, 1},
    });
}

TEST(Basis, LeftOutOfTheCall) {
    ensure_host();
    for (const std::int64_t count : {std::int64_t{2}, std::int64_t{1}, std::int64_t{0}, std::int64_t{-3}}) {
        Call call{"YEARFRAC", {1, 3}};
        double result = untouched;
        Arguments in{call.context(), &result, count};
        std::int32_t basis = BASIS_30_360;
        EXPECT_TRUE(in.basis(2, basis));
        EXPECT_EQ(basis, BASIS_30_360);
        EXPECT_EQ(result, untouched);
    }
    Call call{"YEARFRAC", {1, 3}};
    double result = untouched;
    Arguments in{call.context(), &result, 3};
    std::int32_t basis = BASIS_30_360;
    EXPECT_TRUE(in.basis(2, basis)) << "the count just reaches it: slot 2 of 3";
    EXPECT_EQ(basis, 3);
}

TEST(Basis, Keywords) {
    ensure_host();
    check({
        {"30/360", "30/360", 0},
        {"ACTUAL", "ACTUAL", 1},
        {"ACT/360", "ACT/360", 2},
        {"ACT/365", "ACT/365", 3},
        {"EU30/360", "EU30/360", 4},
        {"lower case", "actual", 1},
        {"mixed case", "Act/360", 2},
        {"blanks inside", "act / 360", 2},
        {"blanks around", "   eu30/360  ", 4},
        {"blanks everywhere", " A C T / 3 6 5 ", 3},
        {"255 bytes", padded("EU30/360", 255), 4},
        {"255 bytes, blanks in front", std::string(249, ' ') + "30/360", 0},
        {"256 bytes", padded("EU30/360", 256), fails},
        {"70000 bytes", padded("EU30/360", 70000), fails},
        {"no byte", "", fails},
        {"blanks only", "   ", fails},
        {"255 blanks", std::string(255, ' '), fails},
        {"unknown", "30/365", fails},
        {"beginning of a keyword", "ACT", fails},
        {"beginning of a keyword, as long as another", "ACT/36", fails},
        {"more than a keyword", "ACTUAL1", fails},
        {"end of a keyword", "0/360", fails},
        {"a code is no keyword", "1", fails},
        {"tabs are no blanks", "ACT\t/360", fails},
        {"a NUL is no blank", "ACTUAL\0"s, fails},
        {"a NUL inside", "ACT\0/360"s, fails},
        {"NULs only", "\0\0\0"s, fails},
        {"bytes above 0x7F",
         "\xC1"
         "CTUAL",
         fails},
        {"no text pointer", absent_text, fails},
        {"no descriptor", no_descriptor, fails},
    });
}

TEST(Basis, TextPointerMissingWithALength) {
    ensure_host();
    Call call{"YEARFRAC", {1, absent_text}};
    static_cast<CharacterDescriptor*>(slots_of(call.context())[2].value)->length = 6;
    EXPECT_EQ(read(call, "null text of length 6"), fails);
}

TEST(Basis, OtherTypes) {
    ensure_host();
    check({{"type 3", other_type, fails}});
    for (const int type : {0, 4, 3, 7, 8, 9, 0x11, 0x81, 0x82, 0xFF}) {
        Call call{"YEARFRAC", {1, 2}};
        slots_of(call.context())[2].type = static_cast<std::uint8_t>(type);
        EXPECT_EQ(read(call, std::to_string(type)), fails) << type;
    }
}

// The text is the host's: it is read, not changed.
TEST(Basis, TheTextStaysAsItIs) {
    ensure_host();
    const std::string text = " act / 360 ";
    Call call{"YEARFRAC", {1, text}};
    const auto* descriptor = static_cast<const CharacterDescriptor*>(slots_of(call.context())[2].value);
    EXPECT_EQ(read(call, text), 2);
    EXPECT_EQ(std::string(descriptor->text, descriptor->length), text);
}

// Upper case comes from the host's service, and equality from its collating table.
TEST(Basis, ByServiceAndCollatingTable) {
    BareHost host;
    check({{"lower case", "act/365", 3}});
    ASSERT_FALSE(host.calls.empty());
    EXPECT_EQ(host.calls[0].r10, service_upper);
    EXPECT_EQ(host.calls[0].integers[1], 7U);
    EXPECT_EQ(host.marked_vectors(), std::vector<int>{0});
    host.collating['\\'] = '/';
    check({{"a byte that collates as the slash", "ACT\\365", 3}});

    // '~' becomes a blank after blanks are gone: where lengths differ, those at the end do not count
    check({{"a blank behind", "ACTUAL~", 1},
           {"three behind", "30/360~~~", 0},
           {"as long as another keyword", "30/360~", 0},
           {"in front", "~ACTUAL", fails},
           {"inside", "ACT~/360", fails},
           {"blanks alone", "~~~~~~", fails}});

    host.set_multibyte(true);
    host.answer = 0;  // all texts are equal, says the host: the first keyword of the right length
    check({{"six bytes", "xxxxxx", 0}, {"seven bytes", "xxxxxxx", 2}, {"nine bytes", "xxxxxxxxx", fails}});
    host.answer = 1;
    check({{"none is equal", "ACTUAL", fails}});
    EXPECT_EQ(host.calls.back().r10, service_compare);
}

}  // namespace
}  // namespace finance::test
