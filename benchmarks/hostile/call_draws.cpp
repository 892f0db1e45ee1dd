#include "hostile/call_draws.hpp"

#include <algorithm>
#include <utility>

#include "hostile/days.hpp"
#include "hostile/fitting.hpp"
#include "hostile/flows.hpp"
#include "hostile/roles.hpp"
#include "hostile/scalars.hpp"

namespace finance::hostile {

namespace {

constexpr double mostly = 0.95;

// ---- Values

std::size_t list_size(const Draw& draw) {
    Random& random = draw.random;
    const std::size_t most = draw.reach.list;
    if (random.chance(0.15)) return most;
    return static_cast<std::size_t>(random.log_uniform(1.0, static_cast<double>(most)));
}

std::vector<double> values(const catalogue::Parameter& parameter, std::size_t size, const Draw& draw) {
    Random& random = draw.random;
    switch (role_of(parameter)) {
        case Role::day:
            return {day(random)};
        case Role::days:
            return days(random, size);
        case Role::rate:
            return {rate(random)};
        case Role::rates:
            return rates(random, size);
        case Role::amount:
            return {amount(random)};
        case Role::flows:
            return flows(random, size);
        case Role::factor:
            return {factor(random)};
        case Role::count:
            return {count(random, draw.reach.periods)};
        case Role::frequency:
            return {frequency(random, random.chance(draw.reach.far))};
        case Role::basis:
            return {basis(random)};
        case Role::flag:
            break;
    }
    return {static_cast<double>(random.below(2))};
}

// Some of the last values, where the call can do without.
void leave_out(Call& call, Random& random) {
    const auto parameters = call.calculation->parameters;
    for (std::size_t i = parameters.size(); i-- > 0;) {
        if (parameters[i].need != catalogue::Need::optional || !random.chance(0.3)) return;
        call.given[i].clear();
    }
}

// ---- Dates

// The day of another date, or one at a distance from it.
double related(double other, double frequency, bool far, const Draw& draw) {
    if (draw.random.chance(0.08)) return other;
    return other + (far ? distance : near_distance)(draw.random, frequency, draw.reach.periods);
}

enum class Dates { related, in_corners, alone };

Dates draw_pattern(Random& random, bool far) {
    const double choice = random.uniform();
    if (!far) return Dates::related;
    return choice < 0.55 ? Dates::related : choice < 0.85 ? Dates::in_corners : Dates::alone;
}

void draw_dates(Call& call, const Draw& draw) {
    const std::vector<std::size_t> dates = given_of(call, Role::day);
    const bool far = draw.random.chance(draw.reach.far);
    const Dates pattern = draw_pattern(draw.random, far);
    std::vector<double> drawn_days;
    for (std::size_t k = 0; k < dates.size(); ++k) {
        if (pattern == Dates::in_corners) {
            drawn_days.push_back(corner(draw.random));
        } else if (pattern == Dates::alone || k == 0) {
            drawn_days.push_back(day(draw.random));
        } else {
            drawn_days.push_back(related(drawn_days[draw.random.below(k)], periods_a_year(call), far, draw));
        }
    }
    for (std::size_t k = 0; k < dates.size(); ++k) {  // in any order
        std::swap(drawn_days[k], drawn_days[k + draw.random.below(dates.size() - k)]);
        call.given[dates[k]] = {drawn_days[k]};
    }
}

// Puts a date on the schedule of a later one, from where a first coupon must not move.
void put_on_schedule(Call& call, const Draw& draw) {
    const std::size_t first_coupon = catalogue::find_parameter(*call.calculation, "firstCoupon");
    std::vector<std::size_t> dates = given_of(call, Role::day);
    if (dates.size() < 2) return;
    const bool has_first_coupon = first_coupon < call.given.size();
    if (!draw.random.chance(has_first_coupon ? 0.85 : 0.1)) return;
    std::ranges::sort(dates, {}, [&](std::size_t i) { return call.given[i].front(); });
    const std::size_t moved = has_first_coupon ? first_coupon : dates[draw.random.below(dates.size() - 1)];
    const double maturity = call.given[dates.back()].front();
    const double coupon = coupon_before(call.given[moved].front(), maturity, periods_a_year(call), draw);
    if (coupon == coupon) call.given[moved] = {coupon};
}

Call finished(Call call, const Draw& draw) {
    if (draw.random.chance(mostly)) put_right(call);
    put_on_schedule(call, draw);
    return call;
}

// ---- Changes

std::size_t any_given(const Call& call, Random& random) {
    std::size_t i = 0;
    do i = random.below(call.given.size());
    while (call.given[i].empty());
    return i;
}

void replace(Call& call, const Draw& draw) {
    const std::size_t i = any_given(call, draw.random);
    call.given[i] = values(call.calculation->parameters[i], call.given[i].size(), draw);
}

void move_value(Call& call, const Draw& draw) {
    const std::size_t i = any_given(call, draw.random);
    std::vector<double>& moved = call.given[i];
    switch (role_of(call.calculation->parameters[i])) {
        case Role::day:
            moved.front() += distance(draw.random, periods_a_year(call), draw.reach.periods);
            break;
        case Role::count:
            moved.front() = whole_beside(draw.random, moved.front());
            break;
        case Role::rate:
        case Role::amount:
        case Role::factor:
            moved.front() = beside(draw.random, moved.front());
            break;
        case Role::rates:
        case Role::flows:
            change(draw.random, moved);
            break;
        default:
            replace(call, draw);
    }
}

// A little, so that a climb can come closer to where it is steep.
void nudge_date(Call& call, const Draw& draw) {
    const std::vector<std::size_t> dates = given_of(call, Role::day);
    if (dates.empty()) return;
    call.given[dates[draw.random.below(dates.size())]].front() +=
        draw.random.sign() * std::floor(draw.random.log_uniform(1.0, 4000.0));
}

void move_all_dates(Call& call, const Draw& draw) {
    const std::vector<std::size_t> dates = given_of(call, Role::day);
    if (dates.empty()) return;
    const double moved = draw.random.chance(0.5) ? day(draw.random) - call.given[dates.front()].front()
                                                 : distance(draw.random, 1.0, draw.reach.periods);
    for (const std::size_t i : dates) call.given[i].front() += moved;
}

void exchange(Call& call, const Draw& draw) {
    const std::size_t i = any_given(call, draw.random);
    const std::vector<std::size_t> alike = given_of(call, role_of(call.calculation->parameters[i]));
    std::swap(call.given[i], call.given[alike[draw.random.below(alike.size())]]);
}

// All lists alike: cut, or continued with their own values.
void resize_lists(Call& call, const Draw& draw) {
    std::size_t size = 0;
    for (const std::vector<double>& list : call.given) size = std::max(size, list.size());
    if (size < 2) return;
    const double wanted = draw.random.chance(0.3) ? static_cast<double>(draw.reach.list)
                                                  : static_cast<double>(size) * draw.random.log_uniform(0.3, 4.0);
    const std::size_t resized = std::clamp<std::size_t>(static_cast<std::size_t>(wanted), 2, draw.reach.list);
    for (std::vector<double>& list : call.given) {
        if (list.size() != size) continue;
        list.resize(resized);
        for (std::size_t k = size; k < resized; ++k) list[k] = list[k - size];
    }
}

}  // namespace

Call drawn(const catalogue::Calculation& calculation, const Draw& draw) {
    Call call{.calculation = &calculation};
    const std::size_t size = list_size(draw);
    for (const catalogue::Parameter& parameter : calculation.parameters) {
        call.given.push_back(values(parameter, size, draw));
    }
    draw_dates(call, draw);
    leave_out(call, draw.random);
    while (draw.random.chance(0.6)) fit(call, draw);
    return finished(std::move(call), draw);
}

Call changed(Call call, const Draw& draw) {
    constexpr std::array changes{fit,      replace, move_value,  move_value, nudge_date, move_all_dates,
                                 exchange, fit,     resize_lists};
    do draw.random.pick(changes)(call, draw);
    while (draw.random.chance(0.5));
    return finished(std::move(call), draw);
}

}  // namespace finance::hostile
