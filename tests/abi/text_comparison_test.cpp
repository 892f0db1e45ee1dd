// Blank-padded texts compared and translated: rows by hand, slow models, and what the host is asked in multibyte mode.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "abi/text.hpp"
#include "tests/abi/bare_host.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

std::int64_t size_of(std::string_view text) { return static_cast<std::int64_t>(text.size()); }

// ---- Comparison

std::int32_t compare(std::string_view a, std::string_view b) {
    return wzstcmn(a.data(), size_of(a), b.data(), size_of(b), 0);
}

struct Comparison {
    const char* id;
    std::string a;
    std::string b;
    std::int32_t expected;
};

// In both directions: the other one has the other sign.
void check_comparisons(const std::vector<Comparison>& rows) {
    for (const Comparison& row : rows) {
        EXPECT_EQ(compare(row.a, row.b), row.expected) << row.id;
        EXPECT_EQ(compare(row.b, row.a), -row.expected) << row.id << ", exchanged";
    }
}

TEST(TextComparison, PlainTable) {
    const BareHost host;
    check_comparisons({
        {"trailing blanks do not count", "PV", "PV  ", 0},
        {"equal", "PMT", "PMT", 0},
        {"second position", "PMT", "PV", -2},
        {"first position", "FV", "PV", -1},
        {"case counts", "pv", "PV", 1},
        {"both empty", "", "", 0},
        {"empty and blanks", "", "   ", 0},
        {"empty and more", "", "A", -1},
        {"longer has a letter", "PV", "PVA", -3},
        {"longer has a letter after blanks", "PV", "PV  A", -5},
        {"longer has a byte below the blank", "PV", "PV\t", 3},
        {"longer has a byte below the blank after blanks", "PV", "PV  \x1F", 5},
        {"longer has a NUL", "PV", "PV\0"s, 3},
        {"the first one decides: below, then above", "PV", "PV\x01Z", 3},
        {"the first one decides: above, then below", "PV", "PVZ\x01", -3},
        {"bytes are unsigned", "\x7F", "\x80", -1},
        {"0xFF comes last", "\xFF", "z", 1},
        {"0xFF behind the common part", "PV", "PV\xFF", -3},
        {"difference in the common part decides over the length", "AC", "ABCD", 2},
    });
}

TEST(TextComparison, FoldingTable) {
    BareHost host;
    host.collating = folding_table();
    check_comparisons({
        {"case does not count", "pv", "PV", 0},
        {"mixed case, trailing blanks", "cumPrinc", "CUMPRINC   ", 0},
        {"order is that of the folded letters", "pmt", "PV", -2},
        {"remainder is folded", "PV", "pva", -3},
        {"[ comes after folded letters", "a", "[", -1},
    });
}

// The padding is the blank itself, not what the table makes of it; the longer text's blanks do pass through the table.
TEST(TextComparison, PaddingIsNotMapped) {
    BareHost host;
    host.collating[' '] = '@';
    check_comparisons({
        {"a mapped blank above the padding", "PV", "PV ", -3},
        {"mapped blanks on both sides", "P V", "P V", 0},
    });
    host.collating[' '] = 0x01;
    check_comparisons({{"a mapped blank below the padding", "PV", "PV ", 3}});
    host.collating['_'] = ' ';
    check_comparisons({{"a byte that maps to the blank", "PV", "PV__", 0}});
}

TEST(TextComparison, TableIsReadAtCallTime) {
    BareHost host;
    EXPECT_EQ(compare("a", "A"), 1);
    host.collating = folding_table();
    EXPECT_EQ(compare("a", "A"), 0);
}

TEST(TextComparison, NegativeLengthsCountAsNothing) {
    const BareHost host;
    EXPECT_EQ(wzstcmn("A", -1, "B", -9, 0), 0);
    EXPECT_EQ(wzstcmn("A", -1, "  ", 2, 0), 0);
    EXPECT_EQ(wzstcmn("A", -1, "B", 1, 0), -1);
    EXPECT_EQ(wzstcmn("B", 1, "A", -2, 0), 1);
    EXPECT_EQ(wzstcmn(nullptr, 0, nullptr, 0, 0), 0);
}

