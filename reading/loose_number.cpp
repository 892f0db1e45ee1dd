#include "reading/loose_number.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

#include "catalogue/text.hpp"

namespace finance::reading {

namespace {

using catalogue::is_digit;

constexpr std::array<std::string_view, 6> blanks{" ", "\t", "\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x89", "\xE2\x80\x87"};
constexpr std::array<std::string_view, 2> apostrophes{"'", "\xE2\x80\x99"};

// Signs, and the codes of the currencies that are traded most.
constexpr std::array<std::string_view, 36> currencies{
    "$",   "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5", "USD", "EUR", "JPY", "GBP", "CNY", "AUD", "CAD", "CHF",
    "HKD", "SGD",          "SEK",      "KRW",      "NOK", "NZD", "INR", "MXN", "TWD", "ZAR", "BRL", "DKK",
    "PLN", "THB",          "ILS",      "IDR",      "CZK", "AED", "TRY", "HUF", "CLP", "SAR", "PHP", "MYR"};

std::size_t digits_before(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, is_digit) - text.begin());
}

// The first of the texts that the text begins or ends with; empty where none does.
template <typename Texts>
std::string_view beginning(std::string_view text, const Texts& texts) {
    const auto found = std::ranges::find_if(texts, [&](std::string_view one) { return text.starts_with(one); });
    return found != texts.end() ? *found : std::string_view{};
}

template <typename Texts>
std::string_view ending(std::string_view text, const Texts& texts) {
    const auto found = std::ranges::find_if(texts, [&](std::string_view one) { return text.ends_with(one); });
    return found != texts.end() ? *found : std::string_view{};
}

std::string_view without_blanks(std::string_view text) {
    for (std::string_view blank; !(blank = beginning(text, blanks)).empty();) text.remove_prefix(blank.size());
    for (std::string_view blank; !(blank = ending(text, blanks)).empty();) text.remove_suffix(blank.size());
    return text;
}

// ---- What stands around the digits

struct Around {
    bool sign = false;
    bool minus = false;
    bool brackets = false;
    bool currency = false;
};

// Takes one thing off the text; false where there is none to take.
bool take_one(std::string_view& text, Around& around, bool money) {
    if (!around.sign && (text.starts_with('-') || text.starts_with('+'))) {
        around.sign = true;
        around.minus = text.starts_with('-');
        text.remove_prefix(1);
        return true;
    }
    if (money && !around.brackets && text.starts_with('(') && text.ends_with(')')) {
        around.brackets = true;
        text = text.substr(1, text.size() - 2);
        return true;
    }
    if (!money || around.currency) return false;
    const std::string_view before = beginning(text, currencies);
    const std::string_view after = before.empty() ? ending(text, currencies) : std::string_view{};
    around.currency = !before.empty() || !after.empty();
    text.remove_prefix(before.size());
    text.remove_suffix(after.size());
    return around.currency;
}

// ---- The digits

// What separates groups at the front of a text; empty where nothing does.
std::string_view separator(std::string_view text, const NumberSigns& signs) {
    const char other = signs.decimal == ',' ? '.' : ',';
    if (text.starts_with(other)) return text.substr(0, 1);
    const std::string_view blank = beginning(text, blanks);
    return blank.empty() ? beginning(text, apostrophes) : blank;
}

// Takes the whole part off the text, without its separators. false where groups are not as they must be.
bool take_whole_part(std::string_view& text, const NumberSigns& signs, std::string& number) {
    const std::size_t first = digits_before(text);
    number += text.substr(0, first);
    const bool may_group = signs.groups && first >= 1 && first <= 3 && text.front() != '0';
    text.remove_prefix(first);
    for (const std::string_view mark = separator(text, signs); !mark.empty() && text.starts_with(mark);) {
        text.remove_prefix(mark.size());
        if (!may_group || digits_before(text) != 3) return false;
        number += text.substr(0, 3);
        text.remove_prefix(3);
    }
    return true;
}

// The rest: a fraction and an exponent.
bool take_rest(std::string_view text, const NumberSigns& signs, std::string& number) {
    if (text.starts_with(signs.decimal)) {
        const std::size_t digits = digits_before(text.substr(1));
        number.append(1, '.').append(text.substr(1, digits));
        text.remove_prefix(1 + digits);
    }
    number += text;
    return text.empty() || ((text.front() == 'e' || text.front() == 'E') && has_digit(text));
}

}  // namespace

bool has_digit(std::string_view text) { return std::ranges::any_of(text, is_digit); }

std::optional<std::string> rewritten_number(std::string_view text, const NumberSigns& signs) {
    if (!has_digit(text)) return {};
    if (signs.groups) text = without_blanks(text);
    Around around;
    while (take_one(text, around, signs.money)) text = signs.money ? without_blanks(text) : text;
    const bool percent = text.ends_with('%');
    if (percent) text = without_blanks(text.substr(0, text.size() - 1));
    if ((around.brackets && around.sign) || (around.currency && percent)) return {};
    if (text.empty() || (!is_digit(text.front()) && text.front() != signs.decimal)) return {};
    std::string number{around.minus || around.brackets ? "-" : ""};
    if (!take_whole_part(text, signs, number) || !take_rest(text, signs, number)) return {};
    return number.append(percent ? "%" : "");
}

}  // namespace finance::reading
