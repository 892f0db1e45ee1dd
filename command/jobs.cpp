#include "command/jobs.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "command/argument_list.hpp"
#include "command/direct_call.hpp"
#include "command/evaluate.hpp"
#include "command/formulas/variables.hpp"
#include "command/help.hpp"
#include "command/number_form.hpp"
#include "command/options.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::string_view how_arguments_are_written =
    "Arguments\n"
    "  in order, or as name=value after those in order: finance PMT rate=0.005 nper=360 pv=200000\n"
    "  numbers   200000, -1e5, 5.75%\n"
    "  dates     2008-02-15, or days since 1960-01-01\n"
    "  basis     30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4\n"
    "  lists     one value after the other, or separated by commas\n"
    "  .         a missing value; name= leaves an argument out\n"
    "  formulas  rate=6%/12 nper=30*12: + - * / ^, brackets, min, max, round, abs. ^ goes before a sign and\n"
    "            from the right: -2^2 is -4, 2^3^2 is 512\n"
    "\n"
    "Exit status\n"
    "  0 answered (. where the answer is a missing value), 1 refused, 2 wrong usage\n"
    "\n"
    "Options, before the first word\n";

constexpr std::size_t usage_width = 52;

Outcome answer(std::string text) { return {exit_answered, std::move(text), ""}; }

std::string usage_line(std::string_view call, std::string_view purpose) {
    std::string line = "  finance " + std::string{call};
    line.resize(std::max(usage_width, line.size() + 2), ' ');
    return line.append(purpose).append("\n");
}

std::string usage_text() {
    std::string text = "Usage\n" + usage_line("NAME ARGUMENT...", "evaluate a calculation") +
                       usage_line("'NAME(ARGUMENT, ...)'", "the same, as spreadsheets write it");
    for (const Job& job : jobs()) {
        const std::string separator = job.usage.empty() ? "" : " ";
        text += usage_line(std::string{job.word} + separator + std::string{job.usage}, job.purpose);
    }
    text += usage_line("", "a prompt; not on a terminal: lines from standard input");
    text.append("\n").append(how_arguments_are_written);
    return text + option_lines(options());
}

Outcome help_on(const catalogue::Calculation& calculation, const Settings& settings) {
    return answer(settings.json ? json_help(calculation)
                                : help_text(calculation, std::min(usual_width, output_width())));
}

Outcome help(Words words, const Settings& settings) {
    if (words.size() > 1) throw UsageError{"help takes one name", "finance list"};
    const auto job = words.empty() ? jobs().end() : std::ranges::find(jobs(), words.front(), &Job::word);
    if (job != jobs().end() && job->help != nullptr) {
        return settings.json ? answer(json_help(*job)) : shown_help(job->help());
    }
    if (!words.empty()) return help_on(calculation_named(words.front()), settings);
    return settings.json ? answer(json_jobs(jobs())) : shown_help(usage_text());
}

Outcome list(Words words, const Settings& settings) {
    if (!words.empty()) throw UsageError{"list takes no argument", "finance help " + shown(words.front())};
    return settings.json ? answer(json_list(catalogue::families())) : shown_help(list_text(catalogue::families()));
}

constexpr std::array all_options{
    Option{"--module", "PATH", "use this zelkovan.so instead of the installed one"},
    digits_option,
    json_option("one JSON object a result, on one line; it may also stand later"),
    help_option,
    Option{"--version", "", "the version"},
};

constexpr Job list_job{{"list", "", "all calculations, by family"}, list};
constexpr Job help_job{
    {"help", "NAME", "what one answers, its arguments, formula, an example", {}, {}, Takes::calculation}, help};

std::string joined(std::string_view first, Words others) {
    std::string text{first};
    for (const std::string_view word : others) text.append(" ").append(word);
    return text;
}

// Arithmetic: it begins with a number, a bracket or a function, or with a variable.
bool looks_calculated(std::string_view word, const Settings& settings) {
    if (word.empty() || catalogue::find(word) != nullptr) return false;
    const std::string_view first = word.substr(0, word.find_first_of("+-*/^(),"));
    const bool variable = settings.variables != nullptr && settings.variables->find(first) != nullptr;
    return variable || is_function(first) ||
           std::string_view{"0123456789.("}.find(word.front()) != std::string_view::npos;
}

// A call or a formula in one piece may have been split at its blanks.
Outcome calculate(std::string_view name, Words arguments, const Settings& settings) {
    if (looks_like_call(name)) return evaluate_call(joined(name, arguments), settings);
    if (name.starts_with('-')) throw UsageError{"no option is called " + shown(name), "finance help"};
    if (looks_calculated(name, settings)) return evaluate_formula(joined(name, arguments), settings);
    const catalogue::Calculation& calculation = calculation_named(name);
    for (const std::string_view word : arguments) {
        if (is_called(help_option, word)) return help_on(calculation, settings);
        if (word.starts_with("--")) {
            throw UsageError{"options come before the name: " + shown(word), "finance help"};
        }
    }
    return evaluate(calculation, read_arguments(calculation, arguments, settings.variables), settings);
}

// --digits stands anywhere.
Outcome call(std::string_view name, Words words, const Settings& settings) {
    std::vector<std::string_view> arguments{words.begin(), words.end()};
    const std::optional<int> given = take_digits(arguments);
    const std::optional<int> digits = given ? given : settings.digits;
    Outcome outcome = calculate(name, arguments, settings);
    if (digits) round_answer(outcome, *digits);
    return outcome;
}

}  // namespace

std::span<const Job> jobs() {
    static const std::array all{list_job, help_job, map_job, fold_job, schedule_job, plot_job};
    return all;
}

std::span<const Option> options() { return all_options; }

Outcome run_job(std::string_view word, Words words, const Settings& settings) {
    const auto job = std::ranges::find(jobs(), word, &Job::word);
    return job != jobs().end() ? job->run(words, settings) : call(word, words, settings);
}

}  // namespace finance::command
