#include "calls/causes.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "catalogue/text.hpp"

namespace finance::calls {

using catalogue::Calculation;
using catalogue::plain_text;
using host::Argument;

namespace {

constexpr std::size_t most_flows = 32767;  // of IRR

bool is_above_0(const Argument& argument) { return argument.number() > 0.0; }
bool is_below_0(const Argument& argument) { return argument.number() < 0.0; }

// ---- RATE

std::string cause_of_growth(double pv, double fv) {
    if (pv == 0.0) return "with pmt=0 the rate is that of the growth from pv to fv, and pv is 0";
    if (fv == 0.0) return "with pmt=0 the rate is that of the growth from pv to fv, and fv is 0";
    if ((pv > 0.0) != (fv > 0.0)) {
        return "with pmt=0 the rate is that of the growth from pv to fv: both must be positive, or both negative";
    }
    return {};
}

std::string cause_of_rate(Arguments arguments, bool answered) {
    const double pmt = number_or_0(arguments, 1);
    const double pv = number_or_0(arguments, 2);
    const double fv = number_or_0(arguments, 3);
    if (pmt == 0.0) return cause_of_growth(pv, fv);
    if (!changes_sign(std::array<Argument, 3>{pmt, pv, fv})) {
        return "pmt, pv and fv have no two signs: money paid is negative, money received positive";
    }
    constexpr const char* start = "the search starts at -pmt / pv, ";
    constexpr const char* other = " (IRR of the plan's flows needs no start)";
    if (pv == 0.0) return std::string{start} + "and pv is 0" + other;
    const double rate = (0.0 - pmt) / pv;
    if (rate <= -1.0) return std::string{start} + "and " + plain_text(rate) + " is no rate" + other;
    if (answered) return {};
    return std::string{start} + "here " + plain_text(rate) + ", and finds no rate from there";
}

// ---- IRR, XIRR

std::string cause_of_flows(Arguments flows, bool answered) {
    if (flows.size() > most_flows) {
        return "there are " + std::to_string(flows.size()) + " flows, more than " + std::to_string(most_flows);
    }
    const auto infinite = std::ranges::find_if(flows, [](const Argument& flow) { return std::isinf(flow.number()); });
    if (infinite != flows.end()) return "flow " + std::to_string(infinite - flows.begin() + 1) + " is infinite";
    if (!changes_sign(flows)) return "the flows do not change sign: a rate needs money paid and money received";
    return answered ? "" : "the search does not settle";
}

std::string cause_of_dated_flows(const DatedLists& flows) {
    if (!changes_sign(flows.values)) {
        return "the values do not change sign: a rate needs money paid and money received";
    }
    const double first = flows.dates.front().number();
    if (std::ranges::all_of(flows.dates, [&](const Argument& date) { return date.number() == first; })) {
        return "all values fall on one day";
    }
    return flows.begins_with_earliest() ? "" : "give the earliest flow first";
}

}  // namespace

bool changes_sign(Arguments flows) {
    return std::ranges::any_of(flows, is_above_0) && std::ranges::any_of(flows, is_below_0);
}

bool DatedLists::begins_with_earliest() const {
    return std::ranges::none_of(dates, [&](const Argument& date) { return date.number() < dates.front().number(); });
}

std::string cause_of(const Calculation& calculation, Arguments arguments, bool answered) {
    if (calculation.name == "RATE") return cause_of_rate(arguments, answered);
    if (calculation.name == "IRR") return cause_of_flows(arguments, answered);
    if (calculation.name == "XIRR" && arguments.size() > 1) return cause_of_dated_flows(DatedLists{arguments});
    return {};
}

}  // namespace finance::calls
