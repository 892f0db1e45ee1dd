// Compiled once for each set of instructions: nothing of what is made here may be shared with other files.
#include "lanes/elementary.hpp"
#include "lanes/instruction_set.hpp"
//
#include "calendar/coupon_dates.hpp"
#include "calendar/discount_securities.hpp"
#include "calendar/year_fraction.hpp"
#include "cashflow/annuities.hpp"
#include "cashflow/rate.hpp"
#include "cashflow/rate_conversion.hpp"
#include "depreciation/double_declining_balance.hpp"
#include "depreciation/fixed_declining_balance.hpp"
#include "depreciation/straight_line.hpp"
#include "module/column_list.hpp"
#include "moneymarket/fractional_prices.hpp"
#include "moneymarket/treasury_bills.hpp"
#include "securities/accrued_interest.hpp"
#include "securities/bond_columns.hpp"
#include "securities/interest_at_maturity.hpp"
#include "securities/odd_first_columns.hpp"

namespace finance {

namespace {

// In one piece: lanes are to stay in registers. What is rare is kept apart (lanes/elementary.hpp).
#define COLUMN_HANDLER(name, basis, Set)                                                \
    [[gnu::flatten]] std::uint64_t columns_of_##name(const RowBlock& block) {           \
        return in_lanes<Set>(block, [](auto& rows) { return calculate_##name(rows); }); \
    }
FINANCE_ROW_COLUMNS(COLUMN_HANDLER)

// One for all: questions stand in the order of their calculations.
[[gnu::flatten]] std::uint64_t columns_of_coupons(const RowBlock& block) {
    constexpr std::uint32_t first = index_of("COUPDAYBS");
    static_assert(index_of("COUPPCD") - first == static_cast<std::uint32_t>(CouponQuestion::previous_date));
    const auto question = static_cast<CouponQuestion>(block.calculation - first);
    return in_lanes<InstructionSet>(block, [question](auto& rows) { return answer_coupon_question(rows, question); });
}

std::uint64_t columns_of_PRICE(const RowBlock& block) { return prices_of_block<InstructionSet, TwoVectors>(block); }
std::uint64_t columns_of_YIELD(const RowBlock& block) { return yields_of_block<InstructionSet, TwoVectors>(block); }
[[gnu::noinline]] std::uint64_t durations(const RowBlock& block, bool modified) {
    return durations_of_block<InstructionSet, TwoVectors>(block, modified);
}
std::uint64_t columns_of_DURATION(const RowBlock& block) { return durations(block, false); }
std::uint64_t columns_of_MDURATION(const RowBlock& block) { return durations(block, true); }
[[gnu::noinline]] std::uint64_t odd_first_periods(const RowBlock& block, bool yields) {
    return odd_first_periods_of_block<TwoVectors>(block, yields);
}
std::uint64_t columns_of_ODDFPRICE(const RowBlock& block) { return odd_first_periods(block, false); }
std::uint64_t columns_of_ODDFYIELD(const RowBlock& block) { return odd_first_periods(block, true); }

constexpr ColumnList make_list() {
    ColumnList list{};
#define LIST_HANDLER(name, ...) list[index_of(#name)] = columns_of_##name;
    FINANCE_ROW_COLUMNS(LIST_HANDLER)
    FINANCE_BLOCK_COLUMNS(LIST_HANDLER)
#define LIST_COUPONS(name, basis) list[index_of(#name)] = columns_of_coupons;
    FINANCE_COUPON_COLUMNS(LIST_COUPONS)
    return list;
}

}  // namespace

#ifdef ZELKOVAN_WIDE_LANES
constexpr ColumnList columns_avx2 = make_list();
#else
constexpr ColumnList columns_sse2 = make_list();
#endif

}  // namespace finance
