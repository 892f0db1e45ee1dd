// Compiled once for each set of instructions: nothing of what is made here may be shared with other files.
#include "cashflow/discounting.hpp"

#include "abi/conversions.hpp"
#include "abi/status.hpp"
#include "lanes/instruction_set.hpp"
#include "lanes/powers.hpp"

namespace finance {

namespace {

using Number = Lanes<InstructionSet>;
constexpr std::int64_t width = InstructionSet::width;

// ---- Years from the first flow

double days_between(double first, double day) { return day - first; }
double days_between(std::int64_t first, std::int64_t day) {
    return static_cast<double>(wrapping_add(day, wrapping_multiply(-1, first)));
}

template <typename Day>
double years_between(Day first, Day day) {
    return days_between(first, day) / 365.0;
}

Number years_from(double first, const double* days) { return (Number::load(days) - first) / 365.0; }

Number years_from(std::int64_t first, const std::int64_t* days) {
    double from_first[width];
    for (int lane = 0; lane < width; ++lane) from_first[lane] = days_between(first, days[lane]);
    return Number::load(from_first) / 365.0;
}

// ---- Sums

// several(i) for as many flows at a time as there are lanes, the first one of the list left out, and one(i) for the rest
template <typename Day, typename Several, typename One>
[[gnu::always_inline]] inline void for_flows(const DatedFlows<Day>& flows, Several several, One one) {
    std::int64_t i = 1;
    for (; i + width <= flows.count; i += width) several(i);
    for (; i < flows.count; ++i) one(i);
}

[[gnu::always_inline]] inline void add_to(double& sum, Number terms) {
    for (int lane = 0; lane < width; ++lane) sum = sum + terms[lane];
}

template <typename Day>
[[gnu::flatten]] double value_of(const DatedFlows<Day>& flows, double q) {
    const PowersInLanes<InstructionSet> powers{q, flows.count > width};
    const Day first = flows.days[0];
    double value = flows.values[0];
    for_flows(
        flows,
        [&](std::int64_t i) {
            add_to(value, Number::load(flows.values + i) * powers(years_from(first, flows.days + i)));
        },
        [&](std::int64_t i) { value = value + flows.values[i] * powers(years_between(first, flows.days[i])); });
    return value;
}

template <typename Day>
[[gnu::flatten]] void sides_of(const DatedFlows<Day>& flows, NewtonProblem& problem) {
    const double q = 1.0 / (problem.x + 1.0);
    const PowersInLanes<InstructionSet> powers{q, flows.count > width};
    const Day first = flows.days[0];
    Pair sides{flows.values[0], 0.0};  // value, derivative
    double largest = std::abs(flows.values[0]);
    Number largest_of_lanes{largest};
    for_flows(
        flows,
        [&](std::int64_t i) {
            const Number t = years_from(first, flows.days + i);
            const Number p = powers(t) * Number::load(flows.values + i);
            InstructionSet::each_pair(p.value, ((0.0 - t * q) * p).value, [&](Pair terms) { sides = sides + terms; });
            largest_of_lanes = select(abs(p) < largest_of_lanes, largest_of_lanes, abs(p));
        },
        [&](std::int64_t i) {
            const double t = years_between(first, flows.days[i]);
            const double p = powers(t) * flows.values[i];
            sides = sides + Pair{p, (0.0 - t * q) * p};
            largest = select(std::abs(p) < largest, largest, std::abs(p));
        });
    for (int lane = 0; lane < width && flows.count > width; ++lane) {
        largest = select(largest_of_lanes[lane] < largest, largest, largest_of_lanes[lane]);
    }
    problem.value = sides[0];
    problem.derivative = sides[1];
    problem.residualScale = largest;
}

bool is_usual(double value, double day) {
    constexpr double beyond = 0x1p31;
    return !is_missing(value) && std::abs(day) < beyond && static_cast<double>(truncate_to_int32(day)) == day;
}
LaneTruth<InstructionSet> is_usual(Number value, Number day) { return (!is_missing(value)) & is_whole(day); }

[[gnu::flatten]] bool is_usual(const DatedFlows<double>& flows) {
    bool usual = is_usual(flows.values[0], flows.days[0]);
    auto lanes = LaneTruth<InstructionSet>::of_lanes(InstructionSet::all_lanes);
    for_flows(
        flows,
        [&](std::int64_t i) { lanes = lanes & is_usual(Number::load(flows.values + i), Number::load(flows.days + i)); },
        [&](std::int64_t i) { usual = usual && is_usual(flows.values[i], flows.days[i]); });
    return usual && all(lanes);
}

constexpr Discounting make_discounting() {
    return {value_of<std::int64_t>, value_of<double>, sides_of<std::int64_t>, sides_of<double>, is_usual};
}

}  // namespace

#ifdef ZELKOVAN_WIDE_LANES
constexpr Discounting discounting_avx2 = make_discounting();
#else
constexpr Discounting discounting_sse2 = make_discounting();
#endif

}  // namespace finance
