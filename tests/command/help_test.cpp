// Help texts: what a reader must find in them.
#include "command/help.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

std::string squeezed(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\n';
        if (!blank || (!result.empty() && result.back() != ' ')) result += blank ? ' ' : c;
    }
    return result;
}

TEST(Help, TellsAllThatTheCatalogueKnows) {
    int checked = 0;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = squeezed(command::help_text(calculation));
        for (const std::string_view part :
             {calculation.name, calculation.answers, calculation.formula, calculation.remarks, calculation.failure,
              calculation.example.arguments, calculation.example.result}) {
            EXPECT_TRUE(contains(text, squeezed(std::string{part}))) << calculation.name << ": " << part;
        }
        for (const catalogue::Parameter& parameter : calculation.parameters) {
            for (const std::string_view part : {parameter.name, parameter.unit, parameter.meaning, parameter.rule}) {
                EXPECT_TRUE(contains(text, squeezed(std::string{part}))) << calculation.name << ": " << part;
            }
        }
        ++checked;
    }
    EXPECT_GE(checked, 8);
}

TEST(Help, LinesFitTheScreen) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = command::help_text(calculation);
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = text.find('\n', begin);
            EXPECT_LE(end - begin, 100U) << text.substr(begin, end - begin);
            begin = end + 1;
        }
    }
}

TEST(Help, CallLine) {
    EXPECT_TRUE(contains(command::help_text(*catalogue::find("PMT")), "\n  finance PMT rate nper pv [fv] [type]\n"));
    EXPECT_TRUE(contains(command::help_text(two_lists_before), "\n  finance SEARCH values... dates... [guess]\n"));
    EXPECT_TRUE(contains(command::help_text(one_list_after), "\n  finance GROWTH rate [flows...]\n"));
}

TEST(Help, ArgumentLines) {
    const std::string text = command::help_text(*catalogue::find("FV"));
    EXPECT_TRUE(contains(text, "\n  1  rate  number        required   interest rate of one period\n"));
    EXPECT_TRUE(contains(text, "\n  3  pmt   number        . is 0     level payment"));
    EXPECT_TRUE(contains(text, "\n  5  type  flag          default 0  when payments fall"));
    EXPECT_TRUE(contains(text, "   must be above 0\n"));
    EXPECT_TRUE(
        contains(squeezed(command::help_text(bond)), "one of 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4"));
}

TEST(Help, ListHasEveryCalculationUnderItsFamily) {
    const std::string text = command::list_text(catalogue::families());
    EXPECT_TRUE(contains(text, "Level payments\n  CUMIPMT   Interest paid"));
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        EXPECT_TRUE(contains(text, "\n  " + std::string{calculation.name} + ' ')) << calculation.name;
        EXPECT_TRUE(contains(text, std::string{calculation.answers} + '\n')) << calculation.name;
    }
}

TEST(Help, Wrapping) {
    const std::string long_word(120, 'x');
    EXPECT_EQ(command::wrapped("a b", 2), "  a b\n");
    EXPECT_EQ(command::wrapped("a\nb", 1), " a\n b\n");
    EXPECT_EQ(command::wrapped(long_word, 0), long_word + "\n");
    EXPECT_EQ(command::wrapped(std::string(60, 'a') + ' ' + std::string(60, 'b'), 2),
              "  " + std::string(60, 'a') + "\n  " + std::string(60, 'b') + '\n');
    EXPECT_EQ(command::wrapped(std::string(49, 'a') + ' ' + std::string(50, 'b'), 0),
              std::string(49, 'a') + ' ' + std::string(50, 'b') + '\n')
        << "100 characters fit";
}

}  // namespace
}  // namespace finance::test
