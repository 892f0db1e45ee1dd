#include "command/words.hpp"

#include <algorithm>

#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view quotation_marks = "'\"";

constexpr bool is_blank(char c) { return blanks.find(c) != std::string_view::npos; }
constexpr bool is_quotation_mark(char c) { return quotation_marks.find(c) != std::string_view::npos; }

// The word at the beginning of the rest, which it is taken from.
std::string take_word(std::string_view& rest) {
    std::string word;
    while (!rest.empty() && !is_blank(rest.front())) {
        const char c = rest.front();
        rest.remove_prefix(1);
        if (!is_quotation_mark(c)) {
            word += c;
            continue;
        }
        const std::size_t end = rest.find(c);
        if (end == std::string_view::npos) throw UsageError{std::string{"no second "} + c + " follows", "?"};
        word.append(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    return word;
}

void skip_blanks(std::string_view& rest) { rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size())); }

}  // namespace

std::vector<std::string> split_words(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string> words;
    for (skip_blanks(line); !line.empty() && line.front() != '#'; skip_blanks(line)) words.push_back(take_word(line));
    return words;
}

std::string_view without_comment(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    char mark = '\0';  // of the quotation that i is in
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '#' && mark == '\0' && (i == 0 || is_blank(line[i - 1]))) return line.substr(0, i);
        if (mark == '\0' && is_quotation_mark(c)) {
            mark = c;
        } else if (c == mark) {
            mark = '\0';
        }
    }
    return line;
}

void JoinedLine::count_brackets(std::string_view line) {
    for (const char c : line) {
        if (c == '(') ++open_;
        if (c == ')' && open_ > 0) --open_;
        if (mark_ == '\0' && is_quotation_mark(c)) {
            mark_ = c;
            before_quotation_ = open_;
        } else if (c == mark_) {
            mark_ = '\0';
            open_ = before_quotation_;
        }
    }
}

void JoinedLine::add(std::string_view line) {
    const bool escaped = line.ends_with('\\');
    if (escaped) line.remove_suffix(1);
    if (goes_on_) text_ += ' ';
    text_ += line;
    if (escaped) text_ += ' ';
    count_brackets(line);
    goes_on_ = escaped || open_ > 0;
}

TypedLine split_at_cursor(std::string_view line) {
    const std::size_t begin = line.find_last_of(blanks) + 1;  // npos + 1 is 0
    try {
        return {split_words(line.substr(0, begin)), line.substr(begin)};
    } catch (const UsageError&) {
        return {{}, {}};  // inside quotation marks
    }
}

}  // namespace finance::command
