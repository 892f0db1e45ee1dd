#include "elementary/functions.hpp"

namespace finance::elementary {

const bool has_fused_multiply_add = __builtin_cpu_supports("fma") != 0;
const bool has_wide_lanes = has_fused_multiply_add && __builtin_cpu_supports("avx2") != 0;

}  // namespace finance::elementary
