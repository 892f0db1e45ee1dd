// What the adapters share. Expected values: the catalogue's own rows read by eye, and hand derivations.
#include "adapters/common/engine_call.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace finance::adapters {
namespace {

const catalogue::Calculation& named(std::string_view name) { return *catalogue::find(name); }

TEST(Functions, NamesAndUsage) {
    EXPECT_EQ(function_name(named("PRICE")), "fin_price");
    EXPECT_EQ(usage(named("PRICE")), "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])");
    EXPECT_EQ(usage(named("SLN")), "fin_sln(cost, salvage, life)");
    EXPECT_EQ(usage(named("PMT")), "fin_pmt(rate, nper, pv [, fv [, type]])");
    EXPECT_EQ(usage(named("NPV")), "fin_npv(rate [, flows])");
}

TEST(Functions, CountsOfParameters) {
    EXPECT_EQ(fewest_parameters(named("PRICE")), 6U);
    EXPECT_EQ(all_parameters(named("PRICE")), 7U);
    EXPECT_EQ(fewest_parameters(named("SLN")), all_parameters(named("SLN")));
    std::size_t scalars = 0;
    for (const catalogue::Calculation& calculation : catalogue::calculations())
        scalars += is_scalar(calculation) ? 1U : 0U;
    EXPECT_EQ(scalars, 48U);
}

TEST(Functions, DocumentationSaysAllOfTheRow) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = documentation(calculation);
        EXPECT_EQ(text.find(usage(calculation)), 0U) << calculation.name;
        for (const std::string_view part : {calculation.answers, calculation.formula, calculation.failure}) {
            EXPECT_NE(text.find(part), text.npos) << calculation.name << ": " << part;
        }
        for (const catalogue::Parameter& parameter : calculation.parameters) {
            EXPECT_NE(text.find(parameter.meaning), text.npos) << calculation.name << ": " << parameter.name;
        }
    }
}

TEST(Arguments, ABasisIsACodeOrAWord) {
    using enum host::Argument::Kind;
    EXPECT_EQ(basis_argument("2").kind(), number);
    EXPECT_EQ(basis_argument("2").number(), 2.0);
    EXPECT_EQ(basis_argument("-0.5").number(), -0.5);
    EXPECT_EQ(basis_argument("30/360").kind(), text);
    EXPECT_EQ(basis_argument("ACTUAL").text(), "ACTUAL");
    EXPECT_EQ(basis_argument("").kind(), text);
    EXPECT_EQ(basis_argument(" 2").kind(), text);
    EXPECT_EQ(basis_argument("nan").kind(), text) << "a missing value is not handed over";
}

TEST(Arguments, ListsUnrollWhereTheyStand) {
    const std::array<double, 2> values{-100.0, 110.0};
    const std::array<double, 2> dates{20000.0, 20365.0};
    const std::array<host::Argument, 3> scalars{0.1, 0.0, 0.0};
    const std::array<std::span<const double>, 3> lists{{{}, values, dates}};
    const auto arguments = unrolled(named("XNPV"), scalars, lists);
    ASSERT_EQ(arguments.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(arguments[i].number(), (std::array{0.1, -100.0, 110.0, 20000.0, 20365.0}[i])) << i;
    }
}

TEST(Arguments, ListsMustPairUp) {
    const std::array<double, 3> three{-100.0, 60.0, 60.0};
    const std::array<double, 2> two{20000.0, 20365.0};
    const std::array<std::span<const double>, 3> uneven{{{}, three, two}};
    EXPECT_EQ(pairing_fault(named("XNPV"), uneven), "XNPV: 3 values, but 2 dates");
    const std::array<std::span<const double>, 3> even{{{}, two, two}};
    EXPECT_EQ(pairing_fault(named("XNPV"), even), "");
    const std::array<std::span<const double>, 2> alone{{{}, three}};
    EXPECT_EQ(pairing_fault(named("NPV"), alone), "");
}

// 100 at 10 % a year later is 110: worth nothing today in all.
TEST(Calls, AnswerMissingRefusal) {
    const std::array<host::Argument, 5> even{0.1, -100.0, 110.0, 20000.0, 20365.0};
    const Answer answered = call(named("XNPV"), even);
    EXPECT_EQ(answered.verdict, Verdict::answered);
    EXPECT_NEAR(answered.value, 0.0, 1e-12);

    const std::array<host::Argument, 4> no_rate{100.0, 110.0, 20000.0, 20365.0};
    EXPECT_EQ(call(named("XIRR"), no_rate).verdict, Verdict::missing);

    const std::array<host::Argument, 3> no_life{100.0, 10.0, 0.0};
    const Answer refused = call(named("SLN"), no_life);
    EXPECT_EQ(refused.verdict, Verdict::refused);
    EXPECT_NE(refused.refusal.find("SLN: argument 3 (life): "), refused.refusal.npos) << refused.refusal;

    const std::array<host::Argument, 2> one_sign{100.0, 10.0};
    EXPECT_EQ(call(named("IRR"), one_sign).refusal, "IRR: no answer: " + std::string{named("IRR").failure});

    const std::array<host::Argument, 1> too_few{100.0};
    EXPECT_EQ(call(named("SLN"), too_few).verdict, Verdict::refused);
}

}  // namespace
}  // namespace finance::adapters
