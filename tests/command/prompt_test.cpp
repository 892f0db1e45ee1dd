// Scripts through the built command, and the history file.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/prompt/prompt_history.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

// ---- Scripts

CommandRun run_script(const std::string& script, const std::string& options = "") {
    return run_command(options + " <<'END OF SCRIPT'\n" + script + "\nEND OF SCRIPT\n");
}

struct ScriptCase {
    const char* id;
    const char* script;
    const char* output;
    const char* source;
};

constexpr ScriptCase answered[] = {
    {"blank lines and comments", "\n# nothing\n   \t\n  # nothing either\nRATE 10 -10 100 # ten times ten\n", "0\n",
     "ten payments of 10 repay 100 without interest"},
    {"names in lower case", "rate 10 -10 100", "0\n", "as above"},
    {"quoted values", "RATE 10 '-10' \"100\"\nNPV 0.25 flows='0,125'", "0\n80\n", "125 / 1.25^2"},
    {"carriage returns", "RATE 10 -10 100\r\nNPV 0.25 0 125\r\n", "0\n80\n", "as above"},
    {"a byte-order mark", "\xEF\xBB\xBFRATE 10 -10 100", "0\n", "as above"},
    {"the last line without an end", "RATE 10 -10 100", "0\n", "as above"},
    {"quit", "RATE 10 -10 100\nquit\nPMT\n", "0\n", "what follows quit is not looked at"},

    {"exit", "RATE 10 -10 100\nexit\nPMT\n", "0\n", "as quit"},

    {"the last answer, a date", "COUPNCD 2025-01-20 2030-11-15 2\nCOUPNCD _ 2030-11-15 2", "2025-05-15\n2025-11-15\n",
     "half a year on; the date stands for its days"},
    {"the last answer alone", "COUPNCD 2025-01-20 2030-11-15 2\n_\nRATE 10 -10 100\n_",
     "2025-05-15\n2025-05-15\n0\n0\n", "as it was printed"},
};

TEST(Script, Answers) {
    for (const ScriptCase& row : answered) {
        SCOPED_TRACE(row.id);
        const CommandRun run = run_script(row.script);
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.output, row.output) << row.source;
        EXPECT_EQ(run.error, "");
    }
}

// The same value typed with all its digits.
struct LastAnswerCase {
    const char* id;
    const char* with_mark;
    const char* typed;
};

constexpr LastAnswerCase last_answers[] = {
    {"in order", "PV 0.005 360 _", "PV 0.005 360 -1199.1010503055047"},
    {"by name", "PV nper=360 pmt=_ rate=0.005", "PV 0.005 360 -1199.1010503055047"},
    {"of a list", "NPV 0.1 _ 300 _", "NPV 0.1 -1199.1010503055047 300 -1199.1010503055047"},
    {"between commas", "IRR _,700,_,4e3", "IRR -1199.1010503055047,700,-1199.1010503055047,4e3"},
    {"between commas, by name", "IRR flows=_,2e3", "IRR flows=-1199.1010503055047,2e3"},
    {"the latest", "PV 0.005 360 -1\nPV 0.005 360 _", "PV 0.005 360 -1\nPV 0.005 360 166.7916143923353"},
    {"a missing one", "PV 0 12 -100\nPMT 0.01 12 100 _", "PV 0 12 -100\nPMT 0.01 12 100 ."},
    {"after one that was refused", "PMT 0 1 1\nPV 0.005 360 _", "PMT 0 1 1\nPV 0.005 360 -1199.1010503055047"},
};

TEST(Script, TheLastAnswerIsAValueToTheLastDigit) {
    for (const LastAnswerCase& row : last_answers) {
        SCOPED_TRACE(row.id);
        const std::string payment = "PMT 0.005 360 200000\n";
        const CommandRun typed = run_script(payment + row.typed);
        EXPECT_EQ(typed.output.find("-1199.1010503055047\n"), 0U) << typed.output;
        EXPECT_GT(typed.output.size(), payment.size());
        EXPECT_EQ(run_script(payment + row.with_mark).output, typed.output);
    }
}

struct FaultCase {
    const char* id;
    const char* script;
    int exit_status;
    const char* output;
    const char* error;
};

