#include "command/text_layout.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <vector>

namespace finance::command {

namespace {

constexpr std::size_t margin = 2;
constexpr std::string_view program = "finance ";

std::size_t columns_told() {
    const char* told = std::getenv("COLUMNS");
    const std::string_view text{told != nullptr ? told : ""};
    std::size_t columns = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), columns);
    return fault == std::errc{} && end == text.data() + text.size() ? columns : 0;
}

std::size_t columns_of_terminal() {
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

// The last blank that a line of that width can be broken at; npos where there is none. whole: what stands between
// quotation marks is not broken.
std::size_t last_break(std::string_view line, std::size_t width, bool whole) {
    std::size_t found = std::string_view::npos;
    char mark = 0;
    for (std::size_t i = 0; i < line.size() && i <= width; ++i) {
        const char c = line[i];
        if (whole && (c == '\'' || c == '"') && (mark == 0 || mark == c)) mark = mark == 0 ? c : 0;
        if (c == ' ' && mark == 0) found = i;
    }
    return found;
}

// continuation: what ends a line that goes on in the next.
std::string broken_line(std::string_view line, std::size_t indent, std::size_t width, std::string_view continuation) {
    const std::size_t taken = indent + continuation.size();
    const std::size_t room = width > taken ? width - taken : 1;
    std::string text;
    while (line.size() > room) {
        const std::size_t blank = last_break(line, room, !continuation.empty());
        if (blank == std::string_view::npos) break;
        text.append(indent, ' ').append(line.substr(0, blank)).append(continuation) += '\n';
        line.remove_prefix(blank + 1);
    }
    return text.append(indent, ' ').append(line) + '\n';
}

std::size_t indent_of(std::string_view line) { return std::min(line.find_first_not_of(' '), line.size()); }

// Where the text in the line's last column begins.
std::size_t text_column(std::string_view line) {
    const std::size_t gap = line.rfind("  ");
    const std::size_t indent = indent_of(line);
    return gap == std::string_view::npos || gap < indent ? indent : gap + 2;
}

// A line as it was laid out, and those that go on where it was full.
struct Paragraph {
    std::string lines;  // as they were laid out
    std::string text;   // in one
    std::size_t column;
    std::size_t widest;
};

bool is_call(std::string_view line) { return line.substr(indent_of(line)).starts_with(program); }

bool goes_on(std::string_view full, std::size_t column, std::string_view next) {
    if (next.empty() || indent_of(next) != column || text_column(next) != column || is_call(next)) return false;
    const std::size_t first_word = std::min(next.find(' ', column), next.size()) - column;
    return full.size() + 1 + first_word > usual_width;
}

std::vector<Paragraph> paragraphs_of(std::string_view text) {
    std::vector<Paragraph> paragraphs;
    std::string_view before;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!paragraphs.empty() && !before.empty() && goes_on(before, paragraphs.back().column, line)) {
            Paragraph& last = paragraphs.back();
            last.lines.append(line) += '\n';
            last.text.append(" ").append(line.substr(last.column));
            last.widest = std::max(last.widest, line.size());
        } else {
            paragraphs.push_back({std::string{line} + '\n', std::string{line}, text_column(line), line.size()});
        }
        before = line;
    }
    return paragraphs;
}

std::string broken_paragraph(const Paragraph& paragraph, std::size_t width) {
    constexpr std::size_t below = 4;  // further in, where there is no room beside the column before
    const std::string_view text{paragraph.text};
    if (is_call(text) && text_column(text) == indent_of(text)) {
        return broken_line(text.substr(indent_of(text)), indent_of(text), width, " \\");
    }
    const std::string_view beside = text.substr(0, paragraph.column);
    const std::string_view rest = text.substr(paragraph.column);
    if (paragraph.column <= width / 2) {
        return std::string{beside} + broken_line(rest, paragraph.column, width, "").substr(paragraph.column);
    }
    const std::string_view name = beside.substr(0, beside.find_last_not_of(' ') + 1);
    return std::string{name} + '\n' + broken_line(rest, indent_of(text) + below, width, "");
}

}  // namespace

std::size_t output_width() {
    constexpr std::size_t least = 20;
    if (isatty(STDOUT_FILENO) != 1) return usual_width;
    const std::size_t told = columns_told();
    const std::size_t columns = told > 0 ? told : columns_of_terminal();
    return columns > 0 ? std::max(columns, least) : usual_width;
}

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width) {
    std::string result;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        result += broken_line(text.substr(0, end), indent, width, "");
        text.remove_prefix(end + 1);
    }
    return result + broken_line(text, indent, width, "");
}

std::string wrapped_call(std::string_view call, std::size_t width) { return broken_line(call, margin, width, " \\"); }

std::string fitted(std::string_view text, std::size_t width) {
    std::string result;
    for (const Paragraph& paragraph : paragraphs_of(text)) {
        result += paragraph.widest > width ? broken_paragraph(paragraph, width) : paragraph.lines;
    }
    return result;
}

Outcome shown_help(const std::string& text) {
    const bool narrow = isatty(STDOUT_FILENO) == 1;
    return {exit_answered, narrow ? fitted(text, output_width()) : text, ""};
}

}  // namespace finance::command
