#include "command/command_line.hpp"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "command/jobs.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

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

Outcome run_words(const CommandLine& line) {
    if (line.version) return {exit_answered, "finance " FINANCE_VERSION "\n", ""};
    const Settings settings{line.module};
    const std::vector<std::string_view> words{line.words.begin(), line.words.end()};
    if (line.help) return run_job("help", {}, settings);
    if (words.empty()) throw UsageError{"nothing to evaluate", "finance help"};
    return run_job(words.front(), Words{words}.subspan(1), settings);
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
