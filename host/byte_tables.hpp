// Collating and translation tables of the host, a byte for each of 256.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace finance::host {

using ByteTable = std::array<unsigned char, 256>;

enum class Folding : std::uint8_t { none, upper, lower };

constexpr ByteTable byte_table(Folding folding) {
    ByteTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool lower = i >= 'a' && i <= 'z';
        const bool upper = i >= 'A' && i <= 'Z';
        constexpr std::size_t case_bit = 0x20;
        const bool moved = (folding == Folding::upper && lower) || (folding == Folding::lower && upper);
        table[i] = static_cast<unsigned char>(moved ? i ^ case_bit : i);
    }
    return table;
}

inline constexpr ByteTable identity = byte_table(Folding::none);
inline constexpr ByteTable to_upper = byte_table(Folding::upper);
inline constexpr ByteTable to_lower = byte_table(Folding::lower);

}  // namespace finance::host
