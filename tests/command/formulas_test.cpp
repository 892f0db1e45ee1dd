// Formulas and conditions. Expected values by hand; where a result is not exact, the literal is what the same double
// operations come to, as the compiler calculates them.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "command/formulas/written_value.hpp"

namespace finance::test {
namespace {

using catalogue::Kind;
using command::Formula;
using command::FormulaError;
using command::FormulaStack;
using command::NameForm;
using command::NameMeaning;

constexpr double infinity = std::numeric_limits<double>::infinity();

bool is_missing(double value) { return std::bit_cast<std::uint64_t>(value) == ZELKOVAN_MISSING_VALUE_BITS; }

// a to e are numbers 0 to 4, "a b" is 5, maturity 6; the texts are numbered alike. six is a constant, due a dated one.
class Names : public command::FormulaNames {
public:
    [[nodiscard]] std::optional<NameMeaning> find(std::string_view name, NameForm /*form*/) const override {
        constexpr std::array<std::string_view, 7> known{"a", "b", "c", "d", "e", "a b", "maturity"};
        for (std::size_t i = 0; i < known.size(); ++i) {
            if (name == known[i]) return NameMeaning{.number = i, .dated = i == 6};
        }
        if (name == "six") return NameMeaning{.constant = 6.0};
        if (name == "due") return NameMeaning{.constant = 100.0, .dated = true};
        return {};
    }
    [[nodiscard]] std::string unknown(std::string_view name) const override {
        return "no '" + std::string{name} + '\'';
    }
};

const Names names;
const std::vector<double> numbers{2.0, 3.0, -5.0, 0.0, std::numeric_limits<double>::quiet_NaN(), 7.0, 20000.0};
const std::vector<std::string_view> texts{"bond", "Bond", "", "o'neil", "it's \"x\"", "loan", "2030-01-01"};

double value_of(const Formula& formula) {
    FormulaStack stack;
    std::vector<double> read;
    std::vector<std::string_view> read_texts;
    for (const std::size_t number : formula.numbers()) read.push_back(numbers[number]);
    for (const std::size_t text : formula.texts()) read_texts.push_back(texts[text]);
    return formula.value(read, read_texts, stack);
}

struct ValueCase {
    const char* text;
    double expected;
};

constexpr ValueCase values[] = {
    {"1+2*3", 7.0},
    {"(1+2)*3", 9.0},
    {"10-4-3", 3.0},   // from the left
    {"64/4/2", 8.0},   // from the left
    {"2^3^2", 512.0},  // from the right: 2^9
    {"-2^2", -4.0},    // the sign after the power
    {"(-2)^2", 4.0},
    {"2^-1", 0.5},
    {"2^-2^2", 0.0625},  // 2^(-(2^2))
    {"2*-3", -6.0},
    {"2--3", 5.0},
    {"- -2", 2.0},
    {"+2", 2.0},
    {"---2", -2.0},
    {"5%*2", 0.1},
    {"100*5%", 5.0},
    {"1e-5*1e5", 1.0},
    {"1E+2+1", 101.0},
    {".5+5.", 5.5},
    {"2025-01-31+1", 23773.0},  // 23742 days to 2025-01-01: 65 years of 365 and 17 leap days; and 30, and 1
    {"2025-01-31-2025-01-01", 30.0},
    {"1960-01-01", 0.0},
    {"a*b+c", 1.0},
    {"\"a b\"*2", 14.0},
    {"six/a", 3.0},
    {"min(3,1,2)", 1.0},
    {"max(3,1,2)", 3.0},
    {"min(4)", 4.0},
    {"MAX(a,b)", 3.0},
    {"abs(c)", 5.0},
    {"abs(-(2+3))", 5.0},
    {"round(2.5)", 3.0},
    {"round(-2.5)", -3.0},  // away from zero
    {"round(0.49999999999999994)", 0.0},
    {"round(1234.5678, 2)", 1234.57},
    {"round(1234.5678,-2)", 1200.0},
    {"round(1e300, 5)", 1e300},
    {"round(1.5, 400)", 1.5},
    {"round(1e307, -400)", 0.0},
    {"1/0", infinity},
    {"-1/0", -infinity},
    {"1e308*10", infinity},
    {"1e308^2", infinity},
};

TEST(Formulas, Values) {
    for (const ValueCase& row : values) {
        try {
            EXPECT_EQ(value_of(command::read_formula(row.text, names)), row.expected) << row.text;
        } catch (const FormulaError& error) {
            ADD_FAILURE() << row.text << ": " << error.what();
        }
    }
}

constexpr const char* missing_ones[] = {
    "e",        ".",        "e+1",        "1-e",        "e*0",        "0/e",      "0/0",
    "e^0",      "1^e",      "-e",         "abs(e)",     "min(e,1)",   "min(1,e)", "max(e,1)",
    "max(1,e)", "round(e)", "round(e,2)", "round(2,e)", "(-8)^(1/3)", "1/0-1/0",
};

TEST(Formulas, AMissingValueGoesThroughEveryOperation) {
    for (const char* text : missing_ones) {
        EXPECT_TRUE(is_missing(value_of(command::read_formula(text, names)))) << text;
    }
}

// ---- Blocks: the same as one row after the other

TEST(Formulas, ABlockIsItsRows) {
    constexpr std::size_t rows = Formula::block_rows;
    const char* all[] = {"a*b+c", "a/b-b^2", "min(a,b,c)*max(a,c)", "round(a/b, 2)+abs(c)", "-a^2", "5", "e+a", "a"};
    std::vector<std::vector<double>> columns(numbers.size(), std::vector<double>(rows));
    for (std::size_t i = 0; i < columns.size(); ++i) {
        for (std::size_t row = 0; row < rows; ++row) columns[i][row] = numbers[i] + static_cast<double>(row) * 0.37;
    }
    for (const char* text : all) {
        const Formula formula = command::read_formula(text, names);
        FormulaStack stack;
        std::vector<const double*> read;
        for (const std::size_t number : formula.numbers()) read.push_back(columns[number].data());
        std::vector<double> block(rows);
        formula.values(read, stack, block.data());
        for (std::size_t row = 0; row < rows; ++row) {
            std::vector<double> of_row;
            for (const std::size_t number : formula.numbers()) of_row.push_back(columns[number][row]);
            const double alone = formula.value(of_row, {}, stack);
            EXPECT_EQ(std::bit_cast<std::uint64_t>(block[row]), std::bit_cast<std::uint64_t>(alone)) << text << row;
        }
    }
}

// ---- What is wrong, and where

struct WrongCase {
    const char* text;
    const char* sentence;
};

constexpr WrongCase wrongs[] = {
    {"", "a value is expected at the end of ''"},
    {"6%/", "a value is expected at the end of '6%/'"},
    {"6%/*12", "a value is expected at '*12' of '6%/*12'"},
    {"(1+2", "')' is expected at the end of '(1+2'"},
    {"1+2)", "an operator is expected at ')' of '1+2)'"},
    {"2 3", "an operator is expected at '3' of '2 3'"},
    {"2x", "an operator is expected at 'x' of '2x'"},
    {"6 %", "'%' has no meaning here, at '%' of '6 %'"},
    {"a b", "an operator is expected at 'b' of 'a b'"},
    {"rat/12", "no 'rat', in 'rat/12'"},
    {"12/rat", "no 'rat', at 'rat' of '12/rat'"},
    {"12/\"x y\"", "no 'x y', at '\"x y\"' of '12/\"x y\"'"},
    {"2*\"a", "a quotation mark is not closed at '\"a' of '2*\"a'"},
    {"a*'b'", "a number is expected, not a text, at ''b'' of 'a*'b''"},
    {"1e999+1", "'1e999' is beyond what a double can hold, in '1e999+1'"},
    {"roun(2)", "no function is called 'roun' (did you mean round?): there are min, max, round and abs, in 'roun(2)'"},
    {"2*PMT(1,2,3)",
     "PMT cannot stand within a call or a formula: name its result, and go on with the name, at 'PMT(1,2,3)' of "
     "'2*PMT(1,2,3)'"},
    {"min()", "a value is expected at ')' of 'min()'"},
    {"abs(1,2)", "too many values for abs, at ',2)' of 'abs(1,2)'"},
    {"round(1,2,3)", "too many values for round, at ',3)' of 'round(1,2,3)'"},
    {"min(1 2)", "',' or ')' is expected at '2)' of 'min(1 2)'"},
    {"a = b", "a comparison is for --where, not at '= b' of 'a = b'"},
    {"1+01/02/2024",
     "'01/02/2024' looks like a date: that is year-month-day as in 2008-02-15; a division has blanks around its sign, "
     "at '01/02/2024' of '1+01/02/2024'"},
    {"1+2025-02-30",
     "'2025-02-30' looks like a date: that is year-month-day as in 2008-02-15; a division has blanks around its sign, "
     "at '2025-02-30' of '1+2025-02-30'"},
};

TEST(Formulas, ErrorsPointIntoThem) {
    for (const WrongCase& row : wrongs) {
        try {
            (void)command::read_formula(row.text, names);
            ADD_FAILURE() << row.text << " was read";
        } catch (const FormulaError& error) {
            EXPECT_STREQ(error.what(), row.sentence) << row.text;
        }
    }
}

std::string repeated(const char* text, std::size_t count) {
    std::string all;
    for (; count > 0; --count) all += text;
    return all;
}

TEST(Formulas, NoTextOverflowsTheStack) {
    constexpr std::size_t million = 1'000'000;
    for (const std::string& text :
         {repeated("(", million), repeated("(", million) + '1' + repeated(")", million), repeated("1^", million) + '1',
          repeated("abs(", million), repeated("2^-", million)}) {
        try {
            (void)command::read_formula(text, names);
            ADD_FAILURE() << text.substr(0, 20) << " was read";
        } catch (const FormulaError& error) {
            const std::string sentence{error.what()};
            EXPECT_TRUE(sentence.starts_with("brackets and powers stand more than 200 deep")) << sentence;
            EXPECT_LT(sentence.size(), 250U);
        }
    }
    const std::string deepest = repeated("(", command::most_nested) + '1' + repeated(")", command::most_nested);
    EXPECT_EQ(value_of(command::read_formula(deepest, names)), 1.0);
}

TEST(Formulas, AMillionTermsAndSignsAreRead) {
    constexpr std::size_t million = 1'000'000;
    EXPECT_EQ(value_of(command::read_formula(repeated("1+", million) + '1', names)), 1'000'001.0);
    EXPECT_EQ(value_of(command::read_formula(repeated("-", million) + '5', names)), 5.0);
    EXPECT_EQ(value_of(command::read_condition(repeated("not ", million) + "a=2", names)), 1.0);
    EXPECT_EQ(value_of(command::read_condition(repeated("a='x' or ", 100'000) + "b=3", names)), 1.0);
}

// ---- Dates

struct DatedCase {
    const char* text;
    bool dated;
};

constexpr DatedCase dated[] = {
    {"2025-01-31", true},        {"2025-01-31+1", true},         {"1+maturity", true},  {"maturity-30", true},
    {"30-maturity", false},      {"maturity-2025-01-31", false}, {"maturity*1", false}, {"-maturity", false},
    {"max(due,maturity)", true}, {"max(due,5)", false},          {"(due)", true},       {"due+maturity", false},
    {"maturity-due+due", true},  {"abs(maturity)", false},
};

TEST(Formulas, ADateAndSomeDaysIsADate) {
    for (const DatedCase& row : dated) EXPECT_EQ(command::read_formula(row.text, names).dated(), row.dated) << row.text;
}

// ---- Conditions

struct TruthCase {
    const char* text;
    double expected;  // 1 holds, 0 does not, 2 nobody knows
};

constexpr TruthCase truths[] = {
    {"a < b", 1.0},
    {"a <= 2", 1.0},
    {"a > b", 0.0},
    {"a >= 2", 1.0},
    {"a = 2", 1.0},
    {"a == 2", 1.0},
    {"a != 2", 0.0},
    {"a <> 3", 1.0},
    {"a*b = 6 and c < 0", 1.0},
    {"a = 1 or b = 3", 1.0},
    {"not a = 1", 1.0},
    {"not (a = 2 or b = 0)", 0.0},
    {"not not a = 2", 1.0},
    {"a = 1 and b = 1 or c = -5", 1.0},  // and goes first
    {"a = 1 and (b = 1 or c = -5)", 0.0},
    {"NOT a = 1 AND b = 3", 1.0},
    {"(a+b)*2 > 9", 1.0},
    {"2% < a", 1.0},
    {"maturity > 2010-01-01", 1.0},  // 20000 days from 1960 on are in October 2014
    // missing values
    {"e > 1", 2.0},
    {"e = e", 2.0},
    {"not e > 1", 2.0},
    {"e > 1 and a = 1", 0.0},
    {"e > 1 and a = 2", 2.0},
    {"e > 1 or a = 2", 1.0},
    {"e > 1 or a = 1", 2.0},
    {"e = .", 1.0},
    {"e != .", 0.0},
    {"a = .", 0.0},
    {"a != .", 1.0},
    // texts
    {"a = 'bond'", 1.0},
    {"a = \"bond\"", 1.0},  // no name
    {"'bond' = a", 1.0},
    {"b = 'bond'", 0.0},  // the case counts
    {"a != 'loan'", 1.0},
    {"a < 'loan'", 1.0},  // b before l
    {"c = ''", 1.0},
    {"d = 'o''neil'", 1.0},
    {"e = 'it''s \"x\"'", 1.0},
    {"\"a b\" = 'loan' and a = 'bond'", 1.0},
    {"'x' = 'x'", 1.0},
    {"a = 'bond' and a = 2", 1.0},  // as a text, and as a number
    {"a = 2 and a = 'bond'", 1.0},
};

TEST(Conditions, Truths) {
    for (const TruthCase& row : truths) {
        try {
            const double truth = value_of(command::read_condition(row.text, names));
            EXPECT_EQ(is_missing(truth) ? 2.0 : truth, row.expected) << row.text;
        } catch (const FormulaError& error) {
            ADD_FAILURE() << row.text << ": " << error.what();
        }
    }
}

TEST(Conditions, WhatIsComparedAsATextIsNotReadAsANumber) {
    const Formula formula = command::read_condition("a = 'bond' and b > 1 and \"a b\" = 'x'", names);
    EXPECT_EQ(formula.numbers(), std::vector<std::size_t>{1});
    EXPECT_EQ(formula.texts(), (std::vector<std::size_t>{0, 5}));
}

constexpr WrongCase wrong_conditions[] = {
    {"a", "a comparison is expected, not a value, at the end of 'a'"},
    {"a and b = 1", "a comparison is expected, not a value, at 'and b = 1' of 'a and b = 1'"},
    {"a = 1 = 1", "comparisons are joined by and at '= 1' of 'a = 1 = 1'"},
    {"1 < a < 3", "comparisons are joined by and at '< 3' of '1 < a < 3'"},
    {"(a = 1) + 1 = 2", "a number is expected, not a comparison, at '+ 1 = 2' of '(a = 1) + 1 = 2'"},
    {"a*2 = 'x'", "a text is compared with a text or a name, not a number, at the end of 'a*2 = 'x''"},
    {"six = 'x'", "a text is compared with a text or a name, not a number, at the end of 'six = 'x''"},
    {"'x' + 1 = 2", "a number is expected, not a text, at '+ 1 = 2' of ''x' + 1 = 2'"},
    {"a < .", "a missing value is only = or !=, at the end of 'a < .'"},
    {"not a", "a comparison is expected, not a value, at the end of 'not a'"},
    {"nam = 1", "no 'nam', in 'nam = 1'"},
};

TEST(Conditions, ErrorsPointIntoThem) {
    for (const WrongCase& row : wrong_conditions) {
        try {
            (void)command::read_condition(row.text, names);
            ADD_FAILURE() << row.text << " was read";
        } catch (const FormulaError& error) {
            EXPECT_STREQ(error.what(), row.sentence) << row.text;
        }
    }
}

// ---- Arguments

struct ArgumentCase {
    Kind kind;
    const char* text;
    double expected;
};

constexpr ArgumentCase arguments[] = {
    {Kind::number, "6%/12", 0.005},
    {Kind::whole, "30*12", 360.0},
    {Kind::number, "r*2", 1.0},
    {Kind::number, "R", 0.5},
    {Kind::number, "30/360", 30.0 / 360.0},
    {Kind::date, "2025-01-31+1", 23773.0},
    {Kind::date, "day+1", 101.0},
    {Kind::date, "day", 100.0},
    {Kind::numbers, "max(1,2)*-1", -2.0},
    {Kind::basis, "r", 0.5},
    {Kind::number, "inf", infinity},
    {Kind::number, "1/0", infinity},
};

command::Variables some_variables() {
    command::Variables variables;
    variables.set({.name = "r", .value = 2.0});
    variables.set({.name = "day", .value = 100.0, .dated = true});
    variables.set({.name = "R", .value = 0.5});
    return variables;
}

TEST(WrittenValue, IsAValueAVariableOrArithmetic) {
    const command::Variables variables = some_variables();
    EXPECT_EQ(variables.all().size(), 2U);
    for (const ArgumentCase& row : arguments) {
        EXPECT_EQ(command::read_written(row.kind, row.text, &variables).number(), row.expected) << row.text;
    }
}

TEST(WrittenValue, ABasisIsNoDivision) {
    for (const char* text : {"30/360", "act/360", "ACT / 365", "1/2"}) {
        EXPECT_EQ(command::read_written(Kind::basis, text, nullptr).text(), text);
    }
}

struct WrongArgument {
    Kind kind;
    const char* text;
    const char* sentence;
};

constexpr WrongArgument wrong_arguments[] = {
    {Kind::number, "abc", "'abc' is not a number"},
    {Kind::number, "dya", "'dya' is not a number (did you mean day?)"},
    {Kind::number, "0,5%", "'0,5%' is not a number"},
    {Kind::number, "2025-01-31", "'2025-01-31' is not a number"},
    {Kind::number, "2025-01-31+1", "'2025-01-31+1' is a date, not a number"},
    {Kind::number, "day", "'day' is a date, not a number"},
    {Kind::number, "dya/2", "there is no variable 'dya' (did you mean day?), in 'dya/2'"},
    {Kind::date, "01/02/2024", "'01/02/2024' is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01"},
    {Kind::date, "2024-13-45", "'2024-13-45' is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01"},
    {Kind::date, "15.01.2024", "'15.01.2024' is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01"},
};

TEST(WrittenValue, WhatIsNone) {
    const command::Variables variables = some_variables();
    for (const WrongArgument& row : wrong_arguments) {
        try {
            (void)command::read_written(row.kind, row.text, &variables);
            ADD_FAILURE() << row.text << " was read";
        } catch (const FormulaError& error) {
            EXPECT_STREQ(error.what(), row.sentence) << row.text;
        }
    }
}

}  // namespace
}  // namespace finance::test
