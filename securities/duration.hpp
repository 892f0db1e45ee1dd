// Average time to the cash flows of a security that pays coupons and redeems at 100.
#pragma once

#include "securities/security_record.hpp"

namespace finance {

// duration, in years; 1 or 2 where the yield has no discount factor.
int zComputeDURATION(SecurityComputeRecord* record);

}  // namespace finance
