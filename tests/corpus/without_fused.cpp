// Linked before the archive that asks the processor, which is then left out.
#include "elementary/functions.hpp"

namespace finance::elementary {

const bool has_fused_multiply_add = false;

}  // namespace finance::elementary
