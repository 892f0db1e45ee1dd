// PRICE, YIELD and durations of the rows of a block. Rows of as many coupons go side by side through sums and searches.
#pragma once

#include "lanes/staged_rows.hpp"
#include "securities/duration.hpp"
#include "securities/regular_bond.hpp"

namespace finance {

// Bit r of each answer: row r of the block has its result. Of two vectors one works while the other waits.

template <typename Set, typename TwoVectors>
std::uint64_t prices_of_block(const RowBlock& block) {
    enum Figure : std::size_t { f, n, v, first, last, c, accrued, figures };
    StagedRows<figures> staged;
    const std::uint64_t answered = in_lanes<Set>(block, [&staged](Rows<Set>& rows) {
        SecurityOf<Lanes<Set>> bond;
        if (!read_regular_bond(rows, bond, &Rows<Set>::number, bond.record.yield)) return rows.status();
        const PriceParts<Lanes<Set>> parts = price_parts(bond.record);
        const auto more = rows.live() & parts.has_factor & (parts.n > 1.0) & !has_too_many_coupons(parts.n);
        if (any(more)) {
            const elementary::LanePowers<Set> v_to{parts.v};
            staged.lay_down(rows.first(), more,
                            {Lanes<Set>{static_cast<double>(bond.terms.frequency)}, parts.n, parts.v, v_to.to(parts.d),
                             parts.R * v_to.to(parts.n - 1.0), parts.c, parts.c * parts.a});
        }
        const auto one = parts.has_factor & (parts.n == 1.0);
        if (!any(rows.live() & one)) return rows.status();
        return rows.answer_where(one, price_with_one_coupon(parts));
    });
    return answered | staged.template solve_in_order<TwoVectors>(
                          f, n, block.results, [](const auto& of, const auto& wanted, auto& price) {
                              price = price_with_more_coupons(of[first], of[last], of[c],
                                                              sum_of_discounts(of[v], of[n]), of[accrued]);
                              return wanted;
                          });
}

template <typename Set, typename TwoVectors>
std::uint64_t yields_of_block(const RowBlock& block) {
    enum Figure : std::size_t { f, n, rate, price, redemption, a, d, figures };
    StagedRows<figures> staged;
    const std::uint64_t answered = in_lanes<Set>(block, [&staged](Rows<Set>& rows) {
        SecurityOf<Lanes<Set>> bond;
        auto& record = bond.record;
        if (!read_regular_bond(rows, bond, &Rows<Set>::positive, record.price)) return rows.status();
        find_period_fractions(record);
        const auto more = rows.live() & (record.couponCount > 1.0) & !has_too_many_coupons(record.couponCount);
        if (any(more)) {
            staged.lay_down(rows.first(), more,
                            {Lanes<Set>{static_cast<double>(bond.terms.frequency)}, record.couponCount, record.rate,
                             record.price, record.redemption, record.accruedFraction, record.remainingFraction});
        }
        const auto last = record.couponCount == 1.0;
        if (!any(rows.live() & last)) return rows.status();
        return rows.answer_where(last, yield_of_last_period(record));
    });
    return answered | staged.template solve_in_order<TwoVectors>(
                          f, n, block.results, [](const auto& of, const auto& wanted, auto& yield) {
                              CouponTerms terms{};
                              terms.frequency = static_cast<std::int32_t>(of[f][0]);
                              SecurityComputeRecordOf<Lanes<TwoVectors>> record{};
                              record.terms = &terms;
                              record.couponCount = of[n];
                              record.rate = of[rate];
                              record.price = of[price];
                              record.redemption = of[redemption];
                              record.accruedFraction = of[a];
                              record.remainingFraction = of[d];
                              const auto found = search_yield(record, wanted);
                              yield = record.yield;
                              return found;
                          });
}

template <typename Set, typename TwoVectors>
std::uint64_t durations_of_block(const RowBlock& block, bool modified) {
    enum Figure : std::size_t { f, n, c, w, t, v, divisor, figures };
    StagedRows<figures> staged;
    in_lanes<Set>(block, [&staged, modified](Rows<Set>& rows) {
        SecurityOf<Lanes<Set>> bond;
        if (!read_duration(rows, bond)) return rows.status();
        const DurationParts<Lanes<Set>> parts = duration_parts(bond.record);
        const Lanes<Set> s = modified ? modified_divisor(bond) : Lanes<Set>{1.0};
        const auto good = parts.has_factor & !has_too_many_coupons(parts.n) & !(s < smallest_that_counts);
        staged.lay_down(rows.first(), rows.live() & good,
                        {Lanes<Set>{parts.f}, parts.n, parts.c, parts.w, parts.t, parts.v, s});
        return rows.status();
    });
    return staged.template solve_in_order<TwoVectors>(
        f, n, block.results, [](const auto& of, const auto& wanted, auto& duration) {
            const auto sums = sum_cash_flows(of[c], of[w], of[t], of[v], of[f][0], of[n]);
            duration = duration_of_sums(sums) / of[divisor];
            return wanted;
        });
}

}  // namespace finance
