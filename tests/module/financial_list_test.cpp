// The calculations and their numbers of arguments, written down a second time: the one place in the tests that a new one
// is added to by hand. Loops over this list, or over the catalogue, which its own test compares with it, therefore never
// run over too few.
#include "module/financial_list.hpp"

#include <gtest/gtest.h>

#include <iterator>

namespace finance::test {
namespace {

struct Row {
    const char* name;
    std::int32_t minimum;
    std::int32_t maximum;  // 0: none
};

constexpr Row rows[] = {
    {"ACCRINT", 7, 8},    {"ACCRINTM", 5, 6},   {"AMORDEGRC", 7, 8}, {"AMORLINC", 7, 8},  {"COUPDAYBS", 4, 5},
    {"COUPDAYS", 4, 5},   {"COUPDAYSNC", 4, 5}, {"COUPNCD", 4, 5},   {"COUPNUM", 4, 5},   {"COUPPCD", 4, 5},
    {"CUMIPMT", 6, 7},    {"CUMPRINC", 6, 7},   {"DB", 5, 6},        {"DDB", 5, 6},       {"DISC", 5, 6},
    {"DOLLARDE", 3, 3},   {"DOLLARFR", 3, 3},   {"DURATION", 6, 7},  {"EFFECT", 3, 3},    {"FV", 4, 6},
    {"FVSCHEDULE", 2, 0}, {"INTRATE", 5, 6},    {"IPMT", 5, 7},      {"IRR", 2, 0},       {"ISPMT", 5, 5},
    {"MDURATION", 6, 7},  {"MIRR", 2, 0},       {"NOMINAL", 3, 3},   {"NPER", 4, 6},      {"NPV", 2, 0},
    {"ODDFPRICE", 9, 10}, {"ODDFYIELD", 9, 10}, {"ODDLPRICE", 8, 9}, {"ODDLYIELD", 8, 9}, {"PMT", 4, 6},
    {"PPMT", 5, 7},       {"PRICE", 7, 8},      {"PRICEDISC", 5, 6}, {"PRICEMAT", 6, 7},  {"PV", 4, 6},
    {"RATE", 4, 6},       {"RECEIVED", 5, 6},   {"SLN", 4, 4},       {"SYD", 5, 5},       {"TBILLEQ", 4, 4},
    {"TBILLPRICE", 4, 4}, {"TBILLYIELD", 4, 4}, {"VDB", 6, 8},       {"XIRR", 2, 0},      {"XNPV", 2, 0},
    {"YEARFRAC", 3, 4},   {"YIELD", 7, 8},      {"YIELDDISC", 5, 6}, {"YIELDMAT", 6, 7},
};

TEST(FinancialList, IsCompleteWithItsCounts) {
    ASSERT_EQ(FinancialList.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_STREQ(FinancialList[i].name, rows[i].name);
        EXPECT_EQ(FinancialList[i].minimum_count, rows[i].minimum) << rows[i].name;
        EXPECT_EQ(FinancialList[i].maximum_count, rows[i].maximum) << rows[i].name;
    }
}

}  // namespace
}  // namespace finance::test
