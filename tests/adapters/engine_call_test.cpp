// What the adapters share. Expected values: the catalogue's own rows read by eye, and hand derivations.
#include "adapters/common/engine_call.hpp"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <optional>
#include <string>

namespace finance::adapters {
namespace {

const catalogue::Calculation& named(std::string_view name) { return *catalogue::find(name); }

TEST(Functions, NamesAndUsage) {
    EXPECT_EQ(function_name(named("PRICE")), "fin_price");
    EXPECT_EQ(way_name(named("PRICE"), Way::attempt), "fin_try_price");
    EXPECT_EQ(way_name(named("PRICE"), Way::reason), "fin_why_price");
    EXPECT_EQ(usage(named("PRICE")), "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])");
    EXPECT_EQ(usage(named("SLN")), "fin_sln(cost, salvage, life)");
    EXPECT_EQ(usage(named("PMT")), "fin_pmt(rate, nper, pv [, fv [, type]])");
    EXPECT_EQ(usage(named("NPV")), "fin_npv(rate [, flows])");
}

TEST(Functions, CountsOfParameters) {
    EXPECT_EQ(fewest_parameters(named("PRICE")), 6U);
    EXPECT_EQ(fewest_parameters(named("SLN")), 3U);
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        EXPECT_EQ(is_scalar(calculation), maximum_count(calculation) != 0) << calculation.name;
    }
    EXPECT_TRUE(is_scalar(named("PRICE")));
    EXPECT_FALSE(is_scalar(named("NPV")));
}

TEST(Functions, DocumentationSaysAllOfTheRow) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = documentation(calculation);
        EXPECT_EQ(text.find(usage(calculation)), 0U) << calculation.name;
        for (const std::string_view part : {calculation.answers, calculation.formula, calculation.failure}) {
            EXPECT_NE(text.find(part), text.npos) << calculation.name << ": " << part;
        }
        for (const catalogue::Parameter& parameter : calculation.parameters) {
            const std::string_view meaning = parameter.kind == catalogue::Kind::basis
                                                 ? std::string_view{"how days and years are counted; "}
                                                 : parameter.meaning;
            EXPECT_NE(text.find(meaning), text.npos) << calculation.name << ": " << parameter.name;
        }
    }
}

// The module takes a missing basis for ACTUAL and a missing payment for 0. An engine makes no call with either.
TEST(Functions, DocumentationSaysWhatEnginesDoWithMissingValues) {
    const std::string price = documentation(named("PRICE"));
    EXPECT_NE(price.find("  basis: how days and years are counted; default 30/360\n"), price.npos) << price;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string text = documentation(calculation);
        EXPECT_NE(text.find("\nWhere an argument is missing, the result is.\n"), text.npos) << calculation.name;
        for (const std::string_view said : {"given as a missing value", "is ACTUAL", "; . is 0"}) {
            EXPECT_EQ(text.find(said), text.npos) << calculation.name << ": " << said;
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

// 100 at 10 % a year later is 110: worth nothing today in all.
TEST(Calls, AnswerOrMissing) {
    const std::array<host::Argument, 5> even{0.1, -100.0, 110.0, 20000.0, 20365.0};
    const auto answered = call(named("XNPV"), even);
    ASSERT_TRUE(answered);
    EXPECT_NEAR(*answered, 0.0, 1e-12);

    const std::array<host::Argument, 4> no_rate{100.0, 110.0, 20000.0, 20365.0};
    EXPECT_EQ(call(named("XIRR"), no_rate), std::nullopt);
}

std::string refusal(std::string_view name, std::initializer_list<host::Argument> arguments) {
    try {
        (void)call(named(name), arguments);
    } catch (const calls::CallRefused& refusal) {
        return refusal.what();
    }
    return "answered";
}

TEST(Calls, Refusals) {
    EXPECT_EQ(refusal("SLN", {100.0, 10.0, 0.0}), "SLN: argument 3 (life): 0 is not above 0");
    const std::string too_few = refusal("SLN", {100.0});
    EXPECT_EQ(too_few.find("SLN: "), 0U) << too_few;
}

// Money that is only received has no rate, and a price of nearly nothing no yield; a payment of less than the interest brings
// no loan to its end.
TEST(Calls, SearchesAndListsWithoutAnAnswerAreMissing) {
    const std::array<host::Argument, 2> received{100.0, 10.0};
    EXPECT_EQ(call(named("IRR"), received), std::nullopt);
    EXPECT_EQ(why_no_value(named("IRR"), received),
              "IRR: no answer: the flows do not change sign: a rate needs money paid and money received");
    const std::array<host::Argument, 4> no_loss{100.0, 10.0, 0.1, 0.1};
    EXPECT_EQ(call(named("MIRR"), no_loss), std::nullopt);
    EXPECT_EQ(refusal("MIRR", {-100.0, 110.0, 0.0, 0.1}), "MIRR: argument 2 (financeRate): 0 is not above 0");
    EXPECT_EQ(refusal("NPER", {0.005, -4.0, 20000.0}).substr(0, 17), "NPER: no answer: ");
}

TEST(Calls, AreTriedAndExplained) {
    const std::array<host::Argument, 3> bad{100.0, 10.0, 0.0};
    EXPECT_EQ(call(named("SLN"), bad, Way::attempt), std::nullopt);
    EXPECT_EQ(why_no_value(named("SLN"), bad), "SLN: argument 3 (life): 0 is not above 0");
    const std::array<host::Argument, 3> good{100.0, 10.0, 9.0};  // 90 in 9 years
    EXPECT_EQ(call(named("SLN"), good, Way::attempt), 10.0);
    EXPECT_EQ(why_no_value(named("SLN"), good), "");
}

}  // namespace
}  // namespace finance::adapters
