// Calls drawn to be slow, by what the catalogue says of their parameters.
//
//  (1) Dates are drawn together: anywhere, at hostile distances from each other, or on each other's schedule.
//  (2) Numbers are drawn alone, then some are fitted to the others: a rate so that (1 + rate)^n neither settles nor
//      overflows, a yield equal to the coupon, a price near par.
//  (3) Most calls are then put right: values within their bounds, dates and counts in their order. The others show that
//      a refusal is quick, too.
#pragma once

#include <functional>

#include "hostile/call.hpp"
#include "hostile/random.hpp"

namespace finance::hostile {

// How far calls go where the time of a literal loop grows with them.
struct Reach {
    double periods = 0x1p31;     // counted, or from date to date
    std::size_t list = 100'000;  // values
    double far = 1.0;            // share of the calls whose dates and frequencies may make a walk of any length
};

struct Draw {
    Random& random;
    Reach reach;
    // A call's value, NaN where it has none: schedules that are drawn are asked for their coupon dates.
    std::function<double(const Call&)> answer;
};

Call drawn(const catalogue::Calculation& calculation, const Draw& draw);

// The call with some of its values replaced, moved, exchanged or fitted to others.
Call changed(Call call, const Draw& draw);

}  // namespace finance::hostile
