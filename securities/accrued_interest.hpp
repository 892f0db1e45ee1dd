// Interest accrued from issue to settlement.
#pragma once

#include "securities/security_record.hpp"

namespace finance {

int zComputeACCRINT(SecurityComputeRecord* record);   // accruedInterest; always 0
int zComputeACCRINTM(SecurityComputeRecord* record);  // yearFraction; 1 where it is negative

}  // namespace finance
