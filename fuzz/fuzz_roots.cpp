// The search for an internal rate of periodic flows.
//
//  (1) What is called a root is one: the present value there, worked out in 64 bits of mantissa, is nothing beside the
//      flows' own discounted sizes.
//  (2) The code is one of those that there are, and each code means what it says of the flows.
//  (3) The flows are only read; workspace is the host's, kept within and given back.
#include <cmath>
#include <vector>

#include "cashflow/irr.hpp"
#include "cashflow/root_search.hpp"
#include "fuzz/input.hpp"
#include "fuzz/linked_host.hpp"

namespace finance::fuzz {
namespace {

std::vector<double> some_flows(Bytes& in) {
    const std::uint8_t kind = in.byte();
    std::vector<double> flows;
    while (!in.empty() && flows.size() < 80) {
        const std::uint8_t how = in.byte();
        const double size = (how & 3) == 0 ? number(in, flows.empty() ? 0.0 : flows.back()) : in.take<std::int8_t>();
        const double scale = (kind & 1) != 0 ? std::ldexp(1.0, how & 0xFC) : 1.0;
        const std::size_t times = (how & 0xC) == 0xC && (kind & 2) != 0 ? how >> 4 : 1;
        flows.insert(flows.end(), times, size * scale);
    }
    return flows;
}

struct Shape {
    std::size_t first = 0;  // flow that is not 0
    std::size_t size = 0;   // from it to the last one that is not
    int changes = 0;        // of sign
    bool tame = true;       // all finite, and far from both ends of the range
};

// Very large flows are taken in another unit, in which the smallest of all may be nothing.
int change_of_unit(const std::vector<double>& flows) {
    constexpr int highest = 960;
    double largest = 0.0;
    for (const double flow : flows) largest = std::max(largest, std::abs(flow == flow ? flow : 0.0));
    return std::isfinite(largest) && largest >= std::ldexp(1.0, highest) ? highest - 1 - std::ilogb(largest) : 0;
}

// NaN counts as 0.
Shape shape_of(const std::vector<double>& flows) {
    Shape shape;
    double sign = 0.0;
    const int unit = change_of_unit(flows);
    for (std::size_t k = 0; k < flows.size(); ++k) {
        if (!(std::abs(std::ldexp(flows[k], unit)) > 0.0)) continue;
        if (sign == 0.0) shape.first = k;
        if (sign * flows[k] < 0.0) ++shape.changes;
        sign = std::copysign(1.0, flows[k]);
        shape.size = k + 1 - shape.first;
        shape.tame = shape.tame && std::abs(flows[k]) < 1e250 && std::abs(flows[k]) > 1e-250;
    }
    return shape;
}

// |sum of c_k z^k| over the sum of |c_k z^k|; in powers of 1/z where z is above 1.
long double residual(const double* c, std::size_t n, double z) {
    const bool reversed = std::abs(z) > 1.0;
    const long double factor = reversed ? 1.0L / z : static_cast<long double>(z);
    long double sum = 0.0L;
    long double size = 0.0L;
    long double power = 1.0L;
    for (std::size_t j = 0; j < n; ++j) {
        const long double term = c[reversed ? n - 1 - j : j] * power;
        sum += term;
        size += std::abs(term);
        power *= factor;
    }
    return std::abs(sum) / size;
}

// Near enough to a root; what is not is shown.
bool solves(double z, const double* c, std::size_t n, long double tolerance) {
    const long double left = residual(c, n, z);
    if (left < tolerance) return true;
    std::fprintf(stderr, "z = %.17g leaves %Lg of\n", z, left);
    for (std::size_t k = 0; k < n; ++k) std::fprintf(stderr, "%.17g%c", c[k], k + 1 < n ? ',' : '\n');
    return false;
}

// The searches themselves, which tell the discount factor.
void check_search(const std::vector<double>& flows, const Shape& shape) {
    std::vector<double> clean(flows.begin() + static_cast<std::ptrdiff_t>(shape.first),
                              flows.begin() + static_cast<std::ptrdiff_t>(shape.first + shape.size));
    for (double& flow : clean) flow = flow != flow ? 0.0 : flow;
    const Flows trimmed{clean.data(), static_cast<std::int32_t>(clean.size())};
    double z = 0.0;
    const IrrStatus status =
        shape.changes == 1 ? root_of_one_change(trimmed, &z) : root_of_several_changes(trimmed, &z);
    must(status == IRR_SOLVED || status == (shape.changes == 1 ? IRR_NOT_SETTLED : IRR_NO_ROOT), "codes of a search");
    if (status != IRR_SOLVED || !std::isnormal(z)) return;  // fewer digits than a root needs
    must(solves(z, clean.data(), clean.size(), 1e-9L), "a root is a root");
    must(shape.changes > 1 || z > 0.0, "flows that change sign once have one root above 0");
}

double flow_of(std::int32_t i, void* flows) { return static_cast<const double*>(flows)[i]; }

IrrRequest solved(const std::vector<double>& flows, double periods) {
    IrrRequest request{};
    request.x0 = periods;
    request.n = static_cast<std::int32_t>(flows.size());
    request.callback = flow_of;
    std::vector<double> only_read{flows};
    request.context = only_read.data();
    const Holdings held = holdings();
    request.status = zirr_s(&request);
    must(holdings() == held, "workspace is given back");
    const bool kept = flows.empty() || std::memcmp(only_read.data(), flows.data(), flows.size() * sizeof(double)) == 0;
    must(kept, "flows are only read");
    return request;
}

void check_code(const IrrRequest& request, const Shape& shape) {
    switch (request.status) {
        case IRR_SOLVED:
            must(shape.changes > 0, "without a change of sign there is no rate");
            break;
        case IRR_NO_ROOT:
            must(shape.changes != 1 && shape.size > 0, "one change of sign has a root");
            break;
        case IRR_NOT_SETTLED:
            must(shape.changes == 1, "only the iteration of one change does not settle");
            break;
        case IRR_NO_FLOWS:
            must(shape.size == 0, "there are flows");
            break;
        case IRR_NO_RATE:
            must(shape.changes > 0, "no rate of no root");
            break;
        case IRR_BAD_REQUEST:
            must(request.n < 2 || request.x0 < 0.0, "requests are in order");
            break;
        default:
            must(false, "a known code");
    }
    must(request.status == IRR_BAD_REQUEST || request.severalRoots == (shape.changes > 1), "several roots are told");
}

// The discount factor is e^-rate where the rate is continuous, 1 / (1 + rate) where it is by period.
void check_rates(const std::vector<double>& flows, const Shape& shape) {
    const IrrRequest continuous = solved(flows, 0.0);
    const IrrRequest by_period = solved(flows, 1.0);
    check_code(continuous, shape);
    check_code(by_period, shape);
    if (continuous.status == IRR_SOLVED && std::abs(continuous.rate) < 700.0 && shape.tame) {
        const long double tolerance = 1e-9L + 1e-13L * static_cast<long double>(flows.size());
        const double z = std::exp(0.0 - continuous.rate);
        must(solves(z, flows.data() + shape.first, shape.size, tolerance), "a rate solves its flows");
    }
    if (continuous.status == IRR_SOLVED && by_period.status == IRR_SOLVED) {
        const double expected = std::expm1(continuous.rate);
        const bool near = std::abs(by_period.rate - expected) <= 1e-11 * (1.0 + std::abs(expected));
        must(near || !std::isfinite(expected), "both rates come from one root");
    }
}

void run(Bytes in) {
    linked_host();
    const double periods = in.flag() ? number(in, 1.0) : 12.0 / (1 + in.below(24));
    const std::vector<double> flows = some_flows(in);
    const Shape shape = shape_of(flows);
    const bool without_missing = std::none_of(flows.begin(), flows.end(), [](double x) { return x != x; });
    check_code(solved(flows, periods), shape);
    if (without_missing) check_rates(flows, shape);
    if (shape.changes > 0 && shape.tame) check_search(flows, shape);
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
