// The catalogue's examples, one line each, as engine_draws.cpp writes calls: what is typed, and the bits of what is
// printed.
#include <bit>
#include <charconv>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"

namespace {

using finance::catalogue::Calculation;

std::vector<std::string_view> split(std::string_view text, char mark) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(mark);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

bool number_of(std::string_view text, double& number) {
    if (const auto day = finance::catalogue::host_date(text)) {
        number = *day;
        return true;
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

std::string bits_of(double x) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, std::bit_cast<std::uint64_t>(x));
    return digits;
}

std::string written(std::string_view value) {
    double number = 0.0;
    return number_of(value, number) ? "n:" + bits_of(number) : "t:" + std::string{value};
}

// Empty where a parameter before the last one given is left out, or a result is no number.
std::string line_of(const Calculation& calculation) {
    const auto given = split(calculation.example.arguments, ' ');
    std::string line{calculation.name};
    for (std::size_t i = 0; i < given.size(); ++i) {
        const std::string mark = std::string{calculation.parameters[i].name} + '=';
        if (!given[i].starts_with(mark)) return {};
        line += '\t';
        bool first = true;
        for (const std::string_view value : split(given[i].substr(mark.size()), ',')) {
            line.append(first ? "" : ",").append(written(value));
            first = false;
        }
    }
    double result = 0.0;
    if (!number_of(calculation.example.result, result)) return {};
    return line + "\tanswered\t" + bits_of(result) + '\n';
}

}  // namespace

int main() {
    for (const Calculation& calculation : finance::catalogue::calculations()) {
        const std::string line = line_of(calculation);
        if (line.empty()) {
            std::fprintf(stderr, "the example of %s is of another form\n", std::string{calculation.name}.c_str());
            return 1;
        }
        std::fputs(line.c_str(), stdout);
    }
    return 0;
}
