#include "module/financial_list.hpp"

#include <algorithm>
#include <string_view>

namespace finance {

#define DECLARE_ROW(name, minimum, maximum) Handler fnc_##name;
FINANCE_CALCULATIONS(DECLARE_ROW)

#define TABLE_ROW(name, minimum, maximum) {#name, sizeof #name - 1, fnc_##name, minimum, maximum},
constexpr std::array<FinancialRow, calculation_count> FinancialList{{FINANCE_CALCULATIONS(TABLE_ROW)}};

namespace {

constexpr std::string_view name_of(const FinancialRow& entry) { return {entry.name, entry.name_length}; }

constexpr bool counts_are_sound(const FinancialRow& entry) {
    return entry.minimum_count >= 2 && (entry.maximum_count == 0 || entry.maximum_count >= entry.minimum_count);
}

static_assert(std::ranges::is_sorted(FinancialList, std::ranges::less_equal{}, name_of), "ascending, each name once");
static_assert(std::ranges::all_of(FinancialList, counts_are_sound));

}  // namespace

}  // namespace finance
