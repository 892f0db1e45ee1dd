#include "command/json_text.hpp"

#include <cmath>
#include <cstddef>

#include "catalogue/text.hpp"

namespace finance::command {

namespace {

using Byte = unsigned char;

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

void append_control(std::string& text, Byte code) {
    constexpr std::string_view digits = "0123456789abcdef";
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
    if (catalogue::is_control({&c, 1})) return append_control(text, static_cast<Byte>(c));
    text += c;
}

// Above ASCII the last byte of a control character is its code.
void append_character(std::string& text, std::string_view character) {
    if (character.size() == 1) return append_ascii(text, character.front());
    if (catalogue::is_control(character)) return append_control(text, static_cast<Byte>(character.back()));
    text += character;
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
        const std::size_t length = catalogue::character_length(value);
        length == 0 ? void(text_ += replacement) : append_character(text_, value.substr(0, length));
        value.remove_prefix(length == 0 ? 1 : length);
    }
    text_ += '"';
}

}  // namespace finance::command
