#include "tests/adapters/call_lines.hpp"

#include <bit>
#include <cstdint>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace finance::test {

std::vector<std::string> split(const std::string& text, char mark) {
    std::vector<std::string> parts;
    std::istringstream stream{text};
    for (std::string part; std::getline(stream, part, mark);) parts.push_back(part);
    return parts;
}

double number_of_bits(const std::string& digits) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(digits, nullptr, 16)));
}

std::vector<CallLine> read_call_lines() {
    std::ifstream file{ENGINE_CALLS};
    std::vector<CallLine> lines;
    std::set<std::string> called;
    for (std::string text; std::getline(file, text);) {
        const std::vector<std::string> words = split(text, '\t');
        CallLine line{.number = lines.size(), .calculation = catalogue::find(words.at(0))};
        if (line.calculation == nullptr || words.size() < 4) throw std::runtime_error{"no call: " + text};
        line.answer = words.back();
        line.verdict = words[words.size() - 2];
        line.parameters.assign(words.begin() + 1, words.end() - 2);
        called.insert(words[0]);
        lines.push_back(std::move(line));
    }
    if (called.size() != catalogue::calculations().size()) throw std::runtime_error{"a calculation has no call"};
    return lines;
}

}  // namespace finance::test
