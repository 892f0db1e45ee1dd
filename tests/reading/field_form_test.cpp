// Fields of tables that write numbers otherwise than a call takes them. Values are those that people read in the texts.
#include "reading/field_form.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace finance::test {
namespace {

using catalogue::Kind;
using reading::FieldForm;

constexpr double refused = std::numeric_limits<double>::infinity();

struct NumberCase {
    std::string_view text;
    double plain;
    double comma;
    double loose;
    double both;
};

// What a text is without options, with --decimal comma, with --numbers loose, and with both.
const std::vector<NumberCase> numbers{
    {"1234.5", 1234.5, refused, 1234.5, refused},
    {"1234,5", refused, 1234.5, refused, 1234.5},
    {"-0.065", -0.065, refused, -0.065, refused},
    {"-0,065", refused, -0.065, refused, -0.065},
    {"+2,5", refused, 2.5, refused, 2.5},
    {"0.065", 0.065, refused, 0.065, refused},
    {"0,065", refused, 0.065, refused, 0.065},
    {",5", refused, 0.5, refused, 0.5},
    {".5", 0.5, refused, 0.5, refused},
    {"100", 100, 100, 100, 100},
    {"1e3", 1000, 1000, 1000, 1000},
    {"1E3", 1000, 1000, 1000, 1000},
    {"1e", refused, refused, refused, refused},
    {"1,5e3", refused, 1500, refused, 1500},
    {"5,75%", refused, 0.0575, refused, 0.0575},
    {"5,75 %", refused, 0.0575, refused, 0.0575},
    {"5.75 %", refused, refused, 0.0575, refused},

    // Ambiguous ones are what the option says, or nothing.
    {"1,234", refused, 1.234, 1234, 1.234},
    {"1.234", 1.234, 1234, 1.234, 1234},
    {"1,23", refused, 1.23, refused, 1.23},
    {"1.5", 1.5, refused, 1.5, refused},

    // Groups.
    {"1.234,56", refused, 1234.56, refused, 1234.56},
    {"1 234,56", refused, 1234.56, refused, 1234.56},
    {"1\xC2\xA0"
     "234,56",
     refused, 1234.56, refused, 1234.56},
    {"1\xE2\x80\xAF"
     "234\xE2\x80\xAF"
     "567",
     refused, 1234567, 1234567, 1234567},
    {"1'234'567.89", refused, refused, 1234567.89, refused},
    {"1'234,5", refused, 1234.5, refused, 1234.5},
    {"1,234,567.89", refused, refused, 1234567.89, refused},
    {"1.234.567,89", refused, 1234567.89, refused, 1234567.89},
    {"12 345", refused, 12345, 12345, 12345},
    {"1,234.", refused, refused, 1234, refused},
    {"1,00,000", refused, refused, refused, refused},
    {"1234,567.8", refused, refused, refused, refused},
    {"0,123,456", refused, refused, refused, refused},
    {"1,234 567", refused, refused, refused, refused},
    {"1,2345", refused, 1.2345, refused, 1.2345},
    {"1,234,56", refused, refused, refused, refused},
    {",234", refused, 0.234, refused, 0.234},

    // Money.
    {"$1,000", refused, refused, 1000, 1.0},
    {"-$1,000.50", refused, refused, -1000.5, refused},
    {"$-5", refused, refused, -5, -5},
    {"\xE2\x82\xAC 12", refused, refused, 12, 12},
    {"12,50 \xE2\x82\xAC", refused, refused, refused, 12.5},
    {"\xC2\xA3"
     "7",
     refused, refused, 7, 7},
    {"\xC2\xA5"
     "1 000",
     refused, refused, 1000, 1000},
    {"EUR 12", refused, refused, 12, 12},
    {"12USD", refused, refused, 12, 12},
    {"12 bps", refused, refused, refused, refused},
    {"$5 USD", refused, refused, refused, refused},
    {"$5%", refused, refused, refused, refused},
    {"$", refused, refused, refused, refused},

    // Brackets.
    {"(1,000)", refused, refused, -1000, -1.0},
    {"($1,000.25)", refused, refused, -1000.25, refused},
    {"$(7)", refused, refused, -7, -7},
    {"(5%)", refused, refused, -0.05, -0.05},
    {"(-7)", refused, refused, refused, refused},
    {"((7))", refused, refused, refused, refused},
    {"(7", refused, refused, refused, refused},
    {"()", refused, refused, refused, refused},

    {"7-5", refused, refused, refused, refused},
    {"--7", refused, refused, refused, refused},
    {"7 8", refused, refused, refused, refused},
    {"2008-02-15", refused, refused, refused, refused},
    {"seven", refused, refused, refused, refused},
};

void expect_number(const FieldForm& form, std::string_view text, double expected, std::string_view id) {
    const auto value = reading::read_text(form, Kind::number, text);
    EXPECT_EQ(value ? value->number() : refused, expected) << id << ": " << text;
}

TEST(FieldForm, NumbersAreWhatTheOptionsSay) {
    for (const NumberCase& row : numbers) {
        expect_number({}, row.text, row.plain, "plain");
        expect_number({.decimal_comma = true}, row.text, row.comma, "comma");
        expect_number({.loose = true}, row.text, row.loose, "loose");
        expect_number({.decimal_comma = true, .loose = true}, row.text, row.both, "both");
    }
    EXPECT_EQ(numbers.size(), 64U);
}

bool is_missing(const std::optional<host::Argument>& value) {
    return value && value->kind() == host::Argument::Kind::number && std::isnan(value->number());
}

TEST(FieldForm, TextsThatAreMissingValues) {
    const FieldForm form{.missing = {"NA", "#N/A", "NULL", "-"}};
    for (const Kind kind : {Kind::number, Kind::whole, Kind::date, Kind::basis, Kind::numbers}) {
        for (const std::string_view text : {"NA", "na", "#N/A", "null", "-", "."}) {
            EXPECT_TRUE(is_missing(reading::read_text(form, kind, text))) << text;
        }
    }
    EXPECT_FALSE(reading::read_text(form, Kind::number, "N/A"));
    EXPECT_FALSE(reading::read_text({}, Kind::number, "NA"));
    EXPECT_TRUE(is_missing(reading::read_text({}, Kind::number, "nan")));
    EXPECT_EQ(reading::read_text(form, Kind::number, "7")->number(), 7.0);
}

TEST(FieldForm, DatesAndBasesStayWhatTheyAre) {
    const FieldForm both{.decimal_comma = true, .loose = true};
    EXPECT_EQ(reading::read_text(both, Kind::date, "1960-01-31")->number(), 30.0);
    EXPECT_EQ(reading::read_text(both, Kind::date_time, "30,5")->number(), 30.5);
    EXPECT_FALSE(reading::read_text(both, Kind::date, "(30)"));
    EXPECT_FALSE(reading::read_text(both, Kind::date, "01.02.2024"));
    EXPECT_FALSE(reading::read_text(both, Kind::date, "$30"));
    EXPECT_EQ(reading::read_text(both, Kind::basis, "30/360")->text(), "30/360");
    EXPECT_EQ(reading::read_text(both, Kind::basis, "ACTUAL")->text(), "ACTUAL");
    EXPECT_EQ(reading::read_text(both, Kind::basis, "3")->number(), 3.0);
}

struct HintCase {
    FieldForm form;
    std::string_view text;
    std::string_view hint;  // the end of the sentence
};

TEST(FieldForm, RefusalsNameTheOptionThatWouldRead) {
    const std::vector<HintCase> hints{
        {{}, "1,234", "; --decimal comma reads 1.234, --numbers loose reads 1234"},
        {{}, "1,5", "; --decimal comma reads 1.5"},
        {{}, "1,234.5", "; --numbers loose reads 1234.5"},
        {{}, "12,50 EUR", "; --decimal comma --numbers loose reads 12.5"},
        {{.loose = true}, "12,50 EUR", "; --decimal comma reads 12.5"},
        {{.decimal_comma = true}, "12,50 EUR", "; --numbers loose reads 12.5"},
        {{.decimal_comma = true}, "1.5", "'1.5' is not a number"},
        {{}, "#N/A", "; --missing #N/A says that it is a missing value"},
        {{}, "seven", "'seven' is not a number"},
    };
    for (const HintCase& row : hints) {
        const std::string sentence = reading::unreadable(row.form, Kind::number, row.text);
        EXPECT_TRUE(sentence.ends_with(row.hint)) << sentence;
    }
    EXPECT_EQ(hints.size(), 9U);
}

}  // namespace
}  // namespace finance::test
