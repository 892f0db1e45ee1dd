// Mirrors the module's rules in its order: value there, value not missing, whole, bounds, other arguments.
//
//  (1) A whole number is at most 2^53 and differs from its truncation to 64 bits by no more than 1e-12 of its size.
//  (2) Where the bounds look at 32 bits they look at the low 32 bits of that truncation.
//  (3) A flag equals its own conversion to 32 bits.
#include "calls/diagnosis.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "abi/zelkovan.h"
#include "calls/meant.hpp"
#include "catalogue/layout.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::calls {

using catalogue::basis_keywords;
using catalogue::Bound;
using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Need;
using catalogue::Order;
using catalogue::Parameter;
using catalogue::place_of;
using catalogue::plain_text;
using catalogue::Relation;
using catalogue::value_text;
using catalogue::Width;
using host::Argument;

namespace {

constexpr double largest_whole_number = ZELKOVAN_LARGEST_WHOLE;
constexpr double whole_tolerance = 1e-12;

struct Call {
    const Calculation& calculation;
    Arguments arguments;
};

using Fault = std::optional<std::string>;

// Null where it is no number.
const double* number_in(const Argument& argument) {
    return argument.kind() == Argument::Kind::number ? &argument.number() : nullptr;
}

// The parameter of a position; null where there is none.
const Parameter* parameter_at(const Calculation& calculation, std::size_t position, std::size_t values) {
    const std::size_t index = place_of(calculation, position, values).parameter;
    return index < calculation.parameters.size() ? &calculation.parameters[index] : nullptr;
}

// ---- Numbers as they are kept

// Out of range: the smallest value.
std::int64_t truncated(double x) {
    if (!(x >= -0x1p63 && x < 0x1p63)) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(x);
}

bool is_counted(const Parameter& parameter) {
    return parameter.kind == Kind::whole || parameter.kind == Kind::date || parameter.kind == Kind::dates;
}

double as_bounded(const Parameter& parameter, double x) {
    if (!is_counted(parameter)) return x;
    const std::int64_t k = truncated(x);
    if (parameter.bound_width == Width::bits_64) return static_cast<double>(k);
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(k) & 0xFFFFFFFFU);
}

// Two whole numbers are compared in the order's width, whatever width their own bounds look at.
double as_compared(const Parameter& parameter, const Order& order, double x) {
    Parameter compared = parameter;
    if (parameter.kind == Kind::whole) compared.bound_width = order.width;
    return as_bounded(compared, x);
}

// ---- One rule each

Fault whole_fault(double x) {
    if (x > largest_whole_number) return plain_text(x) + " is above 2^53";
    if (std::abs(x - static_cast<double>(truncated(x))) <= whole_tolerance * std::abs(x)) return {};
    return plain_text(x) + (x < -0x1p63 ? " is below -2^63" : " is not a whole number");
}

Fault flag_fault(double x) {
    if (x != std::trunc(x) || std::isinf(x)) return plain_text(x) + " is not a whole number";
    if (x < -0x1p31 || x >= 0x1p31) return plain_text(x) + " does not fit a flag";
    return {};
}

Fault bound_fault(const Parameter& parameter, const Bound& bound, double x) {
    if (holds(as_bounded(parameter, x), bound.relation, bound.limit)) return {};
    const bool dated = is_dated(parameter.kind);
    if (holds(x, bound.relation, bound.limit)) {
        return plain_text(x) + " does not fit a count (" + plain_text(bound.limit) + " to 2147483647)";
    }
    return value_text(x, dated) + ' ' + std::string{broken_words(bound.relation, dated)} + ' ' +
           value_text(bound.limit, dated);
}

// The position of a parameter's own value; 0 where it has none.
std::size_t position_of(const Call& call, std::string_view name) {
    for (std::size_t i = 1; i <= call.arguments.size(); ++i) {
        const Parameter* parameter = parameter_at(call.calculation, i, call.arguments.size());
        if (parameter != nullptr && parameter->name == name) return i;
    }
    return 0;
}

const Parameter& parameter_named(const Call& call, std::string_view name) {
    return call.calculation.parameters[catalogue::find_parameter(call.calculation, name)];
}

// Null where the parameter was given no number.
const double* number_of(const Call& call, std::string_view name) {
    const std::size_t position = position_of(call, name);
    return position == 0 ? nullptr : number_in(call.arguments[position - 1]);
}

// shown: the subject and its value x as the sentence names them.
Fault order_fault(const Call& call, const Parameter& subject, const Order& order, double x, const std::string& shown) {
    const double* y = number_of(call, order.other);
    if (y == nullptr) return {};
    const double limit = as_compared(parameter_named(call, order.other), order, *y) + order.plus;
    if (holds(as_compared(subject, order, x), order.relation, limit)) return {};
    const bool dated = is_dated(subject.kind);
    return shown + ' ' + std::string{broken_words(order.relation, dated)} + ' ' + limit_words(order) + " (" +
           value_text(*y + order.plus, dated) + ')';
}

Fault own_order_fault(const Call& call, const Parameter& parameter, const Order& order, double x) {
    if (order.relation == Relation::none || !order.subject.empty()) return {};
    return order_fault(call, parameter, order, x, value_text(x, is_dated(parameter.kind)));
}

// Of arguments before this one, whatever this one is.
Fault earlier_order_fault(const Call& call, const Order& order) {
    if (order.subject.empty()) return {};
    const double* x = number_of(call, order.subject);
    if (x == nullptr) return {};
    const Parameter& subject = parameter_named(call, order.subject);
    const std::string shown = std::string{order.subject} + " (" + value_text(*x, is_dated(subject.kind)) + ')';
    return order_fault(call, subject, order, *x, shown);
}

