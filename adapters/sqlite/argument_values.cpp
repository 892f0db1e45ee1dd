#include "adapters/sqlite/argument_values.hpp"

#include <cmath>
#include <optional>
#include <string_view>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/date_values.hpp"

namespace finance::adapters::sqlite {

using catalogue::Kind;
using catalogue::Parameter;

namespace {

bool wants_whole_days(Kind kind) { return is_dated(kind) && kind != Kind::date_time; }

std::string_view text_of(sqlite3_value* value) {
    const unsigned char* text = sqlite3_value_text(value);
    if (text == nullptr) throw std::bad_alloc{};
    return {static_cast<const char*>(static_cast<const void*>(text)),
            static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

bool read_date_text(const Parameter& parameter, sqlite3_value* value, host::Argument& argument) {
    const auto date = host_days_of_text(text_of(value));
    if (!date || (wants_whole_days(parameter.kind) && *date != std::trunc(*date))) return false;
    argument = *date;
    return true;
}

bool read_text(const Parameter& parameter, sqlite3_value* value, host::Argument& argument) {
    if (is_dated(parameter.kind)) return read_date_text(parameter, value, argument);
    if (parameter.kind == Kind::basis) {
        argument = basis_argument(text_of(value));
        return true;
    }
    if (sqlite3_value_numeric_type(value) == SQLITE_TEXT) return false;
    argument = sqlite3_value_double(value);
    return true;
}

// ---- What was wrong

constexpr std::size_t longest_shown = 60;

// The text in marks; a long one is cut where a character begins.
std::string shown(std::string_view text) {
    if (text.size() <= longest_shown) return '\'' + std::string{text} + '\'';
    std::size_t end = longest_shown;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return '\'' + std::string{text.substr(0, end)} + "...'";
}

std::string fault(Kind kind, sqlite3_value* value) {
    const bool blob = sqlite3_value_type(value) == SQLITE_BLOB;
    const std::string what = blob ? "a blob" : shown(text_of(value));
    if (kind == Kind::basis) return what + " is not a day-count basis";
    if (!is_dated(kind)) return what + " is not a number";
    if (!blob && host_days_of_text(text_of(value))) return what + " has a time of day, but whole days are wanted";
    return what + " is not a date: text as in 2008-02-15, days since 1960-01-01, or a Julian day";
}

}  // namespace

bool read_argument(const Parameter& parameter, sqlite3_value* value, int type, host::Argument& argument) {
    if (type == SQLITE_TEXT) return read_text(parameter, value, argument);
    if (type == SQLITE_BLOB) return false;
    const double number = sqlite3_value_double(value);
    argument = is_dated(parameter.kind) ? host_days_of_number(number) : number;
    return true;
}

std::string unreadable(const catalogue::Calculation& calculation, std::size_t parameter, sqlite3_value* value) {
    const Parameter& at_fault = calculation.parameters[parameter];
    std::string sentence{calculation.name};
    sentence.append(": argument ").append(std::to_string(parameter + 1)).append(" (").append(at_fault.name);
    return sentence.append("): ").append(fault(at_fault.kind, value));
}

}  // namespace finance::adapters::sqlite
