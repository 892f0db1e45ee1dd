// The closed forms of long declining spans against the walk that they stand for. They hold for any span: here for
// short ones, walked with 64 bits of precision, so that the walk's own rounding stays small.
#include "depreciation/declining_spans.hpp"

#include <gtest/gtest.h>

#include "tests/calendar/dates.hpp"
#include "tests/depreciation/literal_walks.hpp"

namespace finance::test {
namespace {

constexpr int shapes = drawn(60000);
constexpr double longest = 3000.0;
constexpr double allowed = 1e-14;  // of cost and depreciable; measured 1.7e-15

double size_of(const DecliningAsset& a, long double walked) {
    return std::abs(a.cost) + std::abs(a.depreciable) + static_cast<double>(std::abs(walked));
}

// Where q = 2 and the cost is negative the second period comes back to 0. Whether that is above a depreciable of 0 the
// last bit of the walk decides.
bool on_the_edge(const DecliningAsset& a) { return a.factor == 2.0 * a.life && a.depreciable == 0.0 && a.cost < 0.0; }

template <typename Walk, typename Closed>
void compare(std::uint64_t seed, Walk walk, Closed closed) {
    Draws draw{seed};
    Worst worst;
    for (int i = 0; i < shapes; ++i) {
        const double life = draw_life(draw, longest);
        const double cost = draw_cost(draw);
        const DecliningAsset a{cost, cost - draw_salvage(draw, cost), life, draw_factor(draw, life)};
        const DrawnSpan span = draw_span(draw, life);
        const long double walked = walk(a, span.s, span.e);
        const double size = size_of(a, walked);
        if (on_the_edge(a) || size > 1e200) continue;
        const double got = closed(a, span.s, span.e);
        const double error = size == 0.0 ? std::abs(got) : static_cast<double>(std::abs(got - walked)) / size;
        EXPECT_LE(error, allowed) << "cost " << a.cost << " depreciable " << a.depreciable << " life " << a.life
                                  << " factor " << a.factor << " from " << span.s << " to " << span.e << ": " << got
                                  << ", walked " << static_cast<double>(walked);
        worst.add(error);
    }
    EXPECT_GT(worst.count(), shapes / 2);
    EXPECT_LE(worst.error(), allowed);
}

TEST(DecliningSpans, ClosedFormIsTheWalk) { compare(1, literal_declining<long double>, closed_declining); }

TEST(DecliningSpans, ClosedFormWithASwitchIsTheWalk) { compare(2, literal_switching<long double>, closed_switching); }

// Spans without end: adjoining ones add up to the whole.
TEST(DecliningSpans, AdjoiningSpansAddUp) {
    Draws draw{3};
    for (int i = 0; i < shapes; ++i) {
        const double life = draw_life(draw, 2147483647.0);
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
