// Columns of lists that no list lies in, as the module's entry takes them.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "abi/zelkovan.h"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

const std::vector<double> amounts{-1000, 600, 600, -100, 110};
const std::vector<double> dates{17000, 17365, 17730, 17000, 17400};

// Bit r: row r is answered.
std::uint64_t answered_rows(const void* values, const std::vector<std::int64_t>& starts) {
    ensure_host();
    std::vector<double> results(starts.size() - 1);
    std::uint64_t answered = ~std::uint64_t{0};
    const ZelkovanColumn columns[] = {{ZELKOVAN_COLUMN_LISTS, 0, values, 0, starts.data()},
                                      {ZELKOVAN_COLUMN_LISTS, 0, dates.data(), 0, starts.data()}};
    const ZelkovanColumns request{.name = "XIRR",
                                  .name_length = 4,
                                  .columns = columns,
                                  .column_count = 2,
                                  .rows = static_cast<std::int64_t>(results.size()),
                                  .results = results.data(),
                                  .answered = &answered,
                                  .instructions = ZELKOVAN_INSTRUCTIONS_BEST,
                                  .reserved = 0};
    const std::int64_t count = fnccols(&request);
    EXPECT_EQ(count, std::popcount(answered));
    return answered;
}

TEST(ListColumns, LieOneBehindTheOther) { EXPECT_EQ(answered_rows(amounts.data(), {0, 3, 5}), 3U); }

TEST(ListColumns, DoNotEndBeforeTheyBegin) {
    EXPECT_EQ(answered_rows(amounts.data(), {3, 0, 3, 3, 5}), 10U) << "the first descends, the third is empty";
}

TEST(ListColumns, AreReadWhereDoublesMayBe) {
    std::vector<char> bytes(amounts.size() * sizeof(double) + 1);
    std::copy_n(reinterpret_cast<const char*>(amounts.data()), bytes.size() - 1, bytes.data() + 1);
    EXPECT_EQ(answered_rows(bytes.data() + 1, {0, 3, 5}), 0U);
}

}  // namespace
}  // namespace finance::test
