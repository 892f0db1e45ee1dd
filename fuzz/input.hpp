// What all fuzzers share: a reader that turns bytes into whatever a target needs, rules that end the run when they are
// broken, and memory that ends where readable memory ends.
#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

namespace finance::fuzz {

// A rule of the code under test; when broken it is named, and the run ends with the input that did it.
inline void must(bool holds, const char* rule) {
    if (holds) [[likely]]
        return;
    std::fprintf(stderr, "BROKEN RULE: %s\n", rule);
    std::abort();
}

// The input, taken from the front. Behind its end are zeros, so that every input means something.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : rest_{reinterpret_cast<const char*>(data), size} {}

    template <typename Integer>
    Integer take() {
        Integer value{};
        const std::size_t taken = std::min(sizeof value, rest_.size());
        if (taken > 0) std::memcpy(&value, rest_.data(), taken);
        rest_.remove_prefix(taken);
        return value;
    }
    std::uint8_t byte() { return take<std::uint8_t>(); }
    bool flag() { return (byte() & 1) != 0; }
    std::uint32_t below(std::uint32_t n) { return byte() % n; }
    double raw_double() { return std::bit_cast<double>(take<std::uint64_t>()); }
    std::string_view text(std::size_t length) {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(taken.size());
        return taken;
    }
    std::string_view rest() { return text(rest_.size()); }
    [[nodiscard]] bool empty() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

inline constexpr double infinity = std::numeric_limits<double>::infinity();

// Where rules change: ends of the range, of whole numbers, of 32 and 64 bits, of dates, and beside them.
inline constexpr std::array edges{
    0.0,
    -0.0,
    1.0,
    -1.0,
    infinity,
    -infinity,
    1e300,
    -1e300,
    1.7976931348623157e308,
    -1.7976931348623157e308,
    4.9406564584124654e-324,
    -4.9406564584124654e-324,
    2.2250738585072014e-308,
    1e-300,
    9007199254740992.0,
    9007199254740994.0,
    -9007199254740992.0,
    -9223372036854775808.0,
    9223372036854775808.0,
    -18446744073709551616.0,
    2147483647.0,
    2147483648.0,
    -2147483648.0,
    -2147483649.0,
    4294967296.0,
    4294967297.0,
    3.0000000000001,
    2.9999999999999996,
    0.99999999999999989,
    1e-12,
    -715875.0,
    2936549.0,
    6589335.0,
    -138061.0,
    1e7,
    10000001.0,
    4294967295.0,
};

// Days, and years in days: where a count of years, of months or of days passes 32 bits, where the words that calendars
// count in pass 64, and the last days that doubles tell from their neighbours.
inline constexpr double days_a_year = 365.2425;  // of the Gregorian calendar, on average
inline constexpr std::array wraps{
    0x1p31 * days_a_year,
    0x1p30 * days_a_year,
    0x1p32 * days_a_year,
    0x1p31 / 12.0 * days_a_year,
    0x1p32 / 12.0 * days_a_year,
    0x1p31,
    0x1p32,
    0x1p53,
    1e16,
    0x1p61,
    0x1p62,
    0x1p63,
};

// On either side of a wrap, counted from today or from the year 0: up to ninety years off, or 365 times as many.
inline double around_wrap(Bytes& in) {
    constexpr double year_0 = -1960.0 * days_a_year;
    const double wrap = wraps[in.below(wraps.size())];
    const std::uint8_t how = in.byte();
    const double centre = ((how & 1) != 0 ? -wrap : wrap) + ((how & 2) != 0 ? year_0 : 0.0);
    return std::floor(centre) + in.take<std::int16_t>() * ((how & 4) != 0 ? 365.0 : 1.0);
}

// Any distance, to beyond 64 bits: 1 to 2 times a power of two.
inline double distance(Bytes& in) {
    const std::uint8_t power = in.byte();
    const double size = std::ldexp(1.0 + in.byte() / 256.0, power & 63);
    return std::floor((power & 64) != 0 ? -size : size);
}

// A double of a kind that calculations care about: rate, count, date (days since 1960), amount, edge, or any bits.
inline double number(Bytes& in, double previous) {
    constexpr double day_1998 = 14000.0;
    switch (in.below(12)) {
        case 0:
            return in.raw_double();
        case 1:
            return edges[in.below(edges.size())];
        case 2:
            return in.take<std::int8_t>();
        case 3:
            return in.take<std::int16_t>() / 64.0;
        case 4:
            return day_1998 + in.take<std::int16_t>();
        case 5:
            return in.take<std::int32_t>();
        case 6:
            return in.byte() / 1000.0;
        case 7:
            return previous + in.take<std::int8_t>();
        case 8:
            return in.take<std::int8_t>() * 1000.0;
        case 9:
            return around_wrap(in);
        case 10:
            return previous + distance(in);
        default:
            return previous + 183.0 * in.byte();
    }
}

// A NaN of any sign and payload: an infinity's exponent and at least one more bit.
inline double some_nan(Bytes& in) {
    constexpr std::uint64_t sign_and_payload = 0x800FFFFFFFFFFFFF;
    const std::uint64_t bits = in.take<std::uint64_t>() & sign_and_payload;
    const bool payload = (bits << 1) != 0;
    return std::bit_cast<double>(bits | 0x7FF0000000000000 | (payload ? 0U : 1U));
}

// Memory that is followed by a page that can be neither read nor written. What is put there ends at that page.
template <std::size_t pages>
class GuardedMemory {
public:
    static constexpr std::size_t capacity = pages * 4096;

    GuardedMemory()
        : begin_{static_cast<char*>(
              ::mmap(nullptr, capacity + 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))} {
        must(begin_ != MAP_FAILED && ::mprotect(begin_ + capacity, 4096, PROT_NONE) == 0, "a guard page can be had");
    }
    ~GuardedMemory() { ::munmap(begin_, capacity + 4096); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    char* last(std::size_t size) { return begin_ + (capacity - size); }
    char* put(std::string_view text) {
        char* place = last(text.size());
        text.copy(place, text.size());
        return place;
    }

private:
    char* begin_;
};

}  // namespace finance::fuzz