// Both texts mapped, the shorter one extended by blanks, compared byte by byte.
std::int32_t slow_comparison(const ByteTable& table, const std::string& a, const std::string& b) {
    const std::size_t size = std::max(a.size(), b.size());
    const auto extended = [&](const std::string& text) {
        std::vector<int> values;
        for (const char c : text) values.push_back(table[static_cast<unsigned char>(c)]);
        values.resize(size, ' ');
        return values;
    };
    const std::vector<int> left = extended(a);
    const std::vector<int> right = extended(b);
    for (std::size_t i = 0; i < size; ++i) {
        const auto position = static_cast<std::int32_t>(i + 1);
        if (left[i] != right[i]) return left[i] < right[i] ? -position : position;
    }
    return 0;
}

TEST(TextComparison, LikeTheSlowModel) {
    BareHost host;
    std::mt19937_64 draw{20240602};
    int equal = 0;
    int after_common_part = 0;
    for (int i = 0; i < 60000; ++i) {
        host.collating = i % 3 == 0 ? plain_table() : folding_table();
        if (i % 3 == 2) host.collating[' '] = '!';
        const auto any_text = [&] {
            std::string text(draw() % 6, ' ');
            for (char& c : text) c = "Aab \x01\xFF"[draw() % 6];
            return text;
        };
        const std::string a = any_text();
        const std::string b = draw() % 2 == 0 ? any_text() : a + any_text();
        const std::int32_t expected = slow_comparison(host.collating, a, b);
        ASSERT_EQ(compare(a, b), expected) << i;
        if (expected == 0) ++equal;
        if (static_cast<std::size_t>(std::abs(expected)) > std::min(a.size(), b.size())) ++after_common_part;
    }
    EXPECT_EQ(equal, 6918);
    EXPECT_EQ(after_common_part, 34041);
}

TEST(TextComparison, MultibyteTextsAreTheHosts) {
    BareHost host;
    host.set_multibyte(true);
    host.answer = 0xFFFFFFFFFFFFFFD6;  // -42
    const char* a = "PV";
    const char* b = "PMT";
    EXPECT_EQ(wzstcmn(a, 2, b, -3, 77), -42);
    ASSERT_EQ(host.calls.size(), 1U);
    const Registers& call = host.calls[0];
    EXPECT_EQ(call.r10, service_compare);
    EXPECT_EQ(call.integers[0], std::bit_cast<std::uint64_t>(a));
    EXPECT_EQ(call.integers[1], 2U);
    EXPECT_EQ(call.integers[2], std::bit_cast<std::uint64_t>(b));
    EXPECT_EQ(static_cast<std::int64_t>(call.integers[3]), -3);
    EXPECT_EQ(call.integers[4], 77U);
    EXPECT_EQ(host.marked_vectors(), std::vector<int>{4});
}

TEST(TextComparison, WhatMakesTheModeMultibyte) {
    BareHost host;
    host.collating = folding_table();
    host.answer = 5;
    const auto asks_the_host = [] { return compare("a", "A") == 5; };
    EXPECT_FALSE(asks_the_host()) << "byte 72 is 0";
    for (const unsigned char active : std::vector<unsigned char>{0x01, 0x80, 0xFF}) {
        host.multibyte_record[72] = active;
        EXPECT_TRUE(asks_the_host()) << int{active};
    }
    host.locale[3] = 0;
    EXPECT_FALSE(asks_the_host()) << "no record";
    host.words[13] = 0;
    EXPECT_FALSE(asks_the_host()) << "no locale block";
}

// ---- Translation

