// Numbers of 200 bits, or as many as a formula's cancellation takes, for reference values of kernels and closed forms.
#pragma once

#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace finance::test {

template <mpfr_prec_t precision>
class PreciseOf {
public:
    PreciseOf(double x = 0.0) {
        mpfr_init2(value_, precision);
        mpfr_set_d(value_, x, MPFR_RNDN);
    }
    PreciseOf(const PreciseOf& other) {
        mpfr_init2(value_, precision);
        mpfr_set(value_, other.value_, MPFR_RNDN);
    }
    PreciseOf& operator=(const PreciseOf& other) {
        mpfr_set(value_, other.value_, MPFR_RNDN);
        return *this;
    }
    ~PreciseOf() { mpfr_clear(value_); }

    friend PreciseOf operator+(const PreciseOf& a, const PreciseOf& b) { return made(mpfr_add, a, b); }
    friend PreciseOf operator-(const PreciseOf& a, const PreciseOf& b) { return made(mpfr_sub, a, b); }
    friend PreciseOf operator*(const PreciseOf& a, const PreciseOf& b) { return made(mpfr_mul, a, b); }
    friend PreciseOf operator/(const PreciseOf& a, const PreciseOf& b) { return made(mpfr_div, a, b); }
    PreciseOf& operator+=(const PreciseOf& other) { return *this = *this + other; }
    friend bool operator<(const PreciseOf& a, const PreciseOf& b) { return mpfr_less_p(a.value_, b.value_) != 0; }
    friend bool operator>(const PreciseOf& a, const PreciseOf& b) { return b < a; }
    friend PreciseOf power(const PreciseOf& a, const PreciseOf& b) { return made(mpfr_pow, a, b); }
    friend PreciseOf logarithm(const PreciseOf& a) {
        PreciseOf r;
        mpfr_log(r.value_, a.value_, MPFR_RNDN);
        return r;
    }
    friend PreciseOf exponential_less_1(const PreciseOf& a) {
        PreciseOf r;
        mpfr_expm1(r.value_, a.value_, MPFR_RNDN);
        return r;
    }
    friend PreciseOf exponential(const PreciseOf& a) {
        PreciseOf r;
        mpfr_exp(r.value_, a.value_, MPFR_RNDN);
        return r;
    }
    friend PreciseOf logarithm_of_1_and(const PreciseOf& a) {
        PreciseOf r;
        mpfr_log1p(r.value_, a.value_, MPFR_RNDN);
        return r;
    }
    friend PreciseOf magnitude(const PreciseOf& a) {
        PreciseOf r;
        mpfr_abs(r.value_, a.value_, MPFR_RNDN);
        return r;
    }
    [[nodiscard]] double rounded() const { return mpfr_get_d(value_, MPFR_RNDN); }

private:
    template <typename Operation>
    static PreciseOf made(Operation operation, const PreciseOf& a, const PreciseOf& b) {
        PreciseOf r;
        operation(r.value_, a.value_, b.value_, MPFR_RNDN);
        return r;
    }
    mpfr_t value_;
};

using Precise = PreciseOf<200>;

// |got - exact| in units in the last place of size.
inline double error_in_ulps(double got, const Precise& exact, double size) {
    const double ulp = std::nextafter(std::abs(size), std::numeric_limits<double>::infinity()) - std::abs(size);
    return magnitude(exact - got).rounded() / ulp;
}

inline double error_in_ulps(double got, const Precise& exact) { return error_in_ulps(got, exact, exact.rounded()); }

// The slope at x of a function of 200 bits, by central differences.
template <typename Function>
Precise slope(const Function& f, double x) {
    const Precise h = 0x1p-60;
    return (f(Precise{x} + h) - f(Precise{x} - h)) / (h * 2.0);
}

// Repeatable draws.
class Draws {
public:
    explicit Draws(std::uint64_t seed) : engine_{seed} {}
    std::int64_t whole(std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(high - low + 1));
    }
    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }
    double log_between(double low, double high) { return std::exp(between(std::log(low), std::log(high))); }
    double sign() { return coin() ? 1.0 : -1.0; }
    bool coin() { return engine_() % 2 == 0; }
    template <std::size_t n>
    int one_of(const int (&values)[n]) {
        return values[engine_() % n];
    }

private:
    std::mt19937_64 engine_;
};

// The worst of many errors.
class Worst {
public:
    void add(double error) {
        error_ = std::isnan(error) ? std::numeric_limits<double>::infinity() : std::max(error_, error);
        ++count_;
    }
    [[nodiscard]] double error() const { return error_; }
    [[nodiscard]] int count() const { return count_; }

private:
    double error_ = 0.0;
    int count_ = 0;
};

}  // namespace finance::test
