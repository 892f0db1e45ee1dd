// The extension's script for calculations of every shape. Expected texts are written by hand.
#include <gtest/gtest.h>

#include <array>

#include "adapters/postgresql/signatures.hpp"

namespace finance::adapters::postgresql {
namespace {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Need;
using catalogue::Parameter;

constexpr Parameter start{.name = "startDate", .kind = Kind::date};
constexpr Parameter rate{.name = "rate", .kind = Kind::number};
constexpr Parameter type{.name = "type", .kind = Kind::flag, .need = Need::optional, .default_text = "0"};
constexpr Parameter span{.name = "span", .kind = Kind::whole, .need = Need::optional, .default_text = "the rate's"};
constexpr Parameter basis{.name = "basis", .kind = Kind::basis, .need = Need::optional, .default_text = "30/360"};
constexpr Parameter flows{.name = "flows", .kind = Kind::numbers, .need = Need::optional, .default_text = "none"};
constexpr Parameter values{.name = "values", .kind = Kind::numbers};
constexpr Parameter days{.name = "dates", .kind = Kind::dates};
constexpr Parameter guess{.name = "guess", .kind = Kind::number, .need = Need::optional, .default_text = "0.1"};

Calculation sample(std::span<const Parameter> parameters) {
    return {.name = "SAMPLE", .answers = "What it's for", .parameters = parameters, .formula = "a + b"};
}

// Types and defaults of each overload: "float8 float8=0".
std::vector<std::string> overloads(std::span<const Parameter> parameters) {
    std::vector<std::string> found;
    for (const Signature& signature : signatures(sample(parameters))) {
        std::string text;
        for (const SqlArgument& argument : signature.arguments) {
            text.append(text.empty() ? "" : " ").append(argument.type);
            if (!argument.default_value.empty()) text.append("=").append(argument.default_value);
        }
        found.push_back(text);
    }
    return found;
}

using Texts = std::vector<std::string>;

TEST(PostgresqlScript, ADefaultThatIsANumberIsTheSqlDefault) {
    EXPECT_EQ(overloads(std::array{rate, type}), Texts{"float8 float8=0"});
    EXPECT_EQ(overloads(std::array{rate, type, guess}), Texts{"float8 float8=0 float8=0.1"});
}

TEST(PostgresqlScript, ADefaultInWordsMakesAnOverload) {
    EXPECT_EQ(overloads(std::array{rate, span}), (Texts{"float8", "float8 float8"}));
    EXPECT_EQ(overloads(std::array{rate, type, span, guess}),
              (Texts{"float8 float8=0", "float8 float8 float8 float8=0.1"}));
}

TEST(PostgresqlScript, ABasisIsTextOrItsCodeOrLeftOut) {
    EXPECT_EQ(overloads(std::array{start, basis}), (Texts{"date", "date text", "date float8"}));
}

TEST(PostgresqlScript, ListsAreArrays) {
    EXPECT_EQ(overloads(std::array{rate, flows}), Texts{"float8 float8[]='{}'"});
    EXPECT_EQ(overloads(std::array{values, days, guess}), Texts{"float8[] date[] float8=0.1"});
}

TEST(PostgresqlScript, AFunctionIsDeclaredAndDescribed) {
    constexpr std::array parameters{start, type};
    EXPECT_EQ(function_script(sample(parameters)),
              "CREATE FUNCTION fin_sample(\"start_date\" date, \"type\" float8 DEFAULT 0) RETURNS float8\n"
              "    AS 'MODULE_PATHNAME', 'zelkovan_fin_sample' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 20;\n"
              "COMMENT ON FUNCTION fin_sample(date, float8) IS 'What it''s for.\na + b';\n\n");
    EXPECT_EQ(function_script(sample(parameters), Way::reason),
              "CREATE FUNCTION fin_why_sample(\"start_date\" date, \"type\" float8 DEFAULT 0) RETURNS text\n"
              "    AS 'MODULE_PATHNAME', 'zelkovan_fin_why_sample' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 20;\n"
              "COMMENT ON FUNCTION fin_why_sample(date, float8) IS 'What it''s for.\nWhy fin_sample has no value, in a "
              "sentence; NULL where it has one.\na + b';\n\n");
}

// Order and argument types of each aggregate.
TEST(PostgresqlScript, UndatedFlowsAreOrderedByAKeyOrByTheQuery) {
    constexpr std::array parameters{rate, flows};
    Texts found;
    for (const AggregateSignature& signature : aggregate_signatures(sample(parameters))) {
        std::string text = std::to_string(static_cast<int>(signature.order));
        for (const SqlArgument& argument : signature.arguments) text += ' ' + argument.name + ' ' + argument.type;
        found.push_back(text);
    }
    EXPECT_EQ(found, (Texts{"1 rate float8 flow float8 at bigint", "2 rate float8 flow float8 at date",
                            "3 rate float8 flow float8"}));
}

TEST(PostgresqlScript, DatedFlowsAreOrderedByTheirDays) {
    constexpr std::array parameters{values, days, guess};
    const auto found = aggregate_signatures(sample(parameters));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].arguments.size(), 2U);
    EXPECT_EQ(found[1].arguments.size(), 3U);
    EXPECT_EQ(found[1].order, Order::by_dates);
}

TEST(PostgresqlScript, ThereIsNoAggregateWithoutAListOrWithABasis) {
    EXPECT_EQ(aggregate_script(sample(std::array{rate, type})), "");
    EXPECT_EQ(aggregate_script(sample(std::array{values, basis})), "");
}

TEST(PostgresqlScript, NamesAreInSnakeCase) {
    EXPECT_EQ(snake_case("firstPeriodEnd"), "first_period_end");
    constexpr std::array parameters{start, type, basis};
    EXPECT_EQ(sql_usage(sample(parameters)), "fin_sample(start_date [, type [, basis]])");
}

TEST(PostgresqlScript, AnEntryReadsByLetters) {
    EXPECT_EQ(kind_letters(sample(std::array{start, rate, type, basis})), "dnnb");
    EXPECT_EQ(kind_letters(sample(std::array{values, days, guess})), "NDn");
}

TEST(PostgresqlScript, EveryCalculationHasAnEntry) {
    const std::string list = entry_list();
    std::size_t index = 0;
    for (const Calculation& calculation : catalogue::calculations()) {
        const std::string rest = ", " + std::to_string(index++) + ", \"" + kind_letters(calculation) + "\", ";
        for (const auto& [way, word] : {std::pair{Way::answer, "answer"}, std::pair{Way::attempt, "attempt"}}) {
            const std::string line = "ZELKOVAN_FUNCTION(" + entry_name(calculation, way) + rest + word + ")\n";
            EXPECT_NE(list.find(line), std::string::npos) << line;
        }
    }
}

}  // namespace
}  // namespace finance::adapters::postgresql
