#include "command/command_line.hpp"

#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/evaluate.hpp"
#include "command/help.hpp"
#include "command/module_path.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view jobs =
    "Usage\n"
    "  finance [--module PATH] NAME ARGUMENT...   evaluate a calculation\n"
    "  finance list                               all calculations\n"
    "  finance help NAME                          what one answers, its arguments, formula, an example\n"
    "  finance --version\n"
    "\n"
    "Arguments\n"
    "  in order, or as name=value after those in order: finance PMT rate=0.005 nper=360 pv=200000\n"
    "  numbers   200000, -1e5, 5.75%\n"
    "  dates     2008-02-15, or days since 1960-01-01\n"
    "  basis     30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4\n"
    "  lists     one value after the other, or separated by commas\n"
    "  .         a missing value; name= leaves an argument out\n"
    "\n"
    "Exit status\n"
    "  0 answered (. where the answer is a missing value), 1 refused, 2 wrong usage\n"
    "\n"
    "Options, before the name\n"
    "  --module PATH   use this zelkovan.so instead of the installed one\n";

struct CommandLine {
    std::filesystem::path module{};
    std::vector<std::string> words{};
    bool version = false;
    bool help = false;
};

// Options end where the first word begins: what follows, -100 say, is a value.
CommandLine read_command_line(int argc, const char* const* argv) {
    CommandLine line;
    CLI::App app;
    app.prefix_command();
    app.set_help_flag();
    std::string module;
    CLI::Option* told = app.add_option("--module", module);
    app.add_flag("--version", line.version);
    app.add_flag("--help,-h", line.help);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        throw UsageError{error.what(), "finance help"};
    }
    if (told->count() > 0 && module.empty()) throw UsageError{"--module needs a path", "finance help"};
    line.module = module;
    line.words = app.remaining();
    std::erase(line.words, "--");
    return line;
}

bool asks_for_help(std::string_view word) { return word == "--help" || word == "-h"; }

Outcome answer(std::string text) { return {exit_answered, std::move(text), ""}; }

Outcome help(Words words) {
    if (words.size() > 1) throw UsageError{"help takes one name", "finance list"};
    if (words.empty()) return answer(std::string{jobs});
    return answer(help_text(calculation_named(words.front())));
}

Outcome list(Words words) {
    if (!words.empty()) throw UsageError{"list takes no argument", "finance help " + std::string{words.front()}};
    return answer(list_text(catalogue::families()));
}

Outcome calculate(std::string_view name, Words arguments, const std::filesystem::path& module) {
    if (name.starts_with('-')) throw UsageError{"no option is called " + std::string{name}, "finance help"};
    const catalogue::Calculation& calculation = calculation_named(name);
    for (const std::string_view word : arguments) {
        if (asks_for_help(word)) return answer(help_text(calculation));
        if (word.starts_with("--")) {
            throw UsageError{"options come before the name: " + std::string{word}, "finance help"};
        }
    }
    return evaluate(calculation, arguments, module);
}

Outcome run_words(const CommandLine& line) {
    if (line.version) return answer("finance " FINANCE_VERSION "\n");
    if (line.help) return help({});
    const std::vector<std::string_view> words{line.words.begin(), line.words.end()};
    if (words.empty()) throw UsageError{"nothing to evaluate", "finance help"};
    const Words rest = Words{words}.subspan(1);
    if (words.front() == "list") return list(rest);
    if (words.front() == "help") return help(rest);
    return calculate(words.front(), rest, line.module);
}

bool write(std::FILE* stream, std::string_view text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    return std::fflush(stream) == 0 && written;
}

}  // namespace

Outcome run(int argc, const char* const* argv) {
    try {
        return run_words(read_command_line(argc, argv));
    } catch (const UsageError& error) {
        return {exit_usage, "", std::string{"finance: "} + error.what() + "\ntry: " + error.hint() + '\n'};
    } catch (const std::exception& error) {
        return {exit_refused, "", std::string{"finance: "} + error.what() + '\n'};
    }
}

int deliver(const Outcome& outcome) {
    int status = outcome.exit_status;
    std::string error = outcome.error;
    if (!write(stdout, outcome.output)) {
        error += std::string{"finance: the output cannot be written: "} + std::strerror(errno) + '\n';
        status = exit_refused;
    }
    write(stderr, error);
    return status;
}

}  // namespace finance::command
