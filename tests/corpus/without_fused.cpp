// Linked before the archive that asks the processor, which is then left out.
#include "elementary/functions.hpp"

namespace finance::elementary {

const bool has_fused_multiply_add = false;
const bool has_wide_lanes = false;

}  // namespace finance::elementary
