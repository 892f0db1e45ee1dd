// What is typed at a line, key by key, for what the editing library does wrong with a long one: it keeps 1,024 characters
// of a line that is left for an earlier one, and evaluates those when it is come back to. So a long line is not left.
#pragma once

#include <cstddef>
#include <string>

namespace finance::command {

class TypedKeys {
public:
    static constexpr std::size_t longest_left = 900;  // characters of a line that may be left

    void begin_line() { length_ = 0; }
    // What the editing library is given for the next character: that, or one that does nothing where it would complete a
    // key that leaves a long line.
    wchar_t given(wchar_t character);

private:
    [[nodiscard]] bool leaves_line() const;
    void count(wchar_t character);

    std::wstring key_{};       // so far; empty: one begins
    std::size_t length_ = 0;   // the line's, at the most
    std::size_t longest_ = 0;  // of all lines: what may be put back at once
};

}  // namespace finance::command
