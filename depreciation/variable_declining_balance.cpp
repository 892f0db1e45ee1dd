// VDB: declining balance over the periods from s to e, with or without a switch to straight line.
//
//  (1) Start and end are whole numbers of periods, 0 <= s <= life and 1 <= e <= life; they are not compared. Periods
//      are numbered from 0; those from s to e - 1 count.
//  (2) Flag 1, the usual one: no switch. The period that would go below salvage goes to it and is the last.
//  (3) Flag 0: where the straight line over the rest of the life gives more, its amount is taken, and kept from then
//      on. A period that would go below salvage counts what is left; so does each later one of a salvage above the
//      cost.
//  (4) A span of the whole life is cost - salvage.
//  (5) Equal amounts are passed over in jumps that keep every bit (calendar/repeated_sum.hpp). A walk that would go past
//      fifty million periods is replaced by its closed form (declining_spans.hpp); past ten million where amounts are
//      near the denormal numbers.
#include <algorithm>
#include <limits>

#include "abi/arguments.hpp"
#include "abi/steps.hpp"
#include "calendar/repeated_sum.hpp"
#include "depreciation/declining_spans.hpp"
#include "depreciation/literal_steps.hpp"

namespace finance {

namespace {

struct Walk {
    const DecliningAsset& a;
    std::int64_t s;
    std::int64_t e;
    double accumulated = 0.0;
    double total = 0.0;

    [[nodiscard]] double declining(double sum) const { return (a.cost - sum) * a.factor / a.life; }
    [[nodiscard]] double straight(std::int64_t i) const {
        return (a.depreciable - accumulated) / (a.life - static_cast<double>(i));
    }
    [[nodiscard]] bool below_salvage(double sum, double d) const { return sum + d > a.depreciable; }

    void take(std::int64_t i, double d) {
        accumulated += d;
        if (i >= s) total += d;
    }
    // Counts x for each of the periods from i to end - 1.
    void count(std::int64_t i, std::int64_t end, double x) {
        total = repeat_sum(total, end - std::max(i, s), [x](double sum) { return sum + x; });
    }
    // Takes d in the periods from i on, as long as it goes on; the period after them.
    template <typename GoesOn>
    std::int64_t take_while(std::int64_t i, double d, GoesOn goes_on) {
        const RepeatedSum now = repeat_while(
            accumulated, e - i, [d](double sum) { return sum + d; }, goes_on);
        count(i, i + now.times, d);
        accumulated = now.sum;
        return i + now.times;
    }
};

// The sums before this period and the one before it: where both are what they were two periods ago they go on so.
class Alternation {
public:
    void remember(double accumulated, double total) {
        two_ago_ = one_ago_;
        one_ago_ = {accumulated, total};
    }
    [[nodiscard]] bool repeats(double accumulated) const { return same_bits(accumulated, two_ago_.accumulated); }
    [[nodiscard]] bool repeats(double accumulated, double total) const {
        return repeats(accumulated) && same_bits(total, two_ago_.total);
    }
    [[nodiscard]] double other_total() const { return one_ago_.total; }

private:
    struct Sums {
        double accumulated;
        double total;
    };
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();
    Sums one_ago_{none, none};
    Sums two_ago_{none, none};
};

// Amounts of the counted periods, without a switch (2). As the sum moves away from where an amount began to be taken, no
// later amount is that one again once another is.
double declining_balance(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    Walk walk{a, s, e};
    Alternation alternation;
    LiteralSteps steps{a.cost};
    for (std::int64_t i = 0; i < e; ++i) {
        if (!steps.next()) return closed_declining(a, s, e);
        const double d = walk.declining(walk.accumulated);
        if (walk.below_salvage(walk.accumulated, d)) {
            return i < s ? walk.total : walk.total + (a.depreciable - walk.accumulated);
        }
        if (i >= short_walk) alternation.remember(walk.accumulated, walk.total);
        walk.take(i, d);
        if (i < short_walk) continue;
        if (alternation.repeats(walk.accumulated)) {
            if (i < s) {
                i += (s - 1 - i) / 2 * 2;
            } else if (alternation.repeats(walk.accumulated, walk.total)) {
                return (e - 1 - i) % 2 == 0 ? walk.total : alternation.other_total();
            }
        } else if (steps.are_equal(d)) {
            const auto goes_on = [&](double sum) {
                return same_bits(walk.declining(sum), d) && !walk.below_salvage(sum, d);
            };
            i = walk.take_while(i + 1, d, goes_on) - 1;
        }
    }
    return walk.total;
}

// The first period from i on in which the straight line gives more than d, while nothing else moves: the fewer periods
// are left, the farther from 0 it is. e where there is none.
std::int64_t period_of_switch(const Walk& walk, std::int64_t i, double d) {
    std::int64_t end = walk.e;
    while (i < end) {
        count_step();
        const std::int64_t mid = i + (end - i) / 2;
        if (d < walk.straight(mid)) {
            end = mid;
        } else {
            i = mid + 1;
        }
    }
    return end;
}

// From period i on, with d of the straight line.
double straight_balance(Walk& walk, std::int64_t i, double d) {
    i = walk.take_while(i, d, [&](double sum) { return !walk.below_salvage(sum, d); });
    if (i == walk.e) return walk.total;
    const double rest = walk.a.depreciable - walk.accumulated;
    walk.count(i, i + 1, rest);
    if (walk.below_salvage(walk.accumulated, 0.0)) walk.count(i + 1, walk.e, rest);
    return walk.total;
}

// With the switch to straight line (3).
double switching_balance(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    Walk walk{a, s, e};
    LiteralSteps steps{a.cost};
    for (std::int64_t i = 0; i < e; ++i) {
        if (!steps.next()) return closed_switching(a, s, e);
        const double d = walk.declining(walk.accumulated);
        const double straight = walk.straight(i);
        if (d < straight) return straight_balance(walk, i, straight);
        if (walk.below_salvage(walk.accumulated, d)) return straight_balance(walk, i, d);
        const double before = walk.accumulated;
        walk.take(i, d);
        if (!same_bits(walk.accumulated, before)) continue;
        const std::int64_t next = period_of_switch(walk, i + 1, d);
        walk.count(i + 1, next, d);
        i = next - 1;
    }
    return walk.total;
}

}  // namespace

// cost, salvage, life, start period s, end period e, factor, flag
FINANCE_HANDLER(VDB) {
    Arguments in{context, result, count};
    DecliningAsset a{};
    double salvage;
    std::int32_t s;
    std::int32_t e;
    std::int32_t no_switch = 1;
    a.factor = 2.0;
    if (!in.number(1, a.cost) || !in.number(2, salvage) || !in.positive(3, a.life)) return in.status();
    if (!in.whole(4, s)) return in.status();
    if (s < 0 || !(s <= a.life)) return in.invalid(4);
    if (!in.count(5, e)) return in.status();
    if (!(e <= a.life)) return in.invalid(5);
    if ((in.given(6) && !in.positive(6, a.factor)) || !in.optional_exact(7, no_switch)) return in.status();
    if (no_switch != 0 && no_switch != 1) return in.invalid(7);

    a.depreciable = a.cost - salvage;
    if (a.life == static_cast<double>(std::int64_t{e} - s)) return in.answer(a.depreciable);
    return in.answer(no_switch == 1 ? declining_balance(a, s, e) : switching_balance(a, s, e));
}

}  // namespace finance
