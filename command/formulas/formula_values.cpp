// Numbers: sums, products, powers, names, functions.
#include <cstdint>
#include <limits>
#include <utility>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "command/formulas/formula_compiler.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::array sums{Sign{"+", Operation::add}, Sign{"-", Operation::subtract}};
constexpr std::array products{Sign{"*", Operation::multiply}, Sign{"/", Operation::divide}};

constexpr std::array<std::string_view, 4> functions{"min", "max", "round", "abs"};

}  // namespace

bool is_function(std::string_view name) {
    return std::ranges::any_of(functions, [&](std::string_view word) { return catalogue::same_name(name, word); });
}

// ---- Numbers. A date and some days is a date, so is a date less some days; two dates apart are days.

FormulaCompiler::Value FormulaCompiler::sum() {
    Value left = product();
    while (const Sign* sign = sign_at(tokens_, sums)) {
        want(left, Type::number);
        tokens_.advance();
        const Value right = product();
        want(right, Type::number);
        emit({.operation = sign->operation});
        left = {.dated = left.dated != right.dated && (left.dated || sign->operation == Operation::add)};
    }
    return left;
}

FormulaCompiler::Value FormulaCompiler::product() {
    Value left = signed_power();
    while (const Sign* sign = sign_at(tokens_, products)) {
        want(left, Type::number);
        tokens_.advance();
        want(signed_power(), Type::number);
        emit({.operation = sign->operation});
        left = {};
    }
    return left;
}

FormulaCompiler::Value FormulaCompiler::signed_power() {
    bool any_sign = false;
    bool negative = false;
    for (; tokens_.here().is("-") || tokens_.here().is("+"); tokens_.advance()) {
        any_sign = true;
        if (tokens_.here().is("-")) negative = !negative;
    }
    const Value whole = power();
    if (any_sign) want(whole, Type::number);
    if (negative) emit({.operation = Operation::negate});
    return any_sign ? Value{} : whole;
}

FormulaCompiler::Value FormulaCompiler::power() {
    Value base = value();
    if (!tokens_.here().is("^")) return base;
    want(base, Type::number);
    tokens_.advance();
    enter();
    want(signed_power(), Type::number);
    leave();
    emit({.operation = Operation::power});
    return {};
}

FormulaCompiler::Value FormulaCompiler::value() {
    const Token token = tokens_.here();
    switch (token.kind) {
        case Token::Kind::name:
            return name();
        case Token::Kind::quoted:
            return quoted();
        case Token::Kind::number:
        case Token::Kind::date:
            tokens_.advance();
            return constant(token.value, token.kind == Token::Kind::date);
        case Token::Kind::missing: {
            tokens_.advance();
            Value dot = constant(std::numeric_limits<double>::quiet_NaN());
            dot.missing = true;
            return dot;
        }
        case Token::Kind::text:
            if (!condition_) tokens_.fail("a number is expected, not a text,");
            tokens_.advance();
            return {.type = Type::text, .text = without_marks(token.text)};
        default:
            break;
    }
    if (!token.is("(")) tokens_.fail("a value is expected");
    return bracket();
}

FormulaCompiler::Value FormulaCompiler::bracket() {
    tokens_.advance();
    enter();
    Value inside = any();
    leave();
    if (!tokens_.take(")")) tokens_.fail("')' is expected");
    inside.name = {};
    inside.missing = false;
    return inside;
}

FormulaCompiler::Value FormulaCompiler::name() {
    const Token token = tokens_.here();
    FormulaTokens ahead = tokens_;
    ahead.advance();
    if (ahead.here().is("(")) {
        check_function(token);
        tokens_.advance();
        return function(token);
    }
    const auto meaning = names_.find(token.text, NameForm::word);
    if (!meaning) tokens_.fail(names_.unknown(token.text) + ',');
    tokens_ = ahead;
    Value read = number_read(*meaning);
    read.name = token;
    return read;
}

FormulaCompiler::Value FormulaCompiler::quoted() {
    const Token token = tokens_.here();
    std::string text = without_marks(token.text);
    const auto meaning = names_.find(text, condition_ ? NameForm::quoted_or_text : NameForm::quoted);
    if (!meaning && !condition_) tokens_.fail(names_.unknown(text) + ',');
    tokens_.advance();
    if (!meaning) return {.type = Type::text, .text = std::move(text)};
    Value read = number_read(*meaning);
    read.name = token;
    return read;
}

void FormulaCompiler::check_function(const Token& name) const {
    if (is_function(name.text)) return;
    if (catalogue::find(name.text) != nullptr) {
        tokens_.fail(shown(name.text) +
                     " cannot stand within a call or a formula: name its result, and go on with the name,");
    }
    tokens_.fail("no function is called " + in_quotes(name.text) + suggestion(name.text, functions) +
                 ": there are min, max, round and abs,");
}

// The name has been passed.
FormulaCompiler::Value FormulaCompiler::function(const Token& name) {
    const auto is = [&](std::string_view word) { return catalogue::same_name(name.text, word); };
    std::size_t count = 0;
    bool dated = true;
    enter();
    do {
        tokens_.advance();  // the bracket, or the comma
        const Value argument = sum();
        want(argument, Type::number);
        dated = dated && argument.dated;
        if (++count > 1 && !is("round")) emit({.operation = is("min") ? Operation::smaller : Operation::larger});
        const std::size_t most = is("abs") ? 1 : is("round") ? 2 : SIZE_MAX;
        if (tokens_.here().is(",") && count == most)
            tokens_.fail("too many values for " + std::string{name.text} + ',');
    } while (tokens_.here().is(","));
    leave();
    if (!tokens_.take(")")) tokens_.fail("',' or ')' is expected");
    if (is("abs")) emit({.operation = Operation::absolute});
    if (is("round")) emit({.operation = count == 1 ? Operation::round : Operation::round_to});
    return {.dated = dated && (is("min") || is("max"))};
}

}  // namespace finance::command
