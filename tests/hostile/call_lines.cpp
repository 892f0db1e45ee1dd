// Calls drawn to be slow and odd, the same for the same seed, with what the embedded host answers: for builds of the
// calculations that are not native (tests/wasm/draws.test.js). A line of each, as in tests/corpus/:
//
//     NAME  n:BITS ...  STATUS  FLAG  BITS
//
//     call_lines COUNT [SEED] [MODULE]
//
// A last period whose coupons have no months between them is walked for a tenth of a second: in eleven draws of a hundred
// calls of ODDLPRICE and ODDLYIELD, which took nine tenths of all time. One call in fifty may be such a one.
#include <algorithm>
#include <array>
#include <bit>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "host/embedded_host.hpp"
#include "hostile/call_draws.hpp"

namespace {

using namespace finance;
using namespace finance::hostile;

constexpr Reach reach{.periods = 1e4, .list = 60, .far = 0.0};  // a call takes microseconds

bool may_walk_long(const Call& call) {
    const std::size_t frequency = catalogue::find_parameter(*call.calculation, "frequency");
    if (catalogue::find_parameter(*call.calculation, "lastInterest") == call.given.size()) return false;
    return std::ranges::count(std::array{1.0, 2.0, 4.0, 6.0, 12.0}, call.given[frequency].front()) == 0;
}

void print_bits(double x) { std::printf("%016" PRIx64, std::bit_cast<std::uint64_t>(x)); }

void print(const Call& call, const host::Evaluation& evaluation) {
    std::printf("%.*s\t", static_cast<int>(call.calculation->name.size()), call.calculation->name.data());
    const char* before = "n:";
    for (const host::Argument& argument : call.arguments()) {
        std::printf("%s", before);
        argument.kind() == host::Argument::Kind::number ? print_bits(argument.number()) : (void)std::printf("null");
        before = " n:";
    }
    std::printf("\t%u\t", evaluation.status);
    evaluation.flagged < 0 ? (void)std::printf("-") : (void)std::printf("%d", evaluation.flagged);
    std::printf("\t");
    print_bits(evaluation.value);
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    const std::uint64_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000;
    const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const host::EmbeddedHost host{argc > 3 ? argv[3] : ZELKOVAN_MODULE};
    const auto evaluate = [&](const Call& call) { return host.evaluate(call.calculation->name, call.arguments()); };
    const auto calculations = catalogue::calculations();
    for (std::uint64_t i = 0; i < count; ++i) {
        Random random{seed * count + i};
        const Draw draw{random, reach, [&](const Call& asked) { return evaluate(asked).value; }};
        const catalogue::Calculation& calculation = calculations[i % calculations.size()];
        Call call = drawn(calculation, draw);
        while (may_walk_long(call) && random.below(50) != 0) call = drawn(calculation, draw);
        print(call, evaluate(call));
    }
}
