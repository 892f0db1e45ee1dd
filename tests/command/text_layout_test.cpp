// Texts within a width. Expected lines: broken by hand.
#include "command/text_layout.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "command/jobs.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using command::fitted;
using command::wrapped;

std::size_t widest_line(const std::string& text) {
    std::size_t widest = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        widest = std::max(widest, end - begin);
        begin = end + 1;
    }
    return widest;
}

// Without blanks, line ends, and the marks that join the lines of a call.
std::string letters(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c != ' ' && c != '\n' && c != '\\') result += c;
    }
    return result;
}

TEST(TextLayout, LinesAreBrokenAtBlanks) {
    const std::string long_word(120, 'x');
    EXPECT_EQ(wrapped("a b", 2), "  a b\n");
    EXPECT_EQ(wrapped("a\nb", 1), " a\n b\n");
    EXPECT_EQ(wrapped(long_word, 0), long_word + "\n");
    EXPECT_EQ(wrapped(std::string(60, 'a') + ' ' + std::string(60, 'b'), 2),
              "  " + std::string(60, 'a') + "\n  " + std::string(60, 'b') + '\n');
    EXPECT_EQ(wrapped(std::string(49, 'a') + ' ' + std::string(50, 'b'), 0),
              std::string(49, 'a') + ' ' + std::string(50, 'b') + '\n')
        << "100 characters fit";
    EXPECT_EQ(wrapped("one two three", 2, 9), "  one two\n  three\n");
}

TEST(TextLayout, ACallIsBrokenAsAShellJoinsItOutsideQuotationMarks) {
    EXPECT_EQ(command::wrapped_call("finance map 'PMT(a, b)' file", 24), "  finance map \\\n  'PMT(a, b)' file\n");
    EXPECT_EQ(fitted("  finance map 'PMT(a, b, c)' file.csv\n", 28), "  finance map \\\n  'PMT(a, b, c)' file.csv\n");
}

TEST(TextLayout, AColumnGoesOnBelowItself) {
    EXPECT_EQ(fitted("  --by X   one two three four\n", 22), "  --by X   one two\n           three four\n");
    EXPECT_EQ(fitted("  --a-long-name X   one two three four\n", 24), "  --a-long-name X\n      one two three four\n");
}

TEST(TextLayout, ParagraphsAreBrokenAnewWhereALineWasFull) {
    const std::string words(97, 'a');
    EXPECT_EQ(fitted(words + " b\nnext\nshort\n\nend\n", 98), words + "\nb next\nshort\n\nend\n");
    EXPECT_EQ(fitted(words + " b\nnext\n", 99), words + " b\nnext\n") << "fits";
}

TEST(TextLayout, HelpOfEveryJobFitsAndLosesNothing) {
    int checked = 0;
    for (const command::Job& job : command::jobs()) {
        if (job.help == nullptr) continue;
        for (const std::size_t width : {100U, 80U, 70U}) {
            const std::string text = fitted(job.help(), width);
            EXPECT_LE(widest_line(text), width) << text;
            EXPECT_EQ(letters(text), letters(job.help()));
            ++checked;
        }
    }
    EXPECT_EQ(checked, 3 * 4);
}

TEST(TextLayout, NotOnATerminalNothingChanges) {
    EXPECT_EQ(run_command("help map | cat").output, command::map_job.help());
    EXPECT_GT(widest_line(command::map_job.help()), 100U);
}

}  // namespace
}  // namespace finance::test
