// The floors of calculations that search for a rate: value and slope per step, and the steps.
#include <algorithm>
#include <cmath>

#include "benchmarks/calls/date_floors.hpp"
#include "benchmarks/calls/floors.hpp"
#include "cashflow/discounting.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"

namespace finance::benchmarks {

namespace {

struct Trial {
    double value;
    double slope;
};

// Newton's method in ln(1 + x).
template <typename Objective>
double search(double x, Objective objective) {
    constexpr double tolerance = 1e-12;
    constexpr double lowest_rate = -0.9999999;
    while (true) {
        const Trial trial = objective(x);
        const double m = zexpm1((0.0 - trial.value) / ((x + 1.0) * trial.slope));
        const double next = std::max(x * m + (m + x), lowest_rate);
        const bool settled = std::abs(x - next) <= tolerance * std::max(std::abs(next), 1.0);
        if (settled) return next;
        x = next;
    }
}

}  // namespace

double floor_of_YIELD(const FloorInput& in) {
    const double f = in.a[6];
    const double inverse = 1.0 / f;
    const double c = 100.0 * in.a[3] / f;
    const double R = in.a[5];
    const auto [N, d, a] = coupons_360(in.a[1], in.a[2], f);
    return search(0.1, [&, N = N, d = d, a = a](double x) -> Trial {
        const double v = 1.0 / (1.0 + x * inverse);
        double e = d;
        double t = elementary::pow(v, e);
        double S = t;
        double g = t * v * (-e) * inverse;
        double D = g;
        for (double k = 1.0; k < N; k += 1.0) {
            t = t * v;
            e = e + 1.0;
            S = S + t;
            g = -(v * e) * t * inverse;
            D = D + g;
        }
        return {c * (S - a) + (R * t - in.a[4]), c * D + R * g};
    });
}

double floor_of_ODDFYIELD(const FloorInput& in) {
    const double f = in.a[8];
    const double inverse = 1.0 / f;
    const double c = 100.0 * in.a[5] / f;
    const double R = in.a[7];
    const CalendarDate settlement = split(in.a[1]);
    const CalendarDate issue = split(in.a[3]);
    const CalendarDate first_coupon = split(in.a[4]);
    const double E = 360.0 * inverse;
    const double e = days_360(settlement, first_coupon) / E;  // all within the period of the first coupon
    const double DFC = days_360(issue, first_coupon) / E;
    const double A1 = days_360(issue, settlement) / E;
    const double N = coupons_360(in.a[4], in.a[2], f).N;
    return search(0.1, [&](double x) -> Trial {
        const double v = 1.0 / (x * inverse + 1.0);
        const double t0 = elementary::pow(v, e);
        const double g0 = -e * t0 * v * inverse;
        double t = t0;
        double g = g0;
        double S = 0.0;
        double G = 0.0;
        for (double k = 0.0; k < N; k += 1.0) {
            t = t * v;
            S = S + t;
            g = g * v - t * v * inverse;
            G = G + g;
        }
        return {c * (DFC * t0 + S - A1) + R * t - in.a[6], c * DFC * g0 + c * G + R * g};
    });
}

double floor_of_XIRR(const FloorInput& in) {
    const DatedFlows<double> flows = flows_from(in, 1);
    return search(0.0, [&](double x) -> Trial {
        NewtonProblem problem{};
        problem.x = x;
        best_discounting().sides_of_list(flows, problem);
        return {problem.value, problem.derivative};
    });
}

namespace {

// Horner's rule over n coefficients, stride apart.
Trial horner(const double* c, std::ptrdiff_t stride, std::ptrdiff_t n, double z) {
    Trial sum{c[0], 0.0};
    for (std::ptrdiff_t k = 1; k < n; ++k) {
        sum.slope = sum.slope * z + sum.value;
        sum.value = sum.value * z + c[k * stride];
    }
    return sum;
}

// ln|p(z)| and z p'(z) / p(z). From 1 on the reversed polynomial in 1/z, and z^d as mantissa and exponent.
Trial in_logarithms(const double* c, std::ptrdiff_t n, double z) {
    if (z < 1.0) {
        const Trial p = horner(c + (n - 1), -1, n, z);
        return {elementary::log(std::abs(p.value)), z * p.slope / p.value};
    }
    const auto d = static_cast<double>(n - 1);
    const double w = 1.0 / z;
    const Trial r = horner(c, 1, n, w);
    const double whole = d * elementary::log(z);
    const double exponent = std::trunc(whole);
    const double scale = elementary::exp(whole - exponent);
    const double p = scale * r.value;
    const double p1 = scale * w * (d * r.value - w * r.slope);
    return {elementary::log(std::abs(p)) + exponent, z * p1 / p};
}

}  // namespace

double floor_of_IRR(const FloorInput& in) {
    constexpr double smallest_step = 1e-10;
    const auto n = static_cast<std::ptrdiff_t>(in.flows);
    const double* c = in.a + 1;
    double t = 0.0;
    double step = 1.0;
    while (std::abs(step) > smallest_step) {
        const double z = elementary::exp(t);
        const Trial A = in_logarithms(c + 1, n - 1, z);
        const double g = elementary::log(std::abs(c[0])) - A.value - t;
        step = g / (0.0 - A.slope - 1.0);
        t = t - step;
    }
    return 1.0 / elementary::exp(t) - 1.0;
}

}  // namespace finance::benchmarks
