// Sums over the periods of a loan, without any short cut.
#pragma once

#include <cstdint>

namespace finance::test {

inline double literal_interest(double r, double pmt, double b, std::int64_t first, std::int64_t last) {
    double sum = 0.0;
    for (std::int64_t j = 1; j <= last; ++j) {
        const double interest = r * b;
        b = b + pmt + interest;
        if (first <= j) sum = sum - interest;
    }
    return sum;
}

inline double literal_principal(double r, double pmt, double b, std::int64_t first, std::int64_t last) {
    double sum = 0.0;
    for (std::int64_t j = 1; j <= last; ++j) {
        const double principal = r * b + pmt;
        b = b + principal;
        if (first <= j) sum = sum + principal;
    }
    return sum;
}

}  // namespace finance::test
