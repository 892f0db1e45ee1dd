// Blank-padded texts: every routine against rows by hand, and against slow models where there is one.
#include "abi/text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/abi/bare_host.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

std::int64_t size_of(std::string_view text) { return static_cast<std::int64_t>(text.size()); }

// ---- Lengths

TEST(TextLength, OfNulTerminatedTexts) {
    EXPECT_EQ(wzstlen(nullptr), 0);
    EXPECT_EQ(wzstlen(""), 0);
    EXPECT_EQ(wzstlen("ACT/360"), 7);
    EXPECT_EQ(wzstlen("ab\0cd"), 2);
}

TEST(TextLength, WithoutTrailingBlanks) {
    struct Row {
        const char* id;
        std::string text;
        std::int64_t expected;
    };
    const std::vector<Row> rows{
        {"blanks around", "  A  ", 3},
        {"blanks only", "     ", 0},
        {"none", "PMT", 3},
        {"blanks inside", "A B ", 3},
        {"one blank", " ", 0},
        {"a tab is no blank", "A\t", 2},
        {"a NUL is no blank", "A\0  "s, 2},
        {"0xA0 is no blank", "A\xA0", 2},
        {"a line end is no blank", " \n", 2},
    };
    for (const Row& row : rows) EXPECT_EQ(wzstrip(row.text.data(), size_of(row.text)), row.expected) << row.id;
    for (const std::int64_t length : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{-5}, INT64_MIN}) {
        EXPECT_EQ(wzstrip(nullptr, length), length) << "comes back unchanged, nothing is read";
    }
}

TEST(TextLength, OneCharacterAllAlong) {
    EXPECT_EQ(vzatl(' ', "    ", 4), 1);
    EXPECT_EQ(vzatl(' ', "   x", 4), 0);
    EXPECT_EQ(vzatl(' ', "x   ", 4), 0);
    EXPECT_EQ(vzatl(' ', "   x", 3), 1);
    EXPECT_EQ(vzatl('x', "xxx", 3), 1);
    EXPECT_EQ(vzatl('\xFF', "\xFF\xFF", 2), 1);
    EXPECT_EQ(vzatl(' ', "\t", 1), 0);
    EXPECT_EQ(vzatl(' ', nullptr, 0), 1);
    EXPECT_EQ(vzatl(' ', nullptr, -3), 1);
}

// ---- Copies

TEST(TextCopy, FillsWithBlanks) {
    struct Row {
        const char* id;
        std::string source;
        std::int64_t source_length;
        std::int64_t destination_length;
        std::string expected;  // of 20 bytes that were '#'
    };
    const std::vector<Row> rows{
        {"20 into 16", "ABCDEFGHIJKLMNOPQRST", 20, 16, "ABCDEFGHIJKLMNOP####"},
        {"3 into 16", "PMT", 3, 16, "PMT             ####"},
        {"16 into 16", "ABCDEFGHIJKLMNOP", 16, 16, "ABCDEFGHIJKLMNOP####"},
        {"0 into 16", "", 0, 16, "                ####"},
        {"negative into 16", "", -4, 16, "                ####"},
        {"3 into 0", "PMT", 3, 0, "####################"},
        {"3 into a negative length", "PMT", 3, -2, "####################"},
        {"a NUL is copied", "A\0B"s, 3, 5, "A\0B  ###############"s},
    };
    for (const Row& row : rows) {
        std::string destination(20, '#');
        vzmp(row.source.data(), row.source_length, destination.data(), row.destination_length);
        EXPECT_EQ(destination, row.expected) << row.id;
    }
    std::string destination(4, '#');
    vzmp(nullptr, 0, destination.data(), 4);
    EXPECT_EQ(destination, "    ") << "without a source";
}

TEST(TextCopy, RangesMayOverlap) {
    struct Row {
        const char* id;
        std::size_t source;
        std::int64_t source_length;
        std::size_t destination;
        std::int64_t destination_length;
        std::string expected;  // of ABCDEFGH
    };
    const std::vector<Row> rows{
        {"towards the end", 0, 6, 2, 6, "ABABCDEF"},
        {"towards the beginning", 2, 6, 0, 6, "CDEFGHGH"},
        {"towards the beginning, blanks over the source", 2, 3, 0, 8, "CDE     "},
        {"towards the end, blanks behind", 0, 3, 1, 6, "AABC   H"},
        {"onto itself", 0, 3, 0, 5, "ABC  FGH"},
        {"onto itself, cut", 0, 8, 0, 3, "ABCDEFGH"},
    };
    for (const Row& row : rows) {
        std::string text = "ABCDEFGH";
        vzmp(text.data() + row.source, row.source_length, text.data() + row.destination, row.destination_length);
        EXPECT_EQ(text, row.expected) << row.id;
    }
}

