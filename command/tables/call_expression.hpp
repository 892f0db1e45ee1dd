// Calls as they are written for tables: PRICE(settlement, maturity, rate=coupon, 6.5%, 100, 2, act/360) as p, ...
//
//  (1) Calls are separated by commas, and may be named: as name, or as "any name".
//  (2) Arguments are separated by commas, in order or, after those, by name: rate=coupon.
//  (3) A word goes up to the next comma, closing bracket or equals sign that stands in no bracket, without the blanks
//      around it. It is a column's name, a value or arithmetic; which of them is for the table's header to say.
//  (4) "coupon rate" is a column's name, 'act/360' a value; the mark itself is doubled within. With an operator beside
//      it, a quoted name is part of a word.
//  (5) What is no call is a formula alone; it goes up to the next comma, or to `as`.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

struct Operand {
    enum class Kind : std::uint8_t { nothing, word, column, text };
    Kind kind = Kind::nothing;
    std::string text{};
};

struct NamedOperand {
    std::string name{};  // empty: in order
    Operand operand{};
};

struct CallExpression {
    std::string calculation{};
    std::vector<NamedOperand> arguments{};
    std::string formula{};  // in place of both
    std::string result{};   // empty: not named
};

// UsageError.
std::vector<CallExpression> read_calls(std::string_view text);

// Names of columns separated by commas.
std::vector<Operand> read_columns(std::string_view text);

}  // namespace finance::command
