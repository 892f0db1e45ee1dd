// JSON, written piece by piece into one line of text.
//
//     JsonText json;
//     json.object().member("calculation", "PMT").member("value", -1199.1);
//     json.key("notes").array().text("one").number(2).end_array().end_object();
//     json.str()    {"calculation":"PMT","value":-1199.1,"notes":["one",2]}
//
//  (1) Commas and colons come by themselves; that pieces fit together is the caller's business.
//  (2) A number is the shortest text that reads back to the same double, whole ones in plain digits. JSON has none for NaN and the infinities:
//      they are written null.
//  (3) A string is UTF-8. What is escaped: quote, backslash, control characters. A byte that is no part of well-formed
//      UTF-8 becomes U+FFFD, so that the text is valid whatever it was made from.
#pragma once

#include <string>
#include <string_view>

namespace finance::command {

class JsonText {
public:
    JsonText& object() { return open('{'); }
    JsonText& end_object() { return close('}'); }
    JsonText& array() { return open('['); }
    JsonText& end_array() { return close(']'); }

    JsonText& key(std::string_view name);
    JsonText& text(std::string_view value);
    JsonText& number(double value);
    JsonText& boolean(bool value) { return plain(value ? "true" : "false"); }
    JsonText& null() { return plain("null"); }

    // A key and its value; or null where the text is empty.
    JsonText& member(std::string_view name, std::string_view value) { return key(name).text(value); }
    JsonText& member(std::string_view name, const char* value) { return key(name).text(value); }
    JsonText& member(std::string_view name, double value) { return key(name).number(value); }
    JsonText& member_or_null(std::string_view name, std::string_view value);

    [[nodiscard]] const std::string& str() const { return text_; }
    // Forgets what was written and keeps its memory, for one object after the other.
    void clear();

private:
    JsonText& open(char bracket);
    JsonText& close(char bracket);
    JsonText& plain(std::string_view word);
    void separate();
    void append_quoted(std::string_view value);

    std::string text_;
    bool follows_value_ = false;
};

}  // namespace finance::command
