// Numbers as most tables write them: a minus or none, digits, a point between two of them or none, a percent sign or none.
// 0.065, -1200, 5.75%. Read here to the bits that std::from_chars comes to, in less time.
//
//  (1) With at most 19 digits what they come to without the point, w, fits 64 bits.
//  (2) With w up to 2^53 it is a double, and so is 10^k up to k = 22: w / 10^k is one division of two exact numbers,
//      which rounds to the double nearest to what is written.
//  (3) Whatever is longer, larger or written otherwise is not read here, nor is said to be no number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace finance::reading {

inline constexpr std::array<double, 23> exact_powers_of_ten{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline constexpr std::uint64_t largest_exact = std::uint64_t{1} << 53U;  // of whole numbers that all are doubles

// Digits that are taken from the front of a text.
struct DigitsTaken {
    const char* at;
    const char* end;
    std::uint64_t number = 0;  // modulo 2^64

    // How many there were.
    std::ptrdiff_t take() {
        constexpr unsigned base = 10;
        const char* first = at;
        for (unsigned digit = 0; at != end && (digit = static_cast<unsigned char>(*at) - unsigned{'0'}) < base; ++at) {
            number = number * base + digit;
        }
        return at - first;
    }
};

// false: see (3), and value is as it was.
inline bool read_plain_decimal(std::string_view text, double& value) {
    constexpr std::ptrdiff_t most_digits_of_64_bits = 19;
    const char* begin = text.data();
    const char* end = begin + text.size();
    const bool negative = begin != end && *begin == '-';
    const bool percent = begin != end && end[-1] == '%';
    DigitsTaken digits{negative ? begin + 1 : begin, percent ? end - 1 : end};
    const std::ptrdiff_t whole = digits.take();
    std::ptrdiff_t places = 0;
    if (digits.at != digits.end && *digits.at == '.') {
        ++digits.at;
        places = digits.take();
        if (places == 0) return false;
    }
    if (whole == 0 || digits.at != digits.end || whole + places > most_digits_of_64_bits) return false;
    if (digits.number > largest_exact) return false;
    const auto exact = static_cast<double>(digits.number);
    const double power = exact_powers_of_ten[static_cast<std::size_t>(percent ? places + 2 : places)];
    value = (negative ? -exact : exact) / power;
    return true;
}

}  // namespace finance::reading
