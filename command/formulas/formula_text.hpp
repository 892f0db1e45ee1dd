// Arithmetic and conditions as they are written.
//
//      condition   and-terms joined by `or`; those joined by `and`; `not` before one
//      comparison  < <= > >= = != between two numbers or two texts
//      sum         + and -, then * and /, then a sign, then ^: -2^2 is -4, and 2^3^2 is 2^9
//      value       5, 1e-5, 6%, 2025-01-31, . (missing); a name; (...); min(...), max(...), round(x), round(x, places),
//                  abs(x)
//
//  (1) Numbers are what they are as an argument alone; a date is its number of days.
//  (2) A name is of letters, digits, _, $ and points, no digit first. "any name" stands in quotation marks.
//  (3) In a condition "..." is a text where there is no such name, '...' always is; a mark within is doubled.
//  (4) What is written like a date of another country (01/02/2024) is refused: nobody divides so.
//  (5) Only so many brackets and powers stand within each other, so that no text overflows the stack.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "catalogue/text.hpp"
#include "command/formulas/formula.hpp"

namespace finance::command {

inline constexpr std::size_t most_nested = 200;

// One sentence that says where.
class FormulaError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct NameMeaning {
    std::optional<double> constant{};  // or else what is read:
    std::size_t number = 0;
    bool dated = false;
};

enum class NameForm : std::uint8_t { word, quoted, quoted_or_text };

class FormulaNames {
public:
    virtual ~FormulaNames() = default;
    [[nodiscard]] virtual std::optional<NameMeaning> find(std::string_view name, NameForm form) const = 0;
    // The sentence for a name that was not found, without its end.
    [[nodiscard]] virtual std::string unknown(std::string_view name) const = 0;
};

// FormulaError.
Formula read_formula(std::string_view text, const FormulaNames& names);
Formula read_condition(std::string_view text, const FormulaNames& names);

// min, max, round, abs.
bool is_function(std::string_view name);

// Whether a word that is no value may be meant as arithmetic: it has an operator, a bracket or a quotation mark.
bool looks_like_formula(std::string_view text);

using catalogue::in_quotes;
using catalogue::shown;

}  // namespace finance::command
