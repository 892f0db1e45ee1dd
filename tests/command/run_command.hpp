// Runs the built command as a person would, through the shell.
#pragma once

#include <string>

namespace finance::test {

struct CommandRun {
    int exit_status = -1;
    std::string output{};
    std::string error{};
};

// arguments: shell text, redirections included; environment: NAME=VALUE... for the command alone. The program: environment
// variable FINANCE_COMMAND, else the built one.
std::string program();
CommandRun run_command(const std::string& arguments, const std::string& environment = {});

}  // namespace finance::test
