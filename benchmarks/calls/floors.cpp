#include "benchmarks/calls/floors.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "abi/basis.hpp"
#include "benchmarks/calls/date_floors.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "module/financial_list.hpp"

namespace finance::benchmarks {

// ---- The name

namespace {

using ByteTable = std::array<unsigned char, 256>;

ByteTable upper_case() {
    ByteTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<unsigned char>(i >= 'a' && i <= 'z' ? i - ('a' - 'A') : i);
    }
    return table;
}

const ByteTable mapped = upper_case();

// Below 0, 0 or above; the shorter one first.
int compare(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = mapped[static_cast<unsigned char>(a[i])] - mapped[static_cast<unsigned char>(b[i])];
        if (difference != 0) return difference;
    }
    return static_cast<int>(a.size()) - static_cast<int>(b.size());
}

}  // namespace

std::size_t find_name(std::string_view name) {
    std::size_t low = 0;
    std::size_t high = FinancialList.size();
    while (low < high) {
        const std::size_t mid = (low + high) / 2;
        const FinancialRow& row = FinancialList[mid];
        const int order = compare(name, {row.name, row.name_length});
        if (order == 0) return mid;
        if (order < 0) {
            high = mid;
        } else {
            low = mid + 1;
        }
    }
    return FinancialList.size();
}

int find_basis(std::string_view keyword) {
    for (const BasisKey& key : Keys) {
        if (compare(keyword, key.keyword) == 0) return static_cast<int>(key.code);
    }
    return -1;
}

// ---- Closed forms

double floor_of_PMT(const FloorInput& in) {
    const double r = in.a[1];
    const double e = zexpm1(in.a[2] * zln1px(r));
    return (0.0 - r) * ((1.0 + e) * in.a[3] + 0.0) / e;
}

double floor_of_SLN(const FloorInput& in) { return (in.a[1] - in.a[2]) / in.a[3]; }

double floor_of_TBILLEQ(const FloorInput& in) {
    const double r = in.a[3];
    return 365.0 * r / (360.0 - r * (in.a[2] - in.a[1]));
}

namespace {

// Read anew at every call, as an argument is.
const char* volatile usual_basis = "ACTUAL";

}  // namespace

double floor_of_YEARFRAC(const FloorInput& in) {
    if (find_basis(usual_basis) != BASIS_ACTUAL) return 0.0;
    const CalendarDate start = split(in.a[1]);
    const CalendarDate end = split(in.a[2]);
    return static_cast<double>(end.julianDay - start.julianDay) / average_year(start, end);
}

double floor_of_PRICEMAT(const FloorInput& in) {
    const CalendarDate settlement = split(in.a[1]);
    const CalendarDate maturity = split(in.a[2]);
    const CalendarDate issue = split(in.a[3]);
    const double rate = in.a[4];
    const double Bim = days_360(issue, maturity) / 360.0;
    const double Bsm = days_360(settlement, maturity) / 360.0;
    const double Bis = days_360(issue, settlement) / 360.0;
    return (Bim * rate * 100.0 + 100.0) / (Bsm * in.a[5] + 1.0) - Bis * rate * 100.0;
}

// ---- Sums

double floor_of_PRICE(const FloorInput& in) {
    const double f = in.a[6];
    const auto [N, d, a] = coupons_360(in.a[1], in.a[2], f);
    const double v = 1.0 / (1.0 + in.a[4] / f);
    const double c = 100.0 * in.a[3] / f;
    double S = 0.0;
    double term = 1.0;
    for (double k = 0.0; k < N; k += 1.0) {
        S = S + term;
        term = term * v;
    }
    return std::pow(v, d) * (in.a[5] * std::pow(v, N - 1.0) + c * S) - c * a;
}

double floor_of_DURATION(const FloorInput& in) {
    const double f = in.a[5];
    const double v = 1.0 / (1.0 + in.a[4] / f);
    const double c = 100.0 * in.a[3] / f;
    const double step = 1.0 / f;
    const auto [N, d, a] = coupons_360(in.a[1], in.a[2], f);
    double w = d;
    double t = d / f;
    double PV = c * w;
    double TW = t * c * w;
    for (double k = 1.0; k < N; k += 1.0) {
        w = w * v;
        t = t + step;
        PV = PV + c * w;
        TW = TW + c * w * t;
    }
    const double R = 100.0 * w;
    return (TW + R * t) / (PV + R);
}

double floor_of_XNPV(const FloorInput& in) {
    const std::size_t m = in.flows;
    const double q = 1.0 / (1.0 + in.a[1]);
    const double* v = in.a + 2;
    const double* date = v + m;
    double sum = v[0];
    for (std::size_t i = 1; i < m; ++i) sum = sum + v[i] * std::pow(q, (date[i] - date[0]) / 365.0);
    return sum;
}

}  // namespace finance::benchmarks
