#include "command/json_text.hpp"

#include <cmath>
#include <cstddef>

#include "catalogue/text.hpp"

namespace finance::command {

namespace {

using Byte = unsigned char;

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

// How the bytes of a character go on after its first one: how many, and the range of the second, which keeps out
// overlong forms, surrogates and what is above U+10FFFF.
struct Sequence {
    std::size_t length = 0;  // 0: no character begins so
    Byte low = 0x80;
    Byte high = 0xBF;
};

constexpr Sequence sequence_of(Byte first) {
    if (first < 0x80) return {1};
    if (first >= 0xC2 && first <= 0xDF) return {2};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {3};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {4};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {};
}

// The length of the character at the front of a text that is not empty; 0 where none is well formed.
std::size_t character_length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<Byte>(text[i]); };
    const Sequence sequence = sequence_of(byte(0));
    if (sequence.length > text.size()) return 0;
    if (sequence.length > 1 && (byte(1) < sequence.low || byte(1) > sequence.high)) return 0;
    for (std::size_t i = 2; i < sequence.length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return sequence.length;
}

void append_control(std::string& text, char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto code = static_cast<Byte>(c);
    text.append("\\u00") += digits[code >> 4U];
    text += digits[code & 0xFU];
}

void append_ascii(std::string& text, char c) {
    switch (c) {
        case '"':
        case '\\':
            (text += '\\') += c;
            return;
        case '\n':
            text += "\\n";
            return;
        case '\r':
            text += "\\r";
            return;
        case '\t':
            text += "\\t";
            return;
        default:
            break;
    }
    if (static_cast<Byte>(c) < 0x20 || c == 0x7F) return append_control(text, c);
    text += c;
}

}  // namespace

void JsonText::clear() {
    text_.clear();
    follows_value_ = false;
}

void JsonText::separate() {
    if (follows_value_) text_ += ',';
    follows_value_ = true;
}

JsonText& JsonText::open(char bracket) {
    separate();
    text_ += bracket;
    follows_value_ = false;
    return *this;
}

JsonText& JsonText::close(char bracket) {
    text_ += bracket;
    follows_value_ = true;
    return *this;
}

JsonText& JsonText::plain(std::string_view word) {
    separate();
    text_ += word;
    return *this;
}

JsonText& JsonText::key(std::string_view name) {
    separate();
    append_quoted(name);
    text_ += ':';
    follows_value_ = false;
    return *this;
}

JsonText& JsonText::text(std::string_view value) {
    separate();
    append_quoted(value);
    return *this;
}

JsonText& JsonText::number(double value) {
    if (!std::isfinite(value)) return null();
    return plain(catalogue::plain_text(value));
}

JsonText& JsonText::member_or_null(std::string_view name, std::string_view value) {
    return value.empty() ? key(name).null() : key(name).text(value);
}

void JsonText::append_quoted(std::string_view value) {
    text_ += '"';
    while (!value.empty()) {
        const std::size_t length = character_length(value);
        if (length == 1) append_ascii(text_, value.front());
        if (length == 0) text_ += replacement;
        if (length > 1) text_ += value.substr(0, length);
        value.remove_prefix(length == 0 ? 1 : length);
    }
    text_ += '"';
}

}  // namespace finance::command
