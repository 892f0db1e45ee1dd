// exp, log and pow, and what goes with them: the same bits on every x86-64 processor and with every C library, rounding to
// nearest. Where the processor multiplies and adds in one instruction that is used; elsewhere others do it, as exactly, and
// exp, log and pow take three to four times as long.
//   Domain    all doubles; NaN for NaN, for logarithms below 0 and for powers of a negative base that is no odd or even one
//   Error     in units of the last place, worst of 1e5 draws against 200 bits
#pragma once

namespace finance::elementary {

#ifdef __x86_64__
// Of this processor and its system; known once the module is loaded.
extern const bool has_fused_multiply_add;
extern const bool has_wide_lanes;  // of four doubles, with fused multiply-add (lanes/instruction_set.hpp)
#else
inline constexpr bool has_fused_multiply_add = false;
inline constexpr bool has_wide_lanes = false;
#endif

namespace by_instruction {
double exp(double x);
double expm1(double x);
double log(double x);
double log1p(double x);
double pow(double x, double y);
double fused(double a, double b, double c);
}  // namespace by_instruction

namespace without_instruction {
double exp(double x);
double expm1(double x);
double log(double x);
double log1p(double x);
double pow(double x, double y);
double fused(double a, double b, double c);
}  // namespace without_instruction

// e^x; 0.511 ulp
inline double exp(double x) { return has_fused_multiply_add ? by_instruction::exp(x) : without_instruction::exp(x); }

// e^x - 1; 2.44 ulp
inline double expm1(double x) {
    return has_fused_multiply_add ? by_instruction::expm1(x) : without_instruction::expm1(x);
}

// ln x; 0.52 ulp
inline double log(double x) { return has_fused_multiply_add ? by_instruction::log(x) : without_instruction::log(x); }

// ln(1 + x); 0.66 ulp
inline double log1p(double x) {
    return has_fused_multiply_add ? by_instruction::log1p(x) : without_instruction::log1p(x);
}

// x^y, of a negative x for whole y alone; 0.52 ulp
inline double pow(double x, double y) {
    return has_fused_multiply_add ? by_instruction::pow(x, y) : without_instruction::pow(x, y);
}

// a b + c, rounded once
inline double fused(double a, double b, double c) {
    return has_fused_multiply_add ? by_instruction::fused(a, b, c) : without_instruction::fused(a, b, c);
}

}  // namespace finance::elementary
