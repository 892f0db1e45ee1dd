#include <csignal>

#include "command/command_line.hpp"

// A limit on a file's size is noticed where it is written. A closed pipe is noticed where something is written: gnuplot's ends in a sentence, the output's as it does elsewhere.
int main(int argc, char** argv) {
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
    const int status = finance::command::deliver(finance::command::run(argc, argv));
    if (status != finance::command::exit_closed_pipe) return status;
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    return status;
}
