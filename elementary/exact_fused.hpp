// a b + c rounded once, to nearest, for processors that have no instruction for it: in some fifty operations on doubles, or
// in whole numbers where doubles do not reach.
#pragma once

namespace finance::elementary {

double exact_fused(double a, double b, double c);

}  // namespace finance::elementary
