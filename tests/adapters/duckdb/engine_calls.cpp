#include "engine_calls.hpp"

#include "tests/adapters/call_lines.hpp"

namespace finance::test {

namespace {

Entry entry_of(const std::string& word) {
    if (word.starts_with("t:")) return {.is_text = true, .text = word.substr(2)};
    Entry entry;
    if (word == "-") return entry;
    for (const std::string& number : split(word, ',')) entry.numbers.push_back(number_of_bits(number.substr(2)));
    return entry;
}

EngineCall call_of(const CallLine& line) {
    EngineCall call{.calculation = line.calculation};
    for (const std::string& parameter : line.parameters) call.entries.push_back(entry_of(parameter));
    call.verdict = line.verdict;
    if (call.verdict == "answered") call.value = number_of_bits(line.answer);
    if (call.verdict != "answered" && call.verdict != "missing") call.sentence = line.answer;
    return call;
}

}  // namespace

std::vector<EngineCall> engine_calls() {
    std::vector<EngineCall> calls;
    for (const CallLine& line : read_call_lines()) calls.push_back(call_of(line));
    return calls;
}

std::map<std::string, std::vector<EngineCall>> by_function(std::vector<EngineCall> calls) {
    std::map<std::string, std::vector<EngineCall>> functions;
    for (EngineCall& call : calls) {
        std::string key = std::string{call.calculation->name} + ' ' + std::to_string(call.entries.size());
        for (const Entry& entry : call.entries) key += entry.is_text ? " t" : "";
        functions[key].push_back(std::move(call));
    }
    return functions;
}

std::vector<std::string> sql_types(const EngineCall& call) {
    std::vector<std::string> types;
    for (std::size_t i = 0; i < call.entries.size(); ++i) {
        const bool list = is_list(call.calculation->parameters[i].kind);
        types.emplace_back(call.entries[i].is_text ? "VARCHAR" : list ? "DOUBLE[]" : "DOUBLE");
    }
    return types;
}

}  // namespace finance::test
