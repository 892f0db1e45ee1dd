// Words into values: order, names, lists. Expected by hand; values are shown as text, blank between.
#include "command/argument_list.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "catalogue/text.hpp"
#include "command/usage_error.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

using catalogue::Calculation;
using host::Argument;
using Words = std::vector<std::string_view>;

const Calculation& pmt = *catalogue::find("PMT");
const Calculation& fv = *catalogue::find("FV");

std::string shown(const Argument& value) {
    if (value.kind() == Argument::Kind::number) return catalogue::plain_text(value.number());
    if (value.kind() == Argument::Kind::text) return '\'' + std::string{value.text()} + '\'';
    return "absent";
}

std::string shown(const std::vector<Argument>& values) {
    std::string text;
    for (const Argument& value : values) text.append(text.empty() ? "" : " ").append(shown(value));
    return text;
}

struct ReadCase {
    const char* id;
    const Calculation& calculation;
    Words words;
    const char* expected;
};

const std::vector<ReadCase> reads{
    // in order and by name
    {"in order", pmt, {"0.5", "12", "-100"}, "0.5 12 -100"},
    {"by name", pmt, {"rate=0.5", "nper=12", "pv=-100"}, "0.5 12 -100"},
    {"by name, any order and case", pmt, {"PV=-100", "Nper=12", "rate=0.5"}, "0.5 12 -100"},
    {"in order, then by name", pmt, {"0.5", "nper=12", "pv=-100"}, "0.5 12 -100"},
    {"all five", pmt, {"0.5", "12", "-100", "7", "1"}, "0.5 12 -100 7 1"},
    {"missing", pmt, {"0.5", ".", "pv=."}, "0.5 . ."},
    {"percentage", pmt, {"0.5%", "12", "1"}, "0.005 12 1"},
    {"dates and a basis", bond, {"1960-01-01", "1960-01-02", "0.1", "2", "act/360"}, "0 1 0.1 2 'act/360'"},

    // what is left out
    {"optional before a given one", pmt, {"0.5", "12", "-100", "type=1"}, "0.5 12 -100 absent 1"},
    {"required before a given one", pmt, {"rate=0.5", "pv=-100"}, "0.5 absent -100"},
    {"optional, named with nothing, before a given one", pmt, {"0.5", "12", "1", "fv=", "type=1"}, "0.5 12 1 absent 1"},
    {"optional, named with nothing, at the end", pmt, {"0.5", "12", "1", "fv=", "type="}, "0.5 12 1"},
    {"basis named with nothing", bond, {"0", "1", "0.1", "2", "basis="}, "0 1 0.1 2"},
    {"required, named with nothing, at the end", pmt, {"0.5", "12", "pv="}, "0.5 12 absent"},
    {"nothing in order", pmt, {"0.5", "", "1"}, "0.5 absent 1"},
    {"may be missing, left out before a given one", fv, {"0.5", "12", "pv=5"}, "0.5 12 absent 5"},

    // one list
    {"list, one by one", one_list, {"-100", "60", "60"}, "-100 60 60"},
    {"list, commas", one_list, {"-100,60,60"}, "-100 60 60"},
    {"list, both", one_list, {"-100,60", "60"}, "-100 60 60"},
    {"list by name", one_list, {"flows=-100,60,60"}, "-100 60 60"},
    {"list by name, repeated", one_list, {"flows=-100", "flows=60,60"}, "-100 60 60"},
    {"missing and absent in a list", one_list, {"flows=-100,.,,60"}, "-100 . absent 60"},
    {"percentages in a list", one_list, {"1%,2%"}, "0.01 0.02"},
    {"list after a number", one_list_after, {"0.1", "-100", "60"}, "0.1 -100 60"},
    {"list after a number, by name", one_list_after, {"rate=0.1", "flows=-100,60,60"}, "0.1 -100 60 60"},
    {"list after a number, mixed", one_list_after, {"0.1", "flows=-100,60"}, "0.1 -100 60"},
    {"optional list left out", one_list_after, {"0.1"}, "0.1"},
    {"optional list, named with nothing", one_list_after, {"0.1", "flows="}, "0.1"},
    {"number before a list left out", one_list_after, {"flows=1,2"}, "absent 1 2"},
    {"list before numbers", one_list_before, {"-100", "60", "70", "0.1", "0.2"}, "-100 60 70 0.1 0.2"},
    {"list before numbers, commas", one_list_before, {"-100,60,70", "0.1", "0.2"}, "-100 60 70 0.1 0.2"},
    {"list before numbers, by name",
     one_list_before,
     {"reinvestRate=0.2", "financeRate=0.1", "flows=-100,60"},
     "-100 60 0.1 0.2"},
    {"list in order, numbers by name",
     one_list_before,
     {"-100", "60", "financeRate=0.1", "reinvestRate=0.2"},
     "-100 60 0.1 0.2"},
    {"list in order, one number by name",
     one_list_before,
     {"-100", "60", "0.1", "reinvestRate=0.2"},
     "-100 60 0.1 0.2"},

    // two lists
    {"pairs in order", two_lists_after, {"0.1", "-100", "60", "1960-01-01", "1960-01-02"}, "0.1 -100 60 0 1"},
    {"pairs with commas", two_lists_after, {"0.1", "-100,60", "1960-01-01,1960-01-02"}, "0.1 -100 60 0 1"},
    {"pairs by name", two_lists_after, {"dates=0,1", "values=-100,60", "rate=0.1"}, "0.1 -100 60 0 1"},
    {"one pair", two_lists_after, {"0.1", "5", "0"}, "0.1 5 0"},
    {"no guess", two_lists_before, {"-100", "110", "0", "365"}, "-100 110 0 365"},
    {"a guess", two_lists_before, {"-100", "110", "0", "365", "0.1"}, "-100 110 0 365 0.1"},
    {"a guess with commas", two_lists_before, {"-100,110", "0,365", "0.1"}, "-100 110 0 365 0.1"},
    {"a guess by name", two_lists_before, {"-100", "110", "0", "365", "guess=0.1"}, "-100 110 0 365 0.1"},
};

