// Arguments that the calculations of coupon securities begin with.
#pragma once

#include "calendar/date_arguments.hpp"
#include "securities/security_record.hpp"

namespace finance {

// settlement and maturity, in order of time; equal dates pass.
inline bool read_settlement_and_maturity(Arguments& in, Security& security) {
    if (!read_date(in, 1, security.settlement) || !read_date(in, 2, security.maturity)) return false;
    return !before(security.maturity, security.settlement) || in.reject(2);
}

}  // namespace finance
