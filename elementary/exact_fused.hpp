// a b + c rounded once, to nearest, in whole numbers: for processors that have no instruction for it.
#pragma once

namespace finance::elementary {

double exact_fused(double a, double b, double c);

}  // namespace finance::elementary
