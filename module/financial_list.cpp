#include "module/financial_list.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "cashflow/handlers.hpp"

namespace finance {

namespace {

template <std::size_t N>
constexpr FinancialRow row(const char (&name)[N], Handler handler, std::int32_t minimum, std::int32_t maximum) {
    return {name, static_cast<std::uint32_t>(N - 1), handler, minimum, maximum};
}

#define ROW(name, minimum, maximum) row(#name, fnc_##name, minimum, maximum)

constexpr std::int32_t unbounded = 0;

// name, smallest and largest number of arguments with the name counted
constexpr std::array rows{
    ROW(CUMIPMT, 6, 7),
    ROW(CUMPRINC, 6, 7),
    ROW(FV, 4, 6),
    ROW(IPMT, 5, 7),
    ROW(ISPMT, 5, 5),
    ROW(PMT, 4, 6),
    ROW(PPMT, 5, 7),
    ROW(PV, 4, 6),
};

#undef ROW

constexpr std::string_view name_of(const FinancialRow& entry) { return {entry.name, entry.name_length}; }

constexpr bool counts_are_sound(const FinancialRow& entry) {
    return entry.minimum_count >= 2 &&
           (entry.maximum_count == unbounded || entry.maximum_count >= entry.minimum_count);
}

static_assert(rows.size() == 8);
static_assert(std::ranges::is_sorted(rows, std::ranges::less_equal{}, name_of), "ascending, each name once");
static_assert(std::ranges::all_of(rows, counts_are_sound));

}  // namespace

constexpr std::span<const FinancialRow> FinancialList{rows};

}  // namespace finance
