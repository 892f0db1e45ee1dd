// The grammar of formula_text.hpp as functions, one a rule.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "command/formulas/formula.hpp"
#include "command/formulas/formula_text.hpp"
#include "command/formulas/formula_tokens.hpp"

namespace finance::command {

struct Sign {
    std::string_view text;
    Operation operation;
};

// The one of the signs that comes next; null where another comes.
template <std::size_t count>
const Sign* sign_at(const FormulaTokens& tokens, const std::array<Sign, count>& signs) {
    const auto* const found =
        std::ranges::find_if(signs, [&](const Sign& sign) { return tokens.here().is(sign.text); });
    return found != signs.end() ? found : nullptr;
}

// Each rule of the grammar emits the steps of what it reads, and gives what they leave on the stack.
class FormulaCompiler {
public:
    FormulaCompiler(std::string_view text, const FormulaNames& names, bool condition)
        : tokens_{text}, names_{names}, condition_{condition} {}

    Formula read();

private:
    enum class Type : std::uint8_t { number, truth, text };
    struct Value {
        Type type = Type::number;
        bool dated = false;
        bool missing = false;  // the dot
        Token name{};          // of one that stands alone, and may be a text as well
        std::string text{};
    };

    Value any();  // a condition, or a sum where there are none
    Value terms(std::string_view joining, Operation operation, Value (FormulaCompiler::*term)());
    Value alternative() { return terms("and", Operation::both, &FormulaCompiler::negation); }
    Value negation();
    Value comparison();
    void compare(Operation relation, const Value& left, const Value& right);
    void compare_missing(Operation relation, const Value& dot);
    Value sum();
    Value product();
    Value signed_power();
    Value power();
    Value value();
    Value bracket();
    Value name();
    Value quoted();
    void check_function(const Token& name) const;
    Value function(const Token& name);
    Value number_read(const NameMeaning& meaning);
    Value constant(double value, bool dated = false);
    TextOperand text_operand(const Value& value);

    void emit(Step step);
    void drop_last();
    void drop_number();
    void want(const Value& value, Type type) const;
    void enter() {
        if (++nested_ > most_nested) {
            tokens_.fail("brackets and powers stand more than " + std::to_string(most_nested) + " deep");
        }
    }
    void leave() { --nested_; }
    // The places of numbers among those that are read.
    using Places = std::map<std::size_t, std::size_t>;
    static std::size_t place_of(std::vector<std::size_t>& reads, Places& places, std::size_t number);

    FormulaTokens tokens_;
    const FormulaNames& names_;
    bool condition_;
    Formula formula_;
    std::vector<std::size_t> uses_;  // of each number that is read
    Places numbers_{};
    Places texts_{};
    std::size_t depth_ = 0;
    std::size_t nested_ = 0;
};

}  // namespace finance::command
