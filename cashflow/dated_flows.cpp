// XNPV and XIRR: present value and internal rate of flows on arbitrary dates.
//
//  (1) Amounts come first, then as many dates; XNPV has its rate before them, XIRR may have a guess behind them. The
//      number of arguments decides: XNPV with an odd one is refused before anything is read.
//  (2) Dates need no order and may repeat. Time is counted from the first date given.
//  (3) The rate of XNPV is not bounded. Without flows XNPV is 0, and XIRR has no rate.
//  (4) A rate that XIRR does not find is a missing result, not an error, and a note for the host: 321 no convergence,
//      322 no usable flows. In four modes of the host's context five notes are written, a sixth says that they end
//      (323), and no more.
//  (5) The working arrays are the host's. Without memory the call ends with a status of its own, the result untouched.
#include <cmath>

#include "abi/host_services.hpp"
#include "abi/steps.hpp"
#include "calendar/date_arguments.hpp"
#include "cashflow/discounting.hpp"
#include "cashflow/host_array.hpp"
#include "cashflow/kernels.hpp"
#include "cashflow/list_rows.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"

namespace finance {

// ---- Handlers

namespace {

constexpr Status status_odd_count = 1;
constexpr Status status_without_memory = 2147604497;

// m amounts from `first` on, then m dates.
bool read_flows(Arguments& in, int first, DatedCashFlows& flows) {
    count_steps(std::int64_t{2} * flows.count);
    for (int i = 0; i < flows.count; ++i) {
        if (!in.number(first + i, flows.values[i])) return false;
    }
    for (int i = 0; i < flows.count; ++i) {
        if (!read_julian_day(in, first + flows.count + i, flows.dates[i])) return false;
    }
    return true;
}

// The working arrays of one call.
struct Workspace {
    HostArray<double> values;
    HostArray<std::int64_t> dates;

