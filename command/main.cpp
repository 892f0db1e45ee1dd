#include <csignal>

#include "command/command_line.hpp"

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is reported like a full disk
    return finance::command::deliver(finance::command::run(argc, argv));
}
