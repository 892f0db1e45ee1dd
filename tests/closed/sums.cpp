#include <bit>
#include <cmath>
#include <sstream>

#include "cashflow/annuity_sums.hpp"
#include "securities/kernels.hpp"
#include "tests/cashflow/literal_loans.hpp"
#include "tests/closed/comparison.hpp"
#include "tests/depreciation/literal_walks.hpp"
#include "tests/securities/literal_sums.hpp"
#include "tests/securities/long_bonds.hpp"

namespace finance::closed {

namespace {

using Arguments = std::vector<host::Argument>;

std::string text_of(std::string_view name, const Arguments& arguments) {
    std::ostringstream text;
    text.precision(17);
    text << name;
    for (const host::Argument& argument : arguments) text << ' ' << argument.number();
    return text.str();
}

// The shipped module's answer against the literal one; a refused call has none.
Compared compare(const Setting& setting, std::string_view name, const Arguments& arguments, double expected) {
    const host::Evaluation got = setting.shipped.evaluate(name, arguments);
    if (got.answered() && same_bits_or_nan(got.value, expected)) return {};
    std::ostringstream text;
    text.precision(17);
    text << text_of(name, arguments) << ": " << (got.answered() ? "" : "refused, ") << got.value << ", walked "
         << expected;
    return {false, 0.0, text.str()};
}

double steps(const Setting& setting) { return std::floor(setting.random.log_uniform(1.0, setting.longest)); }

}  // namespace

// n periods at r, so that (1 + r)^n overflows nothing; a span anywhere, beyond the loan's end too.
Compared loans(const Setting& setting) {
    hostile::Random& random = setting.random;
    const double nper = steps(setting);
    const double rate = random.log_uniform(1e-14, 600.0 / nper);
    const double P = random.log_uniform(1e-3, 1e9);
    const bool interest = random.chance(0.5);
    const double last = interest ? steps(setting) : std::min(steps(setting), nper);
    const double first = 1.0 + std::floor(random.uniform() * last);
    const double payment = setting.shipped.evaluate("PMT", Arguments{rate, nper, P}).value;
    const auto from = static_cast<std::int64_t>(first);
    const auto to = static_cast<std::int64_t>(last);
    if (!std::isfinite(payment)) return {};
    const double expected = interest ? test::literal_interest(rate, payment, P, from, to)
                                     : test::literal_principal(rate, payment, P, from, to);
    return compare(setting, interest ? "CUMIPMT" : "CUMPRINC", {rate, nper, P, first, last, 0.0}, expected);
}

Compared depreciations(const Setting& setting) {
    test::Draws draw{setting.random.bits()};
    const double cost = test::draw_cost(draw);
    const double salvage = test::draw_salvage(draw, cost);
    const double life = test::draw_life(draw, setting.longest);
    const double factor = test::draw_factor(draw, life);
    const test::DrawnSpan span = test::draw_span(draw, life);
    const DecliningAsset a{cost, cost - salvage, life, factor};
    const double s = span.s;
    const double e = span.e;
    if (e < 1.0) return {};
    switch (setting.random.below(3)) {
        case 0:
            return compare(setting, "DDB", {cost, salvage, life, e, factor},
                           test::literal_double<double>(cost, salvage, life, factor, span.e));
        case 1:
            return compare(setting, "VDB", {cost, salvage, life, s, e, factor, 1.0},
                           life == e - s ? a.depreciable : test::literal_declining<double>(a, span.s, span.e));
        default:
            return compare(setting, "VDB", {cost, salvage, life, s, e, factor, 0.0},
                           life == e - s ? a.depreciable : test::literal_switching<double>(a, span.s, span.e));
    }
}

Compared bonds(const Setting& setting) {
    hostile::Random& random = setting.random;
    const double coupons = steps(setting);
    const double usual =
        random.chance(0.5) ? random.log_uniform(1e-3, 10.0) : random.log_uniform(1e-3, 600.0) * 12.0 / coupons;
    const double yield = random.chance(0.2) ? 0.0 - std::min(usual, 11.0) : usual;
    Security bond;
    test::set_long_bond(bond, static_cast<std::int64_t>(coupons), yield);
    SecurityComputeRecord& r = bond.record;
    r.rate = random.log_uniform(1e-12, 1.0);
    const double settlement = static_cast<double>(bond.settlement.julianDay - HOST_EPOCH_JULIAN_DAY);
    const double maturity = static_cast<double>(bond.maturity.julianDay - HOST_EPOCH_JULIAN_DAY);
    const double issue = static_cast<double>(bond.issue.julianDay - HOST_EPOCH_JULIAN_DAY);
    const double first = static_cast<double>(bond.first_coupon.julianDay - HOST_EPOCH_JULIAN_DAY);
    switch (random.below(3)) {
        case 0:
            if (zComputePRICE(&r) != 0 || r.couponCount == 1.0) return {};
            return compare(setting, "PRICE", {settlement, maturity, r.rate, yield, r.redemption, 12.0, 1.0},
                           test::literal_price(r));
        case 1:
            if (zComputeDURATION(&r) != 0) return {};
            return compare(setting, "DURATION", {settlement, maturity, r.rate, yield, 12.0, 1.0},
                           test::literal_duration(r));
        default:
            if (zComputeODDFPRICE(&r) != 0) return {};
            return compare(setting, "ODDFPRICE",
                           {settlement, maturity, issue, first, r.rate, yield, r.redemption, 12.0, 1.0},
                           test::literal_odd_first_price(r));
    }
}

}  // namespace finance::closed
