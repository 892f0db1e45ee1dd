#include "lanes/fused_lanes.hpp"

#include "lanes/elementary.hpp"
#include "lanes/instruction_set.hpp"

namespace finance::elementary::fused_lanes {

namespace {

using Four = Lanes<InstructionSet>;

// Lanes of two have just written them two by two: read so, they need not have reached the memory.
Four two_by_two(const double* x) {
    return Four{InstructionSet::Doubles(_mm256_set_m128d(_mm_loadu_pd(x + 2), _mm_loadu_pd(x)))};
}

}  // namespace

void exp(const double* x, double* result) { elementary::exp(two_by_two(x)).store(result); }
void log(const double* x, double* result) { elementary::log(two_by_two(x)).store(result); }
void pow(const double* x, const double* y, double* result) {
    elementary::pow(two_by_two(x), two_by_two(y)).store(result);
}

}  // namespace finance::elementary::fused_lanes
