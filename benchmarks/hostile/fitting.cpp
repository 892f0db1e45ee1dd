#include "hostile/fitting.hpp"

#include <algorithm>
#include <limits>

#include "hostile/roles.hpp"
#include "hostile/scalars.hpp"

namespace finance::hostile {

namespace {

constexpr double days_a_year = 365.25;

double value_of(const Call& call, std::size_t parameter) { return call.given[parameter].front(); }

// Periods that the call is about: the largest count, or those between the outermost dates, or a list's values.
double periods_of(const Call& call) {
    double most = 1.0;
    for (const std::size_t i : given_of(call, Role::count)) most = std::max(most, value_of(call, i));
    double first = std::numeric_limits<double>::infinity();
    double last = -first;
    for (const std::size_t i : given_of(call, Role::day)) {
        first = std::min(first, value_of(call, i));
        last = std::max(last, value_of(call, i));
    }
    if (first < last) most = std::max(most, (last - first) / days_a_year * periods_a_year(call));
    for (const auto& values : call.given) most = std::max(most, static_cast<double>(values.size()));
    return most;
}

// Another parameter of that role, if there is one.
const double* other_value(const Call& call, Role role, std::size_t but, Random& random) {
    std::vector<std::size_t> others = given_of(call, role);
    std::erase(others, but);
    return others.empty() ? nullptr : call.given[others[random.below(others.size())]].data();
}

// Equal, or different in some digit.
double almost(Random& random, double x) {
    return random.chance(0.3) ? x : x * (1.0 + random.sign() * random.log_uniform(1e-16, 1e-3));
}

// k / n: (1 + rate)^n is e^k, which overflows from 710 on. Or the other rate; or next to -1 or minus the frequency, below
// which nothing can be discounted.
double fitted_rate(const Call& call, std::size_t i, Random& random) {
    const double a_year = periods_a_year(call);
    switch (random.below(4)) {
        case 0:
            if (const double* other = other_value(call, Role::rate, i, random)) return almost(random, *other);
            [[fallthrough]];
        case 1:
        case 2:
            return random.log_uniform(1e-3, 1e3) / periods_of(call) * a_year * (random.chance(0.1) ? -1.0 : 1.0);
        default:
            return -a_year * (1.0 - random.log_uniform(1e-17, 1.0));
    }
}

// Near another amount, such as par; what is left of it after k periods; what its interest for ever is worth.
double fitted_amount(const Call& call, std::size_t i, Random& random) {
    const double* other = other_value(call, Role::amount, i, random);
    const double* rate = other_value(call, Role::rate, i, random);
    const double base = other != nullptr ? *other : 100.0;
    switch (random.below(4)) {
        case 0:
            return base * std::pow(1.0 - random.log_uniform(1e-9, 0.9), std::floor(random.log_uniform(1.0, 1e6)));
        case 1:
            return base * (rate != nullptr ? *rate : 1.0) * (random.chance(0.5) ? -1.0 : 1.0);
        case 2:
            return rate != nullptr ? 100.0 * *rate / random.log_uniform(1e-6, 1.0) : 0.0 - base;
        default:
            return almost(random, base);
    }
}

double fitted_count(const Call& call, std::size_t i, Random& random) {
    const double* other = other_value(call, Role::count, i, random);
    return other == nullptr ? std::floor(periods_of(call)) : random.chance(0.3) ? *other : whole_beside(random, *other);
}

// A bound of 0 is kept by the other sign, any other by a distance from it.
void keep_bounds(const catalogue::Parameter& parameter, double& value) {
    using catalogue::Relation;
    const auto& [relation, limit] = parameter.lower;
    if (relation == Relation::none || catalogue::holds(value, relation, limit)) return;
    value = limit + std::abs(value - limit);
    if (!catalogue::holds(value, relation, limit)) value = limit + 1.0;
}

// Exchanges the two values of an order that does not hold.
void keep_order(Call& call, std::size_t parameter, const catalogue::Order& order) {
    const catalogue::Calculation& calculation = *call.calculation;
    const std::size_t subject =
        order.subject.empty() ? parameter : catalogue::find_parameter(calculation, order.subject);
    const std::size_t other = catalogue::find_parameter(calculation, order.other);
    if (subject >= call.given.size() || other >= call.given.size()) return;
    if (call.given[subject].size() != 1 || call.given[other].size() != 1) return;
    double& x = call.given[subject].front();
    double& y = call.given[other].front();
    if (!catalogue::holds(x, order.relation, y + order.plus)) std::swap(x, y);
}

}  // namespace

double periods_a_year(const Call& call) {
    const std::vector<std::size_t> frequencies = given_of(call, Role::frequency);
    return frequencies.empty() ? 1.0 : value_of(call, frequencies.front());
}

void fit(Call& call, const Draw& draw) {
    constexpr std::array roles{Role::rate, Role::rate, Role::amount, Role::count, Role::factor};
    const Role role = draw.random.pick(roles);
    const std::vector<std::size_t> candidates = given_of(call, role);
    if (candidates.empty()) return;
    const std::size_t i = candidates[draw.random.below(candidates.size())];
    double& value = call.given[i].front();
    if (role == Role::rate) value = fitted_rate(call, i, draw.random);
    if (role == Role::amount) value = fitted_amount(call, i, draw.random);
    if (role == Role::count) value = fitted_count(call, i, draw.random);
    // A factor of k: each period takes k / life of what is left.
    if (role == Role::factor)
        value = draw.random.log_uniform(1e-6, 1e3) * (draw.random.chance(0.5) ? periods_of(call) : 1.0);
}

void put_right(Call& call) {
    const auto parameters = call.calculation->parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (call.given[i].size() == 1) keep_bounds(parameters[i], call.given[i].front());
    }
    // As many rounds as there are parameters: an exchange may undo another order.
    for (std::size_t round = 0; round < parameters.size(); ++round) {
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            for (const catalogue::Order& order : parameters[i].orders) keep_order(call, i, order);
        }
    }
}

double coupon_before(double point, double maturity, double frequency, const Draw& draw) {
    static const catalogue::Calculation* const previous_coupon = catalogue::find("COUPPCD");
    return draw.answer({.calculation = previous_coupon, .given = {{point}, {maturity}, {frequency}}});
}

}  // namespace finance::hostile
