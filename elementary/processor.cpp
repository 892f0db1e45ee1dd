#include "elementary/functions.hpp"

namespace finance::elementary {

const bool has_fused_multiply_add = __builtin_cpu_supports("fma") != 0;

}  // namespace finance::elementary
