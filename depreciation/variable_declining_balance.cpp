// VDB: declining balance over the periods from s to e, with or without a switch to straight line.
//
//  (1) Start and end are whole numbers of periods, 0 <= s <= life and 1 <= e <= life; they are not compared. Periods
//      are numbered from 0; those from s to e - 1 count.
//  (2) Flag 1, the usual one: no switch. The period that would go below salvage goes to it and is the last.
//  (3) Flag 0: where the straight line over the rest of the life gives more, its amount is taken, and kept from then
//      on. A period that would go below salvage counts what is left; so does each later one of a salvage above the
//      cost.
//  (4) A span of the whole life is cost - salvage.
//  (5) A walk that would go past ten million periods is replaced by its closed form (declining_spans.hpp).
#include "abi/arguments.hpp"
#include "depreciation/decline.hpp"
#include "depreciation/declining_spans.hpp"
#include "depreciation/handlers.hpp"

namespace finance {

namespace {

// Amounts of the counted periods, without a switch (2).
double declining_balance(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    double accumulated = 0.0;
    double total = 0.0;
    std::int32_t steps = 0;
    for (std::int32_t i = 0; i < e; ++i) {
        if (steps++ >= longest_literal_walk) return closed_declining(a, s, e);
        const double d = (a.cost - accumulated) * a.factor / a.life;
        if (accumulated + d > a.depreciable) return i < s ? total : total + (a.depreciable - accumulated);
        const double accumulated_before = accumulated;
        const double total_before = total;
        accumulated += d;
        if (i >= s) total += d;
        if (!same_bits(accumulated, accumulated_before)) continue;
        if (i < s) {
            i = s - 1;  // until the span begins each period repeats this one
        } else if (same_bits(total, total_before)) {
            break;
        }
    }
    return total;
}

// The same with the switch to straight line (3).
double switching_balance(const DecliningAsset& a, std::int32_t s, std::int32_t e) {
    double accumulated = 0.0;
    double total = 0.0;
    double d = 0.0;
    bool switched = false;
    for (std::int32_t i = 0; i < e; ++i) {
        if (i >= longest_literal_walk) return closed_switching(a, s, e);
        if (!switched) {
            d = (a.cost - accumulated) * a.factor / a.life;
            const double straight = (a.depreciable - accumulated) / (a.life - static_cast<double>(i));
            if (d < straight) {
                d = straight;
                switched = true;
            }
        }
        const double total_before = total;
        if (accumulated + d > a.depreciable) {
            if (i >= s) total += a.depreciable - accumulated;
            d = 0.0;
            switched = true;
        } else {
            accumulated += d;
            if (i >= s) total += d;
        }
        if (switched && d == 0.0 && i >= s && same_bits(total, total_before)) break;
    }
    return total;
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
