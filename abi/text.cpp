#include "abi/text.hpp"

#include <algorithm>
#include <cstring>

#include "abi/host_control.hpp"
#include "abi/host_services.hpp"

namespace finance {

namespace {

std::size_t as_size(std::int64_t length) { return length > 0 ? static_cast<std::size_t>(length) : 0; }

void move_bytes(char* destination, const char* source, std::int64_t length) {
    if (length > 0) std::memmove(destination, source, as_size(length));
}

void fill_with_blanks(char* text, std::int64_t length) {
    if (length > 0) std::memset(text, blank, as_size(length));
}

}  // namespace

std::int64_t wzstlen(const char* text) { return text != nullptr ? static_cast<std::int64_t>(std::strlen(text)) : 0; }

void vzmp(const char* source, std::int64_t source_length, char* destination, std::int64_t destination_length) {
    const std::int64_t copied = std::max<std::int64_t>(std::min(source_length, destination_length), 0);
    move_bytes(destination, source, copied);
    fill_with_blanks(destination + copied, destination_length - copied);
}

std::int32_t vzatl(char character, const char* text, std::int64_t length) {
    for (std::int64_t i = 0; i < length; ++i) {
        count_step();
        if (text[i] != character) return 0;
    }
    return 1;
}

std::int64_t wzstdel(char* text, std::int64_t length, const char* set, std::int64_t set_length) {
    if (length == 0) return 0;
    const std::int64_t old_length = length < 0 ? wzstlen(text) : length;
    const std::size_t set_size = as_size(set_length < 0 ? wzstlen(set) : set_length);
    if (set_size == 0) return old_length;

    const auto in_set = [=](char byte) {
        return byte == *set ||
               (set_size > 1 && std::memchr(set, static_cast<unsigned char>(byte), set_size) != nullptr);
    };
    std::int64_t kept = 0;
    for (std::int64_t i = 0; i < old_length; ++i) {
        count_step();
        if (!in_set(text[i])) text[kept++] = text[i];
    }
    if (length > 0) {
        fill_with_blanks(text + kept, old_length - kept);
    } else if (kept < old_length) {
        text[kept] = '\0';
    }
    return kept;
}

std::int32_t wzstcmn(const char* a, std::int64_t a_length, const char* b, std::int64_t b_length, std::int64_t options) {
    if (multibyte_mode()) return wzsxcmn(a, a_length, b, b_length, options);
    return order_by_table(collating_table(), a, a_length, b, b_length);
}

std::uint32_t wztxxlt(std::uint32_t mode, const char* source, char* destination, std::int64_t length) {
    constexpr std::uint32_t last_mode = 4;
    if (mode > last_mode) return translation_mode_unknown;

    if (mode < last_mode && multibyte_mode()) {
        if (mode == 0) {
            wzsxcch(source, length, destination, length, 1);
        } else if (mode == 1) {
            wzsxrch(source, length, destination, length, 1);
        } else {
            move_bytes(destination, source, length);
            mode == translation_to_upper ? wzstrup(destination, length) : wzstrlo(destination, length);
        }
        return 0;
    }
    const unsigned char* table = translation_table(mode);
    for (std::int64_t i = 0; i < length; ++i) {
        count_step();
        destination[i] = static_cast<char>(table[static_cast<unsigned char>(source[i])]);
    }
    return 0;
}

}  // namespace finance
