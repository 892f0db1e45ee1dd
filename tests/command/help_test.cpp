// Help texts: what a reader must find in them.
#include "command/help.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

// Blanks, line breaks and the marks that join broken lines as one blank.
std::string squeezed(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\n' || c == '\\';
        if (!blank || (!result.empty() && result.back() != ' ')) result += blank ? ' ' : c;
    }
    return result;
}

TEST(Help, TellsAllThatTheCatalogueKnows) {
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
    }
}

void expect_lines_to_fit(const std::string& text, std::size_t width = 100) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        EXPECT_LE(end - begin, width) << text.substr(begin, end - begin);
        begin = end + 1;
    }
}

TEST(Help, LinesFitTheScreen) {
    expect_lines_to_fit(command::list_text(catalogue::families()));
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        expect_lines_to_fit(command::help_text(calculation));
    }
}

TEST(Help, ALongExampleIsBrokenAsAShellJoinsIt) {
    EXPECT_TRUE(contains(command::help_text(*catalogue::find("ODDFPRICE")),
                         "\n  finance ODDFPRICE settlement=2025-01-20 maturity=2030-11-15 issue=2024-12-10 \\\n"
                         "  firstCoupon=2025-11-15 rate=0.05 yield=0.06 redemption=100 frequency=2\n"
                         "  95.08489578470304\n"));
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

// Formulas keep the line breaks that they are written with.
TEST(Help, FormulaLinesAreNotBroken) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = command::help_text(calculation);
        for (std::string_view rest = calculation.formula; !rest.empty();) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            EXPECT_TRUE(contains(text, "\n  " + std::string{line} + '\n')) << calculation.name << ": " << line;
            rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        }
    }
}

struct SentenceCase {
    const char* name;
    const char* part;
};

// What nobody would guess, and needs to know before a call answers something else than was meant.
constexpr SentenceCase sentences[] = {
    {"VDB", "finance VDB cost salvage life start end [factor] [noSwitch]"},
    {"VDB", "0 is the beginning of the first period"},
    {"VDB", "noSwitch flag default 1 1 stays with the declining balance to the end, 0 switches to straight line"},
    {"VDB", "must be at least 0 and at most life"},
    {"VDB", "an end at or before start answers 0"},
    {"COUPDAYBS", "frequency (argument 3) is the argument that is named"},
    {"COUPNUM", "1, 2, 4, 6 or 12; any other is accepted"},
    {"PRICE", "left out it is 30/360, but given as a missing value (.) it is ACTUAL"},
    {"PRICE", "Equal dates answer 0"},
    {"YIELDMAT", "An issue after settlement is accepted"},
    {"PRICEMAT", "A maturity on or before settlement is refused and named"},
    {"RATE", "Without payments (pmt=0) the rule is another: pv and fv must have the same sign"},
    {"NPV", "A rate of 0 is refused"},
    {"NPV", "The first flow is discounted by one period"},
    {"MIRR", "The two rates stand at the end"},
    {"MIRR", "finance MIRR flows... financeRate reinvestRate"},
    {"XIRR", "finance XIRR values... dates... [guess]"},
    {"XIRR", "an odd number of arguments ends with a guess"},
    {"XIRR", "the answer is a missing value (.)"},
    {"IRR", "one after the other, or separated by commas"},
    {"AMORLINC", "must not be ACT/360"},
    {"AMORDEGRC", "must not be ACT/360"},
    {"DDB", "0, a negative or a missing one counts as 2"},
    {"DB", "must be at least 1 and at most life + 1"},
    {"SYD", "A period beyond life is accepted"},
    {"TBILLPRICE", "The dates are not compared"},
    {"TBILLEQ", "only after the discount has been looked at"},
    {"DOLLARDE", "With denominator 8, 101.5 is 101 and 5/8"},
    {"DISC", "year-month-day, or days since 1960-01-01"},
};

TEST(Help, SaysWhatNobodyWouldGuess) {
    for (const SentenceCase& row : sentences) {
        const std::string text = squeezed(command::help_text(*catalogue::find(row.name)));
        EXPECT_TRUE(contains(text, row.part)) << row.name << ": " << row.part << '\n' << text;
    }
}

TEST(Help, ListHasEveryCalculationUnderItsFamily) {
    const std::string text = command::list_text(catalogue::families());
    EXPECT_TRUE(contains(text, "Annuities and loans\n  CUMIPMT     Interest paid"));
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        EXPECT_TRUE(contains(text, "\n  " + std::string{calculation.name} + ' ')) << calculation.name;
        EXPECT_TRUE(contains(text, std::string{calculation.answers} + '\n')) << calculation.name;
    }
}

TEST(Help, FitsANarrowTerminal) {
    for (const std::size_t width : {100U, 72U, 54U}) {
        for (const catalogue::Calculation& calculation : catalogue::calculations()) {
            const std::string text = command::help_text(calculation, width);
            expect_lines_to_fit(text, width);
            EXPECT_EQ(squeezed(text), squeezed(command::help_text(calculation))) << "nothing is lost";
        }
    }
}

}  // namespace
}  // namespace finance::test
