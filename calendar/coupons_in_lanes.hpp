// Coupon schedules of dates side by side: the coupon period that holds a settlement date, for lanes of rows.
//
//  (1) All lanes have one frequency, of 1, 2, 4, 6 or 12. Settlement is at most maturity.
//  (2) What the searches of coupon_schedule.cpp find, months alone tell: a coupon date is a month that lies whole periods
//      before the maturity's, and in it the maturity's day, or the last one where the month has no such day or the maturity
//      ends its month.
//  (3) Coupons are counted as those searches do, which compare with the maturity's day and month as they stand. The two
//      differ in February alone, where its end is now the 28th and now the 29th.
#pragma once

#include "calendar/coupon_schedule.hpp"
#include "calendar/day_count_in_lanes.hpp"

namespace finance {

template <typename Set>
class LaneSchedule {
public:
    using N = Lanes<Set>;
    using Truth = LaneTruth<Set>;

    // Of complete dates.
    [[gnu::noinline]] LaneSchedule(const LaneDate<Set>& settlement, const LaneDate<Set>& maturity,
                                   const CouponTerms& terms)
        : maturity_month_{month_number(maturity)},
          period_{static_cast<double>(terms.monthsPerPeriod)},
          day_{select(ends_month(maturity), N{longest_month}, maturity.day)} {
        const N months = maturity_month_ - month_number(settlement);
        const N day = day_in_month(settlement.year, settlement.month);  // of a coupon in settlement's month
        // A coupon in settlement's month that is still to come counts as one of the next month's.
        const N months_to_coupons = months + select(day > settlement.day, N{0.0}, N{-1.0});
        left_ = lanes::quotient(months_to_coupons + period_, period_);
        on_coupon_ = (day == settlement.day) & (months == left_ * period_);
        same_month_ = settlement.month == maturity.month;
        not_before_day_ = settlement.day >= maturity.day;
        on_day_ = settlement.day == maturity.day;
    }

    [[nodiscard]] Truth on_coupon() const { return on_coupon_; }

    // What CountTheCoupons counts (3).
    [[nodiscard]] N count() const {
        const N passed = select(same_month_ & on_day_ & !on_coupon_, N{1.0}, N{0.0});
        const N ahead = select(same_month_ & on_coupon_ & !not_before_day_, N{1.0}, N{0.0});
        return left_ - passed + ahead;
    }

    // Coupon dates, complete but for julianDay: the one after settlement, the one on or before it, and what
    // FindCouponInfo shows for the latter where it is asked for the days of the period.
    [[nodiscard]] LaneDate<Set> next() const { return coupon(left_ - 1.0); }
    [[nodiscard]] LaneDate<Set> previous() const { return coupon(left_); }
    [[nodiscard]] LaneDate<Set> shown_previous() const {
        const Truth earlier = on_coupon_ & !(same_month_ & not_before_day_);
        return coupon(left_ + select(earlier, N{1.0}, N{0.0}));
    }

private:
    static constexpr double months_of_year = 12.0;
    static constexpr double longest_month = 31.0;
    static constexpr double shortest_month = 28.0;

    static N month_number(const LaneDate<Set>& date) { return months_of_year * date.year + date.month - 1.0; }

    [[nodiscard]] N day_in_month(N year, N month) const {
        if (!any(day_ > shortest_month)) return day_;
        const N last = zlastDay(year, month);
        return select(day_ > last, last, day_);
    }

    // So many periods before maturity.
    [[nodiscard, gnu::noinline]] LaneDate<Set> coupon(N periods) const {
        const N number = maturity_month_ - periods * period_;
        const N year = lanes::quotient(number, months_of_year);
        const N month = number - months_of_year * year + 1.0;
        return {day_in_month(year, month), month, year, N{0.0}};
    }

    N maturity_month_;
    double period_;  // months
    N day_;          // of the month, where it has so many
    N left_;         // coupon dates after settlement
    Truth on_coupon_;
    Truth same_month_;
    Truth not_before_day_;
    Truth on_day_;
};

// ---- The quantities of price, yield and duration

template <typename N>
struct CouponQuantitiesOf {
    N couponCount;
    N daysInPeriod;
    N daysAccrued;
    TruthOf<N> onCouponDate;
};

// Of dates of which only julianDay is set; completes them.
template <typename Set>
[[gnu::noinline]] CouponQuantitiesOf<Lanes<Set>> find_coupon_quantities(LaneDate<Set>& settlement,
                                                                        LaneDate<Set>& maturity,
                                                                        const CouponTerms& terms) {
    using N = Lanes<Set>;
    zgetMonthDayYear(&settlement);
    zgetMonthDayYear(&maturity);
    const LaneSchedule<Set> schedule{settlement, maturity, terms};
    LaneDate<Set> previous = schedule.shown_previous();
    if (counts_actual_days(terms.basis)) ConvertDateToJulian(&previous);
    N period{terms.periodDays};
    if (terms.basis == BASIS_ACTUAL) {
        LaneDate<Set> next = schedule.next();
        ConvertDateToJulian(&next);
        period = next.julianDay - select(schedule.on_coupon(), settlement.julianDay, previous.julianDay);
    }
    return {schedule.count(), period, days_between(previous, settlement, terms), schedule.on_coupon()};
}

}  // namespace finance
