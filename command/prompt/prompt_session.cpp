#include "command/prompt/prompt_session.hpp"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "command/direct_call.hpp"
#include "command/jobs.hpp"
#include "command/json_report.hpp"
#include "command/prompt/prompt.hpp"
#include "command/tables/table_options.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"
#include "command/words.hpp"
#include "reading/argument_text.hpp"

namespace finance::command {

namespace {

constexpr std::string_view program = "finance ";
constexpr std::string_view program_label = "finance: ";

constexpr std::string_view what_can_be_typed =
    "NAME ARGUMENT...   evaluate a calculation: PMT rate=0.005 nper=360 pv=200000\n"
    "PMT(6%/12, 360, 200000)   the same, with arithmetic\n"
    "_                  the last answer; as a value: PV 0.005 360 _, or pmt=_\n"
    "r = 6%/12          a variable, to be used by name: PMT r 360 200000; `variables` lists them\n"
    "?NAME              what a calculation answers, its arguments, formula, an example\n"
    "list               all calculations, by family\n"
    "help               how arguments are written, and what else there is\n"
    "quit               leave; so does Ctrl-D. Ctrl-C abandons the line, or stops a job\n"
    "Tab completes names and arguments, arrows bring back earlier lines, # starts a comment. A line ending in \\ or\n"
    "in an open bracket goes on in the next.\n";

std::string_view without(std::string_view beginning, std::string_view text) {
    return text.starts_with(beginning) ? text.substr(beginning.size()) : text;
}

Outcome wrong_usage(const UsageError& error) {
    const std::string hint{without(program, error.hint())};
    return {exit_usage, "", std::string{error.what()} + " (try: " + hint + ")\n"};
}

void check_text(std::string_view line) {
    if (line.find('\0') != std::string_view::npos) {
        throw UsageError{"a zero byte stands in the line: text is needed, in UTF-8", "?"};
    }
}

void check_table(std::string_view job, Words words, const Settings& settings) {
    if (job != map_job.word && job != fold_job.word) return;
    const TableOptions options = read_table_options(words, job == map_job.word ? map_job : fold_job, settings);
    if (options.help || options.input != standard_stream) return;
    const std::string name{job};
    throw UsageError{name + ": standard input is the script: name the file of the table", "help " + name};
}

void expand_help_mark(std::vector<std::string>& words) {
    std::string& first = words.front();
    if (!first.starts_with(help_mark)) return;
    const std::string name{without(help_mark, first)};
    first = "help";
    if (!name.empty()) words.insert(words.begin() + 1, name);
}

// Marks that people copy along with a line.
std::string_view without_pasted(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    const std::string_view rest = without("$ ", line);
    return rest.starts_with(program) || rest == program.substr(0, program.size() - 1)
               ? rest.substr(std::min(program.size(), rest.size()))
               : line;
}

// NAME = ..., where no more than blanks stand between the name and the sign.
std::optional<PromptSession::Assignment> assignment_in(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.substr(equals + 1).starts_with('=')) return {};
    const std::string_view name = trimmed(line.substr(0, equals));
    if (!is_variable_name(name)) return {};
    return PromptSession::Assignment{name, trimmed(line.substr(equals + 1))};
}

// At the end of a call in brackets, or before it.
std::string_view without_json(std::string_view line, bool& json) {
    const std::string_view text = trimmed(line);
    const bool before = text.starts_with(json_name) && text.substr(json_name.size()).starts_with(' ');
    const bool after = text.ends_with(json_name) && text.size() > json_name.size();
    json = json || before || after;
    if (before) return trimmed(text.substr(json_name.size()));
    return after ? trimmed(text.substr(0, text.size() - json_name.size())) : text;
}

std::string line_of(const Variable& variable) {
    return variable.name + " = " + catalogue::value_text(variable.value, variable.dated) + '\n';
}

// Objects, one a line, each with the member first.
std::string with_line(std::string_view objects, std::uint64_t number) {
    const std::string member = "{\"line\":" + std::to_string(number) + ',';
    std::string text;
    while (!objects.empty()) {
        const std::size_t end = std::min(objects.find('\n'), objects.size() - 1) + 1;
        const std::string_view line = objects.substr(0, end);
        line.starts_with('{') ? text.append(member).append(line.substr(1)) : text.append(line);
        objects.remove_prefix(end);
    }
    return text;
}

}  // namespace

std::string relabelled(std::string_view lines, std::string_view label, std::string_view other) {
    std::string text;
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size() - 1) + 1;
        text.append(other).append(without(label, lines.substr(0, end)));
        lines.remove_prefix(end);
    }
    return text;
}

const PromptSession::Answer& PromptSession::last_answer() const {
    if (!answer_) throw UsageError{"nothing has been answered yet that _ could stand for", "?"};
    return *answer_;
}

