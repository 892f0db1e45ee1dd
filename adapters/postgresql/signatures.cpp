#include "adapters/postgresql/signatures.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "adapters/common/engine_call.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Need;
using catalogue::Parameter;

std::string snake_case(std::string_view name) {
    std::string snake;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') snake += '_';
        snake += c;
    }
    return catalogue::lower_case(snake);
}

std::string entry_name(const Calculation& calculation, Way way) { return "zelkovan_" + way_name(calculation, way); }

std::string kind_letters(const Calculation& calculation) {
    std::string letters;
    for (const Parameter& parameter : calculation.parameters) {
        const bool list = is_list(parameter.kind);
        if (parameter.kind == Kind::basis) {
            letters += 'b';
        } else if (is_dated(parameter.kind)) {
            letters += list ? 'D' : 'd';
        } else {
            letters += list ? 'N' : 'n';
        }
    }
    return letters;
}

std::string sql_usage(const Calculation& calculation) {
    std::string text = function_name(calculation) + '(';
    std::size_t left_out = 0;
    for (const Parameter& parameter : calculation.parameters) {
        const bool first = text.back() == '(';
        if (parameter.need == Need::optional) {
            text += first ? "[" : " [, ";
            ++left_out;
        } else if (!first) {
            text += ", ";
        }
        text += snake_case(parameter.name);
    }
    return text.append(left_out, ']').append(")");
}

namespace {

std::string type_of(Kind kind, bool coded_basis) {
    switch (kind) {
        case Kind::date:
        case Kind::date_time:
            return "date";
        case Kind::basis:
            return coded_basis ? "float8" : "text";
        case Kind::numbers:
            return "float8[]";
        case Kind::dates:
            return "date[]";
        default:
            return "float8";
    }
}

// Empty where the default is no constant, or none that may stand in a call (3).
std::string default_of(const Parameter& parameter) {
    if (is_list(parameter.kind)) return "'{}'";
    if (parameter.kind == Kind::basis) return {};
    const std::string_view text = parameter.default_text;
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool constant = error == std::errc{} && end == text.data() + text.size() && std::isfinite(value);
    return constant ? std::string{text} : std::string{};
}

bool may_be_left_out(const Parameter& parameter) { return parameter.need == Need::optional; }

// The first so many parameters. SQL wants every argument after one with a default to have one too.
Signature first_parameters(const Calculation& calculation, std::size_t count, bool coded_basis) {
    Signature signature{.coded_basis = coded_basis};
    for (const Parameter& parameter : calculation.parameters.first(count)) {
        signature.arguments.push_back({snake_case(parameter.name), type_of(parameter.kind, coded_basis)});
    }
    for (std::size_t i = count; i > 0 && may_be_left_out(calculation.parameters[i - 1]); --i) {
        const std::string value = default_of(calculation.parameters[i - 1]);
        if (value.empty()) break;
        signature.arguments[i - 1].default_value = value;
    }
    return signature;
}

bool has_basis(const Calculation& calculation, std::size_t count) {
    return std::ranges::any_of(calculation.parameters.first(count),
                               [](const Parameter& parameter) { return parameter.kind == Kind::basis; });
}

}  // namespace

std::vector<Signature> signatures(const Calculation& calculation) {
    std::vector<Signature> found;
    const auto add = [&](std::size_t count) {
        found.push_back(first_parameters(calculation, count, false));
        if (has_basis(calculation, count)) found.push_back(first_parameters(calculation, count, true));
    };
    for (std::size_t i = 0; i < calculation.parameters.size(); ++i) {
        const Parameter& parameter = calculation.parameters[i];
        if (may_be_left_out(parameter) && default_of(parameter).empty()) add(i);
    }
    add(calculation.parameters.size());
    return found;
}

// ---- Aggregates

namespace {

// "flows" -> "flow": a row has one.
std::string element_name(const Parameter& parameter) {
    std::string name = snake_case(parameter.name);
    if (name.size() > 1 && name.back() == 's') name.pop_back();
    return name;
}

std::vector<SqlArgument> row_arguments(const Calculation& calculation, std::size_t count) {
    std::vector<SqlArgument> arguments;
    for (const Parameter& parameter : calculation.parameters.first(count)) {
        const bool list = is_list(parameter.kind);
        arguments.push_back({list ? element_name(parameter) : snake_case(parameter.name),
                             parameter.kind == Kind::dates ? "date" : "float8"});
    }
    return arguments;
}

AggregateSignature ordered_by(std::vector<SqlArgument> arguments, Order order) {
    if (order == Order::by_number) arguments.push_back({"at", "bigint"});
    if (order == Order::by_date) arguments.push_back({"at", "date"});
    return {.arguments = std::move(arguments), .order = order};
}

}  // namespace

bool has_aggregate(const Calculation& calculation) {
    const auto count = [&](auto matches) { return std::ranges::count_if(calculation.parameters, matches); };
    const auto other = [](const Parameter& parameter) {
        return parameter.kind == Kind::basis || parameter.kind == Kind::date || parameter.kind == Kind::date_time;
    };
    return count([](const Parameter& parameter) { return parameter.kind == Kind::numbers; }) == 1 &&
           count([](const Parameter& parameter) { return parameter.kind == Kind::dates; }) <= 1 && count(other) == 0;
}

// A list is always given; what is optional after the lists may be left out.
std::vector<AggregateSignature> aggregate_signatures(const Calculation& calculation) {
    std::size_t fewest = calculation.parameters.size();
    while (fewest > 0 && may_be_left_out(calculation.parameters[fewest - 1]) &&
           !is_list(calculation.parameters[fewest - 1].kind)) {
        --fewest;
    }
    const bool dated = catalogue::list_count(calculation) == 2;
    std::vector<AggregateSignature> found;
    for (std::size_t count = fewest; count <= calculation.parameters.size(); ++count) {
        const auto arguments = row_arguments(calculation, count);
        if (dated) {
            found.push_back(ordered_by(arguments, Order::by_dates));
            continue;
        }
        for (const Order order : {Order::by_number, Order::by_date, Order::of_rows}) {
            found.push_back(ordered_by(arguments, order));
        }
    }
    return found;
}

}  // namespace finance::adapters::postgresql
