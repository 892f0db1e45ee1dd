#include "depreciation/declining_spans.hpp"

#include <algorithm>
#include <cmath>

#include "abi/steps.hpp"
#include "depreciation/decline.hpp"

namespace finance {

namespace {

Twofold twofold(double x) { return {x, 0.0}; }

// Amounts as the calculations have them, times `scale`: halves of denormal numbers would lose their digits.
struct Span {
    double scale;
    Twofold cost;
    Twofold depreciable;
    double life;
    Decline decline;

    explicit Span(const DecliningAsset& a)
        : scale{std::abs(a.cost) < 0x1p-800 ? 0x1p+700 : 1.0},
          cost{twofold(a.cost * scale)},
          depreciable{twofold(a.depreciable * scale)},
          life{a.life},
          decline{a.cost == 0.0 ? 0.0 : a.factor, a.life} {}  // of a cost of 0 nothing is taken, whatever the factor

    [[nodiscard]] Twofold left(std::int64_t i) const { return cost * decline.after(i).left; }
    [[nodiscard]] Twofold declining(std::int64_t i) const { return left(i) * decline.q(); }
    // Down to salvage, after i periods: by what is taken, or by what is left where that is smaller by more digits than it has
    // fewer.
    [[nodiscard]] Twofold rest(std::int64_t i) const {
        const Share share = decline.after(i);
        return std::abs(share.left.high) < 0x1p-24 ? cost * share.left + (depreciable - cost)
                                                   : depreciable - cost * share.taken;
    }
    [[nodiscard]] Twofold straight(std::int64_t i) const {
        return rest(i) / exact_sum(life, 0.0 - static_cast<double>(i));
    }
    [[nodiscard]] bool below_salvage(std::int64_t i) const { return rest(i + 1).negative(); }
    [[nodiscard]] bool lower(std::int64_t i) const { return (declining(i) - straight(i)).negative(); }

    // Depreciation of the periods from s to e without regard to salvage.
    [[nodiscard]] Twofold between(std::int64_t s, std::int64_t e) const { return left(s) * decline.after(e - s).taken; }
    [[nodiscard]] double amount(Twofold x) const { return x.rounded() / scale + 0.0; }
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
        count_step();
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

// From the period k on that ends the decline: the straight line, to salvage at the end of the life; or all down to
// salvage in period k. Where salvage is passed before, each period counts the difference.
Twofold after_decline(const Span& span, std::int64_t k, std::int64_t s, std::int64_t e) {
    const Twofold periods = twofold(static_cast<double>(e - std::max(s, k)));
    const Twofold rest = span.rest(k);
    if (rest.negative()) return rest * periods;
    if (span.lower(k)) return span.straight(k) * periods;
    return s <= k ? rest : Twofold{};
}

}  // namespace

double closed_declining(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    if (s >= e) return 0.0;
    if (std::isinf(a.cost)) return a.cost - a.cost;  // taking from it leaves no number
    const Span span{a};
    const std::int64_t k = first_period(e, [&](std::int64_t i) { return span.below_salvage(i); });
    if (k == e) return span.amount(span.between(s, e));
    return s <= k ? span.amount(span.rest(s)) : 0.0;
}

double closed_switching(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    if (s >= e) return 0.0;
    if (std::isinf(a.cost)) return a.cost - a.cost;  // taking from it leaves no number
    const Span span{a};
    const std::int64_t k = first_period(e, [&](std::int64_t i) { return span.lower(i) || span.below_salvage(i); });
    const Twofold declining = s < k ? span.between(s, std::min<std::int64_t>(k, e)) : Twofold{};
    return span.amount(k < e ? declining + after_decline(span, k, s, e) : declining);
}

// What is left after a period is (1 - q) of what was before, and salvage where that would be less. Salvage, once there,
// stays; but one below 0 declines again, sign by sign, and is come back to in every second period for q > 2.
double closed_amount(const DecliningAsset& a, double salvage, std::int32_t period) {
    Span span{a};
    const Twofold end = twofold(salvage * span.scale);
    span.depreciable = span.cost - end;
    const std::int64_t before = period - 1;
    const std::int64_t k = first_period(period, [&](std::int64_t i) { return span.below_salvage(i); });
    Twofold left = span.left(before);
    Twofold all = span.rest(before);
    if (k < before) {
        if (!(salvage < 0.0)) return 0.0;
        const std::int64_t since = before - (k + 1);
        const bool comes_back = (twofold(2.0) - span.decline.q()).negative();
        const Share share = span.decline.after(comes_back ? since % 2 : since);
        left = end * share.left;
        all = twofold(0.0) - end * share.taken;
    }
    const Twofold declining = left * span.decline.q();
    return span.amount((all - declining).negative() ? all : declining);
}

}  // namespace finance