// Values begin behind the name, or where there is none; each ends at a comma.
void PromptSession::put_last_answer(std::string& word) const {
    std::size_t begin = word.find('=') + 1;  // npos + 1 is 0
    while (begin <= word.size()) {
        const std::size_t end = std::min(word.find(',', begin), word.size());
        std::string_view value = std::string_view{word}.substr(begin, end - begin);
        if (value == last_answer_word) {
            value = last_answer().value;
            word.replace(begin, end - begin, value);
        }
        begin += value.size() + 1;
    }
}

Outcome PromptSession::run_words(std::vector<std::string> words, const Settings& settings) {
    if (words.size() == 1) {
        const std::string& word = words.front();
        ended_ = word == quit_word || word == exit_word;
        if (ended_) return {};
        if (word == help_mark) return {exit_answered, std::string{what_can_be_typed}, ""};
        if (word == last_answer_word) return {exit_answered, last_answer().output, ""};
        if (word == variables_word) return {exit_answered, variable_lines(), ""};
    }
    expand_help_mark(words);
    if (catalogue::find(words.front()) != nullptr) {
        for (std::size_t i = 1; i < words.size(); ++i) put_last_answer(words[i]);
    }
    const std::vector<std::string_view> views{words.begin(), words.end()};
    if (from_ == LinesFrom::script) check_table(views.front(), Words{views}.subspan(1), settings);
    return finished(run_job(views.front(), Words{views}.subspan(1), settings));
}

Outcome PromptSession::finished(Outcome outcome) {
    if (outcome.value) {
        answer_ = Answer{catalogue::shortest_text(*outcome.value), outcome.output};
        variables_.set({std::string{last_answer_word}, *outcome.value, outcome.dated});
    }
    outcome.error = relabelled(outcome.error, program_label, "");
    return outcome;
}

std::string PromptSession::variable_lines() const {
    std::string lines;
    for (const Variable& variable : variables_.all()) {
        if (variable.name != last_answer_word) lines += line_of(variable);
    }
    return lines;
}

// The answer of a calculation, or a formula. A script's output is its answers: there it is not shown.
Outcome PromptSession::assign(const Assignment& assignment, const Settings& settings) {
    const std::string name{assignment.name};
    const std::string_view text = assignment.text;
    const bool taken = name == last_answer_word || reading::read_value(catalogue::Kind::number, name).has_value();
    if (taken) throw UsageError{shown(name) + " cannot be a variable: it is a value already", "?"};
    if (text.empty()) throw UsageError{shown(name) + " = needs a value, as in " + shown(name) + " = 6%/12", "?"};
    Outcome outcome = value_of(text, settings);
    if (!outcome.value) return outcome;
    const Variable variable{name, *outcome.value, outcome.dated};
    variables_.set(variable);
    outcome.output = from_ == LinesFrom::terminal ? line_of(variable) : "";
    return outcome;
}

Outcome PromptSession::value_of(std::string_view text, const Settings& settings) {
    if (looks_like_call(text) || catalogue::find(text.substr(0, text.find(' '))) != nullptr) {
        Settings same = settings;
        return run_text(text, same);
    }
    const auto value = reading::read_value(catalogue::Kind::number, text);
    if (value) return {.value = value->number()};
    Outcome outcome = evaluate_formula(text, settings);
    outcome.error = relabelled(outcome.error, program_label, "");
    return outcome;
}

Outcome PromptSession::run_text(std::string_view line, Settings& settings) {
    line = without_pasted(line);
    bool json = settings.json;
    const std::string_view call = without_json(without_comment(line), json);
    const auto assignment = assignment_in(call);
    if (assignment || looks_like_call(call)) {
        settings.json = json;
        return assignment ? assign(*assignment, settings) : finished(evaluate_call(call, settings));
    }
    std::vector<std::string> words = split_words(line);
    if (std::erase(words, json_name) > 0) settings.json = true;
    return words.empty() ? Outcome{} : run_words(std::move(words), settings);
}

namespace {

Outcome failure(const char* words, bool json) {
    return json ? json_failure(words) : Outcome{exit_refused, "", std::string{words} + '\n'};
}

}  // namespace

Outcome PromptSession::run_line(std::string_view line, Settings& settings) {
    try {
        check_text(line);
        settings.variables = &variables_;
        return run_text(line, settings);
    } catch (const UsageError& error) {
        return settings.json ? json_usage(error) : wrong_usage(error);
    } catch (const std::bad_alloc&) {
        return failure(not_enough_memory, settings.json);
    } catch (const std::exception& error) {
        return failure(error.what(), settings.json);
    }
}

Outcome PromptSession::run(std::string_view line, std::uint64_t number) {
    Settings settings = settings_;
    Outcome outcome = run_line(line, settings);
    if (settings.json && number > 0) outcome.output = with_line(outcome.output, number);
    return outcome;
}

}  // namespace finance::command
