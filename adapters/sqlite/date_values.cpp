#include "adapters/sqlite/date_values.hpp"

#include "abi/zelkovan.h"
#include "catalogue/text.hpp"

namespace finance::adapters::sqlite {

namespace {

constexpr double first_julian_day = 2'000'000.0;
constexpr double julian_day_of_host_day_0 = ZELKOVAN_EPOCH_JULIAN_DAY - 0.5;  // days begin at noon
constexpr double seconds_a_day = 86'400.0;

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

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

}  // namespace finance::adapters::sqlite
