#include <cmath>
#include <sstream>
#include <vector>

#include "calendar/repeated_sum.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/calendar/literal_schedule.hpp"
#include "tests/closed/comparison.hpp"

namespace finance::closed {

namespace {

using test::date_of_julian;

constexpr double days_a_year = 365.2425;
constexpr std::int64_t first_day_of_year_0 = 1721060;

// Years: ours, about 0, before the calendar is exact, and close to where years of 32 bits end, below and above.
CalendarDate origin(hostile::Random& random, double reach) {
    constexpr std::array centres{2000.0, 0.0, -4800.0, 1e6, -0x1p31, -0x1p31 + 1000.0, 0x1p31, 0x1p31 - 100.0};
    const double year = random.pick(centres) + random.sign() * random.log_uniform(1e-3, 100.0);
    // so that the walk crosses the end, the year 0 or a cycle's end somewhere
    const double back = random.chance(0.5) ? random.uniform() * reach : 0.0;
    return date_of_julian(first_day_of_year_0 + static_cast<std::int64_t>((year - back) * days_a_year));
}

// A walk of up to so many periods; one of three ends on a coupon date.
struct Stretch {
    CouponTerms terms;
    CalendarDate origin;
    CalendarDate end;
};

Stretch stretch(const Setting& setting) {
    constexpr std::array frequencies{1, 2, 4, 6, 12};
    hostile::Random& random = setting.random;
    const int frequency = random.pick(frequencies);
    Stretch drawn{test::coupon_terms(frequency, static_cast<std::int32_t>(random.below(5))), {}, {}};
    const double years = random.log_uniform(0.1, setting.longest) / frequency;
    drawn.origin = origin(random, years);
    drawn.end = date_of_julian(drawn.origin.julianDay + 1 + static_cast<std::int64_t>(years * days_a_year));
    if (random.chance(0.33)) {
        CalendarDate coupon{};
        zAdvanceDate(&coupon, &drawn.origin, static_cast<std::int64_t>(years * frequency) + 1, &drawn.terms);
        if (before(drawn.origin, coupon)) drawn.end = coupon;
    }
    return drawn;
}

std::ostream& operator<<(std::ostream& out, const Stretch& drawn) {
    return out << drawn.origin << " to " << drawn.end << ", frequency " << drawn.terms.frequency << ", basis "
               << drawn.terms.basis;
}

bool same_period(const CouponPeriod& a, const CouponPeriod& b) {
    return test::same_record(a.start, b.start) && test::same_record(a.end, b.end) && same_bits_or_nan(a.days, b.days);
}

struct Listed {
    CouponTerms terms;
    CouponList list{};
    Listed(const Stretch& drawn, const CalendarDate& maturity) : terms{drawn.terms} {
        list.startDate = &drawn.origin;
        list.endDate = &drawn.end;
        list.maturity = &maturity;
        list.terms = &terms;
    }
};

}  // namespace

Compared sums_of_proportions(const Setting& setting) {
    Stretch drawn = stretch(setting);
    drawn.terms.couponDayRule = setting.random.chance(0.5) ? 1 : 0;
    drawn.terms.proportionFloor = setting.random.chance(0.5) ? 1 : 0;
    const WalkEnd until = setting.random.chance(0.5) ? WalkEnd::after : WalkEnd::on_or_after;
    const double total = setting.random.uniform();
    CouponTerms got_terms = drawn.terms;
    CouponTerms expected_terms = drawn.terms;
    const double got = sum_of_proportions(total, drawn.origin, drawn.end, until, &got_terms);
    const double expected = test::literal::sum_of_proportions(total, drawn.origin, drawn.end, until, &expected_terms);
    if (same_bits_or_nan(got, expected) && test::same_terms(got_terms, expected_terms)) return {};
    std::ostringstream text;
    text.precision(17);
    text << drawn << ", total " << total << ": " << got << ", walked " << expected;
    return {false, 0.0, text.str()};
}

Compared coupon_lists(const Setting& setting) {
    const Stretch drawn = stretch(setting);
    const CalendarDate maturity =
        setting.random.chance(0.33)
            ? drawn.end
            : date_of_julian(drawn.end.julianDay + static_cast<std::int64_t>(setting.random.below(3000)));
    Listed got{drawn, maturity};
    Listed expected{drawn, maturity};
    MakeTheCouponList(&got.list);
    test::literal::list_coupons(&expected.list);
    const CouponList& a = got.list;
    const CouponList& b = expected.list;
    if (a.partialPeriods == b.partialPeriods && a.wholePeriods == b.wholePeriods &&
        a.periodsStored == b.periodsStored && a.boundaryFlags == b.boundaryFlags &&
        same_period(a.firstPeriod, b.firstPeriod) && same_period(a.lastPeriod, b.lastPeriod)) {
        return {};
    }
    std::ostringstream text;
    text << drawn << ", maturity " << maturity << ": " << a.partialPeriods << ' ' << a.wholePeriods << ' '
         << a.periodsStored << ' ' << a.boundaryFlags << ' ' << a.lastPeriod.end << ", walked " << b.partialPeriods
         << ' ' << b.wholePeriods << ' ' << b.periodsStored << ' ' << b.boundaryFlags << ' ' << b.lastPeriod.end;
    return {false, 0.0, text.str()};
}

Compared repeated_sums(const Setting& setting) {
    hostile::Random& random = setting.random;
    const double sign = random.sign();
    std::vector<double> amounts(1 + random.below(random.chance(0.5) ? 1 : 8));
    const double size = random.log_uniform(1e-300, 1e300);
    for (double& x : amounts) x = random.chance(0.1) ? 0.0 : sign * size * random.log_uniform(1e-6, 1e6);
    const auto times = static_cast<std::int64_t>(random.log_uniform(1.0, setting.longest));
    const double start = random.chance(0.3) ? 0.0 : random.sign() * size * random.log_uniform(1e-12, 1e16);
    const auto cycle = [&](double sum) {
        for (const double x : amounts) sum = sum + x;
        return sum;
    };
    const double got = repeat_sum(start, times, cycle);
    double walked = start;
    for (std::int64_t i = 0; i < times; ++i) walked = cycle(walked);
    if (same_bits_or_nan(got, walked)) return {};
    std::ostringstream text;
    text << std::hexfloat << start << ' ' << times << " times " << amounts[0] << ", .. of " << amounts.size() << ": "
         << got << ", walked " << walked;
    return {false, 0.0, text.str()};
}

}  // namespace finance::closed
