// Texts of others in sentences. Code points are those of the Unicode tables: C1 is U+0080 to U+009F; U+2028 and U+2029
// part lines, U+202A to U+202E and U+2066 to U+2069 turn the direction of writing.
#include <gtest/gtest.h>

#include <string>

#include "catalogue/text.hpp"

namespace finance::test {
namespace {

struct ShownCase {
    std::string text;
    std::string expected;
};

const std::string long_text(300, 'x');

const ShownCase shown_cases[] = {
    {"", ""},
    {"rate 5.75% 'x' \\n", "rate 5.75% 'x' \\n"},
    {"a\nb\rc\td", R"(a\nb\rc\td)"},
    {std::string{"\0\x01\x1b[2J\x1f\x7f~", 9}, R"(\x00\x01\x1B[2J\x1F\x7F~)"},
    {"\xC2\x80 \xC2\x9B \xC2\x9F", R"(\u0080 \u009B \u009F)"},
    {"\xC2\xA0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC2\xA0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
    {"\x80\x9B\xE9\xFF", R"(\x80\x9B\xE9\xFF)"},
    {"\xE2\x82", R"(\xE2\x82)"},                  // cut off
    {"\xC0\x8A", R"(\xC0\x8A)"},                  // an overlong line feed
    {"\xED\xA0\x80", R"(\xED\xA0\x80)"},          // a surrogate
    {"\xF4\x90\x80\x80", R"(\xF4\x90\x80\x80)"},  // above U+10FFFF
    {"\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA\xE2\x80\xAE\xE2\x80\xAF",
     "\xE2\x80\xA7\\u2028\\u2029\\u202A\\u202E\xE2\x80\xAF"},
    {"\xE2\x81\xA5\xE2\x81\xA6\xE2\x81\xA9\xE2\x81\xAA", "\xE2\x81\xA5\\u2066\\u2069\xE2\x81\xAA"},
    {long_text.substr(0, 80), long_text.substr(0, 80)},
    {long_text.substr(0, 81), long_text.substr(0, 77) + "..."},
    {long_text, long_text.substr(0, 77) + "..."},
};

TEST(ShownText, ControlsAreWrittenOut) {
    int checked = 0;
    for (const ShownCase& row : shown_cases) {
        const std::string shown = catalogue::shown(row.text);
        EXPECT_EQ(shown, row.expected) << "row " << checked;
        EXPECT_EQ(catalogue::shown(shown), shown) << "row " << checked << ": shown once more";
        if (row.text.size() <= catalogue::most_quoted) {
            EXPECT_EQ(catalogue::in_quotes(row.text), '\'' + row.expected + '\'') << "row " << checked;
        }
        ++checked;
    }
    EXPECT_EQ(checked, 16);
}

TEST(ShownText, InQuotesIsShorter) {
    EXPECT_EQ(catalogue::in_quotes(long_text.substr(0, 60)), '\'' + long_text.substr(0, 60) + '\'');
    EXPECT_EQ(catalogue::in_quotes(long_text.substr(0, 61)), '\'' + long_text.substr(0, 57) + "...'");
}

// Characters count, not bytes; what is written out is never cut.
TEST(ShownText, CutsBetweenCharacters) {
    std::string euros;
    for (int i = 0; i < 100; ++i) euros += "\xE2\x82\xAC";
    EXPECT_EQ(catalogue::shown(euros), euros.substr(0, std::size_t{3} * 77) + "...");
    EXPECT_EQ(catalogue::shown("abcdefg\nhij", 10), "abcdefg...") << "no room for both signs of the line feed";
    EXPECT_EQ(catalogue::shown("abcde\nhijkl", 10), "abcde\\n...");
    EXPECT_EQ(catalogue::shown("abcde\x1bhijkl", 10), "abcde...");
    EXPECT_EQ(catalogue::shown("abcdef\x1b", 10), "abcdef\\x1B");
    EXPECT_EQ(catalogue::shown(std::string(5, '\x1b'), 10), R"(\x1B...)");
}

// Every byte before every other: no control is left, whatever stands beside it.
TEST(ShownText, NoPairOfBytesGetsThrough) {
    int checked = 0;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second, ++checked) {
            const std::string shown =
                catalogue::shown(std::string{static_cast<char>(first), static_cast<char>(second)});
            for (const char c : shown) {
                const auto byte = static_cast<unsigned char>(c);
                ASSERT_TRUE(byte >= 0x20 && byte != 0x7F) << first << ' ' << second;
            }
            const bool two = first >= 0xC2 && first <= 0xDF && second >= 0x80 && second <= 0xBF;
            const bool control = first == 0xC2 && second < 0xA0;
            const bool kept = shown.size() == 2 && static_cast<unsigned char>(shown[0]) >= 0x80;
            ASSERT_EQ(kept, two && !control) << first << ' ' << second;
        }
    }
    EXPECT_EQ(checked, 65'536);
}

}  // namespace
}  // namespace finance::test
