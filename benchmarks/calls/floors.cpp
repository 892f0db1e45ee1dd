#include "benchmarks/calls/floors.hpp"

#include <array>
#include <cstdint>

#include "abi/basis.hpp"
#include "benchmarks/calls/date_floors.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"
#include "module/collating_letters.hpp"
#include "module/financial_list.hpp"
#include "module/find_by_letters.hpp"
#include "module/find_calculation.hpp"

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

// Whether they are one text, each byte through the table.
bool same(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (mapped[static_cast<unsigned char>(a[i])] != mapped[static_cast<unsigned char>(b[i])]) return false;
    }
    return true;
}

}  // namespace

std::size_t find_name(std::string_view name) {
    if (!letters_ascend(mapped.data())) return FinancialList.size();
    const std::int32_t row = find_by_letters(mapped.data(), name.data(), static_cast<std::int64_t>(name.size()));
    return row == unknown_calculation ? FinancialList.size() : static_cast<std::size_t>(row);
}

int find_basis(std::string_view keyword) {
    for (const BasisKey& key : Keys) {
        if (same(keyword, key.keyword)) return static_cast<int>(key.code);
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
    return elementary::pow(v, d) * (in.a[5] * elementary::pow(v, N - 1.0) + c * S) - c * a;
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
    const double q = 1.0 / (1.0 + in.a[1]);
    return best_discounting().value_of_list(flows_from(in, 2), q);
}

}  // namespace finance::benchmarks
