// IRR: the rate at which the present value of periodic flows is zero.
//
//  (1) A missing flow, wherever it stands, makes the result missing; no argument is named.
//  (2) 2 to 32767 flows. Zeros at either end do not count.
//  (3) Flows of one sign have no rate. With one change of sign there is exactly one; with more the rate is that of the
//      place where the root search stops, whether it solves the flows or not.
//  (4) A rate that is no number, or the largest double, is none.
//  (5) The flows are worked on in a pool of the host's that is gone when the call ends, on whatever path.
#include "cashflow/irr.hpp"

#include <algorithm>
#include <bit>
#include <cmath>

#include "abi/arguments.hpp"
#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "cashflow/root_search.hpp"
#include "cashflow/work_pool.hpp"
#include "elementary/functions.hpp"

namespace finance {

// ---- Handler

double cashflow(std::int32_t i, void* context) {
    return numeric_value(slots_of(static_cast<const HostCallContext*>(context))[i + 1]);
}

namespace {

bool any_flow_missing(const HostCallContext* context, std::int64_t count) {
    count_steps(count);
    for (std::int64_t i = 1; i < count; ++i) {
        if (is_missing(numeric_value(slots_of(context)[i]))) return true;
    }
    return false;
}

}  // namespace

FINANCE_HANDLER(IRR) {
    Arguments in{context, result, count};
    if (any_flow_missing(context, count)) {
        in.fail();
        return STATUS_MISSING_RESULT;
    }
    constexpr double per_period = 1.0;
    std::int32_t status = IRR_SOLVED;
    const double rate = zirr(static_cast<std::int32_t>(count - 1), cashflow, context, &status, per_period);
    if (status != IRR_SOLVED || is_missing(rate) || rate == largest_double) return in.fail();
    return in.answer(rate);
}

// ---- Root finder

namespace {

constexpr std::int32_t fewest_flows = 2;
constexpr std::int32_t most_flows = 32767;

bool acceptable(const IrrRequest& request) {
    return !(request.x0 < 0.0) && request.n >= fewest_flows && request.n <= most_flows && request.callback != nullptr;
}

// A missing flow is 0.
template <typename FlowOfPeriod>
void read_all(double* c, std::int32_t n, FlowOfPeriod flow_of_period) {
    count_steps(n);
    for (std::int32_t k = 0; k < n; ++k) {
        const double flow = flow_of_period(k);
        c[k] = is_missing(flow) ? 0.0 : flow;
    }
}

// The flows, read into the workspace, without the zeros at both ends.
Flows read_flows(const IrrRequest& request, double* c) {
    void* context = request.context;
    if (request.callback == cashflow) {  // known here, so that its body takes the place of the call
        read_all(c, request.n, [=](std::int32_t k) { return cashflow(k, context); });
    } else {
        read_all(c, request.n, [=, &request](std::int32_t k) { return request.callback(k, context); });
    }
    std::int32_t first = 0;
    std::int32_t last = request.n - 1;
    count_steps(request.n);
    while (first <= last && c[first] == 0.0) ++first;
    while (last >= first && c[last] == 0.0) --last;
    return {c + first, last - first + 1};
}

std::uint64_t sign_bit(double x) { return std::bit_cast<std::uint64_t>(x) >> 63; }

// Exponent and first bits of the fraction: 0 for a zero, and for the smallest doubles.
std::uint32_t size_of(double x) {
    return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(x) >> 32 & 0x7FFFFFFF);
}

// Neighbours of different sign, by bits alone and all at once. Only where a flow may be zero (its size is 0) they are
// looked at one by one, and zeros passed over.
std::int32_t sign_changes(const Flows& flows) {
    std::uint64_t changed = 0;
    std::uint32_t smallest = size_of(flows.c[0]);
    for (std::int32_t k = 1; k < flows.n; ++k) {
        changed += sign_bit(flows.c[k]) ^ sign_bit(flows.c[k - 1]);
        smallest = std::min(smallest, size_of(flows.c[k]));
        count_step();
    }
    if (smallest != 0) return static_cast<std::int32_t>(changed);
    std::int32_t changes = 0;
    bool positive = flows.c[0] > 0.0;
    for (std::int32_t k = 1; k < flows.n; ++k) {
        count_step();
        if (flows.c[k] == 0.0 || (flows.c[k] > 0.0) == positive) continue;
        positive = !positive;
        ++changes;
    }
    return changes;
}

// The rate of a discount factor.
IrrStatus rate_of_root(IrrRequest* request, double z) {
    if (request->x0 == 0.0) {
        if (!(z > 0.0)) return IRR_NO_RATE;
        request->rate = 0.0 - elementary::log(z);
        return IRR_SOLVED;
    }
    std::int32_t power_status = POWER_VALID;
    const double power = zpower(&power_status, z, request->x0);
    if (power_status != POWER_VALID || power == 0.0) return IRR_NO_RATE;
    request->rate = 1.0 / power - 1.0;
    return IRR_SOLVED;
}

IrrStatus solve(IrrRequest* request, double* workspace) {
    const Flows flows = read_flows(*request, workspace);
    if (flows.n == 0) return IRR_NO_FLOWS;
    const std::int32_t changes = sign_changes(flows);
    if (changes == 0) return IRR_NO_ROOT;
    request->severalRoots = changes > 1;
    double z = 0.0;
    const IrrStatus found = changes == 1 ? root_of_one_change(flows, &z) : root_of_several_changes(flows, &z);
    return found == IRR_SOLVED ? rate_of_root(request, z) : found;
}

}  // namespace

std::int32_t zirr_s(IrrRequest* request) {
    if (!acceptable(*request)) return IRR_BAD_REQUEST;
    const WorkPool pool{static_cast<std::int64_t>(request->n) * static_cast<std::int64_t>(sizeof(double))};
    auto* workspace = static_cast<double*>(pool.block());
    return workspace != nullptr ? solve(request, workspace) : IRR_NO_ROOT;
}

double zirr(std::int32_t n, FlowCallback callback, void* context, std::int32_t* status, double x0) {
    IrrRequest request{};
    request.x0 = x0;
    request.n = n;
    request.callback = callback;
    request.context = context;
    request.status = zirr_s(&request);
    *status = request.status;
    return request.status == IRR_SOLVED ? request.rate : MISSING_VALUE;
}

}  // namespace finance
