#include "command/formulas/formula_text.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "command/formulas/formula_compiler.hpp"

namespace finance::command {

namespace {

constexpr std::array relations{Sign{"<=", Operation::at_most}, Sign{">=", Operation::at_least},
                               Sign{"!=", Operation::unequal}, Sign{"<>", Operation::unequal},
                               Sign{"==", Operation::equal},   Sign{"<", Operation::less},
                               Sign{">", Operation::greater},  Sign{"=", Operation::equal}};

}  // namespace

// ---- Steps

void FormulaCompiler::emit(Step step) {
    if (pushes(step.operation)) ++depth_;
    if (takes_two(step.operation)) --depth_;
    formula_.deepest_ = std::max(formula_.deepest_, depth_);
    formula_.steps_.push_back(step);
}

// One that put a value onto the stack.
void FormulaCompiler::drop_last() {
    formula_.steps_.pop_back();
    --depth_;
}

// What nobody reads as a number is not read as one: it would be refused where it is none. What has one use is the latest.
void FormulaCompiler::drop_number() {
    if (--uses_[formula_.steps_.back().index] == 0) {
        uses_.pop_back();
        numbers_.erase(formula_.numbers_.back());
        formula_.numbers_.pop_back();
    }
    drop_last();
}

std::size_t FormulaCompiler::place_of(std::vector<std::size_t>& reads, Places& places, std::size_t number) {
    const auto [place, added] = places.try_emplace(number, reads.size());
    if (added) reads.push_back(number);
    return place->second;
}

FormulaCompiler::Value FormulaCompiler::constant(double value, bool dated) {
    emit({.operation = Operation::constant, .constant = value});
    return {.dated = dated};
}

FormulaCompiler::Value FormulaCompiler::number_read(const NameMeaning& meaning) {
    if (meaning.constant) return constant(*meaning.constant, meaning.dated);
    const std::size_t place = place_of(formula_.numbers_, numbers_, meaning.number);
    uses_.resize(formula_.numbers_.size());
    ++uses_[place];
    emit({.operation = Operation::number, .index = place});
    return {.dated = meaning.dated};
}

void FormulaCompiler::want(const Value& value, Type type) const {
    if (value.type == type) return;
    if (type == Type::truth) tokens_.fail("a comparison is expected, not a value,");
    tokens_.fail(value.type == Type::text ? "a number is expected, not a text,"
                                          : "a number is expected, not a comparison,");
}

// ---- Truths

Formula FormulaCompiler::read() {
    const Value whole = any();
    if (tokens_.here().kind != Token::Kind::end) {
        const bool relation = !condition_ && sign_at(tokens_, relations) != nullptr;
        tokens_.fail(relation ? "a comparison is for --where, not" : "an operator is expected");
    }
    want(whole, condition_ ? Type::truth : Type::number);
    formula_.dated_ = whole.dated;
    return std::move(formula_);
}

FormulaCompiler::Value FormulaCompiler::any() {
    return condition_ ? terms("or", Operation::either, &FormulaCompiler::alternative) : sum();
}

FormulaCompiler::Value FormulaCompiler::terms(std::string_view joining, Operation operation,
                                              Value (FormulaCompiler::*term)()) {
    Value left = (this->*term)();
    while (tokens_.word(joining)) {
        want(left, Type::truth);
        tokens_.advance();
        want((this->*term)(), Type::truth);
        emit({.operation = operation});
    }
    return left;
}

FormulaCompiler::Value FormulaCompiler::negation() {
    bool negated = false;
    bool any_not = false;
    for (; tokens_.word("not"); tokens_.advance()) {
        negated = !negated;
        any_not = true;
    }
    Value whole = comparison();
    if (any_not) want(whole, Type::truth);
    if (negated) emit({.operation = Operation::opposite});
    return whole;
}

FormulaCompiler::Value FormulaCompiler::comparison() {
    Value left = sum();
    const Sign* relation = sign_at(tokens_, relations);
    if (relation == nullptr) return left;
    tokens_.advance();
    compare(relation->operation, left, sum());
    if (sign_at(tokens_, relations) != nullptr) tokens_.fail("comparisons are joined by and");
    return {.type = Type::truth};
}

TextOperand FormulaCompiler::text_operand(const Value& value) {
    if (value.type == Type::text) return {.written = value.text};
    const bool name = value.name.kind == Token::Kind::name || value.name.kind == Token::Kind::quoted;
    const Step& last = formula_.steps_.back();
    if (!name || last.operation != Operation::number)
        tokens_.fail("a text is compared with a text or a name, not a number,");
    const std::size_t number = formula_.numbers_[last.index];
    drop_number();
    return {.read = true, .index = place_of(formula_.texts_, texts_, number)};
}

// Equal to the dot is what is missing.
void FormulaCompiler::compare_missing(Operation relation, const Value& dot) {
    if (relation != Operation::equal && relation != Operation::unequal)
        tokens_.fail("a missing value is only = or !=,");
    if (dot.missing) drop_last();
    emit({.operation = relation == Operation::equal ? Operation::is_missing : Operation::has_value});
}

void FormulaCompiler::compare(Operation relation, const Value& left, const Value& right) {
    if (right.missing) return compare_missing(relation, right);
    if (left.type == Type::text || right.type == Type::text) {
        TextOperand second = text_operand(right);  // the last step is the right one's
        formula_.comparisons_.push_back({.relation = relation, .left = text_operand(left), .right = std::move(second)});
        emit({.operation = Operation::texts, .index = formula_.comparisons_.size() - 1});
        return;
    }
    want(left, Type::number);
    want(right, Type::number);
    emit({.operation = relation});
}

// ---- Texts

Formula read_formula(std::string_view text, const FormulaNames& names) {
    return FormulaCompiler{text, names, false}.read();
}

Formula read_condition(std::string_view text, const FormulaNames& names) {
    return FormulaCompiler{text, names, true}.read();
}

bool looks_like_formula(std::string_view text) {
    return text.find_first_of("+-*/^()\"") != std::string_view::npos && !looks_like_date(text);
}

}  // namespace finance::command