TEST(ArgumentList, Reads) {
    std::set<std::string> ids;
    for (const ReadCase& row : reads) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.id;
        try {
            EXPECT_EQ(shown(command::read_arguments(row.calculation, row.words)), row.expected) << row.id;
        } catch (const command::UsageError& error) {
            ADD_FAILURE() << row.id << ": " << error.what();
        }
    }
}

struct WrongCase {
    const char* id;
    const Calculation& calculation;
    Words words;
    const char* expected;
};

const std::vector<WrongCase> wrongs{
    {"none", pmt, {}, "PMT: too few arguments: no rate, nper, pv"},
    {"too few", pmt, {"0.1", "12"}, "PMT: too few arguments: no pv"},
    {"too few by name", pmt, {"nper=12", "rate=1"}, "PMT: too few arguments: no pv"},
    {"too many", pmt, {"1", "2", "3", "4", "1", "6", "7"}, "PMT: too many arguments, from '6' on"},
    {"unknown name", pmt, {"1", "2", "3", "tipe=1"}, "PMT: no argument is called 'tipe' (did you mean type?)"},
    {"unknown name, nothing near", pmt, {"1", "2", "3", "settlement=1"}, "PMT: no argument is called 'settlement'"},
    {"no name", pmt, {"1", "2", "3", "=1"}, "PMT: no argument is called ''"},
    {"twice by name", pmt, {"rate=1", "RATE=2"}, "PMT: rate is given twice"},
    {"twice by name, with nothing", pmt, {"rate=", "rate=2"}, "PMT: rate is given twice"},
    {"in order and by name", pmt, {"1", "2", "3", "rate=2"}, "PMT: rate is given twice"},
    {"a stray one after a name",
     pmt,
     {"1", "nper=2", "3"},
     "PMT: '3' follows a named argument and needs a name as well"},
    {"not a number", pmt, {"1", "2x", "3"}, "PMT: argument 2 (nper): '2x' is not a number"},
    {"grouped digits", pmt, {"1", "2", "1,234"}, "PMT: argument 3 (pv): '1,234' is not a number"},
    {"grouped digits before a list", one_list_after, {"1,5", "2"}, "GROWTH: argument 1 (rate): '1,5' is not a number"},
    {"not a number in a list",
     one_list_after,
     {"1", "2", "3,x"},
     "GROWTH: argument 2 (flows, value 3): 'x' is not a number"},
    {"empty list", one_list, {}, "INTERNAL: too few arguments: no flows"},
    {"list named with nothing", one_list, {"flows="}, "INTERNAL: too few arguments: no flows"},
    {"list without what follows",
     one_list_before,
     {"1", "2"},
     "TWORATES: too few arguments: no financeRate, reinvestRate"},
    {"list by name and in order", one_list_after, {"1", "2", "flows=3"}, "GROWTH: too many arguments, from '2' on"},
    {"odd pairs", two_lists_after, {"0.1", "1", "2", "3"}, "DATED: values and dates do not pair up"},
    {"odd pairs, a guess by name",
     two_lists_before,
     {"-100", "110", "0", "guess=0.1"},
     "SEARCH: values and dates do not pair up"},
    {"uneven pairs", two_lists_after, {"0.1", "1,2", "3"}, "DATED: values and dates do not pair up: 2 and 1 values"},
    {"uneven pairs by name",
     two_lists_before,
     {"values=1,2", "dates=3"},
     "SEARCH: values and dates do not pair up: 2 and 1 values"},
    {"commas in more than two",
     two_lists_after,
     {"0.1", "1,2", "3", "4", "5"},
     "DATED: values and dates are two arguments where they are separated by commas"},
    {"no dates", two_lists_before, {"values=1,2"}, "SEARCH: too few arguments: no dates"},
};

TEST(ArgumentList, WrongUsage) {
    for (const WrongCase& row : wrongs) {
        try {
            const auto values = command::read_arguments(row.calculation, row.words);
            ADD_FAILURE() << row.id << " was read as " << shown(values);
        } catch (const command::UsageError& error) {
            EXPECT_STREQ(error.what(), row.expected) << row.id;
            EXPECT_EQ(error.hint(), "finance help " + std::string{row.calculation.name});
        }
    }
}

}  // namespace
}  // namespace finance::test
