// The calculations that columns know, once for each set of instructions.
#pragma once

#include <array>
#include <cstdint>

#include "lanes/rows.hpp"
#include "module/financial_list.hpp"

// Where the basis stands among the arguments, 0: there is none; and, of those whose rows go through as they stand, how many
// of them at a time. TwoVectors, where a row is one long chain of steps that wait for each other; OneVector, where they
// hardly wait; else what the set of instructions does best.
// clang-format off
#define FINANCE_ROW_COLUMNS(ROW) \
    ROW(FV, 0, TwoVectors)  ROW(PMT, 0, TwoVectors)  ROW(PV, 0, TwoVectors)  ROW(RATE, 0, InstructionSet) \
    ROW(NPER, 0, InstructionSet) \
    ROW(IPMT, 0, OneVector)  ROW(ISPMT, 0, OneVector)  ROW(PPMT, 0, OneVector) \
    ROW(EFFECT, 0, TwoVectors)  ROW(NOMINAL, 0, InstructionSet) \
    ROW(DB, 0, InstructionSet)  ROW(DDB, 0, InstructionSet)  ROW(SLN, 0, OneVector)  ROW(SYD, 0, OneVector) \
    ROW(DISC, 5, OneVector)  ROW(INTRATE, 5, OneVector)  ROW(PRICEDISC, 5, OneVector)  ROW(RECEIVED, 5, OneVector) \
    ROW(YIELDDISC, 5, OneVector)  ROW(YEARFRAC, 3, OneVector) \
    ROW(ACCRINTM, 5, OneVector)  ROW(PRICEMAT, 6, OneVector)  ROW(YIELDMAT, 6, OneVector) \
    ROW(DOLLARDE, 0, OneVector)  ROW(DOLLARFR, 0, OneVector) \
    ROW(TBILLEQ, 0, OneVector)  ROW(TBILLPRICE, 0, OneVector)  ROW(TBILLYIELD, 0, OneVector)
// Those that are one.
#define FINANCE_COUPON_COLUMNS(ROW) \
    ROW(COUPDAYBS, 4)  ROW(COUPDAYS, 4)  ROW(COUPDAYSNC, 4)  ROW(COUPNCD, 4)  ROW(COUPNUM, 4)  ROW(COUPPCD, 4)
// Those that take the rows of a block in another order.
#define FINANCE_BLOCK_COLUMNS(ROW) \
    ROW(DURATION, 6)  ROW(MDURATION, 6)  ROW(ODDFPRICE, 9)  ROW(ODDFYIELD, 9)  ROW(PRICE, 7)  ROW(YIELD, 7)

#define FINANCE_COLUMNS(ROW) FINANCE_ROW_COLUMNS(ROW) FINANCE_COUPON_COLUMNS(ROW) FINANCE_BLOCK_COLUMNS(ROW)
// clang-format on

namespace finance {

// Calculates what is plain in a block. Bit r of the answer: row r has its result.
using ColumnHandler = std::uint64_t(const RowBlock& block);

// By the calculation's index in FinancialList; null where there is nothing to gain.
using ColumnList = std::array<ColumnHandler*, calculation_count>;
extern const ColumnList columns_sse2;
extern const ColumnList columns_avx2;

}  // namespace finance
