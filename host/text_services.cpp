#include <algorithm>
#include <cstddef>
#include <cstring>

#include "host/service_work.hpp"

namespace finance::host {
namespace {

constexpr unsigned char blank = 0x20;
constexpr unsigned char first_lead_byte = 0x80;

char converted(char c, Case to) {
    if (to == Case::upper) return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The position after index, with the sign of the order: 1-based.
std::int32_t difference(std::int64_t index, bool a_first) {
    const auto position = static_cast<std::int32_t>(index + 1);
    return a_first ? -position : position;
}

}  // namespace

void convert_case(char* text, std::int64_t length, Case to, bool double_byte) noexcept {
    for (std::int64_t i = 0; i < length; ++i) {
        if (double_byte && static_cast<unsigned char>(text[i]) >= first_lead_byte) {
            ++i;
        } else {
            text[i] = converted(text[i], to);
        }
    }
}

void copy_text(const char* source, std::int64_t length, char* destination, std::int64_t destination_length) noexcept {
    const std::int64_t copied = std::min(length, destination_length);
    if (copied > 0) std::memmove(destination, source, static_cast<std::size_t>(copied));
}

std::int32_t compare_texts(const unsigned char* collating_table, const char* a, std::int64_t a_length, const char* b,
                           std::int64_t b_length) noexcept {
    const auto mapped = [collating_table](const char* text, std::int64_t i) {
        return collating_table[static_cast<unsigned char>(text[i])];
    };
    a_length = std::max<std::int64_t>(a_length, 0);
    b_length = std::max<std::int64_t>(b_length, 0);
    const std::int64_t common = std::min(a_length, b_length);
    for (std::int64_t i = 0; i < common; ++i) {
        if (mapped(a, i) != mapped(b, i)) return difference(i, mapped(a, i) < mapped(b, i));
    }
    const bool a_is_shorter = a_length < b_length;
    const char* longer = a_is_shorter ? b : a;
    for (std::int64_t i = common; i < std::max(a_length, b_length); ++i) {
        const unsigned char byte = mapped(longer, i);
        if (byte != blank) return difference(i, a_is_shorter == (byte > blank));
    }
    return 0;
}

}  // namespace finance::host
