// How often our exp, log and pow differ from the C library's, and from themselves without the instruction for a fused
// multiply-add: elementary_survey [DRAWS [SEED]].
// The C library for which none did: docs/solvers.md. Exit status 1 where one does.
#include <cstdio>
#include <cstdlib>

#include "elementary/functions.hpp"
#include "tests/elementary/doubles.hpp"

namespace {

using finance::test::DoubleDraws;
using finance::test::same_answer;
namespace elementary = finance::elementary;

class Differences {
public:
    explicit Differences(const char* name) : name_{name} {}

    void count(double ours, double librarys, double without_instruction) {
        ++draws_;
        from_library_ += same_answer(ours, librarys) ? 0 : 1;
        without_instruction_ += same_answer(ours, without_instruction) ? 0 : 1;
    }
    [[nodiscard]] bool report() const {
        std::printf("%s: of %ld draws %ld differ from the C library, %ld without the instruction\n", name_, draws_,
                    from_library_, without_instruction_);
        return from_library_ + without_instruction_ == 0;
    }

private:
    const char* name_;
    long draws_ = 0;
    long from_library_ = 0;
    long without_instruction_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    namespace without = elementary::without_instruction;
    const long draws = argc > 1 ? std::atol(argv[1]) : 1'000'000;
    DoubleDraws of{argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1};
    Differences exps{"exp"};
    Differences logs{"log"};
    Differences pows{"pow"};
    for (long i = 0; i < draws; ++i) {
        const double x = of.exponent();
        const double z = of.number();
        const auto [base, power] = of.power();
        exps.count(elementary::exp(x), std::exp(x), without::exp(x));
        logs.count(elementary::log(z), std::log(z), without::log(z));
        pows.count(elementary::pow(base, power), std::pow(base, power), without::pow(base, power));
    }
    const bool same[] = {exps.report(), logs.report(), pows.report()};
    return same[0] && same[1] && same[2] ? EXIT_SUCCESS : EXIT_FAILURE;
}
