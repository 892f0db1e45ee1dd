// What price, yield and duration need to know of the coupon period that holds settlement.
#pragma once

#include "securities/security_record.hpp"

namespace finance {

// Splits both dates and fills couponCount; daysInPeriod and daysAccrued as counted. True where settlement is a coupon
// date.
bool find_coupon_quantities(SecurityComputeRecord* record);

}  // namespace finance
