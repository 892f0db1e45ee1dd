// Identities of the level-payment calculations, on loans of any size.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "tests/support/call.hpp"

namespace finance::test {
namespace {

struct Loan {
    double rate;
    int nper;
    double amount;
    double future;
    int type;
};

Loan any_loan() {
    return {.rate = *rc::gen::inRange(1, 1500) / 10000.0,
            .nper = *rc::gen::inRange(1, 60),
            .amount = *rc::gen::inRange(1, 1000000) / 7.0,
            .future = *rc::gen::inRange(-1000, 1000) / 3.0,
            .type = *rc::gen::inRange(0, 2)};
}

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

bool near(double a, double b, double scale) { return std::abs(a - b) <= 1e-9 * scale; }

RC_GTEST_PROP(AnnuityIdentities, InterestAndPrincipalMakeThePayment, ()) {
    const Loan l = any_loan();
    const int per = *rc::gen::inRange(1, l.nper + 1);
    const double pmt = value_of("PMT", {l.rate, l.nper, l.amount, l.future, l.type});
    const double interest = value_of("IPMT", {l.rate, per, l.nper, l.amount, l.future, l.type});
    const double principal = value_of("PPMT", {l.rate, per, l.nper, l.amount, l.future, l.type});
    RC_ASSERT(near(interest + principal, pmt, std::abs(l.amount) + std::abs(l.future)));
}

RC_GTEST_PROP(AnnuityIdentities, SumsOfPartsAreTheCumulativeCalculations, ()) {
    const Loan l = any_loan();
    const int start = *rc::gen::inRange(1, l.nper + 1);
    const int end = *rc::gen::inRange(start, l.nper + 1);
    double interest = 0.0;
    double principal = 0.0;
    for (int per = start; per <= end; ++per) {
        interest += value_of("IPMT", {l.rate, per, l.nper, l.amount, 0, l.type});
        principal += value_of("PPMT", {l.rate, per, l.nper, l.amount, 0, l.type});
    }
    const double paid = std::abs(value_of("PMT", {l.rate, l.nper, l.amount, 0, l.type})) * l.nper;
    RC_ASSERT(near(interest, value_of("CUMIPMT", {l.rate, l.nper, l.amount, start, end, l.type}), paid));
    RC_ASSERT(near(principal, value_of("CUMPRINC", {l.rate, l.nper, l.amount, start, end, l.type}), paid));
}

RC_GTEST_PROP(AnnuityIdentities, WorthOfThePaymentsIsTheLoan, ()) {
    const Loan l = any_loan();
    const double pmt = value_of("PMT", {l.rate, l.nper, l.amount, l.future, l.type});
    const double scale = std::abs(l.amount) + std::abs(l.future);
    RC_ASSERT(near(value_of("PV", {l.rate, l.nper, pmt, l.future, l.type}), l.amount, scale));
    const double grown = std::exp(l.nper * std::log1p(l.rate));
    RC_ASSERT(near(value_of("FV", {l.rate, l.nper, pmt, l.amount, l.type}), l.future, scale * grown));
}

}  // namespace
}  // namespace finance::test
