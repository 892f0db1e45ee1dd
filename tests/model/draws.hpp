// Calls with the verdict that they must have, one a line, as tests/model/draw.py writes them.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/call.hpp"

namespace finance::test {

struct Draw {
    std::string name;
    std::vector<Arg> arguments;
    Status status = 0;
    std::vector<int> flagged;
    std::string result;  // 16 hexadecimal digits, or "untouched"
};

Draw draw_of(const std::string& line);

// Those that the shell command prints. A command that ends with another status than 0 is a failure of the test.
std::vector<Draw> read_draws(const std::string& command);

// Whether that is the draw's result. An answer of the arithmetic may be any NaN; the missing value is one NaN only.
bool same_result(const Draw& draw, bool written, double value);

struct DrawCounts {
    int checked = 0;
    int answered = 0;
};

// Runs every line that the shell command prints through the handler and through the dispatcher, and expects its verdict
// bit for bit, and of the command that it ends with status 0.
DrawCounts check_draws(const std::string& command);

}  // namespace finance::test
