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
    {"PMT ", {"fv=", "nper=", "pv=", "rate=", "type="}},
    {"PMT ra", {"rate="}},
    {"pmt RA", {"rate="}},
    {"PMT x", {}},
    {"PMT 0.005 ", {"fv=", "nper=", "pv=", "type="}},
    {"PMT 0.005 360 ", {"fv=", "pv=", "type="}},
    {"PMT 0.005 nper=360 ", {"fv=", "pv=", "type="}},
    {"PMT NPER=360 rate=1 pv=2 fv=3 type=1 ", {}},
    {"PMT 1 2 3 4 1 6 ", {}},
    {"IRR 1 2 3 ", {"flows="}},
    {"NPV 0.1 1 2 ", {"flows="}},

    // values
    {"PMT rate=", {}},
    {"YEARFRAC basis=", {"basis=30/360", "basis=ACT/360", "basis=ACT/365", "basis=ACTUAL", "basis=EU30/360"}},
    {"YEARFRAC BASIS=act/", {"basis=ACT/360", "basis=ACT/365"}},
    {"YEARFRAC nosuch=a", {}},
    {"PMT basis=A", {}},
};

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
