// The closed forms of long declining spans. They hold for any span: for short ones the walk that they stand for is taken at
// 1200 bits, for long ones its powers are, at 200.
#include "depreciation/declining_spans.hpp"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/calendar/dates.hpp"
#include "tests/depreciation/literal_walks.hpp"

namespace finance::test {
namespace {

constexpr double accuracy = 1e-12;

// Powers of what a period leaves are differences of what the walk takes, down to the smallest numbers.
using Walked = PreciseOf<1200>;

// Relative to the exact value, 0 included.
template <typename Number>
double error_of(double got, const Number& exact) {
    const double rounded = exact.rounded();
    return got == rounded ? 0.0 : magnitude((exact - got) / exact).rounded();
}

// ---- Short spans, walked

template <typename Walk, typename Closed>
void compare(std::uint64_t seed, int shapes, Walk walk, Closed closed) {
    Draws draw{seed};
    Worst worst;
    for (int i = 0; i < shapes; ++i) {
        const double life = draw_life(draw, 1000.0);
        const double cost = draw_cost(draw);
        const double salvage = draw_salvage(draw, cost);
        const DecliningAsset a{cost, cost - salvage, life, draw_factor(draw, life)};
        const DrawnSpan span = draw_span(draw, life);
        const Walked exact = walk(a, salvage, span);
        const double size = std::abs(exact.rounded());
        if (size > 1e200 || (size > 0.0 && size < 1e-290)) continue;
        const double error = error_of(closed(a, salvage, span), exact);
        EXPECT_LE(error, accuracy) << "cost " << a.cost << " salvage " << salvage << " life " << a.life << " factor "
                                   << a.factor << " from " << span.s << " to " << span.e << ": "
                                   << closed(a, salvage, span) << ", walked " << exact.rounded();
        worst.add(error);
    }
    EXPECT_GT(worst.count(), shapes / 2);
    std::printf("    %.2g relative, worst of %d\n", worst.error(), worst.count());
}

TEST(DecliningSpans, ClosedFormIsTheWalk) {
    compare(
        1, drawn(1000),
        [](const DecliningAsset& a, double, DrawnSpan span) { return literal_declining<Walked>(a, span.s, span.e); },
        [](const DecliningAsset& a, double, DrawnSpan span) { return closed_declining(a, span.s, span.e); });
}

TEST(DecliningSpans, ClosedFormWithASwitchIsTheWalk) {
    compare(
        2, drawn(1000),
        [](const DecliningAsset& a, double, DrawnSpan span) { return literal_switching<Walked>(a, span.s, span.e); },
        [](const DecliningAsset& a, double, DrawnSpan span) { return closed_switching(a, span.s, span.e); });
}

// The same by what is left, which for q > 2 comes back to salvage again and again: a sum of amounts, rounded, passes it by a
// last bit and stays there.
Walked amount_by_rest(const DecliningAsset& a, double salvage, std::int32_t period) {
    const Walked kept = Walked{1.0} - Walked{a.factor} / a.life;
    Walked left = a.cost;
    Walked before;
    if (salvage > a.cost) return 0.0;
    for (std::int32_t i = 0; i < period; ++i) {
        before = left;
        left = left * kept;
        if (left < Walked{salvage}) left = salvage;
    }
    return before - left;
}

TEST(DecliningSpans, ClosedAmountIsTheWalk) {
    compare(
        3, drawn(1000),
        [](const DecliningAsset& a, double salvage, DrawnSpan span) {
            if (a.factor > 2.0 * a.life && salvage < 0.0) return amount_by_rest(a, salvage, span.e);
            return literal_double<Walked>(a.cost, salvage, a.life, a.factor, span.e);
        },
        [](const DecliningAsset& a, double salvage, DrawnSpan span) {
            return salvage > a.cost ? 0.0 : closed_amount(a, salvage, span.e);
        });
}

// ---- Long spans, at 200 bits

struct PreciseShape {
    DecliningAsset a;
    Precise depreciable;
    Precise q;

    explicit PreciseShape(const DecliningAsset& asset)
        : a{asset}, depreciable{asset.depreciable}, q{Precise{asset.factor} / asset.life} {}

