#include "calendar/discount_securities.hpp"

namespace finance {

FINANCE_HANDLER_OF(DISC)
FINANCE_HANDLER_OF(INTRATE)
FINANCE_HANDLER_OF(PRICEDISC)
FINANCE_HANDLER_OF(RECEIVED)
FINANCE_HANDLER_OF(YIELDDISC)

int zComputeDISC(DiscountRecord* record) { return discount_rate(*record) ? 0 : 1; }
int zComputeINTRATE(DiscountRecord* record) { return interest_rate(*record) ? 0 : 1; }
int zComputeRECEIVED(DiscountRecord* record) { return amount_received(*record) ? 0 : 1; }

int zComputePRICEDISC(DiscountRecord* record) {
    discounted_price(*record);
    return 0;
}

int zComputeYIELDDISC(DiscountRecord* record) {
    discount_yield(*record);
    return 0;
}

}  // namespace finance