// ---- Deletion

struct DeletionRow {
    const char* id;
    std::string text;
    std::int64_t length;
    std::string set;
    std::int64_t set_length;
    std::int64_t expected;
    std::string left;
};

const std::vector<DeletionRow> deletion_rows{
    {"blanks out of a text", "A B C", 5, " ", 1, 3, "ABC  "},
    {"several bytes", "A-B C/D", 7, " -/", 3, 4, "ABCD   "},
    {"none occurs", "ABC", 3, "xyz", 3, 3, "ABC"},
    {"all occur", "ABAB", 4, "AB", 2, 0, "    "},
    {"length 0", "A B", 0, " ", 1, 0, "A B"},
    {"empty set", "A B", 3, "", 0, 3, "A B"},
    {"none of a set", "A B", 3, " ", 0, 3, "A B"},
    {"empty set, NUL-terminated", "A B", 3, "", -1, 3, "A B"},
    {"set NUL-terminated", "A B-C", 5, " -\0C"s, -1, 3, "ABC  "},
    {"set of explicit length holds a NUL", "A\0B\0"s, 4, "\0"s, 1, 2, "AB  "},
    {"part of the set only", "A-B C", 5, " -", 1, 4, "A-BC "},
    {"bytes behind the length stay", "A B C", 3, " ", 1, 2, "AB  C"},
    {"bytes above 0x7F",
     "\xE4"
     "A\xE4",
     3, "\xE4", 1, 1, "A  "},
    {"text NUL-terminated", "A B C\0##"s, -1, " ", 1, 3, "ABC\0C\0##"s},
    {"text NUL-terminated, any negative length", "A B\0##"s, -77, " ", 1, 2, "AB\0\0##"s},
    {"text and set NUL-terminated", "A-B C\0##"s, -1, "- \0"s, -1, 3, "ABC\0C\0##"s},
    {"text NUL-terminated, none occurs", "ABC\0##"s, -1, "x", 1, 3, "ABC\0##"s},
    {"text NUL-terminated, all occur", "   \0##"s, -1, " ", 1, 0, "\0  \0##"s},
    {"text NUL-terminated, empty set", "A B\0##"s, -1, "", 0, 3, "A B\0##"s},
    {"text NUL-terminated and empty", "\0##"s, -1, "#", 1, 0, "\0##"s},
};

TEST(TextDeletion, Rows) {
    for (const DeletionRow& row : deletion_rows) {
        std::string text = row.text;
        EXPECT_EQ(wzstdel(text.data(), row.length, row.set.c_str(), row.set_length), row.expected) << row.id;
        EXPECT_EQ(text, row.left) << row.id;
    }
    EXPECT_EQ(wzstdel(nullptr, 0, nullptr, 0), 0) << "no text, no set";
}

TEST(TextDeletion, LikeErasingFromAString) {
    std::mt19937_64 draw{20240601};
    int shortened = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text(draw() % 12 + 1, ' ');
        std::string set(draw() % 4 + 1, ' ');
        for (char& c : text) c = "AB c\t"[draw() % 5];
        for (char& c : set) c = "AB c\t"[draw() % 5];
        std::string expected = text;
        std::erase_if(expected, [&](char c) { return set.find(c) != std::string::npos; });
        const std::int64_t kept = size_of(expected);
        if (expected.size() < text.size()) ++shortened;
        expected.resize(text.size(), ' ');
        std::string got = text;
        ASSERT_EQ(wzstdel(got.data(), size_of(got), set.data(), size_of(set)), kept) << text << '|' << set;
        ASSERT_EQ(got, expected) << text << '|' << set;
    }
    EXPECT_GT(shortened, 5000);
}

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
    EXPECT_GT(equal, 3000);
    EXPECT_GT(after_common_part, 10000);
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
