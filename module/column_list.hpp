// The calculations that columns know, once for each set of instructions.
#pragma once

#include <array>
#include <cstdint>

#include "lanes/rows.hpp"
#include "module/financial_list.hpp"

// Where the basis stands among the arguments; 0: there is none.
// clang-format off
#define FINANCE_COLUMNS(ROW) \
    ROW(FV, 0)    ROW(PMT, 0)   ROW(PV, 0) \
    ROW(COUPDAYBS, 4) ROW(COUPDAYS, 4) ROW(COUPDAYSNC, 4) ROW(COUPNCD, 4) ROW(COUPNUM, 4) ROW(COUPPCD, 4) \
    ROW(EFFECT, 0)  ROW(NOMINAL, 0)  ROW(NPER, 0)  ROW(RATE, 0) \
    ROW(DB, 0)  ROW(DDB, 0)
// Those that gain little from more than a vector at a time: their steps hardly wait for each other.
#define FINANCE_ONE_VECTOR_COLUMNS(ROW) \
    ROW(DISC, 5)  ROW(INTRATE, 5)  ROW(PRICEDISC, 5)  ROW(RECEIVED, 5)  ROW(YEARFRAC, 3)  ROW(YIELDDISC, 5) \
    ROW(ACCRINTM, 5) ROW(PRICEMAT, 6) ROW(YIELDMAT, 6) \
    ROW(IPMT, 0)  ROW(ISPMT, 0)  ROW(PPMT, 0)  ROW(SLN, 0)  ROW(SYD, 0) \
    ROW(DOLLARDE, 0) ROW(DOLLARFR, 0) ROW(TBILLEQ, 0) ROW(TBILLPRICE, 0) ROW(TBILLYIELD, 0)
// Those that take the rows of a block in another order.
#define FINANCE_BLOCK_COLUMNS(ROW) \
    ROW(DURATION, 6)  ROW(MDURATION, 6)  ROW(PRICE, 7)  ROW(YIELD, 7)
// clang-format on

namespace finance {

// Calculates what is plain in a block. Bit r of the answer: row r has its result.
using ColumnHandler = std::uint64_t(const RowBlock& block);

// By the calculation's index in FinancialList; null where there is nothing to gain.
using ColumnList = std::array<ColumnHandler*, calculation_count>;
extern const ColumnList columns_sse2;
extern const ColumnList columns_avx2;

}  // namespace finance
