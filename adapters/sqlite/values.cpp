#include "adapters/sqlite/values.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::sqlite {

using catalogue::is_digit;
using catalogue::Kind;
using catalogue::Parameter;

// ---- Dates

namespace {

constexpr double first_julian_day = 2'000'000.0;
constexpr double julian_day_of_host_day_0 = ZELKOVAN_EPOCH_JULIAN_DAY - 0.5;  // days begin at noon
constexpr double seconds_a_day = 86'400.0;

// Two digits below the limit; -1 otherwise.
int two_digits(std::string_view text, int limit) {
    if (text.size() < 2 || !is_digit(text[0]) || !is_digit(text[1])) return -1;
    const int value = (text[0] - '0') * 10 + (text[1] - '0');
    return value < limit ? value : -1;
}

// ".5", ".500": the decimals after a point, at least one; -1 otherwise.
double decimals(std::string_view text) {
    if (text.size() < 2 || text[0] != '.') return -1.0;
    double value = 0.0;
    double unit = 1.0;
    for (const char c : text.substr(1)) {
        if (!is_digit(c)) return -1.0;
        value = value * 10.0 + (c - '0');
        unit *= 10.0;
    }
    return value / unit;
}

// "05" or "05.25".
std::optional<double> seconds(std::string_view text) {
    const int whole = two_digits(text, 60);
    const double part = text.size() > 2 ? decimals(text.substr(2)) : 0.0;
    if (whole < 0 || !(part >= 0.0)) return {};
    return whole + part;
}

// Seconds since midnight of "09:30", "09:30:05", "09:30:05.25".
std::optional<double> time_of_day(std::string_view text) {
    if (text.size() < 5 || text[2] != ':') return {};
    const int hour = two_digits(text, 24);
    const int minute = two_digits(text.substr(3), 60);
    if (hour < 0 || minute < 0) return {};
    const int to_the_minute = hour * 3600 + minute * 60;
    if (text.size() == 5) return to_the_minute;
    const auto beyond = text[5] == ':' ? seconds(text.substr(6)) : std::nullopt;
    return beyond ? std::optional{to_the_minute + *beyond} : std::nullopt;
}

}  // namespace

std::optional<double> host_days_of_text(std::string_view text) {
    const auto day = catalogue::host_date(text.substr(0, 10));
    if (!day || text.size() == 10) return day;
    if (text[10] != ' ' && text[10] != 'T') return {};
    const auto time = time_of_day(text.substr(11));
    return time ? std::optional{*day + *time / seconds_a_day} : std::nullopt;
}

double host_days_of_number(double number) {
    return number >= first_julian_day ? number - julian_day_of_host_day_0 : number;
}

double number_of_host_days(double host_days) {
    return host_days >= first_julian_day ? host_days + julian_day_of_host_day_0 : host_days;
}

// ---- Arguments

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

// What was wrong.

std::string fault(Kind kind, sqlite3_value* value) {
    const bool blob = sqlite3_value_type(value) == SQLITE_BLOB;
    const std::string what = blob ? "a blob" : catalogue::in_quotes(text_of(value));
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

// ---- Answers

namespace {

void give_date(sqlite3_context* context, double host_days) {
    if (const auto text = catalogue::iso_date(host_days)) {
        give_text(context, *text);
    } else {
        sqlite3_result_double(context, number_of_host_days(host_days));
    }
}

}  // namespace

void give_text(sqlite3_context* context, std::string_view text) {
    // SQLITE_TRANSIENT, which is a number made a pointer: SQLite copies the text.
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);  // NOLINT
}

void give_error(sqlite3_context* context, std::string_view sentence) {
    constexpr std::size_t longest = std::numeric_limits<int>::max();
    sqlite3_result_error(context, sentence.data(), static_cast<int>(std::min(sentence.size(), longest)));
}

void give_sentence(sqlite3_context* context, std::string_view sentence) {
    if (!sentence.empty()) give_text(context, sentence);
}

void give_answer(sqlite3_context* context, const catalogue::Calculation& calculation, std::optional<double> value) {
    if (!value) return sqlite3_result_null(context);
    if (calculation.result == catalogue::ResultKind::date) return give_date(context, *value);
    sqlite3_result_double(context, *value);
}

}  // namespace finance::adapters::sqlite
