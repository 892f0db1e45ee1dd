#include "command/command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/jobs.hpp"
#include "command/json_report.hpp"
#include "command/number_form.hpp"
#include "command/options.hpp"
#include "command/outcome.hpp"
#include "command/prompt/prompt.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::size_t most_said = 300;  // of a sentence of the library

struct CommandLine {
    std::filesystem::path module{};
    std::vector<std::string> words{};
    bool version = false;
    bool help = false;
    bool json = false;
    std::optional<int> digits{};
};

// --json stands anywhere: no argument is written so, and an error in the line is told as the line asks for.
bool asks_for_json(int argc, const char* const* argv) {
    return std::any_of(argv + 1, argv + argc, [](const char* word) { return std::string_view{word} == json_name; });
}

// Options end where the first word begins: what follows, -100 say, is a value.
CommandLine read_command_line(int argc, const char* const* argv) {
    CommandLine line;
    CLI::App app;
    app.prefix_command();
    app.set_help_flag();
    std::map<std::string_view, std::string> values;
    for (const Option& option : options()) {
        std::string names{option.name};
        if (!option.short_name.empty()) names.append(",").append(option.short_name);
        option.value.empty() ? app.add_flag(names) : app.add_option(names, values[option.name]);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        throw UsageError{shown(error.what(), most_said), "finance help"};
    }
    line.module = values["--module"];
    if (app.count("--module") > 0 && line.module.empty()) throw UsageError{"--module needs a path", "finance help"};
    if (app.count("--digits") > 0) line.digits = read_digits(values["--digits"]);
    line.version = app.count("--version") > 0;
    line.help = app.count("--help") > 0;
    line.words = app.remaining();
    line.json = asks_for_json(argc, argv);
    std::erase(line.words, json_name);
    std::erase(line.words, "--");
    return line;
}

Outcome version(bool json) {
    if (!json) return {exit_answered, "finance " FINANCE_VERSION "\n" FINANCE_LICENSE "\n", ""};
    JsonText text;
    text.object().member("version", FINANCE_VERSION).member("license", FINANCE_LICENSE).end_object();
    return {exit_answered, text.str() + '\n', ""};
}

Outcome run_words(const CommandLine& line) {
    if (line.version) return version(line.json);
    HostOnDemand host{line.module};
    const Settings settings{.json = line.json, .host = host, .digits = line.digits};
    const std::vector<std::string_view> words{line.words.begin(), line.words.end()};
    if (line.help) return run_job("help", {}, settings);
    if (words.empty()) return wants_prompt() ? run_prompt(settings) : run_script(settings);
    return run_job(words.front(), Words{words}.subspan(1), settings);
}

Outcome failure(const char* words, bool json) {
    if (json) return json_failure(words);
    return {exit_refused, "", std::string{"finance: "} + words + '\n'};
}

}  // namespace

Outcome run(int argc, const char* const* argv) {
    try {
        return run_words(read_command_line(argc, argv));
    } catch (const ClosedPipe&) {
        return {exit_closed_pipe, "", ""};
    } catch (const UsageError& error) {
        if (asks_for_json(argc, argv)) return json_usage(error);
        return {exit_usage, "", std::string{"finance: "} + error.what() + "\ntry: " + error.hint() + '\n'};
    } catch (const std::bad_alloc&) {
        return failure(not_enough_memory, asks_for_json(argc, argv));
    } catch (const std::exception& error) {
        return failure(error.what(), asks_for_json(argc, argv));
    }
}

int deliver(const Outcome& outcome) {
    if (write_text(stdout, outcome.output)) {
        write_text(stderr, outcome.error);
        return outcome.exit_status;
    }
    const Outcome failed = unwritten();
    if (failed.exit_status != exit_closed_pipe) write_text(stderr, outcome.error + failed.error);
    return failed.exit_status;
}

}  // namespace finance::command