    explicit Workspace(DatedCashFlows& flows) : values{flows.count}, dates{flows.count} {
        flows.values = values.data();
        flows.dates = dates.data();
    }
    [[nodiscard]] bool complete() const { return values.data() != nullptr && dates.data() != nullptr; }
};

void write_note(HostCallContext* context, XirrOutcome outcome) {
    const std::int32_t number =
        outcome == XIRR_NO_USABLE_FLOWS ? ZELKOVAN_MESSAGE_NO_USABLE_FLOWS : ZELKOVAN_MESSAGE_NO_CONVERGENCE;
    if (!ZELKOVAN_COUNTS_NOTES(context->mode)) {
        xpmlog(ZELKOVAN_MESSAGE_SET, number);
        return;
    }
    context->notes_written = wrapping_add(context->notes_written, 1);
    if (context->notes_written <= ZELKOVAN_MOST_NOTES) {
        xpmlog(ZELKOVAN_MESSAGE_SET, number);
    } else if (context->notes_written == ZELKOVAN_MOST_NOTES + 1) {
        xpmlog(ZELKOVAN_MESSAGE_SET, ZELKOVAN_MESSAGE_NO_MORE_NOTES);
    }
}

}  // namespace

// rate, amounts, dates
FINANCE_HANDLER(XNPV) {
    if (count % 2 != 0) return status_odd_count;
    Arguments in{context, result, count};
    DatedCashFlows flows{};
    flows.count = static_cast<std::int32_t>((count - 2) / 2);
    if (!in.number(1, flows.rate)) return in.status();
    if (flows.count == 0) return in.answer(0.0);
    const Workspace workspace{flows};
    if (!workspace.complete()) return status_without_memory;
    if (!read_flows(in, 2, flows)) return in.status();
    return in.answer_if(zComputeXNPV(&flows), flows.result);
}

// amounts, dates, guess
FINANCE_HANDLER(XIRR) {
    Arguments in{context, result, count};
    DatedCashFlows flows{};
    flows.count = static_cast<std::int32_t>((count - 1) / 2);
    flows.guessGiven = count % 2 == 0 ? 1 : 0;
    const auto last = static_cast<int>(count) - 1;
    const auto finish = [&](int outcome) {
        if (outcome == XIRR_SOLVED) return in.answer(flows.rate);
        write_note(context, static_cast<XirrOutcome>(outcome));
        return in.answer(MISSING_VALUE);
    };
    if (flows.count == 0) return in.number(last, flows.guess) ? finish(XIRR_NO_USABLE_FLOWS) : in.status();
    const Workspace workspace{flows};
    if (!workspace.complete()) return status_without_memory;
    if (!read_flows(in, 1, flows) || (flows.guessGiven != 0 && !in.number(last, flows.guess))) return in.status();
    return finish(zComputeXIRR(&flows));
}

// ---- Kernels

namespace {

DatedFlows<std::int64_t> list_of(const DatedCashFlows& flows) { return {flows.values, flows.dates, flows.count}; }

// A rate from the earliest and the latest flow that count for anything, as if they were the only ones.
XirrOutcome two_point_start(const DatedCashFlows& flows, double* start) {
    std::int64_t earliest = largest_whole_number;
    std::int64_t latest = -largest_whole_number;
    double vE = 0.0;
    double vL = 0.0;
    bool any = false;
    for (int i = 0; i < flows.count; ++i) {
        count_step();
        if (!(std::abs(flows.values[i]) >= smallest_that_counts)) continue;
        any = true;
        if (flows.dates[i] < earliest) {
            earliest = flows.dates[i];
            vE = flows.values[i];
        }
        if (flows.dates[i] > latest) {
            latest = flows.dates[i];
            vL = flows.values[i];
        }
    }
    if (!any || earliest == latest) return XIRR_NO_USABLE_FLOWS;
    const double s = 365.0 * elementary::log(std::abs(vL / vE)) / static_cast<double>(wrapping_add(latest, -earliest));
    if (s > largest_exponent) return XIRR_NO_CONVERGENCE;
    *start = zexpm1(s);
    return XIRR_SOLVED;
}

}  // namespace

// v_0 + sum of v_i q^t_i          q = 1 / (1 + rate), t_i years of 365 days from the first date
int zComputeXNPV(DatedCashFlows* flows) {
    count_steps(flows->count);
    flows->result = best_discounting().value(list_of(*flows), 1.0 / (1.0 + flows->rate));
    return 0;
}

std::uint32_t ComputeF_XIRR(NewtonProblem* problem) {
    const auto& flows = record_of<const DatedCashFlows>(problem);
    count_steps(flows.count);
    best_discounting().sides(list_of(flows), *problem);
    return 0;
}

namespace {

// From the guess, and where that finds none from near the lowest rate.
bool find_from_guess(NewtonProblem::Objective objective, void* record, double guess, double* rate) {
    constexpr double second_start = -0.9;
    return find_rate(objective, record, guess, rate) || find_rate(objective, record, second_start, rate);
}

}  // namespace

int zComputeXIRR(DatedCashFlows* flows) {
    const double guess = flows->guessGiven != 0 ? flows->guess : 0.0;
    if (find_from_guess(ComputeF_XIRR, flows, guess, &flows->rate)) return XIRR_SOLVED;
    double start = 0.0;
    if (const XirrOutcome outcome = two_point_start(*flows, &start); outcome != XIRR_SOLVED) return outcome;
    return find_rate(ComputeF_XIRR, flows, start, &flows->rate) ? XIRR_SOLVED : XIRR_NO_CONVERGENCE;
}

// ---- Rows of lists

namespace {

// A row's amounts and dates: as many of the one as of the other, none missing, dates whole and not far out.
bool read_list(const ListRow& row, int first, const Discounting& discounting, DatedFlows<double>& flows) {
    const ListValues& values = row.columns[first];
    const ListValues& dates = row.columns[first + 1];
    flows = {values.first, dates.first, values.count};
    return values.count >= 1 && values.count == dates.count && discounting.is_usual(flows);
}

struct ListSearch {
    const Discounting& discounting;
    DatedFlows<double> flows{};

    static std::uint32_t objective(NewtonProblem* problem) {
        const auto& search = record_of<const ListSearch>(problem);
        search.discounting.sides_of_list(search.flows, *problem);
        return 0;
    }
};

}  // namespace

// rate, amounts, dates
bool list_XNPV(const ListRow& row, const Discounting& discounting, double& result) {
    DatedFlows<double> flows{};
    if (row.count != 3 || row.columns[0].count != 1 || !read_list(row, 1, discounting, flows)) return false;
    const double rate = row.columns[0].first[0];
    result = discounting.value_of_list(flows, 1.0 / (1.0 + rate));
    return !is_missing(rate) && !is_missing(result);
}

// amounts, dates, guess
bool list_XIRR(const ListRow& row, const Discounting& discounting, double& result) {
    ListSearch search{discounting};
    if (row.count < 2 || row.count > 3 || !read_list(row, 0, discounting, search.flows)) return false;
    double guess = 0.0;
    if (row.count == 3) {
        if (row.columns[2].count != 1) return false;
        guess = row.columns[2].first[0];
    }
    return !is_missing(guess) && find_from_guess(ListSearch::objective, &search, guess, &result);
}

}  // namespace finance
