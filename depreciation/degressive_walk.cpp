#include <algorithm>
#include <cmath>

#include "abi/limits.hpp"
#include "depreciation/prorated.hpp"
#include "depreciation/rounding.hpp"
#include "elementary/functions.hpp"

namespace finance {

namespace {

struct Walk {
    double remaining;
    double salvage;
    double r;
    double d;  // of the last period walked

    [[nodiscard]] double amount(double left) const { return salvage > left ? 0.0 : round_half_away(left * r); }
    void step() {
        d = amount(remaining);
        remaining = remaining - d;
    }
};

// Periods after this one, at most `limit`, that surely have its amount again: as many as keep what is left of the
// amount, and of salvage, on the same side.
std::int32_t run_length(const Walk& walk, std::int32_t limit) {
    if (limit < 2) return 0;
    if (walk.amount(walk.remaining) != walk.d) return 0;
    if (!(walk.d > 0.0) || !(std::abs(walk.remaining) < largest_whole_number)) return 0;
    const double periods = (walk.remaining - (walk.d - 0.5) / walk.r) / walk.d;
    auto run = static_cast<std::int32_t>(std::clamp(periods, 0.0, static_cast<double>(limit)));
    while (run > 0 && walk.amount(walk.remaining - (run - 1.0) * walk.d) != walk.d) {
        count_step();
        run = run / 2;
    }
    return run;
}

// `count` periods at an unchanging r. False where they are too many.
bool walk_periods(Walk& walk, std::int32_t count, std::int32_t* steps) {
    for (std::int32_t i = 0; i < count; ++i) {
        if (++*steps > longest_literal_loop) return false;
        count_step();
        const double before = walk.remaining;
        walk.step();
        if (same_bits(walk.remaining, before)) return true;               // and so will all later steps leave it
        if (walk.d == out_of_range && walk.remaining > 0.0) return true;  // it only grows: so are all later amounts
        const std::int32_t run = run_length(walk, count - i - 1);
        walk.remaining = walk.remaining - run * walk.d;
        i += run;
    }
    return true;
}

// What `count` periods leave without rounding, down to salvage.
void shrink(Walk& walk, std::int32_t count) {
    const double before = walk.remaining * elementary::exp((count - 1.0) * elementary::log1p(-walk.r));
    walk.d = walk.amount(before);
    walk.remaining = before - walk.d;
}

void walk_or_shrink(Walk& walk, std::int32_t count, std::int32_t* steps) {
    if (count < 1) return;
    const Walk begin = walk;
    if (walk_periods(walk, count, steps)) return;
    walk = begin;
    shrink(walk, count);
}

}  // namespace

double degressive_amount(double remaining, double salvage, double r, std::int32_t n, std::int32_t periods) {
    Walk walk{remaining, salvage, r, 0.0};
    std::int32_t steps = 0;
    walk_or_shrink(walk, std::min(periods, n - 2), &steps);
    if (periods > n - 2) {
        walk.r = 0.5;
        walk.step();
    }
    if (periods > n - 1) {
        walk.r = 1.0;
        walk_or_shrink(walk, periods - (n - 1), &steps);
    }
    return walk.d;
}

}  // namespace finance
