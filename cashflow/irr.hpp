// The internal rate of periodic flows, as a root of their present value in the discount factor.
#pragma once

#include <cstdint>

namespace finance {

// The flow of period i, from 0.
using FlowCallback = double (*)(std::int32_t i, void* context);

struct IrrRequest {
    double x0;       // periods per unit of the rate; 0 asks for a continuous rate
    std::int32_t n;  // number of flows
    FlowCallback callback;
    void* context;
    std::int32_t status;  // IrrStatus
    double rate;          // the answer
    bool severalRoots;    // more than one sign change: other rates may solve it too
};

enum IrrStatus : std::int32_t {
    IRR_SOLVED = 0,
    IRR_NO_ROOT = 1,         // none exists, none was found, or there was no memory
    IRR_NOT_SETTLED = -993,  // the iteration of one sign change
    IRR_NO_FLOWS = -994,     // none but zeros
    IRR_NO_SPLIT = -995,     // no sign change where one was counted
    IRR_NO_RATE = -997,      // the root has none
    IRR_BAD_REQUEST = -999,
};

// Solves the request; the code is returned, the rate stored in it on IRR_SOLVED.
std::int32_t zirr_s(IrrRequest* request);

// The rate, or the missing value where *status is not IRR_SOLVED.
double zirr(std::int32_t n, FlowCallback callback, void* context, std::int32_t* status, double x0);

// The flow of period i of a call's record: argument i + 1. context is its HostCallContext.
double cashflow(std::int32_t i, void* context);

}  // namespace finance
