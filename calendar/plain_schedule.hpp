// Coupon schedules on one day of the month: every month has the maturity's day, so that no coupon date is moved, and
// months alone tell what a search would find.
#pragma once

#include "abi/conversions.hpp"
#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

// Stands on the maturity that it is made of.
class PlainSchedule {
public:
    // Whether settlement and maturity have such a schedule, in usual years.
    static bool applies(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms) {
        constexpr std::int32_t day_of_every_month = 28;
        return terms.monthsPerPeriod > 0 && terms.stepUnit == STEP_MONTHS && maturity.day <= day_of_every_month &&
               maturity.endOfMonth == 0 && settlement.year > 1 && is_usual_month(settlement.year, settlement.month) &&
               is_usual_month(maturity.year, maturity.month);
    }

    PlainSchedule(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms)
        : maturity_{maturity}, period_{low_32_bits(terms.monthsPerPeriod)} {
        const std::int32_t months = month_number(maturity) - month_number(settlement);
        const bool this_month = maturity.day > settlement.day;  // a coupon is still to come in settlement's month
        later_ = whole_years((months - (this_month ? 0 : 1)) * terms.frequency);
        on_coupon_ = maturity.day == settlement.day && months == (later_ + 1) * period_;
        on_anniversary_ = on_coupon_ && months % months_of_year == 0;
    }

    // Periods from the next coupon date after settlement to maturity.
    [[nodiscard]] std::int32_t later() const { return later_; }
    [[nodiscard]] bool on_coupon() const { return on_coupon_; }
    // On a coupon date in the maturity's month.
    [[nodiscard]] bool on_anniversary() const { return on_anniversary_; }

    // The date so many periods before maturity, whole.
    void set_coupon(CalendarDate* date, std::int32_t periods) const {
        const std::int32_t number = month_number(maturity_) - periods * period_;
        date->day = maturity_.day;
        date->month = number % months_of_year + 1;
        date->year = number / months_of_year;
        date->julianDay = julian_day_of(date->year, date->month, date->day);
        date->anchorDay = maturity_.day;
        date->endOfMonth = 0;
    }

private:
    static constexpr std::int32_t months_of_year = 12;
    static std::int32_t month_number(const CalendarDate& date) { return months_of_year * date.year + date.month - 1; }
    static std::int32_t whole_years(std::int32_t months) {
        return months / months_of_year - (months % months_of_year < 0 ? 1 : 0);
    }

    const CalendarDate& maturity_;
    std::int32_t period_;  // months
    std::int32_t later_;
    bool on_coupon_;
    bool on_anniversary_;
};

}  // namespace finance
