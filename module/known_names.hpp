// A name among those known, by its letters in upper or lower case: no search, one comparison.
//
//  (1) The first and the last 8 bytes of a text, or 4, or 2, are with its length all of it, if that is 2 to 16. They may
//      overlap.
//  (2) Bit 5 tells the two cases of a letter apart. A byte that with this bit is a lower-case letter is one of the two.
//  (3) A multiplier gives each name a slot of its own. It is found in the compiler: a list that has none does not compile.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace finance {

inline constexpr std::uint64_t case_bits = 0x2020202020202020;

inline constexpr std::int64_t least_known_length = 2;
inline constexpr std::int64_t most_known_length = 16;

// Both ends of a text and its length (1).
struct NameKey {
    std::uint64_t first;
    std::uint64_t last;
    std::int64_t length;

    // One question, not three.
    friend constexpr bool operator==(const NameKey& a, const NameKey& b) {
        return ((a.first ^ b.first) | (a.last ^ b.last) | static_cast<std::uint64_t>(a.length ^ b.length)) == 0;
    }
};

template <std::size_t... places>
constexpr std::uint64_t little_endian(const char* text, std::index_sequence<places...>) {
    return ((std::uint64_t{static_cast<unsigned char>(text[places])} << (8 * places)) | ...);
}

template <std::size_t size>
constexpr NameKey key_of_ends(const char* text, std::int64_t length) {
    constexpr std::make_index_sequence<size> bytes;
    return {little_endian(text, bytes), little_endian(text + length - std::int64_t{size}, bytes), length};
}

// Of least_known_length bytes at least.
constexpr NameKey key_of(const char* text, std::int64_t length) {
    if (length >= 8) return key_of_ends<8>(text, length);
    if (length >= 4) return key_of_ends<4>(text, length);
    return key_of_ends<2>(text, length);
}

constexpr NameKey in_lower_case(const NameKey& key) {
    return {key.first | case_bits, key.last | case_bits, key.length};
}

// Where all bytes are letters: whether one of them is a lower-case one.
constexpr bool has_lower_case(const NameKey& key) { return ((key.first | key.last) & case_bits) != 0; }

// A name that the list may have.
constexpr bool may_be_known(std::string_view name) {
    return name.size() >= least_known_length && name.size() <= most_known_length &&
           std::ranges::all_of(name, [](char c) { return c >= 'A' && c <= 'Z'; });
}

// Names and what leads to them. (Without a constructor: compilers put a constant that has one where it can be written.)
template <std::size_t count>
struct KnownNames {
    static constexpr int slot_bits = 8;  // of 54 names, one multiplier in 400 gives each a slot
    static_assert(count <= std::size_t{1} << slot_bits);

    std::array<NameKey, count> keys;
    std::array<std::uint8_t, std::size_t{1} << slot_bits> slots;
    std::uint64_t multiplier;
    bool are_apart;  // each name has a slot of its own

    // The index of the one name that the key can be, in lower case.
    [[nodiscard]] constexpr std::size_t candidate(const NameKey& key) const { return slots[slot_of(key)]; }

    [[nodiscard]] constexpr std::size_t slot_of(const NameKey& key) const {
        constexpr int turn = 21;
        const std::uint64_t letters = std::rotl(key.first, turn) ^ key.last;
        return ((letters + static_cast<std::uint64_t>(key.length)) * multiplier) >> (64 - slot_bits);
    }

    // Whether this multiplier will do.
    constexpr bool fill_slots() {
        std::array<bool, std::size_t{1} << slot_bits> taken{};
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t slot = slot_of(keys[i]);
            if (taken[slot]) return false;
            taken[slot] = true;
            slots[slot] = static_cast<std::uint8_t>(i);
        }
        return true;
    }
};

// Of names that may_be_known.
template <std::size_t count>
constexpr KnownNames<count> known_names(const std::array<std::string_view, count>& names) {
    KnownNames<count> known{};
    for (std::size_t i = 0; i < count; ++i) {
        known.keys[i] = in_lower_case(key_of(names[i].data(), static_cast<std::int64_t>(names[i].size())));
    }
    constexpr int most_tries = 20'000;
    known.multiplier = 1;
    for (int tries = 0; tries < most_tries && !known.are_apart; ++tries) {
        known.multiplier += 0x9E3779B97F4A7C16;  // the golden ratio's bits, made even: odd numbers of all sizes
        known.are_apart = known.fill_slots();
    }
    return known;
}

}  // namespace finance
