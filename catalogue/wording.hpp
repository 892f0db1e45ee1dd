// The words for kinds, needs and rules.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

// In the order of their codes, 0 to 4.
inline constexpr std::array<std::string_view, 5> basis_keywords{"30/360", "ACTUAL", "ACT/360", "ACT/365", "EU30/360"};
// A text as keywords are compared: in upper case, without blanks.
std::string basis_name(std::string_view text);
// The keyword of a basis by another of its names (30E/360); "" where that is not known.
std::string_view basis_meant_by(std::string_view name);
inline constexpr std::string_view basis_words = "30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4";

// What belongs to an enumerator, from a list in the enumerators' order.
template <auto last, typename Item, std::size_t count>
constexpr const Item& item_of(const std::array<Item, count>& items, decltype(last) value) {
    static_assert(count == static_cast<std::size_t>(last) + 1);
    return items[static_cast<std::size_t>(value)];
}

std::string_view kind_words(Kind kind);
std::string_view result_words(ResultKind kind);

// The name and its parameters, in brackets what may be left out: "XIRR values... dates... [guess]".
std::string call_words(const Calculation& calculation);

// "required", ". is 0" where a missing value stands for 0, "default 0", "optional".
std::string need_words(const Parameter& parameter);

// How values of that kind are written, where that is not plain.
std::string spelling_words(Kind kind);

// "must be above 0", "must be at least 1 and at most nper"; empty where nothing but the kind restricts it.
std::string rule_words(const Parameter& parameter);

// What an order compares with: "settlement", "life + 1".
std::string limit_words(const Order& order);

// Between a value that breaks a relation and its limit: "is not above", "is below", "is before".
std::string_view broken_words(Relation relation, bool dated);

}  // namespace finance::catalogue
