// Bit for bit against the slow model: for each calculation the module's answers to thousands of random calls, valid,
// extreme and faulty, are those that the model in this folder draws and answers itself.
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
    const std::string command = std::string{"python3 " ZELKOVAN_MODEL "/draw.py --seed "} +
                                setting("ZELKOVAN_SEED", "20080215") + " --count " + setting("ZELKOVAN_DRAWS", "2000") +
                                " --only " + GetParam();
    const DrawCounts counts = check_draws(command);
    EXPECT_GE(counts.checked, 1000);
    EXPECT_GE(counts.answered, counts.checked / 5);
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Model, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

}  // namespace
}  // namespace finance::test