constexpr FaultCase faults[] = {
    {"refused", "PMT 0.005 2.5 1\nRATE 10 -10 100", 1, "0\n",
     "finance: line 1: PMT: argument 2 (nper): 2.5 is not a whole number\n"},
    {"wrong usage", "\n\nPTM 1\nRATE 10 -10 100", 2, "0\n",
     "finance: line 3: no calculation is called 'PTM' (did you mean PMT?) (try: list)\n"},
    {"wrong usage weighs more than a refusal", "PMT 1 2\nPMT 0.005 2.5 1", 2, "",
     "finance: line 1: PMT: too few arguments: no pv (try: help PMT)\n"
     "finance: line 2: PMT: argument 2 (nper): 2.5 is not a whole number\n"},
    {"a fault leaves the last answer", "NPV 0.25 0 125\nPMT 0.005 2.5 1\n_", 1, "80\n80\n",
     "finance: line 2: PMT: argument 2 (nper): 2.5 is not a whole number\n"},
    {"no last answer", "PMT 0.005 360 _", 2, "",
     "finance: line 1: nothing has been answered yet that _ could stand for (try: ?)\n"},
    {"nothing to print again", "_", 2, "",
     "finance: line 1: nothing has been answered yet that _ could stand for (try: ?)\n"},
    {"a table from the script itself", "RATE 10 -10 100\nmap 'PMT(a)'\nfold 'NPV(0.1,a)' --by b -\nRATE 10 -10 100", 2,
     "0\n0\n",
     "finance: line 2: map: standard input is the script: name the file of the table (try: help map)\n"
     "finance: line 3: fold: standard input is the script: name the file of the table (try: help fold)\n"},
    {"half a quotation", "PMT '1", 2, "", "finance: line 1: no second ' follows (try: ?)\n"},
    {"options", "--version", 2, "", "finance: line 1: no option is called --version (try: help)\n"},
};

TEST(Script, FaultsAreToldWithTheirLine) {
    for (const FaultCase& row : faults) {
        SCOPED_TRACE(row.id);
        const CommandRun run = run_script(row.script);
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, row.output);
        EXPECT_EQ(run.error, row.error);
    }
}

TEST(Script, ASearchWithoutResultAnswersADotAndSaysWhy) {
    const CommandRun run = run_script("XIRR 100 100 0 365");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, ".\n");
    EXPECT_EQ(run.error,
              "finance: line 1: XIRR: no answer: the values do not change sign: a rate needs money paid and money "
              "received\n");
}

// A file with that text while it lives.
class TextFile {
public:
    explicit TextFile(std::string_view text) { std::ofstream{path_} << text; }
    ~TextFile() { std::filesystem::remove(path_); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    [[nodiscard]] std::string quoted() const { return std::string{"'"}.append(path_.string()).append("'"); }

private:
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("finance_text_" + std::to_string(::getpid()));
};

TEST(Script, ATableFromAFile) {
    const TextFile table{"n\n10\n"};
    EXPECT_EQ(run_script("map 'RATE(n,-10,100)' --quiet " + table.quoted()).output, "n,rate\n10,0\n");
}

TEST(Script, AZeroByteIsNoText) {
    using namespace std::string_view_literals;
    const TextFile script{"RATE 10 -10 10\0000\nRATE 10 -10 100\n"sv};
    const CommandRun run = run_command(std::string{"<"}.append(script.quoted()));
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_EQ(run.output, "0\n");
    EXPECT_EQ(run.error, "finance: line 1: a zero byte stands in the line: text is needed, in UTF-8 (try: ?)\n");
}

TEST(Script, Nothing) {
    const CommandRun run = run_command("</dev/null");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "");
}

TEST(Script, EveryExampleGivesItsResult) {
    std::string script;
    std::string results;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        script.append(calculation.name).append(" ").append(calculation.example.arguments).append("\n");
        results.append(calculation.example.result).append("\n");
    }
    const CommandRun run = run_script(script);
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, results);
    EXPECT_EQ(run.error, "");
}

TEST(Script, HelpIsThatOfTheCommand) {
    const std::string help = run_command("help PMT").output;
    EXPECT_FALSE(help.empty());
    EXPECT_EQ(run_script("?PMT").output, help);
    EXPECT_EQ(run_script("? pmt").output, help);
    EXPECT_EQ(run_script("help PMT").output, help);
    EXPECT_EQ(run_script("PMT 1 --help").output, help);
    EXPECT_EQ(run_script("list").output, run_command("list").output);
    EXPECT_EQ(run_script("help").output, run_command("help").output);
    const CommandRun page = run_script("?");
    EXPECT_EQ(page.exit_status, 0);
    EXPECT_EQ(page.output.rfind("NAME ARGUMENT...", 0), 0U);
    EXPECT_NE(page.output.find("quit"), std::string::npos);
}

std::string at_line(int number, const std::string& object) {
    return "{\"line\":" + std::to_string(number) + ',' + object.substr(1);
}

