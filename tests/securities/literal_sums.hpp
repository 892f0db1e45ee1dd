// Sums over coupons as the formulas have them, term by term, from the quantities that the kernels left in the record.
#pragma once

#include <cmath>

#include "securities/security_record.hpp"

namespace finance::test {

inline double literal_price(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (1.0 + r.yield / f);
    const double c = 100.0 * r.rate / f;
    double S = 0.0;
    double term = 1.0;
    double k = 0.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        S = S + term;
        term = term * v;
    }
    return std::pow(v, r.remainingFraction) * (r.redemption * std::pow(v, r.couponCount - 1.0) + c * S) -
           c * r.accruedFraction;
}

inline double literal_duration(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (1.0 + r.yield / f);
    const double c = 100.0 * r.rate / f;
    double t = r.remainingFraction / f;
    double w = r.remainingFraction;
    double PV = c * w;
    double TW = t * c * w;
    double k = 1.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        w = w * v;
        t = t + 1.0 / f;
        PV = PV + c * w;
        TW = TW + c * w * t;
    }
    const double R = 100.0 * w;
    return (TW + R * t) / (PV + R);
}

inline double literal_odd_first_price(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (r.yield / f + 1.0);
    const double c = 100.0 * r.rate / f;
    double t = std::pow(v, r.wholeCoupons + r.remainingFraction);
    const double first = c * t;
    double sum = 0.0;
    double k = 1.0;
    do {
        k = k + 1.0;
        t = t * v;
        sum = sum + t;
    } while (k <= r.couponCount);
    return (sum - r.accruedFraction) * c + first * r.firstPeriodLength + t * r.redemption;
}

struct Objective {
    double value;
    double derivative;
};

inline Objective literal_yield(const SecurityComputeRecord& r, double x) {
    const double f = r.terms->frequency;
    const double c = 100.0 * r.rate / f;
    const double v = 1.0 / (1.0 + x / f);
    double e = r.remainingFraction;
    double t = std::pow(v, e);
    double S = t;
    double g = t * v * (-e) / f;
    double D = g;
    double k = 1.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        t = t * v;
        e = e + 1.0;
        S = S + t;
        g = -(v * e) * t / f;
        D = D + g;
    }
    return {c * (S - r.accruedFraction) + (r.redemption * t - r.price), c * D + r.redemption * g};
}

inline Objective literal_odd_first_yield(const SecurityComputeRecord& r, double x) {
    const double f = r.terms->frequency;
    const double c = 100.0 * r.rate / f;
    const double v = 1.0 / (x / f + 1.0);
    const double e = r.wholeCoupons + r.remainingFraction;
    const double t0 = std::pow(v, e);
    const double g0 = -e * t0 * v / f;
    double t = t0;
    double g = g0;
    double S = 0.0;
    double G = 0.0;
    double k = 1.0;
    do {
        k = k + 1.0;
        t = t * v;
        S = S + t;
        g = g * v - t * v / f;
        G = G + g;
    } while (r.couponCount >= k);
    const double DFC = r.firstPeriodLength;
    return {c * (DFC * t0 + S - r.accruedFraction) + r.redemption * t - r.oddFirstPrice,
            c * DFC * g0 + c * G + r.redemption * g};
}

}  // namespace finance::test
