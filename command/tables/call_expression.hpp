// Calls as they are written for tables: PRICE(settlement, maturity, rate=coupon, 6.5%, 100, 2, act/360) as p, ...
//
//  (1) Calls are separated by commas, and may be named: as name, or as "any name".
//  (2) Arguments are separated by commas, in order or, after those, by name: rate=coupon.
//  (3) A word goes up to the next comma, bracket or equals sign, without the blanks around it. It is a column's name or
//      a value; which of the two is for the table's header to say.
//  (4) "coupon rate" is a column's name, 'act/360' a value; the mark itself is doubled within.
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
    std::string result{};  // empty: not named
};

// UsageError.
std::vector<CallExpression> read_calls(std::string_view text);

// Names of columns separated by commas.
std::vector<Operand> read_columns(std::string_view text);

}  // namespace finance::command
