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

enum class CouponQuestion { days_before, days, days_after, next_date, count, previous_date };

// ---- Answers of one call

inline double coupon_answer(CouponDateRecord* record, CouponQuestion question) {
    constexpr double (*in_order[])(CouponDateRecord*){zComputeCOUPDAYBS, zComputeCOUPDAYS, zComputeCOUPDAYSNC,
                                                      zComputeCOUPNCD,   zComputeCOUPNUM,  zComputeCOUPPCD};
    return in_order[static_cast<std::size_t>(question)](record);
}

// ---- Answers of lanes

template <typename Set>
using LaneCoupons = CouponDateRecordOf<Lanes<Set>>;

namespace lanes {

// One lane after the other: day numbers of results are the host's.
template <typename Set>
Lanes<Set> host_date(const LaneDate<Set>& date) {
    std::array<double, std::size_t{Set::width}> days;
    for (int lane = 0; lane < Set::width; ++lane) {
        days[static_cast<std::size_t>(lane)] = zmdy(date.month[lane], date.day[lane], date.year[lane]);
    }
    return Lanes<Set>::load(days.data());
}

}  // namespace lanes

// All bases but ACTUAL answer the days of the period from the frequency, whatever the dates.
template <typename Set>
Lanes<Set> coupon_answer(LaneCoupons<Set>* record, CouponQuestion question) {
    if (question == CouponQuestion::days && record->terms.basis != BASIS_ACTUAL) return record->terms.periodDays;
    zgetMonthDayYear(&record->settlement);
    zgetMonthDayYear(&record->maturity);
    const LaneSchedule<Set> schedule{record->settlement, record->maturity, record->terms};
    if (question == CouponQuestion::count) return schedule.count();
    if (question == CouponQuestion::next_date) return lanes::host_date(schedule.next());
    if (question == CouponQuestion::previous_date) return lanes::host_date(schedule.previous());
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

// ---- Calculations

// settlement, maturity, frequency, basis
template <typename In>
[[gnu::always_inline]] inline typename In::Outcome answer_coupon_question(In& in, CouponQuestion question) {
    CouponDateRecordOf<typename In::Number> record{};
    if (!read_date(in, 1, record.settlement) || !read_date(in, 2, record.maturity)) return in.status();
    const bool before_maturity = question == CouponQuestion::days_before || question == CouponQuestion::next_date ||
                                 question == CouponQuestion::previous_date;
    const auto out_of_order =
        before_maturity ? !before(record.settlement, record.maturity) : before(record.maturity, record.settlement);
    const int at_fault = question == CouponQuestion::days_before ? 3 : 2;
    if (in.refuses(at_fault, out_of_order) || !read_coupon_terms(in, 3, record.terms)) return in.status();
    return in.answer(coupon_answer(&record, question));
}

FINANCE_CALCULATION(COUPDAYBS) { return answer_coupon_question(in, CouponQuestion::days_before); }
FINANCE_CALCULATION(COUPDAYS) { return answer_coupon_question(in, CouponQuestion::days); }
FINANCE_CALCULATION(COUPDAYSNC) { return answer_coupon_question(in, CouponQuestion::days_after); }
FINANCE_CALCULATION(COUPNCD) { return answer_coupon_question(in, CouponQuestion::next_date); }
FINANCE_CALCULATION(COUPNUM) { return answer_coupon_question(in, CouponQuestion::count); }
FINANCE_CALCULATION(COUPPCD) { return answer_coupon_question(in, CouponQuestion::previous_date); }

}  // namespace finance
