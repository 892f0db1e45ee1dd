// Price and yield of a security that pays all its interest at maturity.
#pragma once

#include "securities/security_record.hpp"

namespace finance {

int zComputePRICEMAT(SecurityComputeRecord* record);  // maturityPrice; 1 where the divisor is 0
int zComputeYIELDMAT(SecurityComputeRecord* record);  // yield; 1 where the divisor is 0

}  // namespace finance
