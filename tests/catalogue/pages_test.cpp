// Reference pages, man page and completions: what must be found in them.
#include "catalogue/pages/pages.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "catalogue/pages/command_words.hpp"
#include "catalogue/rows.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

namespace pages = catalogue::pages;

constexpr std::array fold_options{pages::Option{.name = "--by", .value = "COLUMN", .short_name = "-b"},
                                  pages::Option{"--strict"}, pages::Option{.name = "--json", .anywhere = true}};
constexpr std::array plot_option{pages::Option{"--plot", "FILE"}};
constexpr std::array loan_arguments{catalogue::number("rate", "", ""), catalogue::number("nper", "", "")};
constexpr std::array kinds{pages::FixedWord{"loan", loan_arguments}, pages::FixedWord{"other", {}}};

const std::vector<pages::Word> words{
    {"list", "", "all calculations"},
    {.word = "help", .usage = "[NAME|WORD]", .purpose = "what one answers", .takes = pages::Takes::calculation},
    {"fold", "'CALL(...)' --by COLUMN [FILE]", "it's by \"group\"", fold_options},
    {"schedule", "loan|other NAME=VALUE...", "tables", plot_option, kinds},
    {"plot", "'CALL(...)' NAME=FIRST..LAST", "a picture", plot_option, {}, pages::Takes::variable},
};
const std::vector<pages::Option> options{{"--module", "PATH", "another module"}, {"--json", "", "for machines"}};
const pages::CommandWords command{words, options, "9.8.7", "Copyright of nobody."};

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
    EXPECT_EQ(pages::typed_cases(words, {"<", ">", "CALCULATIONS", "VARIABLES"}),
              "        help) <CALCULATIONS>\n"
              "        fold) <--by --strict --json>\n"
              "        schedule) <loan other --plot>\n"
              "        'schedule loan') <rate= nper= --plot>\n"
              "        'schedule other') <--plot>\n"
              "        plot) <VARIABLES --plot>\n");
    EXPECT_EQ(pages::typed_cases({}, {}), "");
    EXPECT_EQ(pages::names_of_options(words, pages::ValueIs::columns), "--by -b");
    EXPECT_EQ(pages::names_of_options(words, pages::ValueIs::file), "--plot") << "of two words, once";
    EXPECT_EQ(pages::names_of_options(words, pages::ValueIs::other), "");
}

TEST(CommandWords, BothShellsHaveThem) {
    const std::string bash = pages::bash_completion({}, command);
    EXPECT_TRUE(contains(bash, "\n        help) echo calculations ;;\n"));
    EXPECT_TRUE(contains(bash, "\n        'schedule loan') echo rate= nper= --plot ;;\n"));
    EXPECT_TRUE(contains(bash, "\n        plot) echo variables --plot ;;\n"));
    const std::string zsh = pages::zsh_completion({}, command);
    EXPECT_TRUE(contains(zsh, "\n        help) typed=(NAME) ;;\n"));
    EXPECT_TRUE(contains(zsh, "\n        'schedule loan') typed=(rate= nper= --plot) ;;\n"));
    EXPECT_TRUE(contains(zsh, "\n        plot) typed=(VARIABLE --plot) ;;\n"));
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
    EXPECT_TRUE(contains(text, "\n.SS \"After fold\"\n.TP\n\\fB\\-b\\fR, \\fB\\-\\-by\\fR \\fICOLUMN\\fR\n"));
    EXPECT_TRUE(contains(text, "\n.SS \"After plot\"\n.TP\n\\fB\\-\\-plot\\fR \\fIFILE\\fR\n"));
    EXPECT_TRUE(contains(text, "\n.SH COPYRIGHT\nCopyright of nobody. "));
    EXPECT_TRUE(contains(text, "\n.TP\n\\fB\\&.\\fR\nA missing value.\n")) << "a dot alone is no request";
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        EXPECT_TRUE(contains(text, "\n\\fB" + std::string{calculation.name} + "\\fR ")) << calculation.name;
    }
}

TEST(Completions, HaveTheWordsThatTheCommandHas) {
    const std::string bash = pages::bash_completion(catalogue::calculations(), command);
    EXPECT_TRUE(contains(bash, "words='list help fold schedule plot'"));
    EXPECT_TRUE(contains(bash, "\n        schedule) echo loan other --plot ;;\n"));
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
