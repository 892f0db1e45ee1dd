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
// is "-"), one entry for each parameter given; the verdict is answered (then BITS), missing (then "-"), or does not solve, too
// large, no answer or refused (then the sentence). No answer: no argument is at fault, and the calculation searches or has
// lists.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "calls/meant.hpp"
#include "catalogue/layout.hpp"
#include "tests/model/draws.hpp"

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

// What an engine can say of an argument. The text must live on.
std::optional<Value> value_of(const test::Arg& argument) {
    if (argument.kind() == test::Arg::Kind::number && !std::isnan(argument.number())) {
        return Value{argument.number(), "n:" + bits_of(argument.number())};
    }
    if (argument.kind() != test::Arg::Kind::text || !printable(argument.text())) return std::nullopt;
    const host::Argument basis = basis_argument(argument.text());
    if (basis.kind() != host::Argument::Kind::text) return std::nullopt;
    return Value{basis, "t:" + argument.text()};
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

// By name, and not by what the adapters make of the catalogue.
std::string_view verdict_word(const calls::Answer& answer) {
    constexpr std::array<std::string_view, 9> may_have_none{"FVSCHEDULE", "IRR",  "MIRR", "NPV",  "ODDFYIELD",
                                                            "RATE",       "XIRR", "XNPV", "YIELD"};
    const bool refused = answer.verdict() == calls::Verdict::refused && answer.position() == 0;
    if (!refused || !answer.evaluation().log.empty()) return word_of(answer.verdict());
    const bool listed = std::ranges::find(may_have_none, answer.calculation().name) != may_have_none.end();
    return listed ? "no answer" : word_of(answer.verdict());
}

void write_call(const test::Draw& draw) {
    const catalogue::Calculation* calculation = catalogue::find(draw.name);
    if (calculation == nullptr) return;
    std::vector<Value> values;
    for (const test::Arg& argument : draw.arguments) {
        const auto value = value_of(argument);
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
    const host::Evaluation evaluation = calls::evaluate(shared_host(), *calculation, arguments);
    const calls::Answer answer = calls::answer_of(shared_host(), *calculation, arguments, evaluation);
    std::cout << draw.name << parameters << '\t' << verdict_word(answer) << '\t';
    if (answer.verdict() == calls::Verdict::answered) std::cout << bits_of(answer.value()) << '\n';
    if (answer.verdict() == calls::Verdict::missing) std::cout << "-\n";
    if (is_failure(answer.verdict())) std::cout << answer.named_sentence() << '\n';
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
        if (number++ % every == 0) finance::adapters::write_call(finance::test::draw_of(line));
    }
    return 0;
}
