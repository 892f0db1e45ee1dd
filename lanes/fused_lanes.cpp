#include "lanes/fused_lanes.hpp"

#include "lanes/elementary.hpp"
#include "lanes/instruction_set.hpp"

namespace finance::elementary::fused_lanes {

using Four = Lanes<InstructionSet>;

void exp(const double* x, double* result) { elementary::exp(Four::load(x)).store(result); }
void log(const double* x, double* result) { elementary::log(Four::load(x)).store(result); }
void pow(const double* x, const double* y, double* result) {
    elementary::pow(Four::load(x), Four::load(y)).store(result);
}

}  // namespace finance::elementary::fused_lanes
