#include "module/financial_list.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "calendar/handlers.hpp"
#include "cashflow/handlers.hpp"
#include "depreciation/handlers.hpp"
#include "moneymarket/handlers.hpp"
#include "securities/handlers.hpp"

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
    ROW(ACCRINT, 7, 8),      ROW(ACCRINTM, 5, 6),     ROW(AMORDEGRC, 7, 8),
    ROW(AMORLINC, 7, 8),     ROW(COUPDAYBS, 4, 5),    ROW(COUPDAYS, 4, 5),
    ROW(COUPDAYSNC, 4, 5),   ROW(COUPNCD, 4, 5),      ROW(COUPNUM, 4, 5),
    ROW(COUPPCD, 4, 5),      ROW(CUMIPMT, 6, 7),      ROW(CUMPRINC, 6, 7),
    ROW(DB, 5, 6),           ROW(DDB, 5, 6),          ROW(DISC, 5, 6),
    ROW(DOLLARDE, 3, 3),     ROW(DOLLARFR, 3, 3),     ROW(DURATION, 6, 7),
    ROW(EFFECT, 3, 3),       ROW(FV, 4, 6),           ROW(FVSCHEDULE, 2, unbounded),
    ROW(INTRATE, 5, 6),      ROW(IPMT, 5, 7),         ROW(IRR, 2, unbounded),
    ROW(ISPMT, 5, 5),        ROW(MDURATION, 6, 7),    ROW(MIRR, 2, unbounded),
    ROW(NOMINAL, 3, 3),      ROW(NPER, 4, 6),         ROW(NPV, 2, unbounded),
    ROW(ODDFPRICE, 9, 10),   ROW(ODDFYIELD, 9, 10),   ROW(ODDLPRICE, 8, 9),
    ROW(ODDLYIELD, 8, 9),    ROW(PMT, 4, 6),          ROW(PPMT, 5, 7),
    ROW(PRICE, 7, 8),        ROW(PRICEDISC, 5, 6),    ROW(PRICEMAT, 6, 7),
    ROW(PV, 4, 6),           ROW(RATE, 4, 6),         ROW(RECEIVED, 5, 6),
    ROW(SLN, 4, 4),          ROW(SYD, 5, 5),          ROW(TBILLEQ, 4, 4),
    ROW(TBILLPRICE, 4, 4),   ROW(TBILLYIELD, 4, 4),   ROW(VDB, 6, 8),
    ROW(XIRR, 2, unbounded), ROW(XNPV, 2, unbounded), ROW(YEARFRAC, 3, 4),
    ROW(YIELD, 7, 8),        ROW(YIELDDISC, 5, 6),    ROW(YIELDMAT, 6, 7),
};

#undef ROW

constexpr std::string_view name_of(const FinancialRow& entry) { return {entry.name, entry.name_length}; }

constexpr bool counts_are_sound(const FinancialRow& entry) {
    return entry.minimum_count >= 2 && (entry.maximum_count == unbounded || entry.maximum_count >= entry.minimum_count);
}

static_assert(std::ranges::is_sorted(rows, std::ranges::less_equal{}, name_of), "ascending, each name once");
static_assert(std::ranges::all_of(rows, counts_are_sound));

}  // namespace

constexpr std::array<FinancialRow, 54> FinancialList{rows};

}  // namespace finance
