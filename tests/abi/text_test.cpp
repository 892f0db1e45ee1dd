// Blank-padded texts, their lengths, copies and deletions: against rows by hand, and a slow model where there is one.
#include "abi/text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

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
    EXPECT_EQ(shortened, 16878);
}

}  // namespace
}  // namespace finance::test
