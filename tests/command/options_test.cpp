// The words after a job, read by a table of options.
#include "command/options.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "command/jobs.hpp"
#include "command/usage_error.hpp"

namespace finance::test {
namespace {

using command::Option;
using Texts = std::vector<std::string_view>;

constexpr std::array table{
    Option{"--by", "COLUMN", "groups"},
    Option{"--count", "N", "how many,\nat most 20", {2, 20}},
    Option{.name = "--quiet", .help = "says nothing", .short_name = "-q"},
    command::json_option("objects"),
    Option{"--more", "", ""},
};

command::OptionsGiven read(const Texts& words, const command::OptionStyle& style = {.job = "map", .explains = true}) {
    return command::read_options(table, words, style);
}

std::string fault(const Texts& words, const command::OptionStyle& style = {.job = "map", .explains = true}) {
    try {
        (void)read(words, style);
    } catch (const command::UsageError& error) {
        EXPECT_EQ(error.hint(), "finance help map");
        return error.what();
    }
    return "none";
}

TEST(Options, StandAnywhereAmongTheWords) {
    const auto given = read({"a", "--by", "x", "-", "--by=y=z", "--quiet", "--count=7", "-b"});
    EXPECT_EQ(given.places, (Texts{"a", "-", "-b"}));
    EXPECT_EQ(given.values("--by"), (Texts{"x", "y=z"}));
    EXPECT_EQ(given.value("--by"), "y=z");
    EXPECT_TRUE(given.has("--quiet"));
    EXPECT_FALSE(given.has("--more"));
    EXPECT_EQ(given.value("--more"), std::nullopt);
    EXPECT_EQ(given.number("--count", 3), 7U);
    EXPECT_EQ(read({}).number("--count", 3), 3U);
    EXPECT_FALSE(given.help);
}

TEST(Options, HaveAShortForm) {
    EXPECT_TRUE(read({"-q"}).has("--quiet"));
    EXPECT_TRUE(read({"-h"}).help);
    for (const command::Job* job : {&command::map_job, &command::fold_job}) {
        const auto given =
            command::read_options(job->options, Texts{"-o", "out.csv", "-d", ";", "-q", "-"}, {.job = job->word});
        EXPECT_EQ(given.value("--output"), "out.csv");
        EXPECT_EQ(given.value("--delimiter"), ";");
        EXPECT_TRUE(given.has("--quiet"));
        EXPECT_EQ(given.places, Texts{"-"});
    }
    EXPECT_EQ(command::read_options(command::plot_job.options, Texts{"-o", "p.svg"}, {.job = "plot"}).value("--output"),
              "p.svg");
    EXPECT_TRUE(read({"--help"}).help);
}

TEST(Options, AValueInARangeIsAWholeNumber) {
    for (const std::string_view text : {"2", "20"}) EXPECT_EQ(fault({"--count", text}), "none");
    for (const std::string_view text : {"1", "21", "", "2.5", "x", "-3", "3x", " 3", "99999999999999999999999"}) {
        EXPECT_EQ(fault({"--count", text}, {.job = "map"}),
                  "map: --count is a whole number from 2 to 20, not '" + std::string{text} + "'");
    }
}

struct Fault {
    Texts words;
    std::string_view explained, bare;
};

const std::array faults{
    Fault{{"--quite"}, "map: no option is called --quite (did you mean --quiet?)", "map: no option is called --quite"},
    Fault{{"--qui=1"}, "map: no option is called --qui (did you mean --quiet?)", "map: no option is called --qui=1"},
    Fault{{"--json"}, "map: no option is called --json", "map: no option is called --json"},
    Fault{{"--quiet=1"}, "map: --quiet takes no value", "map: no option is called --quiet=1"},
    Fault{{"--help="}, "map: --help takes no value", "map: no option is called --help="},
    Fault{{"--by"}, "map: --by needs a value", "none"},
    Fault{{"--by="}, "map: --by needs a value", "none"},
    Fault{{"--by", ""}, "map: --by needs a value", "none"},
    Fault{{"--help", "--unheard"}, "map: no option is called --unheard", "map: no option is called --unheard"},
};

TEST(Options, WhatCannotBeTakenIsNamed) {
    for (const Fault& row : faults) {
        EXPECT_EQ(fault(row.words), row.explained);
        EXPECT_EQ(fault(row.words, {.job = "map"}), row.bare);
    }
    EXPECT_EQ(fault({"--help", "--unheard"}, {.job = "map", .help_ends = true}), "none");
    EXPECT_EQ(read({"--by"}, {.job = "map"}).value("--by"), "");
}

TEST(Options, LinesOfHelpStandBelowEachOther) {
    EXPECT_EQ(command::option_lines(table),
              "      --by COLUMN   groups\n"
              "      --count N     how many,\n"
              "                    at most 20\n"
              "  -q, --quiet       says nothing\n"
              "      --json        objects\n");
    EXPECT_EQ(command::option_lines(std::span{table}.subspan(3)), "  --json   objects\n");
}

// What completions and pages say of a job is what it reads, and its help has a line on each.
TEST(Options, OfEveryJobAreInItsHelp) {
    int checked = 0;
    for (const command::Job& job : command::jobs()) {
        for (const Option& option : job.options) {
            ASSERT_NE(job.help, nullptr);
            EXPECT_NE(job.help().find(option.name), std::string::npos) << job.word << ' ' << option.name;
            ++checked;
        }
    }
    EXPECT_EQ(checked, 14 + 15 + 4 + 3);
}

}  // namespace
}  // namespace finance::test
