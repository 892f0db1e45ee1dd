// exp, log and pow, and what goes with them: the same bits on every x86-64 processor and with every C library, rounding to
// nearest. Where the processor multiplies and adds in one instruction that is used; elsewhere whole numbers do it, exactly
// and some forty times as slowly.
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

namespace in_whole_numbers {
double exp(double x);
double expm1(double x);
double log(double x);
double log1p(double x);
double pow(double x, double y);
double fused(double a, double b, double c);
}  // namespace in_whole_numbers

// e^x; 0.511 ulp
inline double exp(double x) { return has_fused_multiply_add ? by_instruction::exp(x) : in_whole_numbers::exp(x); }

// e^x - 1; 2.44 ulp
inline double expm1(double x) { return has_fused_multiply_add ? by_instruction::expm1(x) : in_whole_numbers::expm1(x); }

// ln x; 0.52 ulp
inline double log(double x) { return has_fused_multiply_add ? by_instruction::log(x) : in_whole_numbers::log(x); }

// ln(1 + x); 0.66 ulp
inline double log1p(double x) { return has_fused_multiply_add ? by_instruction::log1p(x) : in_whole_numbers::log1p(x); }

// x^y, of a negative x for whole y alone; 0.52 ulp
inline double pow(double x, double y) {
    return has_fused_multiply_add ? by_instruction::pow(x, y) : in_whole_numbers::pow(x, y);
}

// a b + c, rounded once
inline double fused(double a, double b, double c) {
    return has_fused_multiply_add ? by_instruction::fused(a, b, c) : in_whole_numbers::fused(a, b, c);
}

}  // namespace finance::elementary