// ---- Values

// As sentences name it: not one that is missing or left out.
std::string shown(const Parameter& parameter, const Argument& argument) {
    const double* x = number_in(argument);
    if (x == nullptr) return catalogue::in_quotes(argument.text());
    return value_text(*x, is_dated(parameter.kind));
}

std::string no_value(const Argument& argument) {
    return number_in(argument) != nullptr ? "a value is missing" : "no value given";
}

bool is_basis_keyword(std::string_view text) {
    if (text.empty() || text.size() > ZELKOVAN_LONGEST_BASIS_TEXT) return false;
    return std::ranges::find(basis_keywords, catalogue::basis_name(text)) != basis_keywords.end();
}

// ---- The rule that is broken

Fault basis_fault(const Parameter& parameter, const Argument& argument) {
    const double* x = number_in(argument);
    const bool known =
        x != nullptr ? *x > -1.0 && *x < static_cast<double>(basis_keywords.size()) : is_basis_keyword(argument.text());
    if (known) return {};
    const std::string text = shown(parameter, argument) + " is not a day-count basis: ";
    const std::string_view meant = x == nullptr ? catalogue::basis_meant_by(argument.text()) : std::string_view{};
    return text + (meant.empty() ? std::string{catalogue::basis_words} : "write " + std::string{meant});
}

Fault number_fault(const Call& call, const Parameter& parameter, double x) {
    if (is_counted(parameter)) {
        if (Fault fault = whole_fault(x)) return fault;
    }
    if (parameter.kind == Kind::flag) {
        if (Fault fault = flag_fault(x)) return fault;
    }
    for (const Bound& bound : {parameter.lower, parameter.upper}) {
        if (Fault fault = bound_fault(parameter, bound, x)) return fault;
    }
    for (const Order& order : parameter.orders) {
        if (Fault fault = own_order_fault(call, parameter, order, x)) return fault;
    }
    return {};
}

Fault fault_of(const Call& call, const Parameter& parameter, const Argument& argument) {
    for (const Order& order : parameter.orders) {
        if (Fault fault = earlier_order_fault(call, order)) return fault;
    }
    if (!has_value(argument)) return parameter.need == Need::required ? Fault{no_value(argument)} : Fault{};
    if (parameter.kind == Kind::basis) return basis_fault(parameter, argument);
    const double* x = number_in(argument);
    return x != nullptr ? number_fault(call, parameter, *x) : shown(parameter, argument) + " is not a number";
}

// Where no rule that is known here is broken: the one that only words can say.
std::string worded_reason(const Parameter& parameter, const Argument& argument) {
    if (!has_value(argument)) {
        return no_value(argument) + (parameter.rule.empty() ? "" : " (it " + std::string{parameter.rule} + ')');
    }
    const std::string rule = parameter.rule.empty() ? rule_words(parameter) : std::string{parameter.rule};
    return shown(parameter, argument) + " is refused" + (rule.empty() ? "" : ": it " + rule);
}

}  // namespace

bool has_value(const Argument& argument) {
    const double* x = number_in(argument);
    return x != nullptr ? !std::isnan(*x) : argument.kind() == Argument::Kind::text;
}

double number_or_0(Arguments arguments, std::size_t i) {
    return i < arguments.size() && has_value(arguments[i]) ? arguments[i].number() : 0.0;
}

int argument_at_fault(const Calculation& calculation, Arguments arguments, int flagged) {
    if (flagged > 0) return flagged;
    for (std::size_t i = 1; i <= arguments.size(); ++i) {
        const Parameter* parameter = parameter_at(calculation, i, arguments.size());
        const bool required = parameter != nullptr && parameter->need == Need::required;
        if (required && !has_value(arguments[i - 1])) return static_cast<int>(i);
    }
    return 0;
}

std::optional<std::string> broken_rule(const Calculation& calculation, Arguments arguments, std::size_t position) {
    const Parameter* parameter = parameter_at(calculation, position, arguments.size());
    if (parameter == nullptr) return {};
    return fault_of({calculation, arguments}, *parameter, arguments[position - 1]);
}

std::string reason(const Calculation& calculation, Arguments arguments, int flagged) {
    const auto position = static_cast<std::size_t>(flagged);
    const bool placed = flagged > 0 && position <= arguments.size();
    const Parameter* parameter = placed ? parameter_at(calculation, position, arguments.size()) : nullptr;
    if (parameter == nullptr) return std::string{calculation.failure};
    const Argument& argument = arguments[position - 1];
    if (const double* x = number_in(argument); x != nullptr && !is_meant(parameter->kind, *x)) {
        return unmeant_words(parameter->kind, *x);
    }
    const Fault fault = fault_of({calculation, arguments}, *parameter, argument);
    return fault ? *fault : worded_reason(*parameter, argument);
}

std::string argument_label(const Calculation& calculation, std::size_t position, std::size_t values) {
    const catalogue::Place place = place_of(calculation, position, values);
    if (place.parameter >= calculation.parameters.size()) return "argument " + std::to_string(position);
    std::string label = "argument " + std::to_string(place.parameter + 1);
    label.append(" (").append(calculation.parameters[place.parameter].name);
    const std::size_t element = place.element;
    if (element > 0) label.append(", value ").append(std::to_string(element));
    return label + ')';
}

}  // namespace finance::calls
