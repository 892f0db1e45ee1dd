// Texts from the standard input as the native build reads them, for builds that are not native (tests/wasm/reading.test.js).
// A line of each: KIND  FORM  TEXT, kinds counted as in the catalogue, forms as in wasm/reading.cpp, texts in hexadecimal;
// and a line for each:
//
//     value BITS | absent | missing | text | unreadable REASON HINT, parted by tabs
#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>

#include "reading/field_form.hpp"

namespace {

using namespace finance;

reading::FieldForm form_of(unsigned word) {
    reading::FieldForm form{.decimal_comma = (word & 2U) != 0, .loose = (word & 1U) != 0};
    if ((word & 4U) != 0) form.missing.assign(reading::usual_missing.begin(), reading::usual_missing.end());
    if (word >= 8) form.dates = static_cast<reading::DateForm>(word / 8 - 1);
    return form;
}

std::string bytes_of(const std::string& digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

void print(const host::Argument& argument) {
    if (argument.kind() == host::Argument::Kind::text) {
        std::puts("text");
    } else if (std::isnan(argument.number())) {
        std::puts("missing");
    } else {
        std::printf("value\t%016" PRIx64 "\n", std::bit_cast<std::uint64_t>(argument.number()));
    }
}

void read(catalogue::Kind kind, const reading::FieldForm& form, const std::string& text) {
    if (text.empty()) {
        std::puts("absent");
    } else if (const auto argument = reading::read_meant(form, kind, text)) {
        print(*argument);
    } else {
        const auto [reason, hint] = reading::refusal_of(form, kind, text);
        std::printf("unreadable\t%s\t%s\n", reason.c_str(), hint.c_str());
    }
}

}  // namespace

int main() {
    unsigned kind = 0;
    unsigned form = 0;
    std::string digits;
    while (std::cin >> kind >> form && std::cin.get() == '\t' && std::getline(std::cin, digits)) {
        read(static_cast<catalogue::Kind>(kind), form_of(form), bytes_of(digits));
    }
    return std::cin.eof() ? 0 : 1;
}
