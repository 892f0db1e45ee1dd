#include <algorithm>
#include <bit>
#include <cmath>

#include "hostile/call_draws.hpp"
#include "hostile/roles.hpp"
#include "tests/closed/comparison.hpp"
#include "tests/support/call.hpp"

namespace finance::closed {

namespace {

// A loop's own error, which it makes by rounding at each step: of the sizes of what it adds, as a closed form's is not.
constexpr double bound = 1e-7;

// Of the answers and of the amounts they are made of; of a rate and 1.
double size_of(const hostile::Call& call, bool is_search, double a, double b) {
    double size = std::max({std::abs(a), std::abs(b), is_search ? 1.0 : 0.0});
    for (const std::size_t i : hostile::given_of(call, hostile::Role::amount)) {
        if (!is_search) size = std::max(size, std::abs(call.given[i].front()));
    }
    return size;
}

// Where rounding decides, loop and closed form have nothing in common: a balance that grows by e^5 and more has the
// roundings of its first steps grown with it, sums of a loop overflow, a search stops elsewhere or not at all.
bool comparable(const hostile::Call& call, bool is_search, const host::Evaluation& shipped,
                const host::Evaluation& early) {
    if (is_search) return shipped.answered() && early.answered() && std::abs(shipped.value) < 0.5;
    if (shipped.answered() && !std::isfinite(shipped.value)) return false;
    const bool is_loan = call.calculation->name.starts_with("CUM");
    return !is_loan || std::abs(call.given[0].front() * call.given[1].front()) < 5.0;
}

}  // namespace

Compared early_forms(const Setting& setting) {
    constexpr std::array names{"CUMIPMT", "CUMPRINC", "PRICE",     "DURATION",  "MDURATION", "ODDFPRICE",
                               "YIELD",   "DDB",      "ODDFYIELD", "AMORDEGRC", "VDB"};
    const auto& calculation = *catalogue::find(setting.random.pick(names));
    const auto answer = [&](const hostile::Call& call) {
        const host::Evaluation evaluation = setting.shipped.evaluate(call.calculation->name, call.arguments());
        return evaluation.answered() ? evaluation.value : std::nan("");
    };
    const hostile::Reach reach{.periods = setting.longest, .far = 0.1};
    const hostile::Call call = hostile::drawn(calculation, {setting.random, reach, answer});
    const host::Evaluation shipped = setting.shipped.evaluate(calculation.name, call.arguments());
    const host::Evaluation early = test::linked_host().evaluate(calculation.name, call.arguments());
    const bool is_search = calculation.name.ends_with("YIELD");
    if (!comparable(call, is_search, shipped, early)) return {};
    const double size = size_of(call, is_search, shipped.value, early.value);
    const bool same = same_bits_or_nan(early.value, shipped.value);
    const double error = same ? 0.0 : std::abs(early.value - shipped.value) / size;
    const bool agrees = shipped.status == early.status && shipped.flagged == early.flagged && error <= bound;
    Compared compared{agrees, error, {}};
    if (!agrees) {
        compared.text = call.text(true) + ": " + std::to_string(early.status) + ' ';
        compared.text += std::to_string(early.value) + ", shipped " + std::to_string(shipped.status) + ' ';
        compared.text += std::to_string(shipped.value) + ", " + std::to_string(error);
    }
    return compared;
}

}  // namespace finance::closed
