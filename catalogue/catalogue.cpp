#include "catalogue/catalogue.hpp"

#include <algorithm>
#include <functional>
#include <iterator>

#include "catalogue/annuities.hpp"
#include "catalogue/bonds.hpp"
#include "catalogue/cash_flows.hpp"
#include "catalogue/coupon_dates.hpp"
#include "catalogue/depreciation.hpp"
#include "catalogue/discount_securities.hpp"
#include "catalogue/fractional_prices.hpp"
#include "catalogue/interest_at_maturity.hpp"
#include "catalogue/odd_periods.hpp"
#include "catalogue/rate_conversion.hpp"
#include "catalogue/text.hpp"
#include "catalogue/treasury_bills.hpp"

namespace finance::catalogue {

namespace {

constexpr std::array all_families{annuity_family,         cash_flow_family,
                                  rate_conversion_family, bond_family,
                                  odd_period_family,      interest_at_maturity_family,
                                  coupon_date_family,     discount_family,
                                  treasury_bill_family,   fractional_price_family,
                                  depreciation_family};

constexpr std::size_t family_sizes() {
    std::size_t sum = 0;
    for (const Family& family : all_families) sum += family.calculations.size();
    return sum;
}

constexpr std::array<Calculation, family_sizes()> sorted_by_name() {
    std::array<Calculation, family_sizes()> joined{};
    Calculation* end = joined.data();
    for (const Family& family : all_families) end = std::ranges::copy(family.calculations, end).out;
    std::ranges::sort(joined, {}, &Calculation::name);
    return joined;
}

constexpr auto table = sorted_by_name();

// ---- What every row must satisfy

constexpr bool has_parameter(const Calculation& calculation, std::string_view name) {
    return std::ranges::find(calculation.parameters, name, &Parameter::name) != calculation.parameters.end();
}

constexpr bool is_dated(const Calculation& calculation, std::string_view name) {
    const auto& all = calculation.parameters;
    const auto found = std::ranges::find(all, name, &Parameter::name);
    return found != all.end() && is_dated(found->kind);
}

constexpr bool names_are_distinct(const Calculation& calculation) {
    const auto& all = calculation.parameters;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (same_name(all[i].name, all[j].name)) return false;
        }
    }
    return true;
}

constexpr bool orders_name_parameters(const Calculation& calculation) {
    for (const Parameter& parameter : calculation.parameters) {
        for (const Order& order : parameter.orders) {
            if (order.relation == Relation::none) continue;
            if (!has_parameter(calculation, order.other)) return false;
            if (!order.subject.empty() && !is_dated(calculation, order.subject)) return false;
        }
    }
    return true;
}

// Without lists, what may be left out comes last; a scalar after lists may be left out only after two of them, where
// an odd number of values gives it away.
constexpr bool optional_ones_are_last(const Calculation& calculation) {
    std::size_t lists = 0;
    bool left_out = false;
    for (const Parameter& parameter : calculation.parameters) {
        lists += is_list(parameter.kind) ? 1U : 0U;
        if (is_list(parameter.kind)) continue;
        if (left_out && parameter.need != Need::optional) return false;
        left_out = parameter.need == Need::optional;
        if (left_out && list_count(calculation) > 0 && lists != 2) return false;
    }
    return lists <= 2;
}

constexpr bool lists_are_together(const Calculation& calculation) {
    const auto list = [](const Parameter& parameter) { return is_list(parameter.kind); };
    const auto first = std::ranges::find_if(calculation.parameters, list);
    const auto end = std::ranges::find_if_not(first, calculation.parameters.end(), list);
    return std::ranges::none_of(end, calculation.parameters.end(), list);
}

constexpr bool is_told(const Parameter& parameter) {
    const bool has_default = !parameter.default_text.empty();
    return !parameter.name.empty() && !parameter.meaning.empty() && has_default == (parameter.need != Need::required);
}

constexpr bool is_sound(const Calculation& c) {
    return !c.name.empty() && !c.answers.empty() && !c.formula.empty() && !c.failure.empty() &&
           !c.example.arguments.empty() && !c.example.result.empty() && !c.parameters.empty() &&
           std::ranges::all_of(c.parameters, is_told) && names_are_distinct(c) && orders_name_parameters(c) &&
           optional_ones_are_last(c) && lists_are_together(c);
}

constexpr bool is_ascending(std::span<const Calculation> rows) {
    return std::ranges::is_sorted(rows, std::ranges::less_equal{}, &Calculation::name);
}

static_assert(is_ascending(table), "each name once");
static_assert(std::ranges::all_of(all_families, is_ascending, &Family::calculations));
static_assert(std::ranges::all_of(table, is_sound));

#ifdef ZELKOVAN_BRIEF_CATALOGUE

// What sentences about a call are made from, without what help and pages tell: half of the texts.
constexpr std::size_t parameter_count() {
    std::size_t sum = 0;
    for (const Calculation& calculation : table) sum += calculation.parameters.size();
    return sum;
}

constexpr std::array<Parameter, parameter_count()> brief_parameters = [] {
    std::array<Parameter, parameter_count()> parameters{};
    Parameter* end = parameters.data();
    for (const Calculation& calculation : table) end = std::ranges::copy(calculation.parameters, end).out;
    for (Parameter& parameter : parameters) parameter.unit = parameter.meaning = parameter.default_text = {};
    return parameters;
}();

constexpr auto looked_up = [] {
    auto brief = table;
    const Parameter* begin = brief_parameters.data();
    for (Calculation& calculation : brief) {
        calculation.answers = calculation.formula = calculation.remarks = {};
        calculation.example = {};
        calculation.parameters = {begin, calculation.parameters.size()};
        begin += calculation.parameters.size();
    }
    return brief;
}();

#else

constexpr const auto& looked_up = table;

#endif

}  // namespace

std::span<const Family> families() { return all_families; }

std::span<const Calculation> calculations() { return looked_up; }

const Calculation* find(std::string_view name) {
    const Calculation* row =
        std::ranges::find_if(looked_up, [&](const Calculation& c) { return same_name(c.name, name); });
    return row == looked_up.end() ? nullptr : &*row;
}

std::size_t find_parameter(const Calculation& calculation, std::string_view name) {
    const auto& all = calculation.parameters;
    const auto found = std::ranges::find_if(all, [&](const Parameter& p) { return same_name(p.name, name); });
    return static_cast<std::size_t>(std::distance(all.begin(), found));
}

const Family& family_of(const Calculation& calculation) {
    const auto holds_it = [&](const Family& family) {
        return std::ranges::find(family.calculations, calculation.name, &Calculation::name) !=
               family.calculations.end();
    };
    return *std::ranges::find_if(all_families, holds_it);
}

}  // namespace finance::catalogue
