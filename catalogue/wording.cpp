#include "catalogue/wording.hpp"

#include <algorithm>
#include <utility>

#include "catalogue/text.hpp"

namespace finance::catalogue {

namespace {

struct RelationWords {
    std::string_view kept, broken;
    std::string_view kept_by_date, broken_by_date;
};

constexpr std::array<RelationWords, 4> relations{{{},
                                                  {"above ", "is not above", "after ", "is not after"},
                                                  {"at least ", "is below", "not before ", "is before"},
                                                  {"at most ", "is above", "not after ", "is after"}}};

constexpr const RelationWords& words_for(Relation relation) { return item_of<Relation::at_most>(relations, relation); }

void add_condition(std::string& rule, std::string_view words, std::string_view limit) {
    rule.append(rule.empty() ? "must be " : " and ").append(words).append(limit);
}

void add_bound(std::string& rule, const Parameter& parameter, const Bound& bound) {
    if (bound.relation == Relation::none) return;
    const RelationWords words = words_for(bound.relation);
    const bool dated = is_dated(parameter.kind);
    add_condition(rule, dated ? words.kept_by_date : words.kept, value_text(bound.limit, dated));
}

void add_order(std::string& rule, const Parameter& parameter, const Order& order) {
    if (order.relation == Relation::none || !order.subject.empty()) return;
    const RelationWords words = words_for(order.relation);
    add_condition(rule, is_dated(parameter.kind) ? words.kept_by_date : words.kept, limit_words(order));
}

void add_sentence(std::string& rule, std::string_view sentence) {
    if (sentence.empty()) return;
    rule.append(rule.empty() ? "" : "; ").append(sentence);
}

// Of two dates; no calculation lays another order at a third argument's door.
std::string earlier_order(const Order& order) {
    if (order.subject.empty()) return {};
    return std::string{order.subject} + " must be " + std::string{words_for(order.relation).kept_by_date} +
           limit_words(order);
}

std::string in_brackets(const Parameter& parameter) {
    std::string text{parameter.name};
    if (is_list(parameter.kind)) text += "...";
    return parameter.need == Need::optional ? '[' + text + ']' : text;
}

}  // namespace

std::string basis_name(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (c != ' ') name += upper(c);
    }
    return name;
}

std::string_view basis_meant_by(std::string_view name) {
    using Names = std::pair<std::string_view, std::string_view>;
    static constexpr std::array<Names, 19> other_names{{{"30U/360", "30/360"},
                                                        {"30A/360", "30/360"},
                                                        {"30/360US", "30/360"},
                                                        {"BONDBASIS", "30/360"},
                                                        {"ACT", "ACTUAL"},
                                                        {"ACT/ACT", "ACTUAL"},
                                                        {"ACTUAL/ACTUAL", "ACTUAL"},
                                                        {"A/A", "ACTUAL"},
                                                        {"ACTUAL/360", "ACT/360"},
                                                        {"A/360", "ACT/360"},
                                                        {"ACTUAL/365", "ACT/365"},
                                                        {"ACTUAL/365F", "ACT/365"},
                                                        {"ACT/365F", "ACT/365"},
                                                        {"ACT/365FIXED", "ACT/365"},
                                                        {"A/365", "ACT/365"},
                                                        {"A/365F", "ACT/365"},
                                                        {"30E/360", "EU30/360"},
                                                        {"30/360E", "EU30/360"},
                                                        {"30/360EU", "EU30/360"}}};
    const std::string plain = basis_name(name);
    const auto known = std::ranges::find(other_names, plain, &Names::first);
    return known == other_names.end() ? std::string_view{} : known->second;
}

std::string_view kind_words(Kind kind) {
    constexpr std::array<std::string_view, 8> words{
        "number", "whole number", "date", "date (or part of a day)", "day-count basis", "flag", "numbers", "dates"};
    return item_of<Kind::dates>(words, kind);
}

std::string call_words(const Calculation& calculation) {
    std::string text{calculation.name};
    for (const Parameter& parameter : calculation.parameters) text += ' ' + in_brackets(parameter);
    return text;
}

std::string need_words(const Parameter& parameter) {
    if (parameter.need == Need::required) return "required";
    if (parameter.need == Need::may_be_missing) return ". is " + std::string{parameter.default_text};
    if (is_list(parameter.kind)) return "optional";
    return "default " + std::string{parameter.default_text};
}

std::string spelling_words(Kind kind) {
    constexpr std::string_view in_a_row = "one after the other, or separated by commas";
    if (kind == Kind::basis) return "one of " + std::string{basis_words};
    std::string words;
    if (is_dated(kind)) words = "year-month-day, or days since 1960-01-01";
    if (is_list(kind)) words.append(words.empty() ? "" : "; ").append(in_a_row);
    return words;
}

std::string_view result_words(ResultKind kind) {
    constexpr std::array<std::string_view, 4> words{"number", "date", "rate", "amount"};
    return item_of<ResultKind::amount>(words, kind);
}

std::string_view broken_words(Relation relation, bool dated) {
    const RelationWords words = words_for(relation);
    return dated ? words.broken_by_date : words.broken;
}

std::string limit_words(const Order& order) {
    return std::string{order.other} + (order.plus == 0.0 ? "" : " + " + plain_text(order.plus));
}

std::string rule_words(const Parameter& parameter) {
    std::string rule;
    add_bound(rule, parameter, parameter.lower);
    add_bound(rule, parameter, parameter.upper);
    for (const Order& order : parameter.orders) add_order(rule, parameter, order);
    for (const Order& order : parameter.orders) add_sentence(rule, earlier_order(order));
    add_sentence(rule, parameter.rule);
    return rule;
}

}  // namespace finance::catalogue
