// The progress line: its text, and that it is drawn on a terminal, gone at the end, and nowhere else.
#include "command/tables/progress.hpp"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

namespace finance::test {
namespace {

using std::chrono::duration;

TEST(Progress, Text) {
    const duration<double> two{2.0};
    EXPECT_EQ(command::progress_text(0, 0, {}, duration<double>{0.0}), "0 rows");
    EXPECT_EQ(command::progress_text(999, 0, {}, duration<double>{0.0}), "999 rows");
    EXPECT_EQ(command::progress_text(1000, 0, {}, duration<double>{0.0}), "1,000 rows");
    EXPECT_EQ(command::progress_text(1234567, 0, {}, duration<double>{0.0}), "1,234,567 rows");
    EXPECT_EQ(command::progress_text(5000, 10, {}, two), "5,000 rows, 2,500 rows a second");
    EXPECT_EQ(command::progress_text(5000, 10, 40, two), "5,000 rows, 2,500 rows a second, 6 s left");
    EXPECT_EQ(command::progress_text(5000, 10, 1210, two), "5,000 rows, 2,500 rows a second, 4 min left");
    EXPECT_EQ(command::progress_text(5000, 50, 40, two), "5,000 rows, 2,500 rows a second, 0 s left")
        << "a file that has grown";
    EXPECT_EQ(command::progress_text(5000, 10, 40, duration<double>{0.0}), "5,000 rows");
}

// What the command draws on a terminal that is its standard error.
std::string drawn(const std::string& options) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        const std::string line =
            std::string{"printf 'r\\n1\\n' | '"} + FINANCE_COMMAND + "' map 'SLN(r, 0, 1)' " + options + " > /dev/null";
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    std::string text;
    std::array<char, 1024> buffer;
    for (ssize_t n = 0; (n = read(terminal, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(n));
    }
    waitpid(child, nullptr, 0);
    close(terminal);
    return text;
}

TEST(Progress, OnATerminal) {
    const std::string text = drawn("");
    EXPECT_EQ(text.rfind("\r\033[K1 rows, ", 0), 0U) << text;
    EXPECT_NE(text.find(" rows a second\r\033[Kfinance: map: 1 rows: 1 answered"), std::string::npos) << text;
    EXPECT_EQ(drawn("--quiet"), "");
    EXPECT_EQ(drawn("2> /dev/null"), "");
}

TEST(Progress, NoneWhereStandardErrorIsNoTerminal) {
    EXPECT_EQ(drawn("2>&1 > /dev/null | cat").find('\033'), std::string::npos);
}

}  // namespace
}  // namespace finance::test
