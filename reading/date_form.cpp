#include "reading/date_form.hpp"

#include <algorithm>

#include "catalogue/text.hpp"
#include "reading/double_from.hpp"

namespace finance::reading {

namespace {

constexpr double first_serial = 61.0;             // 1900-03-01
constexpr double serial_of_host_day_0 = 21916.0;  // 1960-01-01

bool are_digits(std::string_view text) { return std::ranges::all_of(text, catalogue::is_digit); }

std::optional<double> number_in(std::string_view text) {
    const ReadDouble number = double_from(text);
    return number.good() ? std::optional{number.value} : std::nullopt;
}

std::optional<double> day_of(std::string_view year, std::string_view month, std::string_view day) {
    const auto fits = [](std::string_view part) { return part.size() == 1 || part.size() == 2; };
    if (year.size() != 4 || !fits(month) || !fits(day)) return {};
    if (!are_digits(year) || !are_digits(month) || !are_digits(day)) return {};
    const auto two_digits = [](std::string_view part) { return std::string(2 - part.size(), '0').append(part); };
    return catalogue::host_date(std::string{year} + '-' + two_digits(month) + '-' + two_digits(day));
}

// Three parts between two separators of one kind.
std::optional<std::array<std::string_view, 3>> parts_of(std::string_view text) {
    const std::size_t first = text.find_first_of("./-");
    if (first == std::string_view::npos) return {};
    const std::size_t second = text.find(text[first], first + 1);
    if (second == std::string_view::npos) return {};
    return std::array{text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1)};
}

std::optional<double> read_parts(DateForm form, std::string_view text) {
    const bool solid = form == DateForm::ymd && text.size() == 8 && are_digits(text);
    if (solid) return day_of(text.substr(0, 4), text.substr(4, 2), text.substr(6));
    const auto parts = parts_of(text);
    if (!parts) return {};
    const auto& [a, b, c] = *parts;
    if (form == DateForm::ymd) return day_of(a, b, c);
    return form == DateForm::dmy ? day_of(c, b, a) : day_of(c, a, b);
}

std::optional<double> read_serial(std::string_view text) {
    const auto serial = number_in(text);
    if (!serial || !(*serial >= first_serial)) return {};
    return *serial - serial_of_host_day_0;
}

}  // namespace

std::optional<double> read_date(DateForm form, std::string_view text) {
    if (const auto day = catalogue::host_date(text)) return day;
    switch (form) {
        case DateForm::days:
            return number_in(text);
        case DateForm::sheet:
            return read_serial(text);
        default:
            return read_parts(form, text);
    }
}

std::string hint_on_dates(DateForm form, std::string_view text) {
    std::string hint;
    for (const DateForm other : {DateForm::ymd, DateForm::dmy, DateForm::mdy}) {
        const auto day = other == form ? std::nullopt : read_date(other, text);
        const auto date = day ? catalogue::iso_date(*day) : std::nullopt;
        if (!date) continue;
        hint.append(hint.empty() ? "; --dates " : ", --dates ");
        hint.append(date_form_words[static_cast<std::size_t>(other)]).append(" reads ").append(*date);
    }
    return hint;
}

}  // namespace finance::reading
