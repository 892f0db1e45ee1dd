#include "securities/interest_at_maturity.hpp"

#include "securities/kernels.hpp"

namespace finance {

FINANCE_HANDLER_OF(PRICEMAT)
FINANCE_HANDLER_OF(YIELDMAT)

namespace {

// Leaves the record's dates split.
InterestAtMaturityOf<double> interest_at_maturity(const SecurityComputeRecord& record) {
    for (CalendarDate* date : {record.settlement, record.maturity, record.issue}) zgetMonthDayYear(date);
    return {.settlement = *record.settlement,
            .maturity = *record.maturity,
            .issue = *record.issue,
            .terms = *record.terms,
            .rate = record.rate,
            .yield = record.yield,
            .price = record.maturityPrice};
}

}  // namespace

int zComputePRICEMAT(SecurityComputeRecord* record) {
    auto x = interest_at_maturity(*record);
    const bool answered = price_at_maturity(x);
    record->maturityPrice = x.price;
    return answered ? 0 : 1;
}

int zComputeYIELDMAT(SecurityComputeRecord* record) {
    auto x = interest_at_maturity(*record);
    const bool answered = yield_at_maturity(x);
    record->yield = x.yield;
    return answered ? 0 : 1;
}

}  // namespace finance
