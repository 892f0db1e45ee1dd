// Reference pages, man page and completions: what must be found in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "catalogue/pages/bash_completion.hpp"
#include "catalogue/pages/command_words.hpp"
#include "catalogue/pages/man_page.hpp"
#include "catalogue/pages/page_files.hpp"
#include "catalogue/pages/reference.hpp"
#include "catalogue/pages/zsh_completion.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

namespace pages = catalogue::pages;

const std::vector<pages::Word> words{
    {"list", "", "all calculations"},
    {"help", "[NAME|WORD]", "what one answers"},
    {"fold", "'CALL(...)' --by COLUMN [FILE]", "it's by \"group\"",
     "Options\n  --strict  stops\n  --by COLUMN, --quiet"},
    {"schedule", "loan|depreciation NAME=VALUE... [--plot FILE]", "tables"},
};
const std::vector<pages::Option> options{{"--module", "PATH", "another module"}, {"--json", "", "for machines"}};
const pages::CommandWords command{words, options, "9.8.7"};

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

// Without the marks that keep Markdown or roff from taking a character for its own.
std::string unescaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c != '\\') result += c;
    }
    return result;
}

TEST(CommandWords, WhatIsTypedAsItStands) {
    using List = std::vector<std::string>;
    EXPECT_EQ(pages::typed_words(words[0]), List{});
    EXPECT_EQ(pages::typed_words(words[1]), List{});
    EXPECT_EQ(pages::typed_words(words[2]), (List{"--by", "--strict", "--quiet"}));
    EXPECT_EQ(pages::typed_words(words[3]), (List{"loan", "depreciation", "--plot"}));
    EXPECT_EQ(pages::typed_words({"x", "[--no-header] [--output=FILE] -- --A --x1 y a=b", ""}),
              (List{"--no-header", "--output"}));
}

TEST(CommandWords, WhatFollowsAFixedWord) {
    using List = std::vector<std::string>;
    const pages::Word tables{"schedule", "loan|other NAME=VALUE...", "tables",
                             "tables\n  finance schedule loan rate=... [fv=...] [OPTION]\n  --csv\n"
                             "  finance schedule loan rate=1 more=2\n"};
    EXPECT_EQ(pages::typed_words(tables, "loan"), (List{"rate=", "fv=", "--csv"}));
    EXPECT_EQ(pages::typed_words(tables, "other"), List{});
    EXPECT_EQ(pages::fixed_words(tables), (std::vector<std::string_view>{"loan", "other"}));
    const pages::CommandWords one{{&tables, 1}, {}, "1"};
    EXPECT_TRUE(contains(pages::bash_completion({}, one), "\n        'schedule loan') echo rate= fv= --csv ;;\n"));
    EXPECT_TRUE(contains(pages::zsh_completion({}, one), "\n        'schedule loan') typed=(rate= fv= --csv) ;;\n"));
}

TEST(CommandWords, WhereARangeFollows) {
    EXPECT_TRUE(pages::takes_variable({"plot", "'CALL(...)' NAME=FIRST..LAST", ""}));
    EXPECT_FALSE(pages::takes_variable(words[3]));
}

TEST(CommandWords, WhereACalculationFollows) {
    EXPECT_FALSE(pages::takes_calculation(words[0]));
    EXPECT_TRUE(pages::takes_calculation(words[1]));
    EXPECT_FALSE(pages::takes_calculation(words[3]));
    EXPECT_FALSE(pages::takes_calculation({"x", "RENAMED", ""}));
}

std::string page_of(const catalogue::Calculation& calculation) {
    return pages::reference_page(calculation, catalogue::family_of(calculation));
}

const catalogue::Family bonds{"Bonds", {}};

TEST(Reference, TellsAllThatTheCatalogueKnows) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = unescaped(page_of(calculation));
        for (const std::string_view part :
             {calculation.name, calculation.answers, calculation.formula, calculation.remarks, calculation.failure,
              calculation.example.arguments, calculation.example.result}) {
            EXPECT_TRUE(contains(text, part)) << calculation.name << ": " << part;
        }
        for (const catalogue::Parameter& parameter : calculation.parameters) {
            for (const std::string_view part : {parameter.name, parameter.unit, parameter.meaning, parameter.rule}) {
                EXPECT_TRUE(contains(text, part)) << calculation.name << ": " << part;
            }
        }
    }
}

TEST(Reference, AnArgumentIsARowOfTheTable) {
    const std::string text = pages::reference_page(bond, bonds);
    EXPECT_TRUE(
        contains(text, "\n| | name | kind | unit | default | what it is | rule |\n|---|---|---|---|---|---|---|\n"));
    EXPECT_TRUE(
        contains(text, "\n| 4 | `frequency` | whole number | | required | coupons a year | must be at least 1 |\n"));
    EXPECT_TRUE(contains(text, "\n| 5 | `basis` | day-count basis | | default 30/360 | day count |"));
}

