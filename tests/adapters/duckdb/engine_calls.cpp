#include "engine_calls.hpp"

#include <bit>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace finance::test {

namespace {

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> words;
    std::istringstream stream{line};
    for (std::string word; std::getline(stream, word, separator);) words.push_back(word);
    return words;
}

double number_of_bits(const std::string& digits) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(digits, nullptr, 16)));
}

Entry entry_of(const std::string& word) {
    if (word.starts_with("t:")) return {.is_text = true, .text = word.substr(2)};
    Entry entry;
    if (word == "-") return entry;
    for (const std::string& number : split(word, ',')) entry.numbers.push_back(number_of_bits(number.substr(2)));
    return entry;
}

EngineCall call_of(const std::string& line) {
    const std::vector<std::string> words = split(line, '\t');
    if (words.size() < 4) throw std::runtime_error{"not a call: " + line};
    EngineCall call{.calculation = catalogue::find(words[0])};
    if (call.calculation == nullptr) throw std::runtime_error{"no calculation: " + line};
    const std::size_t verdict = words.size() - 2;
    for (std::size_t i = 1; i < verdict; ++i) call.entries.push_back(entry_of(words[i]));
    call.verdict = words[verdict];
    if (call.verdict == "answered") call.value = number_of_bits(words.back());
    if (call.verdict == "refused") call.sentence = words.back();
    return call;
}

}  // namespace

std::vector<EngineCall> engine_calls() {
    std::ifstream file{ZELKOVAN_ENGINE_CALLS};
    std::vector<EngineCall> calls;
    for (std::string line; std::getline(file, line);) calls.push_back(call_of(line));
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