TEST(TextTranslation, TableOfEachMode) {
    BareHost host;
    for (const bool multibyte : {false, true}) {
        host.set_multibyte(multibyte);
        for (std::uint32_t mode = multibyte ? 4 : 0; mode <= 4; ++mode) {
            const std::string source = "\x00 AZaz\x80\xFF"s;
            std::string expected;
            for (const char c : source) {
                expected += static_cast<char>(host.translations[mode][static_cast<unsigned char>(c)]);
            }
            ASSERT_NE(expected, source);
            std::string destination(source.size() + 2, '#');
            EXPECT_EQ(wztxxlt(mode, source.data(), destination.data(), size_of(source)), 0U) << mode;
            EXPECT_EQ(destination, expected + "##") << mode;
            std::string in_place = source;
            EXPECT_EQ(wztxxlt(mode, in_place.data(), in_place.data(), size_of(in_place)), 0U) << mode;
            EXPECT_EQ(in_place, expected) << mode;
            EXPECT_EQ(wztxxlt(mode, nullptr, nullptr, 0), 0U) << mode;
            EXPECT_EQ(wztxxlt(mode, nullptr, nullptr, -1), 0U) << mode;
        }
    }
    EXPECT_TRUE(host.calls.empty());
}

TEST(TextTranslation, UnknownModesTouchNothing) {
    BareHost host;
    for (const bool multibyte : {false, true}) {
        host.set_multibyte(multibyte);
        for (const std::uint32_t mode : {5U, 6U, 255U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            std::string destination = "####";
            EXPECT_EQ(wztxxlt(mode, "abcd", destination.data(), 4), 0x8000200AU) << mode;
            EXPECT_EQ(destination, "####") << mode;
        }
    }
    EXPECT_TRUE(host.calls.empty());
    EXPECT_TRUE(host.marked_vectors().empty());
}

TEST(TextTranslation, MultibyteModes0And1AreTheHosts) {
    BareHost host;
    host.set_multibyte(true);
    const char* source = "abcd";
    std::string destination = "####";
    EXPECT_EQ(wztxxlt(0, source, destination.data(), 4), 0U);
    EXPECT_EQ(wztxxlt(1, source, destination.data(), 3), 0U);
    EXPECT_EQ(destination, "####") << "the service does it, not the module";
    ASSERT_EQ(host.calls.size(), 2U);
    EXPECT_EQ(host.calls[0].r10, service_translate_0);
    EXPECT_EQ(host.calls[1].r10, service_translate_1);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::uint64_t length = 4 - i;
        const std::uint64_t expected[] = {std::bit_cast<std::uint64_t>(source), length,
                                          std::bit_cast<std::uint64_t>(destination.data()), length, 1};
        EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), host.calls[i].integers)) << i;
    }
    EXPECT_EQ(host.marked_vectors(), std::vector<int>{4});
}

TEST(TextTranslation, MultibyteCaseIsTheHostsOnACopy) {
    struct Row {
        std::uint32_t mode;
        std::uint64_t service;
        const char* expected;
    };
    for (const Row& row : {Row{2, service_upper, "PMT-PV##"}, Row{3, service_lower, "pmt-pv##"}}) {
        BareHost host;
        host.set_multibyte(true);
        const std::string source = "Pmt-pV";
        std::string destination(8, '#');
        EXPECT_EQ(wztxxlt(row.mode, source.data(), destination.data(), 6), 0U);
        EXPECT_EQ(destination, row.expected);
        ASSERT_EQ(host.calls.size(), 1U);
        EXPECT_EQ(host.calls[0].r10, row.service);
        EXPECT_EQ(host.calls[0].integers[0], std::bit_cast<std::uint64_t>(destination.data()));
        EXPECT_EQ(host.calls[0].integers[1], 6U);
        EXPECT_EQ(host.marked_vectors(), std::vector<int>{0});

        std::string in_place = source;
        EXPECT_EQ(wztxxlt(row.mode, in_place.data(), in_place.data(), 6), 0U);
        EXPECT_EQ(in_place, std::string_view(row.expected, 6));
    }
}

}  // namespace
}  // namespace finance::test
