// What people need to know of each calculation. Everything that they read is made from this table: help, error
// sentences, reference pages, the wrappers of other languages.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace finance::catalogue {

enum class Kind : std::uint8_t {
    number,
    whole,      // whole to 1e-12 of its size, at most 2^53
    date,       // whole days since 1960-01-01
    date_time,  // days since 1960-01-01; a fraction of a day counts
    basis,      // day-count basis: a keyword or its code
    flag,       // exactly whole
    numbers,    // a list
    dates,      // a list
};

constexpr bool is_list(Kind kind) { return kind == Kind::numbers || kind == Kind::dates; }
constexpr bool is_dated(Kind kind) { return kind == Kind::date || kind == Kind::date_time || kind == Kind::dates; }

enum class Relation : std::uint8_t { none, above, at_least, at_most };

constexpr bool holds(double x, Relation relation, double y) {
    switch (relation) {
        case Relation::above:
            return x > y;
        case Relation::at_least:
            return x >= y;
        case Relation::at_most:
            return x <= y;
        case Relation::none:
            break;
    }
    return true;
}

struct Bound {
    Relation relation = Relation::none;
    double limit = 0.0;
};

inline constexpr Bound above_0{Relation::above, 0.0};
inline constexpr Bound at_least_0{Relation::at_least, 0.0};
inline constexpr Bound at_least_1{Relation::at_least, 1.0};
inline constexpr Bound at_most_1{Relation::at_most, 1.0};

enum class Need : std::uint8_t {
    required,
    may_be_missing,  // keeps its place in the call, but without a value it stands for its default
    optional,        // of a list: it may have no values
};

// How a whole number is kept once it has passed; a count is bounded as it is kept.
enum class Width : std::uint8_t { bits_64, bits_32 };

// How this argument must lie to another one of the same call. A subject other than this argument: two arguments before
// this one must lie so, which is examined before this one is, and laid at its door.
struct Order {
    Relation relation = Relation::none;
    std::string_view other{};
    double plus = 0.0;             // added to the other one
    std::string_view subject{};    // empty: this argument
    Width width = Width::bits_32;  // in which two whole numbers are compared
};

struct Parameter {
    std::string_view name{};
    Kind kind = Kind::number;
    std::string_view unit{};     // of one unit of the value
    std::string_view meaning{};  // one line
    Need need = Need::required;
    std::string_view default_text{};  // what a value left out stands for; empty where it is required
    Bound lower{};
    Bound upper{};
    Width bound_width = Width::bits_64;  // the width that the bounds and orders look at
    std::array<Order, 3> orders{};       // in the order in which they are examined
    std::string_view rule{};             // what the fields above cannot say: "must ..."

    // ---- The same argument but for what is said here
    template <typename Field>
    [[nodiscard]] constexpr Parameter with(Field Parameter::*field, const std::type_identity_t<Field>& value) const {
        Parameter made = *this;
        made.*field = value;
        return made;
    }
    [[nodiscard]] constexpr Parameter bounded(const Bound& bound) const {
        return with(bound.relation == Relation::at_most ? &Parameter::upper : &Parameter::lower, bound);
    }
    [[nodiscard]] constexpr Parameter counted() const {  // from 1 up, as its low 32 bits say
        return with(&Parameter::bound_width, Width::bits_32).bounded(at_least_1);
    }
    [[nodiscard]] constexpr Parameter optional(std::string_view default_words) const {
        return with(&Parameter::need, Need::optional).with(&Parameter::default_text, default_words);
    }
    [[nodiscard]] constexpr Parameter ordered(const Order& order) const {  // one order more
        Parameter made = *this;
        *std::ranges::find(made.orders, Relation::none, &Order::relation) = order;
        return made;
    }
};

enum class ResultKind : std::uint8_t { number, date, rate, amount };

inline constexpr std::string_view never_fails = "never: whatever passes its rules has an answer";

struct Example {
    std::string_view arguments;  // as typed after the name
    std::string_view result;     // as printed
};

// At most two parameters are lists; two have equally many values, the first of one belonging to the first of the other.
struct Calculation {
    std::string_view name{};
    std::string_view answers{};  // one line
    std::span<const Parameter> parameters{};
    ResultKind result = ResultKind::number;
    std::string_view formula{};
    std::string_view remarks{};  // signs and special cases
    std::string_view failure{};  // why there may be no answer although no argument is at fault
    bool searches = false;       // the answer is looked for step by step
    Example example{};
};

struct Family {
    std::string_view title;
    std::span<const Calculation> calculations;  // ascending by name
};

std::span<const Family> families();
std::span<const Calculation> calculations();  // of all families, ascending by name

// By name, upper or lower case; null where there is none.
const Calculation* find(std::string_view name);
// The parameter's index, by name in upper or lower case; the number of parameters where there is none.
std::size_t find_parameter(const Calculation& calculation, std::string_view name);
// Of a calculation of the table.
const Family& family_of(const Calculation& calculation);

enum class Cost : std::uint8_t { arithmetic, dates, search };  // ascending

constexpr Cost cost_of(const Calculation& calculation) {
    if (calculation.searches) return Cost::search;
    const auto dated = [](const Parameter& parameter) { return is_dated(parameter.kind); };
    return std::ranges::any_of(calculation.parameters, dated) ? Cost::dates : Cost::arithmetic;
}

// ---- Counts as the module has them: of arguments, the name included

constexpr std::size_t list_count(const Calculation& calculation) {
    std::size_t lists = 0;
    for (const Parameter& parameter : calculation.parameters) lists += is_list(parameter.kind) ? 1U : 0U;
    return lists;
}

// Calculations of lists look into their shape themselves: the name and one value let a call through.
constexpr std::size_t minimum_count(const Calculation& calculation) {
    if (list_count(calculation) > 0) return 2;
    std::size_t count = 1;
    for (const Parameter& parameter : calculation.parameters) count += parameter.need != Need::optional ? 1U : 0U;
    return count;
}

// 0: unbounded.
constexpr std::size_t maximum_count(const Calculation& calculation) {
    return list_count(calculation) > 0 ? 0 : 1 + calculation.parameters.size();
}

}  // namespace finance::catalogue
