#include "tests/cashflow/flow_lists.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "cashflow/irr.hpp"
#include "tests/support/call.hpp"

namespace finance::test {

namespace {

// Sums here carry 64 bits over an exponent range that nothing leaves.
using Wide = long double;

std::vector<int> draw_signs(Draws& draw, int n, Changes changes) {
    std::vector<int> signs(static_cast<std::size_t>(n), 1);
    if (changes == Changes::many) {
        for (int& sign : signs) sign = draw.whole(0, 1) == 0 ? 1 : -1;
        return signs;
    }
    const auto first = draw.whole(1, changes == Changes::one ? n - 1 : n - 2);
    const auto second = changes == Changes::one ? n : draw.whole(first + 1, n - 1);
    std::fill(signs.begin() + first, signs.begin() + second, -1);
    if (draw.whole(0, 1) == 0) {
        for (int& sign : signs) sign = -sign;
    }
    return signs;
}

bool fits(int sign_changes, Changes changes) {
    if (changes == Changes::one) return sign_changes == 1;
    return changes == Changes::two ? sign_changes == 2 : sign_changes > 2;
}

// Gives amounts their signs and scales the positive ones so that discounted they make up for the negative ones. False
// where one sign is missing or an amount leaves the range of doubles.
bool balance(const std::vector<double>& amounts, const std::vector<int>& signs, const std::vector<Wide>& factors,
             std::vector<double>& flows) {
    Wide gains = 0;
    Wide outlays = 0;
    for (std::size_t k = 0; k < amounts.size(); ++k) (signs[k] > 0 ? gains : outlays) += amounts[k] * factors[k];
    if (gains == 0 || outlays == 0) return false;
    flows.clear();
    for (std::size_t k = 0; k < amounts.size(); ++k) {
        const Wide flow = signs[k] > 0 ? amounts[k] * (outlays / gains) : -static_cast<Wide>(amounts[k]);
        if (flow != 0 && !(std::abs(flow) < 1e305L && std::abs(flow) > 1e-305L)) return false;
        flows.push_back(static_cast<double>(flow));
    }
    return true;
}

struct Discounted {
    Wide time;  // periods, or years
    Wide factor;
};

// discounted(k): when flow k falls due, and what 1 is then worth. Called for k from 0 on.
template <typename Discount>
Worth worth(const std::vector<double>& flows, double rate, Discount discounted) {
    Wide sum = 0;
    Wide moment = 0;
    Wide largest = 0;
    for (std::size_t k = 0; k < flows.size(); ++k) {
        const auto [time, factor] = discounted(k);
        const Wide term = flows[k] * factor;
        sum += term;
        moment += time * term;
        largest = std::max(largest, std::abs(term));
    }
    const double ulp = std::nextafter(std::abs(rate), HUGE_VAL) - std::abs(rate);
    const Wide slope = std::abs(moment / (1 + static_cast<Wide>(rate)));
    return {static_cast<double>(std::abs(sum) / largest), static_cast<double>(slope / largest * ulp)};
}

}  // namespace

FlowList draw_flows(Draws& draw, const Population& population, Changes changes) {
    const int fewest = changes == Changes::one ? 2 : changes == Changes::two ? 3 : 4;
    FlowList list{};
    while (true) {
        const int n = std::max(fewest, static_cast<int>(draw.log_between(2.0, population.most_flows + 0.999)));
        const double ln_growth = draw.between(std::log1p(population.lowest_rate), std::log1p(population.highest_rate));
        std::vector<double> amounts;
        std::vector<Wide> factors;
        for (int k = 0; k < n; ++k) {
            const bool inside = k > 0 && k < n - 1;
            const double amount = population.unit * draw.log_between(1.0, population.spread);
            amounts.push_back(inside && draw.whole(0, 9) == 0 ? 0.0 : amount);
            factors.push_back(std::exp(-static_cast<Wide>(ln_growth) * k));
        }
        list.rate = std::expm1(ln_growth);
        if (balance(amounts, draw_signs(draw, n, changes), factors, list.flows) &&
            fits(sign_changes_of(list.flows), changes)) {
            return list;
        }
    }
}

int sign_changes_of(const std::vector<double>& flows) {
    int changes = 0;
    double last = 0.0;
    for (const double flow : flows) {
        if (flow == 0.0) continue;
        if (last != 0.0 && (flow > 0.0) != (last > 0.0)) ++changes;
        last = flow;
    }
    return changes;
}

Worth worth_at(const std::vector<double>& flows, double rate) {
    const Wide z = 1 / (1 + static_cast<Wide>(rate));
    Wide factor = 1 / z;
    return worth(flows, rate, [&](std::size_t k) {
        factor *= z;
        return Discounted{static_cast<Wide>(k), factor};
    });
}

Answer solve_periodic(std::vector<double> flows, double periods_per_unit) {
    ensure_host();
    IrrRequest request{};
    request.x0 = periods_per_unit;
    request.n = static_cast<std::int32_t>(flows.size());
    request.callback = [](std::int32_t i, void* context) { return static_cast<const double*>(context)[i]; };
    request.context = flows.data();
    const std::int32_t code = zirr_s(&request);
    return {code, request.rate};
}

// ---- Dated flows

DatedList draw_dated(Draws& draw, Dates dates, Changes changes) {
    const int fewest = changes == Changes::one ? 2 : changes == Changes::two ? 3 : 4;
    DatedList list{};
    while (true) {
        const int n = std::max(fewest, static_cast<int>(draw.log_between(2.0, 60.999)));
        const auto first_day = draw.whole(-40000, 40000);
        const auto span = draw.whole(n, 30 * 365);
        list.days.clear();
        for (int k = 0; k < n; ++k) list.days.push_back(first_day + draw.whole(0, span));
        if (dates == Dates::repeated) {
            for (int k = 2; k < n; k += 2)
                list.days[static_cast<std::size_t>(k)] = list.days[static_cast<std::size_t>(k) - 1];
        }
        std::sort(list.days.begin(), list.days.end());
        if (list.days.front() == list.days.back()) continue;
        const double ln_growth = draw.between(std::log(0.5), std::log(3.0));
        list.rate = std::expm1(ln_growth);
        std::vector<double> amounts;
        std::vector<Wide> factors;
        for (int k = 0; k < n; ++k) {
            amounts.push_back(draw.log_between(1.0, 1e3));
            const auto days = static_cast<Wide>(list.days[static_cast<std::size_t>(k)] - list.days.front());
            factors.push_back(std::exp(-static_cast<Wide>(ln_growth) * days / 365));
        }
        if (!balance(amounts, draw_signs(draw, n, changes), factors, list.values) ||
            !fits(sign_changes_of(list.values), changes)) {
            continue;
        }
        if (dates == Dates::unsorted) {
            for (int k = n - 1; k > 0; --k) {
                const auto other = static_cast<std::size_t>(draw.whole(0, k));
                std::swap(list.values[static_cast<std::size_t>(k)], list.values[other]);
                std::swap(list.days[static_cast<std::size_t>(k)], list.days[other]);
            }
        }
        return list;
    }
}

Worth worth_at(const DatedList& list, double rate) {
    return worth(list.values, rate, [&](std::size_t k) {
        const Wide years = static_cast<Wide>(list.days[k] - list.days.front()) / 365;
        return Discounted{years, std::pow(1 + static_cast<Wide>(rate), -years)};
    });
}

}  // namespace finance::test
