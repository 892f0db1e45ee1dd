#include "command/json_report.hpp"

#include <cmath>
#include <cstddef>
#include <string>

#include "catalogue/host_date.hpp"
#include "catalogue/layout.hpp"
#include "catalogue/number_text.hpp"
#include "catalogue/wording.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Given;
using Arguments = std::span<const Given>;

void add_head(JsonText& json, std::string_view calculation, std::string_view status) {
    json.member_or_null("calculation", calculation);
    json.member("status", status);
}

// element: 0 where the argument is no list.
void add_argument(JsonText& json, std::size_t position, std::string_view name, std::size_t element = 0) {
    json.key("argument").object().member("position", static_cast<double>(position)).member("name", name);
    if (element > 0) json.member("element", static_cast<double>(element));
    json.end_object();
}

void add_notes(JsonText& json, std::span<const host::Note> notes) {
    json.key("notes").array();
    for (const host::Note& note : notes) {
        json.object().member("set", note.message_set).member("number", note.message_number).end_object();
    }
    json.end_array();
}

std::string_view status_of(const host::Evaluation& evaluation) {
    if (!evaluation.answered()) return "refused";
    return std::isnan(evaluation.value) ? "missing" : "answered";
}

void add_value(JsonText& json, const Calculation& calculation, const host::Evaluation& evaluation) {
    const double value = evaluation.value;
    json.key("value");
    if (!evaluation.answered()) {
        json.null();
        return;
    }
    json.number(value);
    if (!std::isfinite(value)) json.member("value_text", catalogue::shortest_text(value));
    if (calculation.result != catalogue::ResultKind::date) return;
    const auto date = catalogue::iso_date(value);
    json.member_or_null("date", date ? *date : "");
}

// What one value of a parameter is.
std::string value_words(catalogue::Kind kind) {
    if (kind == catalogue::Kind::numbers) kind = catalogue::Kind::number;
    if (kind == catalogue::Kind::dates) kind = catalogue::Kind::date;
    const std::string words{catalogue::kind_words(kind)};
    return kind == catalogue::Kind::basis ? words + ": " + std::string{catalogue::basis_words} : words;
}

// The kind is part of what an argument must be: "whole number, must be at least 1".
std::string full_rule(const catalogue::Parameter& parameter) {
    std::string text = value_words(parameter.kind);
    if (const std::string rule = catalogue::rule_words(parameter); !rule.empty()) text.append(", ").append(rule);
    return text;
}

// fault: 0 none.
void add_fault(JsonText& json, const Calculation& calculation, Arguments arguments, int fault) {
    const auto position = static_cast<std::size_t>(fault);
    const catalogue::Place place = catalogue::place_of(calculation, position, arguments.size());
    if (fault == 0 || place.parameter >= calculation.parameters.size()) {
        json.key("argument").null().key("rule").null();
        return;
    }
    const catalogue::Parameter& parameter = calculation.parameters[place.parameter];
    add_argument(json, position, parameter.name, place.element);
    json.member("rule", full_rule(parameter));
}

void add_written(JsonText& json, const Calculation& calculation, WrittenArgument argument) {
    if (argument.position == 0) {
        json.key("argument").null().key("rule").null();
        return;
    }
    const catalogue::Parameter& parameter = calculation.parameters[argument.parameter];
    add_argument(json, argument.position, parameter.name);
    json.member("rule", full_rule(parameter));
}

std::string message_of(const Calculation& calculation, Arguments arguments, const host::Evaluation& evaluation,
                       int fault) {
    if (evaluation.answered()) {
        const bool noted = std::isnan(evaluation.value) && !evaluation.notes.empty();
        return noted ? std::string{calculation.failure} : "";
    }
    std::string logged;
    for (const std::string& line : evaluation.log) logged.append(logged.empty() ? "" : "\n").append(line);
    return logged.empty() ? catalogue::reason(calculation, arguments, fault) : logged;
}

// The members of a run that evaluated nothing, without its notes and its end.
void add_nothing_evaluated(JsonText& json, std::string_view calculation, std::string_view status) {
    add_head(json.object(), calculation, status);
    json.key("value").null();
}

std::string line(JsonText& json) { return json.end_object().str() + '\n'; }

}  // namespace

void add_result(JsonText& json, const Calculation& calculation, Arguments arguments, const host::Evaluation& evaluation,
                std::string_view status) {
    const int fault =
        evaluation.answered() ? 0 : catalogue::argument_at_fault(calculation, arguments, evaluation.flagged);
    add_head(json, calculation.name, status.empty() ? status_of(evaluation) : status);
    add_value(json, calculation, evaluation);
    add_fault(json, calculation, arguments, fault);
    json.member_or_null("message", message_of(calculation, arguments, evaluation, fault));
    add_notes(json, evaluation.notes);
}

void add_refusal(JsonText& json, const Calculation& calculation, std::string_view message, WrittenArgument argument) {
    add_head(json, calculation.name, "refused");
    json.key("value").null();
    add_written(json, calculation, argument);
    json.member("message", message);
    add_notes(json, {});
}

Outcome json_report(const Calculation& calculation, Arguments arguments, const host::Evaluation& evaluation) {
    JsonText json;
    add_result(json.object(), calculation, arguments, evaluation);
    return {evaluation.answered() ? exit_answered : exit_refused, line(json), ""};
}

Outcome json_usage(const UsageError& error) {
    const UsageSubject& subject = error.subject();
    const Calculation* calculation = catalogue::find(subject.calculation);
    JsonText json;
    add_nothing_evaluated(json, subject.calculation, "usage");
    if (calculation != nullptr && subject.position > 0) {
        add_written(json, *calculation, {catalogue::find_parameter(*calculation, subject.argument), subject.position});
    } else {
        json.key("argument").null().key("rule").null();
    }
    json.member("message", error.what()).member("hint", error.hint());
    add_notes(json, {});
    return {exit_usage, line(json), ""};
}

Outcome json_failure(std::string_view message) {
    JsonText json;
    add_nothing_evaluated(json, "", "failed");
    json.key("argument").null().key("rule").null().member("message", message);
    add_notes(json, {});
    return {exit_refused, line(json), ""};
}

}  // namespace finance::command
