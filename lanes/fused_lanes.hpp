// exp, log and pow of four doubles, for processors with a fused multiply-add: nothing of fused_lanes.cpp may run on others.
// Each function takes four and leaves four; the places may be one.
#pragma once

namespace finance::elementary::fused_lanes {

void exp(const double* x, double* result);
void log(const double* x, double* result);
void pow(const double* x, const double* y, double* result);

}  // namespace finance::elementary::fused_lanes
