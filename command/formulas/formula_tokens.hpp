// The words and signs of a formula, one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace finance::command {

struct Token {
    enum class Kind : std::uint8_t { end, number, date, missing, name, quoted, text, sign };
    Kind kind = Kind::end;
    std::size_t begin = 0;  // where it stands
    std::string_view text{};
    double value = 0.0;  // of numbers and dates

    [[nodiscard]] bool is(std::string_view sign) const { return kind == Kind::sign && text == sign; }
};

// What stands between two marks, of which the text is the first; a mark within is doubled.
std::string without_marks(std::string_view quoted);

class FormulaTokens {
public:
    explicit FormulaTokens(std::string_view text) : text_{text} { advance(); }

    [[nodiscard]] const Token& here() const { return token_; }
    // To the next one. FormulaError.
    void advance();
    // Whether it is there; it is passed then.
    bool take(std::string_view sign);
    [[nodiscard]] bool word(std::string_view word) const;
    // `what` and where the text goes wrong: at the token.
    [[noreturn]] void fail(const std::string& what) const { fail(what, token_.begin); }

private:
    void read_number();
    void read_quoted(char mark);
    void read_sign();
    [[nodiscard]] std::size_t end_of_number() const;
    [[noreturn]] void fail(const std::string& what, std::size_t at) const;
    [[nodiscard]] char at(std::size_t i) const { return i < text_.size() ? text_[i] : '\0'; }

    std::string_view text_;
    Token token_{};
};

// Whether a text is three numbers with - or / between them, one a year of these times: 31/01/2024, 2024-1-31.
bool looks_like_date(std::string_view text);

}  // namespace finance::command
