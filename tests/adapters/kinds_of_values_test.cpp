// Expected values: what std::isnan and std::isfinite say of each value.
#include "adapters/common/kinds_of_values.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace finance::adapters {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
const double nan_of_other_bits = std::bit_cast<double>(std::uint64_t{0x7FF0000000000001});

TEST(KindsOfValues, OneAmongMany) {
    for (const double odd : {0.0, -0.0, 1.0, smallest, -smallest, largest, -largest, infinity, -infinity, std::nan(""),
                             -std::nan(""), nan_of_other_bits, -nan_of_other_bits}) {
        for (std::size_t place = 0; place < 9; ++place) {
            std::vector<double> values(9, -2.5);
            values[place] = odd;
            EXPECT_EQ(any_nan(values), std::isnan(odd)) << odd << " at " << place;
            EXPECT_EQ(all_finite(values), std::isfinite(odd)) << odd << " at " << place;
        }
    }
    EXPECT_FALSE(any_nan({}));
    EXPECT_TRUE(all_finite({}));
}

}  // namespace
}  // namespace finance::adapters
