// Bit for bit against the slow model: for each calculation the module's answers to thousands of random calls, valid,
// extreme and faulty, are those that the model in this folder draws and answers itself.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "catalogue/catalogue.hpp"
#include "module/financial_list.hpp"
#include "tests/model/draws.hpp"
#include "tests/support/reach.hpp"

namespace finance::test {
namespace {

// ZELKOVAN_DRAWS and ZELKOVAN_SEED in the environment ask for more draws, or for others.
std::string setting(const char* name, const char* usual) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : usual;
}

class Model : public testing::TestWithParam<std::string> {};

TEST_P(Model, AgreesBitForBit) {
    const std::string draws = setting("ZELKOVAN_DRAWS", "2000");
    const std::string command = std::string{"python3 " ZELKOVAN_MODEL "/draw.py --seed "} +
                                setting("ZELKOVAN_SEED", "20080215") + " --count " + draws + " --only " + GetParam();
    const DrawCounts counts = check_draws(command);
    EXPECT_EQ(counts.checked, std::stoi(draws));
    EXPECT_GE(counts.answered, counts.checked / 5);
}

// ---- Dates far out

std::string far_draws(const std::string& names, int count) {
    return std::string{"python3 " ZELKOVAN_MODEL "/draw.py --far --seed "} + setting("ZELKOVAN_SEED", "20080215") +
           " --count " + setting("ZELKOVAN_FAR_DRAWS", std::to_string(count).c_str()) + " --only " + names;
}

bool is_day(const catalogue::Parameter& parameter) {
    return parameter.kind == catalogue::Kind::date || parameter.kind == catalogue::Kind::date_time;
}

std::string names_with_dates() {
    std::string names;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const auto has_day = [](const catalogue::Parameter& parameter) {
            return is_day(parameter) || parameter.kind == catalogue::Kind::dates;
        };
        if (!std::ranges::any_of(calculation.parameters, has_day)) continue;
        if (!names.empty()) names += ',';
        names += calculation.name;
    }
    return names;
}

// All at once: 31 calculations. Half of the calls are answered, as dates beyond 2^53 are none.
TEST(FarDates, AgreeBitForBit) {
    const DrawCounts counts = check_draws(far_draws(names_with_dates(), 100));
    EXPECT_GE(counts.checked, 31 * 100);
    EXPECT_GE(counts.answered, counts.checked / 3);
}

// Draws for which the model's own walks are too long are thrown away: of what is left every class of days is
// answered; infinity by Treasury bills alone.
TEST(FarDates, ReachEveryClassOfDays) {
    Reach drawn = Reach::of_days();
    Reach answered = Reach::of_days();
    for (const Draw& draw : read_draws(far_draws(names_with_dates(), 200))) {
        const catalogue::Calculation& calculation = *catalogue::find(draw.name);
        if (catalogue::list_count(calculation) > 0) continue;
        for (std::size_t i = 0; i < draw.arguments.size(); ++i) {
            if (!is_day(calculation.parameters[i])) continue;
            drawn.add(draw.arguments[i].number());
            if (draw.status == STATUS_SUCCESS) answered.add(draw.arguments[i].number());
        }
    }
    EXPECT_EQ(drawn.drawn_less_than(10), std::vector<std::string>{});
    EXPECT_EQ(answered.drawn_less_than(3), std::vector<std::string>{});
}

// What it printed before is right.
TEST(Draws, AGeneratorThatDoesNotEndWellIsNoticed) {
    const std::string line = R"(printf 'EFFECT\tn:3ff0000000000000 n:3ff0000000000000\t0\t-\t3ff0000000000000\n')";
    EXPECT_EQ(check_draws(line).checked, 1);
    EXPECT_EQ(read_draws(line).size(), 1U);
    EXPECT_NONFATAL_FAILURE(check_draws(line + "; exit 1"), "how this ended");
    EXPECT_NONFATAL_FAILURE(check_draws(line + "; kill -SEGV $$"), "how this ended");
    EXPECT_NONFATAL_FAILURE(read_draws(line + "; exit 1"), "how this ended");
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Model, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

}  // namespace
}  // namespace finance::test
