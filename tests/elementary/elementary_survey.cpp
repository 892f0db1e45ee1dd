// How often our exp, log and pow differ from the C library's: elementary_survey [DRAWS [SEED]].
// The C library for which none did: docs/solvers.md. Exit status 1 where one does.
#include <cstdio>
#include <cstdlib>

#include "elementary/functions.hpp"
#include "tests/elementary/doubles.hpp"

namespace {

using finance::test::DoubleDraws;
using finance::test::same_answer;
namespace elementary = finance::elementary;

int report(const char* name, long draws, long differences) {
    std::printf("%s: %ld of %ld draws differ\n", name, differences, draws);
    return differences == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const long draws = argc > 1 ? std::atol(argv[1]) : 1'000'000;
    DoubleDraws of{argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1};
    long exps = 0;
    long logs = 0;
    long pows = 0;
    for (long i = 0; i < draws; ++i) {
        const double x = of.exponent();
        const double z = of.number();
        const auto [base, power] = of.power();
        exps += same_answer(elementary::exp(x), std::exp(x)) ? 0 : 1;
        logs += same_answer(elementary::log(z), std::log(z)) ? 0 : 1;
        pows += same_answer(elementary::pow(base, power), std::pow(base, power)) ? 0 : 1;
    }
    return report("exp", draws, exps) + report("log", draws, logs) + report("pow", draws, pows) == 0 ? 0 : 1;
}
