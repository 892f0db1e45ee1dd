// Case conversion, copying and comparison of blank-padded texts.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/control_block.hpp"
#include "host/service_work.hpp"

namespace finance::test {
namespace {

using host::Case;
using host::ControlBlock;

// ---- Case

struct CaseRow {
    const char* id;
    std::string text;
    std::string upper;
    std::string lower;
    bool double_byte = false;
};

const CaseRow case_rows[] = {
    {"letters", "aBcXyZ", "ABCXYZ", "abcxyz"},
    {"the letters' neighbours", "`{@[az AZ", "`{@[AZ AZ", "`{@[az az"},
    {"nothing", "", "", ""},
    {"NUL and digits", std::string("a\0b1", 4), std::string("A\0B1", 4), std::string("a\0b1", 4)},
    {"high bytes are no letters", "\xE4z\xC4Z", "\xE4Z\xC4Z", "\xE4z\xC4z"},
    {"a byte of 0x80 or above leads two", "a\x80z\xFFZb", "A\x80z\xFFZB", "a\x80z\xFFZb", true},
    {"0x7F leads none",
     "\x7F"
     "a",
     "\x7F"
     "A",
     "\x7F"
     "a",
     true},
    {"a second byte leads none",
     "\x81\x81"
     "aZ",
     "\x81\x81"
     "AZ",
     "\x81\x81"
     "az",
     true},
    {"a lead at the end", "ab\x81", "AB\x81", "ab\x81", true},
};

std::string converted(std::string text, Case to, bool double_byte) {
    text += "aA";  // beyond the text: stays
    host::convert_case(text.data(), static_cast<std::int64_t>(text.size()) - 2, to, double_byte);
    EXPECT_EQ(text.substr(text.size() - 2), "aA");
    return text.substr(0, text.size() - 2);
}

TEST(TextServices, Case) {
    for (const CaseRow& row : case_rows) {
        EXPECT_EQ(converted(row.text, Case::upper, row.double_byte), row.upper) << row.id;
        EXPECT_EQ(converted(row.text, Case::lower, row.double_byte), row.lower) << row.id;
    }
    char text[] = "ab";
    host::convert_case(text, -2, Case::upper, false);
    EXPECT_STREQ(text, "ab") << "a negative length";
}

// ---- Copying

TEST(TextServices, CopiesWhatFits) {
    char text[] = "######";
    host::copy_text("abc", 3, text, 6);
    EXPECT_STREQ(text, "abc###") << "the rest is left alone";
    host::copy_text("xyz", 3, text, 2);
    EXPECT_STREQ(text, "xyc###");
    host::copy_text("q", -1, text, 6);
    host::copy_text("q", 1, text, -6);
    host::copy_text("q", 0, text, 6);
    EXPECT_STREQ(text, "xyc###");
    host::copy_text(text, 4, text + 1, 4);
    EXPECT_STREQ(text, "xxyc##") << "overlapping";
    host::copy_text(text + 1, 3, text, 3);
    EXPECT_STREQ(text, "xycc##") << "overlapping the other way";
}

// ---- Comparison

struct ComparisonRow {
    const char* id;
    std::string a;
    std::string b;
    std::int32_t plain;
    std::int32_t case_blind;
};

const ComparisonRow comparisons[] = {
    {"equal", "PMT", "PMT", 0, 0},
    {"both empty", "", "", 0, 0},
    {"first byte", "APMT", "BPMT", -1, -1},
    {"last byte", "PMT", "PMS", 3, 3},
    {"case", "pmt", "PMT", 1, 0},
    {"case, then a letter", "pmt", "PMU", 1, -3},
    {"blanks pad", "PV", "PV   ", 0, 0},
    {"blanks pad a", "PV   ", "pv", -1, 0},
    {"empty and blanks", "", "  ", 0, 0},
    {"longer by a letter", "PVA", "PV", 3, 3},
    {"longer by a blank and a letter", "PV", "PV A", -4, -4},
    {"longer by the byte after the blank", "PV!", "PV", 3, 3},
    {"longer by less than a blank", "PV\x1F", "PV", -3, -3},
    {"b longer by less than a blank", "PV", std::string("PV\0", 3), 3, 3},
    {"bytes are unsigned", "\xFF", "a", 1, 1},
    {"high bytes do not fold", "\xE4", "\xC4", 1, 1},
};

std::int32_t compared(const unsigned char* table, const std::string& a, const std::string& b) {
    return host::compare_texts(table, a.data(), static_cast<std::int64_t>(a.size()), b.data(),
                               static_cast<std::int64_t>(b.size()));
}

TEST(TextServices, Comparison) {
    for (const ComparisonRow& row : comparisons) {
        EXPECT_EQ(compared(ControlBlock::plain_table(), row.a, row.b), row.plain) << row.id;
        EXPECT_EQ(compared(ControlBlock::plain_table(), row.b, row.a), -row.plain) << row.id << ", swapped";
        EXPECT_EQ(compared(ControlBlock::case_blind_table(), row.a, row.b), row.case_blind) << row.id << ", case blind";
        EXPECT_EQ(compared(ControlBlock::case_blind_table(), row.b, row.a), -row.case_blind)
            << row.id << ", case blind, swapped";
    }
    EXPECT_EQ(host::compare_texts(ControlBlock::plain_table(), "a", -1, "  ", 2), 0) << "a negative length is 0";
    EXPECT_EQ(host::compare_texts(ControlBlock::plain_table(), "a", 1, "b", -9), 1);
}

}  // namespace
}  // namespace finance::test
