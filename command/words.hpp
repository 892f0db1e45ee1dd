// A typed line, split into the words that a shell would hand over.
//
//  (1) Words are separated by blanks and tabs.
//  (2) What stands between two ' or two " is kept as it is, blanks and the other quotation mark included; the marks are
//      dropped, wherever in a word they stand. '' is a word of its own, without letters.
//  (3) A # where a word would begin starts a comment that ends with the line.
//  (4) A carriage return at the end of the line belongs to the line's end.
//  (5) A line goes on in the next where it ends with a backslash, or within a bracket that a later line closes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

// What may stand before a text in UTF-8.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// UsageError where a quotation mark has no partner.
std::vector<std::string> split_words(std::string_view line);

// Without the comment and the line's end.
std::string_view without_comment(std::string_view line);

// A line and those in which it goes on, each looked at once.
class JoinedLine {
public:
    // Without its comment. A backslash at its end becomes a blank, and another blank stands between lines.
    void add(std::string_view line);
    // Whether the next line belongs to it.
    [[nodiscard]] bool goes_on() const { return goes_on_; }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    void count_brackets(std::string_view line);

    std::string text_;
    bool goes_on_ = false;
    int open_ = 0;              // brackets; those in a quotation that is closed are letters like others
    int before_quotation_ = 0;  // how many were open
    char mark_ = '\0';          // of the quotation that the text ends in
};

// A line up to the cursor: the words that are complete, and the one that is being typed (empty after a blank).
struct TypedLine {
    std::vector<std::string> words;
    std::string_view last;  // as typed, a view into the line
};

TypedLine split_at_cursor(std::string_view line);

}  // namespace finance::command
