#include "catalogue/shortest_digits.hpp"

#include <array>
#include <bit>
#include <cstddef>

namespace finance::catalogue {

namespace {

using std::uint64_t;
__extension__ using Uint128 = unsigned __int128;

// ---- Logarithms of small integers, rounded down. Exact for the exponents of doubles (Giulietti, section 5.5).

constexpr int floor_log10_of_2_to(int q) { return (q * 1262611) >> 22; }
constexpr int floor_log10_of_3_quarters_of_2_to(int q) { return (q * 1262611 - 524031) >> 22; }
constexpr int floor_log2_of_10_to(int k) { return (k * 1741647) >> 19; }

// ---- Powers of ten, to 128 bits

// 2^(high_end - 1) <= 10^k < 2^high_end, times 2^(128 - high_end), rounded up.
struct Power {
    uint64_t high = 0;
    uint64_t low = 0;
};

constexpr int lowest_power = -292;  // of -k for the largest double
constexpr int highest_power = 324;  // of -k for the smallest

// A whole number of 30 * 32 bits: 5^324 is below 2^753, and 2^959 / 5^292 above 2^280.
class WideNumber {
public:
    static constexpr std::size_t bits = std::size_t{30} * 32;

    constexpr explicit WideNumber(std::size_t bit) { words_[bit / 32] = std::uint32_t{1} << (bit % 32); }

    constexpr void multiply_by_5() {
        uint64_t carry = 0;
        for (std::uint32_t& word : words_) {
            const uint64_t product = uint64_t{word} * 5 + carry;
            word = static_cast<std::uint32_t>(product);
            carry = product >> 32U;
        }
    }
    // The fraction is lost: it stands below the digits that are looked at.
    constexpr void divide_by_5() {
        uint64_t rest = 0;
        for (std::size_t i = words_.size(); i-- > 0;) {
            const uint64_t dividend = rest << 32U | words_[i];
            words_[i] = static_cast<std::uint32_t>(dividend / 5);
            rest = dividend % 5;
        }
    }
    // Its first 128 bits; one more where others follow, or a fraction was lost.
    [[nodiscard]] constexpr Power first_bits(bool fraction_lost) const {
        std::size_t size = words_.size();
        while (words_[size - 1] == 0) --size;
        const auto shift = static_cast<unsigned>(std::countl_zero(words_[size - 1]));
        const auto two_words = [&](std::size_t first) { return uint64_t{word(first)} << 32U | word(first - 1); };
        const auto moved = [&](std::size_t first) { return two_words(first) << shift | moved_in(first - 2, shift); };
        Power power{.high = moved(size - 1), .low = moved(size - 3)};
        bool others = fraction_lost || (word(size - 5) << shift) != 0;
        for (std::size_t i = 0; i + 5 < size && !others; ++i) others = words_[i] != 0;
        if (others && ++power.low == 0) ++power.high;
        return power;
    }

private:
    // Those below the lowest are 0; their places wrap.
    [[nodiscard]] constexpr std::uint32_t word(std::size_t place) const {
        return place < words_.size() ? words_[place] : 0;
    }
    [[nodiscard]] constexpr uint64_t moved_in(std::size_t place, unsigned shift) const {
        return uint64_t{word(place)} << shift >> 32U;
    }

    std::array<std::uint32_t, bits / 32> words_{};
};

using Powers = std::array<Power, highest_power - lowest_power + 1>;

// Powers of five: those of two only move bits.
constexpr Powers make_powers() {
    Powers powers{};
    constexpr auto zeroth = static_cast<std::size_t>(-lowest_power);
    WideNumber growing{0};
    for (std::size_t k = 0; k <= highest_power; ++k) {
        powers[zeroth + k] = growing.first_bits(false);
        growing.multiply_by_5();
    }
    WideNumber shrinking{WideNumber::bits - 1};
    for (std::size_t k = 1; k <= zeroth; ++k) {
        shrinking.divide_by_5();
        powers[zeroth - k] = shrinking.first_bits(true);
    }
    return powers;
}

#ifdef __wasm__

// Ten thousand bytes that no compression makes fewer: in a file for a network they are worked out, once they are wanted.
struct MadePowers {
    Powers powers;
    MadePowers() : powers{make_powers()} {}
};

const Powers& powers_of_ten() {
    static const MadePowers made;
    return made.powers;
}

#else

constexpr Powers table_of_powers = make_powers();

constexpr const Powers& powers_of_ten() { return table_of_powers; }

#endif

// ---- The search

// The first 64 bits of the product of 128 and 64 bits, the last one being set where others follow.
uint64_t scaled(const Power& power, uint64_t number) {
    const Uint128 low = Uint128{power.low} * number;
    const Uint128 high = Uint128{power.high} * number + static_cast<uint64_t>(low >> 64U);
    return static_cast<uint64_t>(high >> 64U) | (static_cast<uint64_t>(high) > 1 ? 1U : 0U);
}

template <uint64_t power, int count>
void take_zeros(ShortestDigits& number) {
    if (number.digits % power != 0) return;
    number.digits /= power;
    number.exponent += count;
}

ShortestDigits without_zeros(ShortestDigits number) {
    if (number.digits % 10 != 0) return number;
    take_zeros<100'000'000, 8>(number);
    take_zeros<100'000'000, 8>(number);
    take_zeros<10'000, 4>(number);
    take_zeros<100, 2>(number);
    take_zeros<10, 1>(number);
    return number;
}

// c 2^q, of which q is least; lowest: the double below is half as far away as the one above.
ShortestDigits nearest_digits(uint64_t c, int q, bool lowest) {
    const uint64_t odd = c & 1U;
    const int k = lowest ? floor_log10_of_3_quarters_of_2_to(q) : floor_log10_of_2_to(q);
    const auto shift = static_cast<unsigned>(q + floor_log2_of_10_to(-k) + 1);
    const Power& power = powers_of_ten()[static_cast<std::size_t>(-k - lowest_power)];
    const uint64_t value = scaled(power, (4 * c) << shift);
    const uint64_t low = scaled(power, (4 * c - (lowest ? 1U : 2U)) << shift) + odd;
    const uint64_t high = scaled(power, (4 * c + 2) << shift) - odd;
    // Each choice is made by a comparison and no jump: half of all numbers have a digit less than the others.
    const uint64_t tens = value / 40;
    const bool tens_below = low <= 40 * tens;
    const bool tens_above = 40 * tens + 40 <= high;
    const uint64_t s = value / 4;
    const bool below = low <= 4 * s;
    const bool above = 4 * s + 4 <= high;
    const uint64_t middle = 4 * s + 2;
    const bool nearer_above = value + s % 2 > middle;
    const bool up = below != above ? above : nearer_above;
    const bool shorter = tens_below != tens_above;
    return {.digits = shorter ? tens + (tens_above ? 1U : 0U) : s + (up ? 1U : 0U), .exponent = k + (shorter ? 1 : 0)};
}

}  // namespace

ShortestDigits shortest_digits(double value) {
    constexpr unsigned fraction_bits = 52;
    constexpr uint64_t hidden = uint64_t{1} << fraction_bits;
    constexpr int lowest_exponent = -1074;
    const auto bits = std::bit_cast<uint64_t>(value);
    const uint64_t fraction = bits % hidden;
    const auto biased = static_cast<int>(bits / hidden);
    if (biased == 0) return without_zeros(nearest_digits(fraction, lowest_exponent, false));
    return without_zeros(nearest_digits(hidden + fraction, lowest_exponent + biased - 1, fraction == 0 && biased > 1));
}

}  // namespace finance::catalogue
