// Securities that pay no coupon between settlement and maturity.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

struct DiscountRecord {
    CalendarDate settlement;  // of both dates only julianDay need be set
    CalendarDate maturity;
    double first;  // arguments 3 and 4, both above 0
    double second;
    double answer;
    CouponTerms terms;
};

// Each leaves its answer in the record and returns 0, or 1 where there is none.
int zComputeDISC(DiscountRecord* record);       // price, redemption -> discount rate
int zComputeINTRATE(DiscountRecord* record);    // investment, redemption -> interest rate
int zComputePRICEDISC(DiscountRecord* record);  // discount rate, redemption -> price
int zComputeRECEIVED(DiscountRecord* record);   // investment, discount rate -> amount received
int zComputeYIELDDISC(DiscountRecord* record);  // price, redemption -> yield

}  // namespace finance
