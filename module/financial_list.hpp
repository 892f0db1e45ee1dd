// The list of calculations, and the table that is made of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "abi/arguments.hpp"

// Ascending by name: smallest and largest number of arguments with the name counted, 0 where there is no upper bound.
// clang-format off
#define FINANCE_CALCULATIONS(ROW) \
    ROW(ACCRINT, 7, 8)      ROW(ACCRINTM, 5, 6)     ROW(AMORDEGRC, 7, 8)    ROW(AMORLINC, 7, 8) \
    ROW(COUPDAYBS, 4, 5)    ROW(COUPDAYS, 4, 5)     ROW(COUPDAYSNC, 4, 5)   ROW(COUPNCD, 4, 5) \
    ROW(COUPNUM, 4, 5)      ROW(COUPPCD, 4, 5)      ROW(CUMIPMT, 6, 7)      ROW(CUMPRINC, 6, 7) \
    ROW(DB, 5, 6)           ROW(DDB, 5, 6)          ROW(DISC, 5, 6)         ROW(DOLLARDE, 3, 3) \
    ROW(DOLLARFR, 3, 3)     ROW(DURATION, 6, 7)     ROW(EFFECT, 3, 3)       ROW(FV, 4, 6) \
    ROW(FVSCHEDULE, 2, 0)   ROW(INTRATE, 5, 6)      ROW(IPMT, 5, 7)         ROW(IRR, 2, 0) \
    ROW(ISPMT, 5, 5)        ROW(MDURATION, 6, 7)    ROW(MIRR, 2, 0)         ROW(NOMINAL, 3, 3) \
    ROW(NPER, 4, 6)         ROW(NPV, 2, 0)          ROW(ODDFPRICE, 9, 10)   ROW(ODDFYIELD, 9, 10) \
    ROW(ODDLPRICE, 8, 9)    ROW(ODDLYIELD, 8, 9)    ROW(PMT, 4, 6)          ROW(PPMT, 5, 7) \
    ROW(PRICE, 7, 8)        ROW(PRICEDISC, 5, 6)    ROW(PRICEMAT, 6, 7)     ROW(PV, 4, 6) \
    ROW(RATE, 4, 6)         ROW(RECEIVED, 5, 6)     ROW(SLN, 4, 4)          ROW(SYD, 5, 5) \
    ROW(TBILLEQ, 4, 4)      ROW(TBILLPRICE, 4, 4)   ROW(TBILLYIELD, 4, 4)   ROW(VDB, 6, 8) \
    ROW(XIRR, 2, 0)         ROW(XNPV, 2, 0)         ROW(YEARFRAC, 3, 4)     ROW(YIELD, 7, 8) \
    ROW(YIELDDISC, 5, 6)    ROW(YIELDMAT, 6, 7)
// clang-format on

namespace finance {

struct FinancialRow {
    const char* name;  // upper case, NUL-terminated
    std::uint32_t name_length;
    Handler* handler;
    std::int32_t minimum_count;  // of arguments, the name included
    std::int32_t maximum_count;  // the same; 0 where there is no upper bound
};

#define NAME_OF_ROW(name, minimum, maximum) #name,
inline constexpr auto calculation_names = std::to_array<std::string_view>({FINANCE_CALCULATIONS(NAME_OF_ROW)});
inline constexpr std::size_t calculation_count = calculation_names.size();

// Of one that there is; for tables that are made while compiling.
consteval std::size_t index_of(std::string_view name) {
    std::size_t i = 0;
    while (calculation_names[i] != name) ++i;
    return i;
}

extern const std::array<FinancialRow, calculation_count> FinancialList;

}  // namespace finance
