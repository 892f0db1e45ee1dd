#include "command/formulas/formula.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/embedded_host.hpp"

namespace finance::command {

namespace {

// ---- One value. Comparisons with itself tell a NaN, so that loops need no branch.

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

double smaller(double a, double b) { return a < b || a != a ? a : b; }
double larger(double a, double b) { return a > b || a != a ? a : b; }
double truth(bool holds, double a, double b) { return a != a || b != b ? missing : static_cast<double>(holds); }

// pow(x, 0) and pow(1, x) have an answer whatever x is.
double power(double a, double b) { return a != a || b != b ? missing : std::pow(a, b); }

double both(double a, double b) {
    if (a == 0.0 || b == 0.0) return 0.0;
    return a != a || b != b ? missing : 1.0;
}

double either(double a, double b) {
    if (a == 1.0 || b == 1.0) return 1.0;
    return a != a || b != b ? missing : 0.0;
}

// Beyond 2^52 there is nothing behind the point, beyond 308 places nothing that a double could lose.
double round_to(double x, double places) {
    constexpr double all_whole = 0x1p52;
    constexpr double most_places = 308.0;
    if (x != x || places != places) return missing;
    const double n = std::trunc(places);
    if (n < -most_places) return std::copysign(0.0, x);
    const double unit = std::pow(10.0, std::min(std::abs(n), most_places));
    if (n < 0.0) return std::round(x / unit) * unit;
    return std::abs(x) * unit < all_whole ? std::round(x * unit) / unit : x;
}

// ---- Rows

template <std::size_t rows, typename Change>
void change(double* __restrict top, Change changed) {
    for (std::size_t i = 0; i < rows; ++i) top[i] = changed(top[i]);
}

template <std::size_t rows, typename Join>
void join(double* __restrict left, const double* __restrict right, Join joined) {
    for (std::size_t i = 0; i < rows; ++i) left[i] = joined(left[i], right[i]);
}

template <std::size_t rows>
void apply(Operation operation, double* a) {
    switch (operation) {
        case Operation::negate:
            return change<rows>(a, [](double x) { return -x; });
        case Operation::absolute:
            return change<rows>(a, [](double x) { return std::abs(x); });
        case Operation::round:
            return change<rows>(a, [](double x) { return std::round(x); });
        case Operation::is_missing:
            return change<rows>(a, [](double x) { return x != x ? 1.0 : 0.0; });
        case Operation::has_value:
            return change<rows>(a, [](double x) { return x != x ? 0.0 : 1.0; });
        default:
            return change<rows>(a, [](double x) { return 1.0 - x; });
    }
}

template <std::size_t rows>
void apply_relation(Operation operation, double* a, const double* b) {
    switch (operation) {
        case Operation::less:
            return join<rows>(a, b, [](double x, double y) { return truth(x < y, x, y); });
        case Operation::at_most:
            return join<rows>(a, b, [](double x, double y) { return truth(x <= y, x, y); });
        case Operation::greater:
            return join<rows>(a, b, [](double x, double y) { return truth(x > y, x, y); });
        case Operation::at_least:
            return join<rows>(a, b, [](double x, double y) { return truth(x >= y, x, y); });
        case Operation::equal:
            return join<rows>(a, b, [](double x, double y) { return truth(x == y, x, y); });
        case Operation::unequal:
            return join<rows>(a, b, [](double x, double y) { return truth(x != y, x, y); });
        case Operation::both:
            return join<rows>(a, b, both);
        default:
            return join<rows>(a, b, either);
    }
}

template <std::size_t rows>
void apply(Operation operation, double* a, const double* b) {
    switch (operation) {
        case Operation::add:
            return join<rows>(a, b, [](double x, double y) { return x + y; });
        case Operation::subtract:
            return join<rows>(a, b, [](double x, double y) { return x - y; });
        case Operation::multiply:
            return join<rows>(a, b, [](double x, double y) { return x * y; });
        case Operation::divide:
            return join<rows>(a, b, [](double x, double y) { return x / y; });
        case Operation::power:
            return join<rows>(a, b, power);
        case Operation::smaller:
            return join<rows>(a, b, smaller);
        case Operation::larger:
            return join<rows>(a, b, larger);
        case Operation::round_to:
            return join<rows>(a, b, round_to);
        default:
            return apply_relation<rows>(operation, a, b);
    }
}

double compared(const TextComparison& comparison, std::span<const std::string_view> texts) {
    const auto text = [&](const TextOperand& operand) {
        return operand.read ? texts[operand.index] : std::string_view{operand.written};
    };
    double order = text(comparison.left).compare(text(comparison.right));
    const double same = 0.0;
    apply_relation<1>(comparison.relation, &order, &same);
    return order;
}

// The module tells bit patterns of NaNs apart: every missing value is the one that it knows.
double as_known(double x, double known) { return x != x ? known : x; }

}  // namespace

// read(i): where the rows of the i-th number begin.
template <std::size_t rows, typename Read>
const double* Formula::run(Read read, std::span<const std::string_view> texts, FormulaStack& stack) const {
    if (stack.size() < deepest_ * rows) stack.resize(deepest_ * rows);
    double* end = stack.data();  // behind the topmost value
    for (const Step& step : steps_) {
        const Operation operation = step.operation;
        if (pushes(operation)) {
            if (operation == Operation::number) {
                std::copy_n(read(step.index), rows, end);
            } else {
                const bool constant = operation == Operation::constant;
                std::fill_n(end, rows, constant ? step.constant : compared(comparisons_[step.index], texts));
            }
            end += rows;
        } else if (takes_two(operation)) {
            end -= rows;
            apply<rows>(operation, end - rows, end);
        } else {
            apply<rows>(operation, end - rows);
        }
    }
    return stack.data();
}

double Formula::value(std::span<const double> numbers, std::span<const std::string_view> texts,
                      FormulaStack& stack) const {
    const double known = host::Argument::missing().number();
    return as_known(*run<1>([&](std::size_t i) { return &numbers[i]; }, texts, stack), known);
}

void Formula::values(std::span<const double* const> columns, FormulaStack& stack, double* results) const {
    const double known = host::Argument::missing().number();
    const double* calculated = run<block_rows>([&](std::size_t i) { return columns[i]; }, {}, stack);
    for (std::size_t i = 0; i < block_rows; ++i) results[i] = as_known(calculated[i], known);
}

std::optional<double> Formula::constant() const {
    if (!numbers_.empty() || !texts_.empty()) return {};
    FormulaStack stack;
    return value({}, {}, stack);
}

}  // namespace finance::command
