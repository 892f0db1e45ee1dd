#include "reading/argument_text.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include "calls/meant.hpp"
#include "catalogue/text.hpp"
#include "reading/double_from.hpp"
#include "reading/plain_decimal.hpp"

namespace finance::reading {

namespace {

using catalogue::Kind;

constexpr std::string_view without_plus(std::string_view text) {
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
    return plus ? text.substr(1) : text;
}

ReadDouble read_plain(std::string_view text) { return double_from(without_plus(text)); }

// The decimal point moves in the text, before anything is rounded.
ReadDouble read_percentage(std::string_view number) {
    constexpr int places = 2;
    const std::size_t e = number.find_first_of("eE");
    if (e == std::string_view::npos) return read_plain(std::string{number} + "e-" + std::to_string(places));
    const std::string_view exponent_text = without_plus(number.substr(e + 1));
    std::int64_t exponent = 0;
    const char* end = exponent_text.data() + exponent_text.size();
    const auto [stop, fault] = std::from_chars(exponent_text.data(), end, exponent);
    if (stop != end || fault == std::errc::invalid_argument) return {.fault = std::errc::invalid_argument};
    if (fault != std::errc{} || exponent < std::numeric_limits<std::int64_t>::min() + places) {
        return {.fault = std::errc::result_out_of_range};
    }
    return read_plain(std::string{number.substr(0, e + 1)} + std::to_string(exponent - places));
}

ReadDouble read_number(std::string_view text) {
    if (ReadDouble plain; read_plain_decimal(text, plain.value)) return plain;
    return text.ends_with('%') ? read_percentage(text.substr(0, text.size() - 1)) : read_plain(text);
}

}  // namespace

// Every missing value is the one that the module knows.
std::optional<host::Argument> read_value(Kind kind, std::string_view text) {
    if (text.empty()) return host::Argument::absent();
    if (text == ".") return host::Argument::missing();
    if (catalogue::is_dated(kind)) {
        if (const auto date = catalogue::host_date(text)) return *date;
    }
    const ReadDouble reading = read_number(text);
    if (reading.good() && !std::isnan(reading.value)) return reading.value;
    if (reading.good()) return host::Argument::missing();
    if (kind == Kind::basis) return host::Argument{text};
    return {};
}

std::string unreadable(Kind kind, std::string_view text) {
    const std::string shown = catalogue::in_quotes(text);
    const ReadDouble reading = read_number(text);
    if (reading.good() && !calls::is_meant(kind, reading.value)) return calls::unmeant_words(kind, reading.value);
    if (reading.fault == std::errc::result_out_of_range) {
        return shown + " is beyond what a double can hold";
    }
    if (catalogue::is_dated(kind)) {
        return shown + " is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01";
    }
    return shown + " is not a number";
}

}  // namespace finance::reading
