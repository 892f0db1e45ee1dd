#include "depreciation/declining_spans.hpp"

#include <algorithm>

#include "depreciation/decline.hpp"

namespace finance {

namespace {

// Of a cost of 0 nothing is taken, whatever the factor.
Decline decline_of(const DecliningAsset& a) { return {a.cost == 0.0 ? 0.0 : a.factor, a.life}; }

struct Span {
    DecliningAsset a;
    Decline decline;

    [[nodiscard]] double accumulated(std::int64_t i) const { return a.cost * decline.taken(i); }
    [[nodiscard]] double declining(std::int64_t i) const { return a.cost * decline.left(i) * a.factor / a.life; }
    [[nodiscard]] double straight(std::int64_t i) const {
        return (a.depreciable - accumulated(i)) / (a.life - static_cast<double>(i));
    }
    [[nodiscard]] bool below_salvage(std::int64_t i) const { return accumulated(i + 1) > a.depreciable; }
    [[nodiscard]] bool switches(std::int64_t i) const { return declining(i) < straight(i) || below_salvage(i); }

    // Depreciation of the periods from s to e without regard to salvage.
    [[nodiscard]] double between(std::int64_t s, std::int64_t e) const {
        return 0.0 + a.cost * decline.left(s) * decline.taken(e - s);
    }
};

// The first of the periods 0 .. e - 1 for which `ends` holds; e where there is none. Where it holds in one of the
// periods 2j and 2j + 1 it does so in all later pairs, unless it does in the first pair.
template <typename Ends>
std::int64_t first_period(std::int64_t e, Ends ends) {
    const auto in_pair = [&](std::int64_t j) { return ends(2 * j) || ends(2 * j + 1); };
    const std::int64_t pairs = (e + 1) / 2;
    std::int64_t low = 0;
    std::int64_t high = in_pair(0) ? 0 : pairs;
    while (low < high) {
        const std::int64_t mid = low + (high - low) / 2;
        if (in_pair(mid)) {
            high = mid;
        } else {
            low = mid + 1;
        }
    }
    if (low == pairs) return e;
    return std::min(ends(2 * low) ? 2 * low : 2 * low + 1, e);
}

// From period k on: equal amounts d until depreciable is reached, then the rest; the part of it from s to e. Where
// depreciable is passed before, each period counts the difference.
double equal_amounts(const Span& span, std::int64_t k, std::int64_t s, std::int64_t e) {
    const double rest = span.a.depreciable - span.accumulated(k);
    const std::int64_t from = std::max(s, k);
    if (rest < 0.0) return rest * static_cast<double>(e - from);
    const double d = std::max(span.straight(k), span.declining(k));
    const double periods = rest / d;
    const std::int64_t whole = periods < static_cast<double>(e - k) ? static_cast<std::int64_t>(periods) : e - k;
    const std::int64_t equal = k + whole - from;
    const double total = equal > 0 ? d * static_cast<double>(equal) : 0.0;
    if (k + whole == e || equal < 0) return total;
    return total + (whole > 0 ? rest - d * static_cast<double>(whole) : rest);
}

}  // namespace

double closed_declining(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    if (s >= e) return 0.0;
    if (std::isinf(a.cost)) return a.cost - a.cost;  // taking from it leaves no number
    const Span span{a, decline_of(a)};
    const std::int64_t k = first_period(e, [&](std::int64_t i) { return span.below_salvage(i); });
    if (k == e) return span.between(s, e);
    return s <= k ? a.depreciable - span.accumulated(s) : 0.0;
}

double closed_switching(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    if (s >= e) return 0.0;
    if (std::isinf(a.cost)) return a.cost - a.cost;  // taking from it leaves no number
    const Span span{a, decline_of(a)};
    const std::int64_t k = first_period(e, [&](std::int64_t i) { return span.switches(i); });
    const double declining = s < k ? span.between(s, std::min<std::int64_t>(k, e)) : 0.0;
    return k < e ? declining + equal_amounts(span, k, s, e) : declining;
}

}  // namespace finance
