// Compiled for processors with a fused multiply-add: nothing of this file may run on others.
#include "elementary/functions.hpp"
#include "elementary/power.hpp"
#include "elementary/powers.hpp"

namespace finance::elementary::by_instruction {

namespace {

struct Instruction {
    static double fused(double a, double b, double c) { return __builtin_fma(a, b, c); }
    static double residue(double a, double b, double c) { return fused(a, b, c); }
};
using Value = Number<Instruction>;

}  // namespace

double exp(double x) { return elementary::exp<Value>(x); }
double expm1(double x) { return elementary::expm1<Value>(x); }
double log(double x) { return elementary::log<Value>(x); }
double log1p(double x) { return elementary::log1p<Value>(x); }
double pow(double x, double y) { return elementary::pow<Value>(x, y); }
LongLogarithm long_log(double x) {
    const Long<Value> l = elementary::long_log<Value>(bits_of(x));
    return {l.high.value, l.low.value};
}
double pow_of_log(LongLogarithm l, double y) { return elementary::pow_of_log<Value>({{l.high}, {l.low}}, y); }
double fused(double a, double b, double c) { return Instruction::fused(a, b, c); }

}  // namespace finance::elementary::by_instruction
