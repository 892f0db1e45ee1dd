// Sums to which the same amounts are added again and again: to the last bit those of the loop, in few steps.
//
//  (1) Between two powers of two all numbers are multiples of one unit u. There an amount moves a sum by whole units;
//      by how many depends on the amount alone, and at a tie on whether sum / u is odd.
//  (2) A cycle of amounts leads from even and from odd each to one of the two: after one cycle either all later ones
//      lead to the same, or they alternate. So from then on two cycles together always move the sum by the same.
//  (3) The amounts have one sign: a sum does not turn back, and what lies between two sums in (1) lies there too.
//  (4) A jump ends short of the powers of two. What crosses them, leaves 0 or has no number is added as it stands.
//      Denormals have one unit down to 0. A cycle that leaves a sum as it was has come to rest.
//
// Cost: some seven cycles for each power of two passed; no more than 54 of them lie between an amount and the sum in
// which it no longer counts.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "abi/conversions.hpp"
#include "abi/steps.hpp"

namespace finance {

// Where a sum stands after a number of cycles.
struct RepeatedSum {
    double sum;
    std::int64_t times;
};

// The magnitude of a number in units of its power of two, with the power above: consecutive integers for consecutive
// numbers of one sign.
namespace units {

inline constexpr std::int64_t in_power_of_two = std::int64_t{1} << 52;

inline std::int64_t count(double x) { return static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(x) << 1 >> 1); }

inline double move(double x, std::int64_t by) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) + static_cast<std::uint64_t>(by));
}

// Of one sign and between the same powers of two, these not counted in.
inline bool are_same(double a, double b) {
    return (std::bit_cast<std::uint64_t>(a) ^ std::bit_cast<std::uint64_t>(b)) >> 52 == 0;
}

// How often x can be moved by `by` units before it comes to a power of two, or to 0.
inline std::int64_t moves_inside(double x, std::int64_t by) {
    const std::int64_t from_below = count(x) % in_power_of_two;
    return by > 0 ? (in_power_of_two - 1 - from_below) / by : std::max<std::int64_t>(from_below - 1, 0) / (0 - by);
}

}  // namespace units

// for (i = 0; i < times && goes_on(sum); ++i) sum = add_cycle(sum);
//   with goes_on false for all later sums once it is; sum and i as they are then
template <typename AddCycle, typename GoesOn>
RepeatedSum repeat_while(double sum, std::int64_t times, AddCycle add_cycle, GoesOn goes_on) {
    std::int64_t done = 0;
    const auto step = [&] {
        if (done >= times || !goes_on(sum)) return false;
        count_step();
        sum = add_cycle(sum);
        ++done;
        return true;
    };
    while (true) {
        const double first = sum;
        if (!step()) break;
        if (same_bits(sum, first)) return {sum, times};
        const double second = sum;
        if (!step()) break;
        if (!step()) break;
        const std::int64_t by = units::count(sum) - units::count(second);
        if (by == 0 || !units::are_same(first, sum)) continue;
        std::int64_t jumps = std::min((times - done) / 2, units::moves_inside(sum, by));
        if (!goes_on(units::move(sum, jumps * by))) {  // the last jump after which it still does
            std::int64_t beyond = jumps;
            jumps = 0;
            while (beyond - jumps > 1) {
                count_step();
                const std::int64_t mid = jumps + (beyond - jumps) / 2;
                (goes_on(units::move(sum, mid * by)) ? jumps : beyond) = mid;
            }
        }
        sum = units::move(sum, jumps * by);
        done += 2 * jumps;
    }
    return {sum, done};
}

// for (i = 0; i < times; ++i) sum = add_cycle(sum);
//   where add_cycle adds the same sequence of amounts each time, none of them of the other's sign
template <typename AddCycle>
double repeat_sum(double sum, std::int64_t times, AddCycle add_cycle) {
    return repeat_while(sum, times, add_cycle, [](double) { return true; }).sum;
}

}  // namespace finance
