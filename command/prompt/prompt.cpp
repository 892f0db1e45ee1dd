#include "command/prompt/prompt.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "command/interruption.hpp"
#include "command/outcome.hpp"
#include "command/prompt/prompt_editor.hpp"
#include "command/prompt/prompt_history.hpp"
#include "command/prompt/prompt_session.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

constexpr const char* prompt = "finance> ";
constexpr const char* prompt_within = "      .. ";  // where a line goes on
constexpr std::string_view greeting = "? tells what can be typed, quit leaves.\n";

std::string_view without_mark(std::string_view line, std::uint64_t number) {
    const bool marked = number == 1 && line.starts_with(byte_order_mark);
    return marked ? line.substr(byte_order_mark.size()) : line;
}

// With the lines in which it goes on; nothing where the input has ended.
std::optional<PromptEditor::Line> whole_line(PromptEditor& editor) {
    auto line = editor.read(prompt);
    if (!line || line->abandoned) return line;
    JoinedLine joined;
    joined.add(without_comment(line->text));
    if (!joined.goes_on()) return line;
    do {
        auto next = editor.read(prompt_within);
        if (!next || next->abandoned) return next;
        joined.add(without_comment(next->text));
    } while (joined.goes_on());
    return PromptEditor::Line{.text = joined.text()};
}

// The same of a script; number: of the last line.
std::string whole_script_line(const std::string& first, std::uint64_t& number) {
    JoinedLine joined;
    joined.add(without_comment(without_mark(first, number)));
    for (std::string next; joined.goes_on() && std::getline(std::cin, next); ++number) {
        joined.add(without_comment(next));
    }
    return joined.text();
}

}  // namespace

bool wants_prompt() {
    const bool seen = ::isatty(STDOUT_FILENO) != 0 || ::isatty(STDERR_FILENO) != 0;
    return seen && ::isatty(STDIN_FILENO) != 0;
}

Outcome run_prompt(const Settings& settings) {
    const PromptHistory history{history_path()};
    PromptEditor editor{history.read()};
    PromptSession session{settings, LinesFrom::terminal};
    const InterruptsNoted noted;
    write_text(stderr, greeting);
    while (!session.ended()) {
        const auto line = whole_line(editor);
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
    std::cin.exceptions(std::ios::badbit);  // a line without memory for it is not the end
    int status = exit_answered;
    std::uint64_t number = 0;
    for (std::string line; !session.ended() && std::getline(std::cin, line);) {
        const std::uint64_t first = ++number;
        const Outcome outcome = session.run(whole_script_line(line, number), first);
        status = std::max(status, outcome.exit_status);
        if (!write_text(stdout, outcome.output)) return unwritten();
        write_text(stderr, relabelled(outcome.error, "", "finance: line " + std::to_string(first) + ": "));
    }
    if (std::ferror(stdin) == 0) return {status, "", ""};
    return {exit_refused, "", std::string{"finance: the input cannot be read: "} + std::strerror(errno) + '\n'};
}

}  // namespace finance::command
