// Bit for bit against the slow model: for each calculation the module's answers to thousands of random calls, valid,
// extreme and faulty, are those that the model in this folder draws and answers itself.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "module/financial_list.hpp"
#include "tests/model/draws.hpp"

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
