// Two lanes in the compiler's own words are what they are with instructions, bit for bit: other processors have only the former.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "lanes/instruction_set.hpp"

namespace finance::test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::array values{0.0, -0.0, 1.5, -2.75, 1e9, -2147483000.25, 0x1p-1074, 4.0, 1e300, infinity};

template <typename Set>
std::array<std::uint64_t, 2> bits_of(typename Set::Doubles lanes) {
    std::array<double, 2> stored{};
    Set::store(stored.data(), lanes);
    return {std::bit_cast<std::uint64_t>(stored[0]), std::bit_cast<std::uint64_t>(stored[1])};
}

TEST(LanesPlainWords, LoadBroadcastAndStoreAlike) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        const std::array<std::uint64_t, 2> both{std::bit_cast<std::uint64_t>(values[i]),
                                                std::bit_cast<std::uint64_t>(values[i + 1])};
        EXPECT_EQ(bits_of<TwoLanes>(TwoLanes::load(&values[i])), both);
        EXPECT_EQ(bits_of<Sse2>(Sse2::load(&values[i])), both);
        EXPECT_EQ(bits_of<TwoLanes>(TwoLanes::broadcast(values[i])), bits_of<Sse2>(Sse2::broadcast(values[i])));
    }
}

TEST(LanesPlainWords, TakeSignsRootsAndWholePartsAlike) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        const TwoLanes::Doubles x = TwoLanes::load(&values[i]);
        EXPECT_EQ(TwoLanes::signs(TwoLanes::Words(x)), Sse2::signs(Sse2::Words(x))) << i;
        const TwoLanes::Doubles squares = x * x;
        EXPECT_EQ(bits_of<TwoLanes>(TwoLanes::square_root(squares)), bits_of<Sse2>(Sse2::square_root(squares))) << i;
        // Whole parts are asked for within 32 bits; the sign of a 0 is nobody's.
        if (std::abs(values[i]) > 2e9 || std::abs(values[i + 1]) > 2e9) continue;
        const TwoLanes::Doubles zero{};
        EXPECT_EQ(bits_of<TwoLanes>(TwoLanes::truncated(x) + zero), bits_of<Sse2>(Sse2::truncated(x) + zero)) << i;
    }
}

TEST(LanesPlainWords, TakePairsAlike) {
    const std::array<double, 4> numbers{1.0, 2.0, 3.0, 4.0};
    const TwoLanes::Doubles a = TwoLanes::load(numbers.data());
    const TwoLanes::Doubles b = TwoLanes::load(numbers.data() + 2);
    std::array<double, 4> plain{};
    std::array<double, 4> instructed{};
    std::size_t taken = 0;
    TwoLanes::each_pair(a, b, [&](Pair pair) {
        plain[taken++] = pair[0];
        plain[taken++] = pair[1];
    });
    taken = 0;
    Sse2::each_pair(a, b, [&](Pair pair) {
        instructed[taken++] = pair[0];
        instructed[taken++] = pair[1];
    });
    EXPECT_EQ(plain, (std::array<double, 4>{1.0, 3.0, 2.0, 4.0}));
    EXPECT_EQ(plain, instructed);
}

}  // namespace

}  // namespace finance::test
