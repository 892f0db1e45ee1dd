// COUPDAYBS, COUPDAYS, COUPDAYSNC, COUPNCD, COUPNUM, COUPPCD: the coupon period around a settlement date.
//
//  (1) Settlement before maturity, or for three of the six at most equal to it.
//  (2) A settlement out of order is the fault of the maturity; COUPDAYBS alone names the frequency.
//  (3) Every frequency of at least 1 is taken; schedules mean something for 1, 2, 4, 6 and 12.
//  (4) A settlement on a coupon date begins its period: its coupon is the previous one and is not counted.
#pragma once

#include <array>
#include <cstddef>

#include "abi/host_services.hpp"
#include "calendar/coupons_in_lanes.hpp"
#include "calendar/date_arguments.hpp"
#include "calendar/kernels.hpp"

namespace finance {

// ---- Answers of lanes; those of one call are in coupon_dates.cpp.

template <typename Set>
using LaneCoupons = CouponDateRecordOf<Lanes<Set>>;

namespace lanes {

enum class CouponQuestion { days_before, days, days_after, next_date, count, previous_date };

// One lane after the other: day numbers of results are the host's.
template <typename Set>
Lanes<Set> host_date(const LaneDate<Set>& date) {
    std::array<double, std::size_t{Set::width}> days;
    for (int lane = 0; lane < Set::width; ++lane) {
        days[static_cast<std::size_t>(lane)] = zmdy(date.month[lane], date.day[lane], date.year[lane]);
    }
    return Lanes<Set>::load(days.data());
}

// In one place for all questions: of each of them it would be the larger part.
template <typename Set>
[[gnu::noinline]] Lanes<Set> coupon_answer(LaneCoupons<Set>* record, CouponQuestion question) {
    zgetMonthDayYear(&record->settlement);
    zgetMonthDayYear(&record->maturity);
    const LaneSchedule<Set> schedule{record->settlement, record->maturity, record->terms};
    if (question == CouponQuestion::count) return schedule.count();
    if (question == CouponQuestion::next_date) return host_date(schedule.next());
    if (question == CouponQuestion::previous_date) return host_date(schedule.previous());
    const bool to_settlement = question == CouponQuestion::days_before;
    const bool from_settlement = question == CouponQuestion::days_after;
    LaneDate<Set> start = from_settlement ? record->settlement : schedule.previous();
    LaneDate<Set> end = to_settlement ? record->settlement : schedule.next();
    if (counts_actual_days(record->terms.basis)) {
        ConvertDateToJulian(&start);
        ConvertDateToJulian(&end);
    }
    return days_between(start, end, record->terms);
}

}  // namespace lanes

template <typename Set>
Lanes<Set> zComputeCOUPDAYBS(LaneCoupons<Set>* record) {
    return lanes::coupon_answer(record, lanes::CouponQuestion::days_before);
}
template <typename Set>
Lanes<Set> zComputeCOUPDAYS(LaneCoupons<Set>* record) {
    if (record->terms.basis != BASIS_ACTUAL) return record->terms.periodDays;
    return lanes::coupon_answer(record, lanes::CouponQuestion::days);
}
template <typename Set>
Lanes<Set> zComputeCOUPDAYSNC(LaneCoupons<Set>* record) {
    return lanes::coupon_answer(record, lanes::CouponQuestion::days_after);
}
template <typename Set>
Lanes<Set> zComputeCOUPNCD(LaneCoupons<Set>* record) {
    return lanes::coupon_answer(record, lanes::CouponQuestion::next_date);
}
template <typename Set>
Lanes<Set> zComputeCOUPNUM(LaneCoupons<Set>* record) {
    return lanes::coupon_answer(record, lanes::CouponQuestion::count);
}
template <typename Set>
Lanes<Set> zComputeCOUPPCD(LaneCoupons<Set>* record) {
    return lanes::coupon_answer(record, lanes::CouponQuestion::previous_date);
}

// ---- Calculations

enum class EqualDates : bool { refused, accepted };

// settlement, maturity, frequency, basis
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_coupon_question(In& in, CouponDateRecordOf<N>& record, EqualDates equal_dates,
                                                        int flagged_for_order) {
    if (!read_date(in, 1, record.settlement) || !read_date(in, 2, record.maturity)) return false;
    const auto out_of_order = equal_dates == EqualDates::refused ? !before(record.settlement, record.maturity)
                                                                 : before(record.maturity, record.settlement);
    return !in.refuses(flagged_for_order, out_of_order) && read_coupon_terms(in, 3, record.terms);
}

FINANCE_CALCULATION(COUPDAYBS) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::refused, 3)) return in.status();
    return in.answer(zComputeCOUPDAYBS(&record));
}

FINANCE_CALCULATION(COUPDAYS) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::accepted, 2)) return in.status();
    return in.answer(zComputeCOUPDAYS(&record));
}

FINANCE_CALCULATION(COUPDAYSNC) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::accepted, 2)) return in.status();
    return in.answer(zComputeCOUPDAYSNC(&record));
}

FINANCE_CALCULATION(COUPNCD) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::refused, 2)) return in.status();
    return in.answer(zComputeCOUPNCD(&record));
}

FINANCE_CALCULATION(COUPNUM) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::accepted, 2)) return in.status();
    return in.answer(zComputeCOUPNUM(&record));
}

FINANCE_CALCULATION(COUPPCD) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_coupon_question(in, record, EqualDates::refused, 2)) return in.status();
    return in.answer(zComputeCOUPPCD(&record));
}

}  // namespace finance
