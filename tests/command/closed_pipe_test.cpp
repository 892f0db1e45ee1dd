// An output that nobody reads any more ends the command as SIGPIPE ends others: a shell tells of 141, nothing is said.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

struct End {
    int signal = 0;
    std::string error;
};

// The words after the program's name, for a shell that replaces itself; standard output is a pipe without a reader.
End run_unread(const std::string& words) {
    const auto errors = std::filesystem::temp_directory_path() / ("closed_pipe_" + std::to_string(getpid()));
    const std::string line = "exec '" + program() + "' " + words + " 2>'" + errors.string() + "'";
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    close(ends[0]);
    const pid_t process = fork();
    if (process == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[1]);
        execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    int status = 0;
    waitpid(process, &status, 0);
    std::ifstream file{errors};
    End end{.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0, .error = {std::istreambuf_iterator<char>{file}, {}}};
    std::filesystem::remove(errors);
    return end;
}

TEST(ClosedPipe, EndsInSilence) {
    for (const char* words : {"list", "help PRICE", "PMT 0.005 360 200000", "--json PMT 0.005 2.5 200000",
                              "schedule loan 0.01 12 1000", "schedule loan 0.01 12 1000 --csv"}) {
        const End end = run_unread(words);
        EXPECT_EQ(end.signal, SIGPIPE) << words;
        EXPECT_EQ(end.error, "") << words;
    }
}

TEST(ClosedPipe, EndsTablesAndScripts) {
    const End rows = run_unread("map 'FV($1, 2, 3)' --no-header '" TEST_DATA "/rates.csv'");
    EXPECT_EQ(rows.signal, SIGPIPE);
    EXPECT_EQ(rows.error, "");
    const auto script = std::filesystem::temp_directory_path() / ("closed_pipe_script_" + std::to_string(getpid()));
    std::ofstream{script} << "NOSUCH 1\nPMT 0.005 360 200000\nNOSUCH 2\n";
    const End lines = run_unread("<'" + script.string() + "'");
    EXPECT_EQ(lines.signal, SIGPIPE);
    EXPECT_EQ(lines.error.find("line 3"), std::string::npos) << lines.error;  // nothing after the answer
    std::filesystem::remove(script);
}

TEST(ClosedPipe, EndsSoWhereTheSignalWasIgnored) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const End end = run_unread("list");
    std::signal(SIGPIPE, before);
    EXPECT_EQ(end.signal, SIGPIPE);
}

}  // namespace
}  // namespace finance::test