    [[nodiscard]] Precise left(double i) const { return power(Precise{1.0} - q, Precise{i}) * a.cost; }
    // Down to salvage, after i periods.
    [[nodiscard]] Precise rest(double i) const { return left(i) - a.cost + depreciable; }
    [[nodiscard]] bool ends_decline(double i) const { return rest(i + 1.0) < Precise{0.0}; }
    [[nodiscard]] bool ends_with_switch(double i) const {
        return left(i) * q < rest(i) / (Precise{a.life} - i) || ends_decline(i);
    }
    // The first of the periods 0 .. e - 1 that ends the decline; e where none does. For q > 1 only every second period can.
    template <typename Ends>
    [[nodiscard]] double first(double e, Ends ends) const {
        const double step = q > Precise{1.0} ? 2.0 : 1.0;
        if (ends(0.0)) return 0.0;
        double low = 0.0;
        double high = std::ceil(e / step);
        while (low < high) {
            const double mid = std::floor((low + high) / 2.0);
            (ends(mid * step) ? high : low) = ends(mid * step) ? mid : mid + 1.0;
        }
        return std::min(low * step, e);
    }
    [[nodiscard]] Precise declining(double s, double e) const {
        const double k = first(e, [&](double i) { return ends_decline(i); });
        if (k == e) return left(s) - left(e);
        return s <= k ? rest(s) : Precise{0.0};
    }
    [[nodiscard]] Precise switching(double s, double e) const {
        const double k = first(e, [&](double i) { return ends_with_switch(i); });
        if (k == e) return left(s) - left(e);
        const Precise before = s < k ? left(s) - left(k) : Precise{0.0};
        if (left(k) * q < rest(k) / (Precise{a.life} - k)) {
            return before + rest(k) / (Precise{a.life} - k) * (e - std::max(s, k));
        }
        return s <= k ? before + rest(k) : Precise{0.0};
    }
};

constexpr double most = 2147483647.0;

// Of such shapes walks of fifty million periods and more come to an end neither by rest nor by salvage: the rate of decline
// is below 2e-6, or 2 to within as much, where what is left alternates. Salvages that are crossed anywhere, or never.
DecliningAsset draw_long(Draws& draw, bool alternating) {
    const double life = draw.whole(0, 3) == 0 ? draw.log_between(2e9, 1e15) : std::floor(draw.log_between(6e7, most));
    const double cost = draw.log_between(1e-3, 1e9) * (draw.whole(0, 9) == 0 ? 1e-295 : 1.0);
    const double rate = draw.log_between(1e-13, 1e-6);
    if (alternating) {
        const double factor = life * (2.0 + either_sign(draw, rate));
        return {cost, cost * draw.log_between(2.1, 1e6), life, factor};
    }
    const double share = draw.whole(0, 2) == 0 ? draw.log_between(1e-9, 1.0) : draw.between(0.0, 1.5);
    return {cost, cost * share, life, draw.whole(0, 2) == 0 ? 2.0 : life * rate};
}

// Spans anywhere, of one period too, and at the period that ends the decline.
DrawnSpan draw_long_span(Draws& draw, double life, double crossing) {
    const auto last = static_cast<std::int64_t>(std::min(life, most));
    std::int64_t e = draw.whole(1, last);
    if (draw.whole(0, 3) == 0) e = std::min(last, static_cast<std::int64_t>(crossing) + 1 + draw.whole(0, 2));
    const std::int64_t s =
        draw.whole(0, 2) == 0 ? std::max<std::int64_t>(e - draw.whole(1, 1000), 0) : draw.whole(0, e);
    return {static_cast<std::int32_t>(s), static_cast<std::int32_t>(e)};
}

TEST(DecliningSpans, LongSpansAt200Bits) {
    Draws draw{4};
    Worst worst[3];
    for (int i = 0; i < drawn(1500); ++i) {
        const bool alternating = i % 4 == 0;
        const DecliningAsset a = draw_long(draw, alternating);
        const PreciseShape shape{a};
        const double last = std::min(std::floor(a.life), most);
        const double crossing = shape.first(last, [&](double j) { return shape.ends_decline(j); });
        const DrawnSpan span = draw_long_span(draw, a.life, crossing);
        const std::int32_t s = span.s;
        const std::int32_t e = span.e;
        const auto check = [&](int which, double got, const Precise& exact) {
            if (std::abs(exact.rounded()) > 1e300) return;  // grown beyond all bounds
            const double error =
                std::abs(exact.rounded()) < 1e-290 ? std::abs(got - exact.rounded()) / 1e-290 : error_of(got, exact);
            EXPECT_LE(error, accuracy) << which << " cost " << a.cost << " depreciable " << a.depreciable << " life "
                                       << a.life << " factor " << a.factor << " from " << s << " to " << e << ": "
                                       << got << ", " << exact.rounded();
            worst[which].add(error);
        };
        check(0, closed_declining(a, s, e), shape.declining(s, e));
        if (!alternating) check(1, closed_switching(a, s, e), shape.switching(s, e));
        const double salvage = a.cost - a.depreciable;
        PreciseShape unrounded{a};
        unrounded.depreciable = Precise{a.cost} - salvage;
        if (!alternating) check(2, closed_amount(a, salvage, e), unrounded.declining(e - 1.0, e));
    }
    std::printf("    no switch %.2g, switch %.2g, amount %.2g relative, worst of %d\n", worst[0].error(),
                worst[1].error(), worst[2].error(), worst[0].count());
    EXPECT_GT(worst[0].count(), drawn(1500) * 9 / 10);
    EXPECT_GT(worst[2].count(), drawn(1500) / 2);
}

// Amounts that alternate in sign: exact by the rule that a period leaves (1 - q) of what was, or salvage.
TEST(DecliningSpans, LongAlternationsAt200Bits) {
    Draws draw{5};
    Worst worst;
    for (int i = 0; i < drawn(1000); ++i) {
        const double life = std::floor(draw.log_between(6e7, most));
        const double cost = either_sign(draw, draw.log_between(1e-3, 1e9));
        const double salvage =
            0.0 - std::abs(cost) * (draw.whole(0, 2) == 0 ? draw.between(0.1, 1.0) : draw.log_between(1.0, 1e3));
        if (salvage > cost) continue;
        const double factor =
            draw.whole(0, 5) == 0 ? 2.0 * life : life * (2.0 + either_sign(draw, draw.log_between(1e-12, 1e-6)));
        const DecliningAsset a{cost, cost - salvage, life, factor};
        const auto period = static_cast<std::int32_t>(draw.whole(1, static_cast<std::int64_t>(life)));
        const PreciseShape shape{a};
        const auto next = [&](const Precise& left) {
            const Precise declined = left * (Precise{1.0} - shape.q);
            return declined < Precise{salvage} ? Precise{salvage} : declined;
        };
        // the first period that would leave less than salvage, an even or an odd one by the sign of the cost
        const double offset = cost < 0.0 ? 1.0 : 0.0;
        const auto crosses = [&](double j) { return shape.left(j + 1.0) < Precise{salvage}; };
        const double k = offset + shape.first(life, [&](double j) { return crosses(j + offset); });
        Precise left = shape.left(period - 1.0);
        if (k < period - 1.0) {
            const double since = period - 1.0 - (k + 1.0);
            left = Precise{salvage} * power(Precise{1.0} - shape.q, Precise{since});
            if (shape.q > Precise{2.0}) left = std::fmod(since, 2.0) == 0.0 ? Precise{salvage} : next(Precise{salvage});
        }
        const Precise exact = left - next(left);
        if (std::abs(exact.rounded()) < 1e-290) continue;
        const double error = error_of(closed_amount(a, salvage, period), exact);
        EXPECT_LE(error, accuracy) << "cost " << cost << " salvage " << salvage << " life " << life << " factor "
                                   << factor << " period " << period << ": " << closed_amount(a, salvage, period)
                                   << ", " << exact.rounded();
        worst.add(error);
    }
    EXPECT_GT(worst.count(), drawn(1000) / 3);
    std::printf("    %.2g relative, worst of %d\n", worst.error(), worst.count());
}

// Spans without end: adjoining ones add up to the whole.
TEST(DecliningSpans, AdjoiningSpansAddUp) {
    Draws draw{6};
    for (int i = 0; i < drawn(1500); ++i) {
        const double life = draw_life(draw, most);
        const double cost = draw.log_between(1.0, 1e6);
        const DecliningAsset a{cost, cost - cost * draw.between(0.0, 1.0), life, draw.log_between(0.1, 10.0)};
        const auto end = static_cast<std::int64_t>(life);
        const auto e = static_cast<std::int32_t>(end);
        const auto s = static_cast<std::int32_t>(draw.whole(0, end));
        for (const auto closed : {closed_declining, closed_switching}) {
            ASSERT_NEAR(closed(a, 0, s) + closed(a, s, e), closed(a, 0, e), 1e-13 * cost) << life << ' ' << s;
        }
        // straight line at the latest in the end: all is depreciated
        if (life == std::floor(life)) {
            ASSERT_NEAR(closed_switching(a, 0, e), a.depreciable, 1e-13 * cost) << life;
        }
    }
}

}  // namespace
}  // namespace finance::test
