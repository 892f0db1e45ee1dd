// The search for an internal rate of periodic flows.
//
//  (1) The root of one change of sign is one: the present value there, worked out in 64 bits of mantissa, is nothing
//      beside the flows' own discounted sizes.
//  (2) With several changes the answer is, bit for bit, where a plain search of three stages stops, root or not.
//  (3) The code is one of those that there are, and each code means what it says of the flows.
//  (4) The flows are only read; workspace is the host's, kept within and given back.
#include <cmath>
#include <optional>
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

// NaN counts as 0.
Shape shape_of(const std::vector<double>& flows) {
    Shape shape;
    double sign = 0.0;
    for (std::size_t k = 0; k < flows.size(); ++k) {
        if (!(std::abs(flows[k]) > 0.0)) continue;
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

// The flows from the first to the last that is not 0.
std::vector<double> trimmed(const std::vector<double>& flows, const Shape& shape) {
    std::vector<double> clean(flows.begin() + static_cast<std::ptrdiff_t>(shape.first),
                              flows.begin() + static_cast<std::ptrdiff_t>(shape.first + shape.size));
    for (double& flow : clean) flow = flow != flow ? 0.0 : flow;
    return clean;
}

// ---- Several changes: the plain search

double largest_until_sign_changes(const std::vector<double>& c) {
    double largest = 0.0;
    for (const double flow : c) {
        if (flow != 0.0 && std::signbit(flow) != std::signbit(c.front())) break;
        largest = std::max(largest, std::abs(flow));
    }
    return largest;
}

class PlainSearch {
public:
    explicit PlainSearch(const std::vector<double>& c) {
        p_.degree = static_cast<std::int32_t>(c.size()) - 1;
        p_.c = c.data();
        p_.leadingScale = largest_until_sign_changes(c);
        p_.trailingScale = largest_until_sign_changes({c.rbegin(), c.rend()});
        for (const double flow : c) largest_ = std::max(largest_, std::abs(flow));
    }
    std::optional<double> root() {
        std::optional<double> z = newton(0.999999999999, false);
        if (!z) z = newton(1.000000000001, true);
        return z ? z : laguerre();
    }

private:
    std::optional<double> newton(double z, bool above) {
        for (int steps = 1; steps <= 40; ++steps) {
            EvalPol(z, &p_);
            const double old = z;
            const double step = p_.p / p_.p1;
            z = z - step;
            if (std::abs(p_.p) < 1e-10 * largest_ || std::abs(step) < 1e-10) {
                if (p_.underflow) return {};
                return z;
            }
            if (above && z <= 1.0) z = old + 1.0;
            if (!above && (z <= 0.0 || z > 1.0)) z = old / 2.0;
        }
        return {};
    }
    std::optional<double> laguerre() {
        constexpr double places[] = {0.99, 0.3629244535057, 0.7451947130008, 0.8310586730163, 0.2762771729735};
        const double d = p_.degree;
        const double* place = places;
        double z = *place;
        for (int steps = 1; steps <= 40; ++steps) {
            EvalPol(z, &p_);
            if (std::abs(p_.p) < 1e-12 * largest_) return z;
            const double radicand = (p_.p1 * p_.p1 * (1.0 - 1.0 / d) - p_.p * p_.p2) * (1.0 - 1.0 / d);
            if (radicand < 0.0) {
                if (++place == std::end(places)) return {};
                z = *place;
                continue;
            }
            const double first = (p_.p < 0.0 ? -1.0 : 1.0) * p_.p1 / d;
            const double other = first < 0.0 ? -std::sqrt(radicand) : std::sqrt(radicand);  // both of one sign
            const double step = std::abs(p_.p) / (first + other);
            z = z - step;
            if (std::abs(step) <= 1e-12 * std::abs(z)) return z;
        }
        return {};
    }

    CashFlowPolynomial p_{};
    double largest_ = 0.0;
};

void check_several(const std::vector<double>& clean) {
    double z = 0.0;
    const IrrStatus status = root_of_several_changes({clean.data(), static_cast<std::int32_t>(clean.size())}, &z);
    const std::optional<double> plain = PlainSearch{clean}.root();
    must(status == (plain ? IRR_SOLVED : IRR_NO_ROOT), "the search ends as the plain one does");
    const bool same = !plain || std::bit_cast<std::uint64_t>(z) == std::bit_cast<std::uint64_t>(*plain) ||
                      (z != z && *plain != *plain);
    must(same, "the search stops where the plain one does");
}

// ---- One change

void check_one(const std::vector<double>& clean) {
    double z = 0.0;
    const IrrStatus status = root_of_one_change({clean.data(), static_cast<std::int32_t>(clean.size())}, &z);
    must(status == IRR_SOLVED || status == IRR_NOT_SETTLED, "codes of a search");
    if (status != IRR_SOLVED || !std::isnormal(z)) return;  // fewer digits than a root needs
    must(solves(z, clean.data(), clean.size(), 1e-9L), "a root is a root");
    must(z > 0.0, "flows that change sign once have one root above 0");
}

// ---- Requests

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
    if (shape.changes == 1 && continuous.status == IRR_SOLVED && std::abs(continuous.rate) < 700.0 && shape.tame) {
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
    if (shape.changes == 1 && shape.tame) check_one(trimmed(flows, shape));
    if (shape.changes > 1) check_several(trimmed(flows, shape));
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
