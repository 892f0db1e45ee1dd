#include "command/formulas/formula_tokens.hpp"

#include <algorithm>
#include <array>

#include "catalogue/text.hpp"
#include "command/formulas/formula_text.hpp"
#include "reading/argument_text.hpp"

namespace finance::command {

namespace {

constexpr std::string_view blanks = " \t\r\n";

using catalogue::is_digit;

constexpr bool is_name_start(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' || (c & 0x80) != 0;
}
constexpr bool is_name_part(char c) { return is_name_start(c) || is_digit(c) || c == '.'; }

template <typename Is>
std::size_t end_of(std::string_view text, std::size_t begin, Is is) {
    const auto* const end = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), is);
    return static_cast<std::size_t>(end - text.begin());
}

// Three numbers with the same sign between them; the end of their text, or 0.
std::size_t end_of_three_numbers(std::string_view text, std::array<std::string_view, 3>& numbers) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0 && (end == text.size() || (text[end] != '-' && text[end] != '/'))) return 0;
        if (i == 2 && text[end] != text[numbers[0].size()]) return 0;
        const std::size_t begin = i > 0 ? end + 1 : 0;
        end = end_of(text, begin, is_digit);
        if (end == begin) return 0;
        numbers[i] = text.substr(begin, end - begin);
    }
    const bool goes_on = end < text.size() && (is_name_part(text[end]) || text[end] == '%');
    return goes_on ? 0 : end;
}

bool is_year(std::string_view number) { return number.size() == 4 && number >= "1900" && number < "2200"; }

// The end of what looks like a date at the text's beginning; 0: nothing does.
std::size_t end_of_date(std::string_view text) {
    std::array<std::string_view, 3> numbers;
    const std::size_t end = end_of_three_numbers(text, numbers);
    if (end == 0) return 0;
    if (catalogue::host_date(text.substr(0, end))) return end;
    const auto is_short = [](std::string_view number) { return number.size() <= 2; };
    const bool first = is_year(numbers[0]) && is_short(numbers[2]);
    const bool last = is_year(numbers[2]) && is_short(numbers[0]);
    return (first || last) && is_short(numbers[1]) ? end : 0;
}

}  // namespace

bool looks_like_date(std::string_view text) { return !text.empty() && end_of_date(text) == text.size(); }

std::string without_marks(std::string_view quoted) {
    const char mark = quoted.front();
    std::string text;
    for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
        text += quoted[i];
        if (quoted[i] == mark) ++i;
    }
    return text;
}

void FormulaTokens::fail(const std::string& what, std::size_t at) const {
    const std::string whole = in_quotes(text_);
    const std::string_view rest = text_.substr(at);
    if (rest.empty()) throw FormulaError{what + " at the end of " + whole};
    throw FormulaError{what + (at == 0 ? "" : " at " + in_quotes(rest)) + (at == 0 ? " in " : " of ") + whole};
}

bool FormulaTokens::take(std::string_view sign) {
    if (!token_.is(sign)) return false;
    advance();
    return true;
}

bool FormulaTokens::word(std::string_view word) const {
    return token_.kind == Token::Kind::name && catalogue::same_name(token_.text, word);
}

void FormulaTokens::advance() {
    const std::size_t begin =
        std::min(text_.find_first_not_of(blanks, token_.begin + token_.text.size()), text_.size());
    token_ = {.begin = begin, .text = text_.substr(begin, 0)};
    if (begin == text_.size()) return;
    const char c = text_[begin];
    if (is_digit(c) || (c == '.' && is_digit(at(begin + 1)))) return read_number();
    if (c == '"' || c == '\'') return read_quoted(c);
    if (is_name_start(c)) {
        token_.kind = Token::Kind::name;
        token_.text = text_.substr(begin, end_of(text_, begin, is_name_part) - begin);
        return;
    }
    read_sign();
}

std::size_t FormulaTokens::end_of_number() const {
    std::size_t end = end_of(text_, token_.begin, is_digit);
    if (at(end) == '.') end = end_of(text_, end + 1, is_digit);
    if (at(end) == 'e' || at(end) == 'E') {
        const std::size_t exponent = end + (at(end + 1) == '-' || at(end + 1) == '+' ? 2 : 1);
        if (is_digit(at(exponent))) end = end_of(text_, exponent, is_digit);
    }
    return end + (at(end) == '%' ? 1 : 0);
}

void FormulaTokens::read_number() {
    const std::size_t date_end = end_of_date(text_.substr(token_.begin));
    if (date_end > 0) {
        token_.text = text_.substr(token_.begin, date_end);
        const auto date = catalogue::host_date(token_.text);
        if (!date) {
            fail(in_quotes(token_.text) + " looks like a date: that is year-month-day as in 2008-02-15; " +
                 "a division has blanks around its sign,");
        }
        token_.kind = Token::Kind::date;
        token_.value = *date;
        return;
    }
    token_.kind = Token::Kind::number;
    token_.text = text_.substr(token_.begin, end_of_number() - token_.begin);
    const auto value = reading::read_value(catalogue::Kind::number, token_.text);
    if (!value) fail(reading::unreadable(catalogue::Kind::number, token_.text) + ',');
    token_.value = value->number();
}

void FormulaTokens::read_quoted(char mark) {
    std::size_t end = token_.begin + 1;
    for (;; ++end) {
        end = text_.find(mark, end);
        if (end == std::string_view::npos) fail("a quotation mark is not closed");
        if (at(++end) != mark) break;
    }
    token_.kind = mark == '"' ? Token::Kind::quoted : Token::Kind::text;
    token_.text = text_.substr(token_.begin, end - token_.begin);
}

void FormulaTokens::read_sign() {
    const std::string_view rest = text_.substr(token_.begin);
    for (const std::string_view sign : {"<=", ">=", "!=", "<>", "=="}) {
        if (!rest.starts_with(sign)) continue;
        token_.kind = Token::Kind::sign;
        token_.text = rest.substr(0, 2);
        return;
    }
    if (std::string_view{"+-*/^(),<>=."}.find(rest.front()) == std::string_view::npos) {
        fail(in_quotes(rest.substr(0, std::max<std::size_t>(catalogue::character_length(rest), 1))) +
             " has no meaning here,");
    }
    token_.kind = rest.front() == '.' ? Token::Kind::missing : Token::Kind::sign;
    token_.text = rest.substr(0, 1);
}

}  // namespace finance::command
