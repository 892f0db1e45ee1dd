// How many calculations there are: the one place in the tests that says it. Loops over the catalogue, which another test
// compares with this list, therefore never run over nothing.
#include "module/financial_list.hpp"

#include <gtest/gtest.h>

namespace finance::test {
namespace {

TEST(FinancialList, HasAllCalculations) { EXPECT_EQ(FinancialList.size(), 54U); }

}  // namespace
}  // namespace finance::test
