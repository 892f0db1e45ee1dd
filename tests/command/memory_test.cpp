// Where memory runs out the command says so, in a sentence. Its address space is limited, and it is given long lines.
#include <gtest/gtest.h>

#include <string>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

// What a command that has 120 MB says of a script of one line, so many million digits.
CommandRun run_long_line(const std::string& millions, const std::string& arguments) {
    return run_command("--version >/dev/null && ulimit -v 120000 && head -c " + millions +
                       "000000 /dev/zero | tr '\\000' 1 | '" + program() + "' " + arguments + " 2>&1");
}

TEST(CommandMemory, ALineThatIsTooLongIsASentence) {
    const CommandRun got = run_long_line("60", "");
    EXPECT_EQ(got.exit_status, 1);
    EXPECT_EQ(got.output, "finance: there is not enough memory\n");
    const CommandRun json = run_long_line("60", "--json");
    EXPECT_EQ(json.exit_status, 1);
    EXPECT_NE(json.output.find("\"there is not enough memory\""), std::string::npos) << json.output;
}

TEST(CommandMemory, ALineThatCanBeReadAndNotWorkedOnIsASentence) {
    const CommandRun got = run_long_line("30", "");
    EXPECT_EQ(got.exit_status, 1);
    EXPECT_EQ(got.output.substr(0, 200), "finance: line 1: there is not enough memory\n");
}

}  // namespace
}  // namespace finance::test
