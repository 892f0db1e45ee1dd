#include <array>
#include <string_view>

#include "catalogue/wording.hpp"
#include "command/help.hpp"
#include "command/json_text.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::Parameter;

std::string_view need_word(Need need) {
    constexpr std::array<std::string_view, 3> words{"required", "may be missing", "optional"};
    return catalogue::item_of<Need::optional>(words, need);
}

void add_parameter(JsonText& json, const Parameter& parameter) {
    json.object().member("name", parameter.name).member("kind", catalogue::kind_words(parameter.kind));
    json.member_or_null("unit", parameter.unit);
    json.member("meaning", parameter.meaning).member("need", need_word(parameter.need));
    json.member_or_null("default", parameter.default_text);
    json.member_or_null("rule", catalogue::rule_words(parameter));
    json.end_object();
}

void add_head(JsonText& json, const Calculation& calculation, const catalogue::Family& family) {
    json.member("calculation", calculation.name).member("family", family.title);
    json.member("answers", calculation.answers).member("result", catalogue::result_words(calculation.result));
}

void add_job(JsonText& json, const Job& job) {
    json.member("word", job.word).member("usage", job.usage).member("purpose", job.purpose);
}

}  // namespace

std::string json_list(std::span<const catalogue::Family> families) {
    std::string lines;
    JsonText json;
    for (const catalogue::Family& family : families) {
        for (const Calculation& calculation : family.calculations) {
            json.clear();
            add_head(json.object(), calculation, family);
            lines += json.end_object().str() + '\n';
        }
    }
    return lines;
}

std::string json_jobs(std::span<const Job> jobs) {
    std::string lines;
    for (const Job& job : jobs) {
        JsonText json;
        add_job(json.object(), job);
        lines += json.end_object().str() + '\n';
    }
    return lines;
}

std::string json_help(const Job& job) {
    JsonText json;
    add_job(json.object(), job);
    return json.member_or_null("help", job.help != nullptr ? job.help() : "").end_object().str() + '\n';
}

std::string json_help(const Calculation& calculation) {
    JsonText json;
    add_head(json.object(), calculation, catalogue::family_of(calculation));
    json.key("arguments").array();
    for (const Parameter& parameter : calculation.parameters) add_parameter(json, parameter);
    json.end_array().member("formula", calculation.formula);
    json.member_or_null("remarks", calculation.remarks);
    json.member("failure", calculation.failure).key("searches").boolean(calculation.searches);
    json.key("example").object();
    json.member("arguments", calculation.example.arguments).member("result", calculation.example.result).end_object();
    return json.end_object().str() + '\n';
}

std::string json_catalogue(std::span<const Calculation> calculations) {
    JsonText bases;
    bases.array();
    for (const std::string_view keyword : catalogue::basis_keywords) bases.text(keyword);
    std::string objects;
    for (const Calculation& calculation : calculations) {
        if (!objects.empty()) objects += ',';
        objects += json_help(calculation);
    }
    return "{\"bases\":" + bases.end_array().str() + ",\"calculations\":[\n" + objects + "]}\n";
}

}  // namespace finance::command
