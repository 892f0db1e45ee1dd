#include "depreciation/declining_spans.hpp"

#include <algorithm>
#include <cmath>

namespace finance {

namespace {

// ln(1 - q); beyond q = 1 the first period takes everything.
double growth(const DecliningAsset& a) { return std::log1p(-std::min(a.factor / a.life, 1.0)); }

double accumulated_after(const DecliningAsset& a, double periods) {
    return (0.0 - a.cost) * std::expm1(periods * growth(a));
}

// Depreciation of the periods from s to e without regard to salvage, s <= e.
double declining_between(const DecliningAsset& a, double s, double e) {
    return (0.0 - a.cost) * std::exp(s * growth(a)) * std::expm1((e - s) * growth(a));
}

double declining_amount(const DecliningAsset& a, double i) {
    return (a.cost - accumulated_after(a, i)) * a.factor / a.life;
}

double straight_amount(const DecliningAsset& a, double i) {
    return (a.depreciable - accumulated_after(a, i)) / (a.life - i);
}

bool below_salvage(const DecliningAsset& a, double i) { return accumulated_after(a, i + 1.0) > a.depreciable; }

bool declining_ends(const DecliningAsset& a, double i) {
    return declining_amount(a, i) < straight_amount(a, i) || below_salvage(a, i);
}

// The first of the periods 0 .. e - 1 for which `ends` holds, which it does from there on; e where there is none.
template <typename Ends>
std::int32_t first_period(const DecliningAsset& a, std::int32_t e, Ends ends) {
    std::int32_t low = 0;
    std::int32_t high = e;
    while (low < high) {
        const std::int32_t mid = low + (high - low) / 2;
        if (ends(a, mid)) {
            high = mid;
        } else {
            low = mid + 1;
        }
    }
    return low;
}

// From period k on: equal amounts d until depreciable is reached, then the rest; the part of it from s to e.
double equal_amounts(const DecliningAsset& a, std::int32_t k, std::int32_t s, std::int32_t e) {
    const double accumulated = accumulated_after(a, k);
    const double rest = a.depreciable - accumulated;
    const double counted_from = std::max(s, k);
    const double counted = std::max(e - counted_from, 0.0);
    if (rest < 0.0) return rest * counted;
    const double d = std::max(straight_amount(a, k), declining_amount(a, k));
    const double whole = d > 0.0 ? std::floor(rest / d) : static_cast<double>(e - k);
    const double end_of_whole = std::min<double>(k + whole, e);
    const double equal = d * std::max(end_of_whole - counted_from, 0.0);
    const bool rest_counts = end_of_whole < e && end_of_whole >= s;
    return rest_counts ? equal + (rest - d * whole) : equal;
}

}  // namespace

double closed_declining(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    const std::int32_t k = first_period(a, e, below_salvage);
    if (s > k || s >= e) return 0.0;
    return k < e ? a.depreciable - accumulated_after(a, s) : declining_between(a, s, e);
}

double closed_switching(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    const std::int32_t k = first_period(a, e, declining_ends);
    const double declining = s < k ? declining_between(a, s, std::min(k, e)) : 0.0;
    return k < e ? declining + equal_amounts(a, k, s, e) : declining;
}

}  // namespace finance