TEST(Reference, MarkdownTakesNothingForItsOwn) {
    catalogue::Calculation calculation = bond;
    calculation.remarks = "a|b, a * b * c, <tag>, `code`, [link]";
    EXPECT_TRUE(contains(pages::reference_page(calculation, bonds),
                         "\na\\|b, a \\* b \\* c, \\<tag\\>, \\`code\\`, \\[link\\]\n"));
}

TEST(Reference, TheIndexLinksEveryPageUnderItsFamily) {
    const std::string text = pages::reference_index(catalogue::families());
    int families = 0;
    for (const catalogue::Family& family : catalogue::families()) {
        const std::size_t begin = text.find("\n## " + std::string{family.title} + '\n');
        ASSERT_NE(begin, std::string::npos) << family.title;
        const std::string section = text.substr(begin, text.find("\n## ", begin + 1) - begin);
        for (const catalogue::Calculation& calculation : family.calculations) {
            const std::string name{calculation.name};
            EXPECT_TRUE(contains(section, "\n| [" + name + "](" + name + ".md) | ")) << name;
        }
        ++families;
    }
    EXPECT_EQ(families, 11);
    EXPECT_TRUE(contains(page_of(*catalogue::find("PMT")), "(README.md#annuities-and-loans)"));
}

TEST(ManPage, EveryLineIsARequestThatItKnowsOrText) {
    const std::vector<std::string> known{".\\\"", ".TH", ".SH", ".SS", ".TP", ".PP", ".br", ".nf", ".fi", ".RS", ".RE"};
    const std::string text = pages::man_page(catalogue::families(), command);
    int requests = 0;
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
        EXPECT_NE(text[begin], '\'');
        if (text[begin] != '.') continue;
        const std::string request = text.substr(begin, text.find_first_of(" \n", begin) - begin);
        EXPECT_NE(std::ranges::find(known, request), known.end()) << request;
        ++requests;
    }
    EXPECT_GT(requests, std::ssize(catalogue::calculations())) << "one each, and the headings";
}

TEST(ManPage, WordsOptionsAndCalculations) {
    const std::string text = pages::man_page(catalogue::families(), command);
    EXPECT_TRUE(contains(text, "\"zelkovan 9.8.7\""));
    EXPECT_TRUE(
        contains(text, "\n\\fBfold\\fR \\(aqCALL(...)\\(aq \\-\\-by COLUMN [FILE]\nit\\(aqs by \\(dqgroup\\(dq\n"));
    EXPECT_TRUE(contains(text, "\n.TP\n\\fB\\-\\-module\\fR \\fIPATH\\fR\nanother module\n"));
    EXPECT_TRUE(contains(text, "\n.TP\n\\fB\\&.\\fR\nA missing value.\n")) << "a dot alone is no request";
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        EXPECT_TRUE(contains(text, "\n\\fB" + std::string{calculation.name} + "\\fR ")) << calculation.name;
    }
}

TEST(Completions, HaveTheWordsThatTheCommandHas) {
    const std::string bash = pages::bash_completion(catalogue::calculations(), command);
    EXPECT_TRUE(contains(bash, "words='list help fold schedule'"));
    EXPECT_TRUE(contains(bash, "\n        schedule) echo loan depreciation --plot ;;\n"));
    EXPECT_TRUE(contains(bash, "\n        MIRR) echo flows=+ financeRate= reinvestRate= ;;\n"));
    const std::string zsh = pages::zsh_completion(catalogue::calculations(), command);
    EXPECT_TRUE(contains(zsh, "\n        'fold:it'\\''s by \"group\"'\n"));
    EXPECT_TRUE(contains(zsh, "\n    '--module=[another module]:PATH:_files'\n"));
    EXPECT_TRUE(contains(zsh, "'MIRR:Modified internal rate of return\\: with one rate"));
}

TEST(PageFiles, OneAPageAndNoneTwice) {
    std::vector<std::string> paths;
    for (const pages::PageFile& file : pages::page_files(command)) {
        EXPECT_TRUE(file.text.ends_with('\n')) << file.path;
        paths.push_back(file.path.string());
    }
    std::ranges::sort(paths);
    EXPECT_EQ(paths.size(), catalogue::calculations().size() + 1 + 1 + 2);
    EXPECT_EQ(std::ranges::adjacent_find(paths), paths.end());
}

TEST(PageFiles, AFolderThatCannotBeWrittenIsNamed) {
    EXPECT_THROW(pages::write_files("/dev/null", {{"docs/page.md", "text"}}), std::runtime_error);
}

}  // namespace
}  // namespace finance::test
