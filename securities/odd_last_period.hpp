// Price and yield of a security whose last coupon period is irregular.
#pragma once

#include "securities/security_record.hpp"

namespace finance {

int zComputeODDLPRICE(SecurityComputeRecord* record);  // oddLastPrice; 2 where the yield has no discount factor
int zComputeODDLYIELD(SecurityComputeRecord* record);  // yield; 1 where price or time to maturity leaves none

}  // namespace finance
