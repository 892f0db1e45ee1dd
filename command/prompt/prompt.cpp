#include "command/prompt/prompt.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include "command/interruption.hpp"
#include "command/outcome.hpp"
#include "command/prompt/prompt_editor.hpp"
#include "command/prompt/prompt_history.hpp"
#include "command/prompt/prompt_session.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

constexpr const char* prompt = "finance> ";
constexpr std::string_view greeting = "? tells what can be typed, quit leaves.\n";

std::string_view without_mark(std::string_view line, std::uint64_t number) {
    const bool marked = number == 1 && line.starts_with(byte_order_mark);
    return marked ? line.substr(byte_order_mark.size()) : line;
}

}  // namespace

bool wants_prompt() {
    const bool seen = ::isatty(STDOUT_FILENO) != 0 || ::isatty(STDERR_FILENO) != 0;
    return seen && ::isatty(STDIN_FILENO) != 0;
}

Outcome run_prompt(const Settings& settings) {
    const PromptHistory history{history_path()};
    PromptEditor editor{prompt, history.read()};
    PromptSession session{settings, LinesFrom::terminal};
    const InterruptsNoted noted;
    write_text(stderr, greeting);
    while (!session.ended()) {
        const auto line = editor.read();
        if (!line || line->abandoned) write_text(stderr, "\n");
        if (!line) break;
        if (editor.remember(line->text)) history.add(line->text);
        InterruptsNoted::forget();
        const Outcome outcome = session.run(line->text);
        if (!write_text(stdout, outcome.output)) return unwritten();
        write_text(stderr, outcome.error);
    }
    return {};
}

Outcome run_script(const Settings& settings) {
    PromptSession session{settings, LinesFrom::script};
    int status = exit_answered;
    std::uint64_t number = 0;
    for (std::string line; !session.ended() && std::getline(std::cin, line);) {
        ++number;
        const Outcome outcome = session.run(without_mark(line, number), number);
        status = std::max(status, outcome.exit_status);
        if (!write_text(stdout, outcome.output)) return unwritten();
        write_text(stderr, relabelled(outcome.error, "", "finance: line " + std::to_string(number) + ": "));
    }
    if (std::ferror(stdin) == 0) return {status, "", ""};
    return {exit_refused, "", std::string{"finance: the input cannot be read: "} + std::strerror(errno) + '\n'};
}

}  // namespace finance::command
