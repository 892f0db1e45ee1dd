#include "command/json_report.hpp"

#include <cmath>
#include <cstddef>
#include <string>

#include "catalogue/layout.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::command {

namespace {

using calls::Answer;
using catalogue::Calculation;

void add_head(JsonText& json, std::string_view calculation, std::string_view status) {
    json.member_or_null("calculation", calculation);
    json.member("status", status);
}

void add_notes(JsonText& json, std::span<const host::Note> notes) {
    json.key("notes").array();
    for (const host::Note& note : notes) {
        json.object().member("set", note.message_set).member("number", note.message_number).end_object();
    }
    json.end_array();
}

void add_value(JsonText& json, const Answer& answer) {
    json.key("value");
    if (!answer.evaluation().answered()) return (void)json.null();
    json.number(answer.value());
    if (!std::isfinite(answer.value())) json.member("value_text", catalogue::shortest_text(answer.value()));
    if (answer.calculation().result != catalogue::ResultKind::date) return;
    const auto date = catalogue::iso_date(answer.value());
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

void add_no_argument(JsonText& json) { json.key("argument").null().key("rule").null(); }

// element: 0 where the argument is no list.
void add_argument(JsonText& json, const Calculation& calculation, WrittenArgument argument, std::size_t element = 0) {
    if (argument.position == 0 || argument.parameter >= calculation.parameters.size()) return add_no_argument(json);
    const catalogue::Parameter& parameter = calculation.parameters[argument.parameter];
    json.key("argument").object().member("position", static_cast<double>(argument.parameter + 1));
    json.member("name", parameter.name);
    if (element > 0) json.member("element", static_cast<double>(element));
    json.end_object().member("rule", full_rule(parameter));
}

void add_fault(JsonText& json, const Answer& answer) {
    const auto position = static_cast<std::size_t>(answer.position());
    const catalogue::Place place = catalogue::place_of(answer.calculation(), position, answer.arguments().size());
    add_argument(json, answer.calculation(), {place.parameter, position}, place.element);
}

// The members of a run that evaluated nothing, without its notes and its end.
void add_nothing_evaluated(JsonText& json, std::string_view calculation, std::string_view status) {
    add_head(json.object(), calculation, status);
    json.key("value").null();
}

std::string line(JsonText& json) { return json.end_object().str() + '\n'; }

}  // namespace

int exit_status_of(const Answer& answer) {
    const calls::Verdict verdict = answer.verdict();
    const bool holds = verdict == calls::Verdict::answered || verdict == calls::Verdict::missing;
    return answer.evaluation().answered() && holds ? exit_answered : exit_refused;
}

void add_result(JsonText& json, const Answer& answer, std::string_view status, std::string_view hint) {
    add_head(json, answer.calculation().name, status);
    add_value(json, answer);
    add_fault(json, answer);
    json.member_or_null("message", answer.reason());
    if (!hint.empty()) json.member("hint", hint);
    add_notes(json, answer.evaluation().notes);
}

void add_refusal(JsonText& json, const Calculation& calculation, std::string_view message, WrittenArgument argument) {
    add_head(json, calculation.name, "refused");
    json.key("value").null();
    add_argument(json, calculation, argument);
    json.member("message", message);
    add_notes(json, {});
}

// A call alone is refused where the argument at fault is missing, too.
Outcome json_report(const Answer& answer) {
    const bool answered = answer.evaluation().answered();
    JsonText json;
    const std::string remedy = answer.remedy();
    add_result(json.object(), answer, word_of(answered ? answer.verdict() : calls::Verdict::refused),
               remedy.empty() ? "" : "finance " + remedy);
    return {exit_status_of(answer), line(json), ""};
}

Outcome json_usage(const UsageError& error) {
    const UsageSubject& subject = error.subject();
    const Calculation* calculation = catalogue::find(subject.calculation);
    JsonText json;
    add_nothing_evaluated(json, subject.calculation, "usage");
    if (calculation == nullptr) {
        add_no_argument(json);
    } else {
        add_argument(json, *calculation, {catalogue::find_parameter(*calculation, subject.argument), subject.position});
    }
    json.member("message", error.what()).member("hint", error.hint());
    add_notes(json, {});
    return {exit_usage, line(json), ""};
}

Outcome json_failure(std::string_view message) {
    JsonText json;
    add_nothing_evaluated(json, "", "failed");
    add_no_argument(json);
    json.member("message", message);
    add_notes(json, {});
    return {exit_refused, line(json), ""};
}

}  // namespace finance::command
