// The calls that are measured.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/calls/floors.hpp"
#include "host/embedded_host.hpp"

namespace finance::benchmarks {

// Arguments view into the texts of the catalogue.
struct CallCase {
    std::string label;  // its own
    std::string_view name;
    std::vector<host::Argument> arguments;
    std::size_t varied = 0;  // which number moves from call to call; 0 none
    Floor floor = nullptr;
    std::size_t flows = 0;  // where there are any
};

// All calculations at the example of the catalogue; labels are the names.
std::deque<CallCase> usual_calls();

// A bond of 30 years with coupons twice a year, 250 dated flows, 360 monthly ones.
std::deque<CallCase> large_calls();

// PRICE by coupons, COUPNUM and YEARFRAC by distance of their dates; and YEARFRAC by months of 30 days.
std::deque<CallCase> sized_calls();

// Days since 1960-01-01.
double day_number(int year, unsigned month, unsigned day);

// The flows of the large calls.
inline constexpr int dated_flows = 250;
inline constexpr int monthly_flows = 360;
double flow_amount(int i);     // the first is the outlay, the others repay it
double dated_flow_day(int i);  // 30 or 31 days apart
double monthly_flow_amount(int i);

}  // namespace finance::benchmarks
