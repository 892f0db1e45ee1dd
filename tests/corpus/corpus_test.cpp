// The corpus: more than 200,000 calls, each with the status, flags and result bits that it must have in every build,
// whatever the compiler and its optimisation. The slow model wrote them (scripts/refresh-corpus).
#include <gtest/gtest.h>

#include <cstdlib>

#include "module/financial_list.hpp"
#include "tests/model/draws.hpp"

namespace finance::test {
namespace {

// As a test of its own each, so that a bit that changes names its calculation.
class Corpus : public testing::TestWithParam<std::string> {};

TEST_P(Corpus, SameBits) {
    constexpr int calls_each = 3750;
    const DrawCounts counts = check_draws("xz --decompress --stdout '" ZELKOVAN_CORPUS "/" + GetParam() + ".tsv.xz'");
    EXPECT_EQ(counts.checked, calls_each);
    EXPECT_GE(counts.answered, counts.checked / 4);
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Corpus, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

}  // namespace
}  // namespace finance::test
