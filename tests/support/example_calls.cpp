#include "tests/support/example_calls.hpp"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string>
#include <string_view>

#include "catalogue/text.hpp"

namespace finance::test {

namespace {

using catalogue::Calculation;
using catalogue::Parameter;
using host::Argument;

// What stands before the mark; text keeps what comes after it.
std::string_view cut(std::string_view& text, char mark) {
    const std::string_view before = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(before.size() + 1, text.size()));
    return before;
}

// A date, a number or else a text: a basis.
Argument argument_of(std::string_view text) {
    if (const auto day = catalogue::host_date(text)) return *day;
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? Argument{number} : Argument{text};
}

struct Example {
    std::vector<Argument> arguments;
    std::size_t parameters = 0;  // so many have their arguments
};

Example example_of(const Calculation& calculation) {
    Example example;
    for (std::string_view rest = calculation.example.arguments; !rest.empty(); ++example.parameters) {
        std::string_view values = cut(rest, ' ');
        if (example.parameters == calculation.parameters.size() ||
            cut(values, '=') != calculation.parameters[example.parameters].name) {
            throw std::logic_error{"not the first parameters: " + std::string{calculation.name}};
        }
        while (!values.empty()) example.arguments.push_back(argument_of(cut(values, ',')));
    }
    return example;
}

}  // namespace

std::vector<Argument> usual_call(const Calculation& calculation) { return example_of(calculation).arguments; }

std::vector<Argument> full_call(const Calculation& calculation) {
    auto [arguments, given] = example_of(calculation);
    for (const Parameter& parameter : calculation.parameters.subspan(given)) {
        if (!is_list(parameter.kind)) arguments.push_back(argument_of(parameter.default_text));
    }
    return arguments;
}

double usual_answer(const Calculation& calculation) { return argument_of(calculation.example.result).number(); }

}  // namespace finance::test