TEST(Script, ForMachines) {
    const std::string call = "NPV 0.25 0 125";
    const std::string object = run_command(call + " --json").output;
    EXPECT_NE(object.find("\"value\":80"), std::string::npos) << object;
    EXPECT_EQ(run_script(call, "--json").output, at_line(1, object));
    EXPECT_EQ(run_script("# first\n\n" + call + " --json\n" + call).output, at_line(3, object) + "80\n");
    EXPECT_EQ(run_script(call + "\n_ --json").output, "80\n80\n") << "the answer as it was printed";
    const CommandRun wrong = run_script("PMT 1", "--json");
    EXPECT_EQ(wrong.exit_status, 2);
    EXPECT_EQ(wrong.output, at_line(1, run_command("PMT 1 --json").output));
    EXPECT_EQ(wrong.error, "");
}

TEST(Script, WithoutAModule) {
    const CommandRun run = run_script("list\nPMT 1 2 3\n?PMT", "--module /nowhere/zelkovan.so");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.output, run_command("list").output + run_command("help PMT").output);
    EXPECT_EQ(run.error, "finance: line 2: there is no module at /nowhere/zelkovan.so\n");
}

TEST(Script, StreamsThatFail) {
    const CommandRun full = run_command(">/dev/full <<'END'\nRATE 10 -10 100\nPMT\nEND\n");
    EXPECT_EQ(full.exit_status, 1);
    EXPECT_EQ(full.error, "finance: the output cannot be written: No space left on device\n");
    const CommandRun folder = run_command("</");
    EXPECT_EQ(folder.exit_status, 1);
    EXPECT_EQ(folder.error, "finance: the input cannot be read: Is a directory\n");
}

// ---- History

class History : public testing::Test {
protected:
    History() { std::filesystem::create_directories(folder_); }
    ~History() override { std::filesystem::remove_all(folder_); }

    static std::size_t lines_of(const std::filesystem::path& path) {
        std::ifstream file{path};
        std::size_t lines = 0;
        for (std::string line; std::getline(file, line);) ++lines;
        return lines;
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("finance_history_" + std::to_string(::getpid()));
    const std::filesystem::path file_ = folder_ / "state" / "finance" / "history";
};

TEST_F(History, KeepsLinesInOrder) {
    const command::PromptHistory history{file_};
    EXPECT_TRUE(history.read().empty());
    history.add("PMT 1 2 3");
    history.add("  é '#'");
    EXPECT_EQ(history.read(), (std::vector<std::string>{"PMT 1 2 3", "  é '#'"}));
    struct stat about {};
    ASSERT_EQ(::stat(file_.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(file_.parent_path().c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777U, 0700U);
}

TEST_F(History, KeepsTheLatestLines) {
    const command::PromptHistory history{file_};
    const std::size_t most = 2 * command::kept_lines;
    for (std::size_t i = 1; i <= most; ++i) history.add(std::to_string(i));
    EXPECT_EQ(history.read().size(), command::kept_lines);
    EXPECT_EQ(lines_of(file_), most) << "left alone until it has more";
    history.add("the last");
    const std::vector<std::string> lines = history.read();
    ASSERT_EQ(lines.size(), command::kept_lines);
    EXPECT_EQ(lines.front(), std::to_string(command::kept_lines + 2));
    EXPECT_EQ(lines.back(), "the last");
    EXPECT_EQ(lines_of(file_), command::kept_lines);
    EXPECT_EQ(history.read(), lines);
}

TEST_F(History, APlaceThatCannotBeWrittenIsOfNoConsequence) {
    std::ofstream{folder_ / "state"} << "a file where a folder should be";
    const command::PromptHistory history{file_};
    history.add("PMT 1 2 3");
    EXPECT_TRUE(history.read().empty());
    const command::PromptHistory nowhere{{}};
    nowhere.add("PMT 1 2 3");
    EXPECT_TRUE(nowhere.read().empty());
}

TEST_F(History, IsWhereTheEnvironmentSays) {
    ::setenv("HOME", "/home/somebody", 1);
    ::unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(command::history_path(), "/home/somebody/.local/state/finance/history");
    ::setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(command::history_path(), "/home/somebody/.local/state/finance/history");
    ::setenv("XDG_STATE_HOME", "/state", 1);
    EXPECT_EQ(command::history_path(), "/state/finance/history");
    ::unsetenv("XDG_STATE_HOME");
    ::unsetenv("HOME");
    EXPECT_EQ(command::history_path(), "");
}

}  // namespace
}  // namespace finance::test
