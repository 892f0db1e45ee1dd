// Lines that are written byte by byte, and appended to a text many at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

class LineBuffer {
public:
    static constexpr std::size_t most_bytes = std::size_t{16} * 1024;  // all of it lies in a core's nearest cache

    // Room for a line of at most so many bytes, which are not above most_bytes; what is there already may go to the text
    // first.
    char* room(std::size_t bytes, std::string& text) {
        if (most_bytes - used_ < bytes) flush(text);
        return bytes_.data() + used_;
    }
    // Where the line ends that was written there.
    void end_at(const char* end) { used_ = static_cast<std::size_t>(end - bytes_.data()); }

    void flush(std::string& text) {
        text.append(bytes_.data(), used_);
        used_ = 0;
    }

private:
    std::vector<char> bytes_ = std::vector<char>(most_bytes);
    std::size_t used_ = 0;
};

// Gives where it ends.
inline char* copy_text(char* to, std::string_view text) { return std::ranges::copy(text, to).out; }

}  // namespace finance::command
