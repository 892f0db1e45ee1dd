// What Tab offers. Expected candidates: read off the catalogue's tables by hand.
#include "command/prompt/completion.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/catalogue.hpp"
#include "command/jobs.hpp"

namespace finance::test {
namespace {

using command::completions;
using Texts = std::vector<std::string>;

struct CompletionCase {
    const char* line;
    Texts candidates;
};

const CompletionCase rows[] = {
    // where a line begins
    {"PM", {"PMT"}},
    {"pm", {"PMT"}},
    {"  pm", {"PMT"}},
    {"PRICE", {"PRICE", "PRICEDISC", "PRICEMAT"}},
    {"hel", {"help"}},
    {"qu", {"quit"}},
    {"zz", {}},

    // help
    {"?pm", {"?PMT"}},
    {"? pm", {"PMT"}},
    {"help pric", {"PRICE", "PRICEDISC", "PRICEMAT"}},
    {"help PMT P", {}},
    {"list P", {}},
    {"quit P", {}},
    {"NOSUCH P", {}},

    // arguments
    {"PMT ", {"rate=", "nper=", "pv=", "fv=", "type="}},
    {"PMT ra", {"rate="}},
    {"pmt RA", {"rate="}},
    {"PMT x", {}},
    {"PMT 0.005 ", {"nper=", "pv=", "fv=", "type="}},
    {"PMT 0.005 360 ", {"pv=", "fv=", "type="}},
    {"PMT 0.005 nper=360 ", {"pv=", "fv=", "type="}},
    {"PMT NPER=360 rate=1 pv=2 fv=3 type=1 ", {}},
    {"PMT 1 2 3 4 1 6 ", {}},
    {"IRR 1 2 3 ", {"flows="}},
    {"NPV 0.1 1 2 ", {"flows="}},

    // values
    {"PMT rate=", {}},
    {"YEARFRAC basis=", {"basis=30/360", "basis=ACTUAL", "basis=ACT/360", "basis=ACT/365", "basis=EU30/360"}},
    {"YEARFRAC BASIS=act/", {"basis=ACT/360", "basis=ACT/365"}},
    {"YEARFRAC nosuch=a", {}},
    {"PMT basis=A", {}},

    // jobs: options, their values, words and arguments
    {"map 'PMT(a, b, c)' --o", {"--output"}},
    {"fold 'IRR(a)' --",
     {"--by", "--where", "--output", "--delimiter", "--no-header", "--skip", "--dates", "--missing", "--decimal",
      "--numbers", "--digits", "--status", "--strict", "--quiet", "--json"}},
    {"map 'PMT(a, b, c)' --delimiter ", {}},
    {"schedule ", {"loan", "depreciation"}},
    {"schedule lo", {"loan"}},
    {"schedule loan rate=1% ", {"nper=", "pv=", "fv=", "type=", "start=", "months=", "extra="}},
    {"schedule depreciation ", {"cost=", "salvage=", "life=", "factor=", "month="}},
    {"schedule loan --p", {"--plot"}},
    {"fold 'IRR(a)' --by ", {}},  // of no table that is named yet
    {"fold 'IRR(amount)' " TEST_DATA "/flows.csv --by ", {"deal", "year", "amount", "date", "rate"}},
    {"fold 'IRR(amount)' " TEST_DATA "/flows.csv --by d", {"deal", "date"}},
    {"fold 'IRR(amount)' " TEST_DATA "/flows.csv --by deal,da", {"deal,date"}},
};

TEST(Completion, FilesAreNotKnownHere) {
    for (const char* line : {"map ", "map 'PMT(a, b, c)' fl", "map 'PMT(a, b, c)' --output ", "fold 'IRR(a)' -o x",
                             "schedule loan --plot ", "plot 'PMT(r, 1, 2)' r=1..2 --output p"}) {
        EXPECT_FALSE(completions(line).has_value()) << line;
    }
}

TEST(Completion, OffersWhatMayFollow) {
    for (const CompletionCase& row : rows) {
        SCOPED_TRACE(row.line);
        const auto candidates = completions(row.line);
        ASSERT_TRUE(candidates.has_value());
        EXPECT_EQ(*candidates, row.candidates);
    }
}

TEST(Completion, AnEmptyLineMayBeginWithAnyCalculationOrJob) {
    const auto candidates = completions("");
    ASSERT_TRUE(candidates.has_value());
    EXPECT_EQ(candidates->size(), catalogue::calculations().size() + command::jobs().size() + 2);
    EXPECT_TRUE(std::ranges::is_sorted(*candidates));
    EXPECT_EQ(std::ranges::count(*candidates, "list"), 1);
}

TEST(Completion, EveryArgumentCanBeCompleted) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        for (const catalogue::Parameter& parameter : calculation.parameters) {
            const std::string name{parameter.name};
            const auto candidates = completions(std::string{calculation.name} + ' ' + name);
            ASSERT_TRUE(candidates.has_value());
            EXPECT_EQ(std::ranges::count(*candidates, name + '='), 1) << calculation.name << ' ' << name;
        }
    }
}

TEST(Completion, WhatAllCandidatesBeginWith) {
    EXPECT_EQ(command::common_beginning({"PRICE"}), "PRICE");
    EXPECT_EQ(command::common_beginning({"PRICE", "PRICEDISC", "PRICEMAT"}), "PRICE");
    EXPECT_EQ(command::common_beginning({"PRICEDISC", "PRICE"}), "PRICE");
    EXPECT_EQ(command::common_beginning({"fv=", "nper="}), "");
}

}  // namespace
}  // namespace finance::test
