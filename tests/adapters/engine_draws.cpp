// Random calls for an engine's tests, with the verdict of the embedded host: the corpus, thinned out, less what an engine
// cannot be asked.
//
//     engine_draws EVERY < CORPUS > CALLS
//
// Takes every EVERYth line of the corpus (tests/model/draws.hpp) that can be said in an engine: all values are there and no
// NaN, a text is printable, and is not the number of a basis. A line of the answer, tab separated:
//
//     NAME  PARAMETER ...  VERDICT  ANSWER
//
// a parameter as n:BITS (16 hexadecimal digits of a double) or t:TEXT, a list's values separated by commas (an empty list
// is "-"), one entry for each parameter given; the verdict is answered (then BITS), missing (then "-"), or refused (then the
// sentence).
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "catalogue/layout.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters {

namespace {

struct Value {
    host::Argument argument = host::Argument::absent();
    std::string written{};
};

std::string bits_of(double x) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(x)));
    return digits;
}

bool printable(const std::string& text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

// A word of the corpus: n:BITS or c:BYTES, both hexadecimal, or null.
std::optional<Value> value_of(const std::string& word, std::string& text) {
    const std::string digits = word.substr(2);
    if (digits == "null") return std::nullopt;
    if (word[0] == 'n') {
        const double number = std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(digits, nullptr, 16)));
        if (std::isnan(number)) return std::nullopt;
        return Value{number, "n:" + bits_of(number)};
    }
    text.clear();
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        text.push_back(static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    }
    const bool keyword = basis_argument(text).kind() == host::Argument::Kind::text;
    if (!printable(text) || !keyword) return std::nullopt;
    return Value{std::string_view{text}, "t:" + text};
}

bool is_basis(const catalogue::Calculation& calculation, std::size_t position, std::size_t values) {
    const catalogue::Place place = place_of(calculation, position, values);
    return place.parameter < calculation.parameters.size() &&
           calculation.parameters[place.parameter].kind == catalogue::Kind::basis;
}

// One column a parameter.
std::string written(const catalogue::Calculation& calculation, const std::vector<Value>& values) {
    std::string line;
    std::size_t next = 0;
    for (const std::size_t share : shares(calculation, values.size())) {
        const std::size_t parameter = static_cast<std::size_t>(std::ranges::count(line, '\t'));
        if (share == 0 && next == values.size() &&
            calculation.parameters[parameter].need == catalogue::Need::optional &&
            !is_list(calculation.parameters[parameter].kind)) {
            break;
        }
        line += '\t';
        if (share == 0) line += '-';
        for (std::size_t i = 0; i < share; ++i) line.append(i > 0 ? "," : "").append(values[next + i].written);
        next += share;
    }
    return next == values.size() ? line : "";
}

void write_call(const std::string& name, const std::string& words) {
    const catalogue::Calculation* calculation = catalogue::find(name);
    if (calculation == nullptr) return;
    std::vector<Value> values;
    std::vector<std::string> texts;
    texts.reserve(words.size());
    std::istringstream stream{words};
    for (std::string word; stream >> word;) {
        const auto value = value_of(word, texts.emplace_back());
        if (!value) return;
        values.push_back(*value);
    }
    std::vector<host::Argument> arguments;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool text = values[i].argument.kind() == host::Argument::Kind::text;
        if (text && !is_basis(*calculation, i + 1, values.size())) return;
        arguments.push_back(values[i].argument);
    }
    if (arguments.size() + 1 < minimum_count(*calculation)) return;
    const std::string parameters = written(*calculation, values);
    if (parameters.empty()) return;
    const Answer answer = call(*calculation, arguments);
    std::cout << name << parameters;
    if (answer.verdict == Verdict::answered) std::cout << "\tanswered\t" << bits_of(answer.value) << '\n';
    if (answer.verdict == Verdict::missing) std::cout << "\tmissing\t-\n";
    if (answer.verdict == Verdict::refused) std::cout << "\trefused\t" << answer.refusal << '\n';
}

}  // namespace

}  // namespace finance::adapters

int main(int argc, char** argv) {
    const long every = argc == 2 ? std::atol(argv[1]) : 0;
    if (every < 1) {
        std::fputs("usage: engine_draws EVERY < CORPUS > CALLS\n", stderr);
        return 2;
    }
    std::ios::sync_with_stdio(false);
    long number = 0;
    for (std::string line; std::getline(std::cin, line);) {
        if (number++ % every != 0) continue;
        const std::size_t first = line.find('\t');
        const std::size_t second = line.find('\t', first + 1);
        if (second != line.npos) {
            finance::adapters::write_call(line.substr(0, first), line.substr(first + 1, second - first - 1));
        }
    }
    return 0;
}
