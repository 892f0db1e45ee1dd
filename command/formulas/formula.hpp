// Arithmetic, and conditions, as they are calculated: a list of steps on a stack of values.
//
//  (1) Values are doubles, and come to what doubles come to: 1/0 is infinite.
//  (2) A missing value (a NaN) in any operation gives a missing value.
//  (3) A truth is 1, 0, or missing where a value that it depends on is; "no and missing" is no, "yes or missing" yes.
//  (4) Rows are calculated a block at a time, each step for all of them before the next one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

enum class Operation : std::uint8_t {
    constant,  // onto the stack, as is the next
    number,
    texts,   // whether two texts compare so
    negate,  // of the topmost value, as are the next five
    absolute,
    round,  // halves away from zero
    is_missing,
    has_value,
    opposite,  // of a truth
    add,       // of the two topmost values, as are all from here on
    subtract,
    multiply,
    divide,
    power,
    smaller,
    larger,
    round_to,  // decimal places, negative ones before the point
    less,
    at_most,
    greater,
    at_least,
    equal,
    unequal,
    both,
    either,
};

constexpr bool pushes(Operation operation) { return operation <= Operation::texts; }
constexpr bool takes_two(Operation operation) { return operation >= Operation::add; }

struct Step {
    Operation operation = Operation::constant;
    std::size_t index = 0;  // of the number that is read, or of the comparison of texts
    double constant = 0.0;
};

struct TextOperand {
    bool read = false;      // of the row, or else written
    std::size_t index = 0;  // of the text that is read
    std::string written{};
};

struct TextComparison {
    Operation relation = Operation::equal;
    TextOperand left{};
    TextOperand right{};
};

// What steps need while they run. Of one thread.
using FormulaStack = std::vector<double>;

class Formula {
public:
    static constexpr std::size_t block_rows = 256;

    // What is to be handed over, in this order, by the numbers that the names were given.
    [[nodiscard]] const std::vector<std::size_t>& numbers() const { return numbers_; }
    [[nodiscard]] const std::vector<std::size_t>& texts() const { return texts_; }
    // Whether the result is one: a date and some days, the later of two dates.
    [[nodiscard]] bool dated() const { return dated_; }
    // Of a formula that reads nothing.
    [[nodiscard]] std::optional<double> constant() const;

    [[nodiscard]] double value(std::span<const double> numbers, std::span<const std::string_view> texts,
                               FormulaStack& stack) const;
    // Of a block of rows: each column has block_rows places, so has the result. No texts.
    void values(std::span<const double* const> columns, FormulaStack& stack, double* results) const;

private:
    friend class FormulaCompiler;

    template <std::size_t rows, typename Read>
    const double* run(Read read, std::span<const std::string_view> texts, FormulaStack& stack) const;

    std::vector<Step> steps_;
    std::vector<TextComparison> comparisons_;
    std::vector<std::size_t> numbers_;
    std::vector<std::size_t> texts_;
    std::size_t deepest_ = 0;  // values on the stack
    bool dated_ = false;
};

}  // namespace finance::command
