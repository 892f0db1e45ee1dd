#include "command/prompt/prompt_editor.hpp"

#include <editline/readline.h>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <string_view>

#include "command/outcome.hpp"
#include "command/prompt/completion.hpp"
#include "command/prompt/prompt_history.hpp"
#include "command/prompt/prompt_signals.hpp"
#include "command/prompt/terminal_modes.hpp"
#include "command/prompt/typed_keys.hpp"

namespace finance::command {

namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};
using OwnedText = std::unique_ptr<char, Free>;

// What the line being read has come to; the editing library calls back without a place for it.
struct Reading {
    HeldSignals signals{};
    TerminalModes modes{::fileno(rl_instream)};  // put back while signals are still held
    bool abandoned = false;
};
Reading* reading = nullptr;

// Bytes that were read and not yet handed over as characters: they outlast the line that they were read for.
std::string unread;

TypedKeys keys;

// ---- The window

// A line that is longer than the window leads the editing library beyond what it keeps of the screen, and so does a window
// that does not hold the prompt. So it is told of one that is wide enough, and as high as a very long line would be.
void fit_to_window() {
    constexpr int longest_line = 1 << 18;
    constexpr int fewest_columns = 20, usual_columns = 80;
    winsize size{};
    if (::ioctl(::fileno(rl_instream), TIOCGWINSZ, &size) != 0) return;
    const int columns = size.ws_col > 0 ? std::max(int{size.ws_col}, fewest_columns) : usual_columns;
    rl_set_screen_size(std::max(longest_line / columns, int{size.ws_row}) + 1, columns);
}

// ---- Input: one character, signals being acted upon before it

void act_upon(int signal) {
    if (signal == SIGWINCH) {
        // The editing library keeps the cursor's old place, which a smaller window does not have.
        fit_to_window();
        write_text(rl_outstream, "\r");
        rl_forced_update_display();
        return;
    }
    reading->modes.leave();
    reading->signals.let_through(signal);
    // Continued in the background, the terminal is another's until the shell gives it back.
    while (::tcgetpgrp(::fileno(rl_instream)) != ::getpgrp()) reading->signals.let_through(SIGTTIN);
    reading->modes.enter();
    rl_forced_update_display();
}

// At a Tab the editing library ends its copy of the line with a NUL, where that copy was when the line was shorter. It
// reads nothing there: it is given a place of its own, of which the system keeps no more than is written to.
void keep_line_end_apart() {
    constexpr std::size_t longest_line = std::size_t{1} << 24;
    static const auto place = std::make_unique_for_overwrite<char[]>(longest_line);
    rl_line_buffer = place.get();
}

// The first character, taken from the bytes, once they hold all of it; a byte that begins none stands for itself.
std::optional<wchar_t> take_character(std::string& bytes) {
    std::mbstate_t state{};
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, bytes.data(), bytes.size(), &state);
    if (length == static_cast<std::size_t>(-2)) return {};
    if (length == static_cast<std::size_t>(-1)) character = static_cast<unsigned char>(bytes.front());
    bytes.erase(0, length == static_cast<std::size_t>(-1) ? 1 : std::max<std::size_t>(length, 1));
    return character;
}

// To the editing library, control characters beyond ASCII are letters typed with Meta, and what takes more than four bytes
// (there are longer sequences of UTF-8 than it has characters) is a reason to abort.
wchar_t harmless(wchar_t character) {
    constexpr wchar_t last = 0x10FFFF;
    const bool meta = character >= 0x80 && character <= 0x9F;
    return meta || character > last ? L'?' : character;
}

ssize_t read_byte(int file, char& byte) {
    ssize_t count = 0;
    while ((count = ::read(file, &byte, 1)) < 0 && errno == EINTR) continue;
    return count;
}

int read_character(std::FILE* stream) {
    for (;;) {
        keep_line_end_apart();
        if (const auto character = take_character(unread)) {
            return static_cast<int>(keys.given(harmless(*character)));
        }
        const int signal = reading->signals.next(::fileno(stream));
        reading->abandoned = signal == SIGINT;
        if (reading->abandoned) return EOF;
        if (signal != 0) {
            act_upon(signal);
            continue;
        }
        char byte = 0;
        if (read_byte(::fileno(stream), byte) != 1) return EOF;
        unread += byte;
    }
}

// ---- Completion

char* copy_of(const std::string& text) {
    char* copy = ::strdup(text.c_str());
    if (copy == nullptr) throw std::bad_alloc{};
    return copy;
}

// As the editing library wants them and frees them: what all begin with, then each, then null.
char** handed_over(const std::vector<std::string>& matches) {
    if (matches.empty()) return nullptr;
    auto** list = static_cast<char**>(std::calloc(matches.size() + 2, sizeof(char*)));
    if (list == nullptr) throw std::bad_alloc{};
    list[0] = copy_of(common_beginning(matches));
    for (std::size_t i = 0; i < matches.size(); ++i) list[i + 1] = copy_of(matches[i]);
    return list;
}

// So many characters from the beginning; blanks for those that the text lacks.
std::string first_characters(std::string_view text, int count) {
    std::string first;
    for (; count > 0; --count) {
        std::mbstate_t state{};
        const std::size_t length = text.empty() ? 0 : std::mbrlen(text.data(), text.size(), &state);
        const std::size_t bytes = length <= text.size() ? length : 1;
        first += bytes > 0 ? text.substr(0, bytes) : " ";
        text.remove_prefix(bytes);
    }
    return first;
}

// The editing library would sort them. So many in a line as fit, the first ones first.
void show(const std::vector<std::string>& matches) {
    constexpr std::size_t gap = 2;
    int rows = 0, columns = 0;
    rl_get_screen_size(&rows, &columns);
    std::size_t widest = 0;
    for (const std::string& match : matches) widest = std::max(widest, match.size() + gap);
    const std::size_t in_line = std::max<std::size_t>(static_cast<std::size_t>(std::max(columns, 1)) / widest, 1);
    std::string text;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        text.append(i % in_line == 0 ? "\n" : std::string(widest - matches[i - 1].size(), ' ')).append(matches[i]);
    }
    write_text(rl_outstream, text + '\n');
    rl_forced_update_display();
}

// word: from the character at start to the cursor.
char** complete(const char* word, int start, int /*end*/) {
    // Lacks the last byte: at the most a blank before an empty word. Of nothing there is no copy, not even an empty one.
    const OwnedText line{start > 0 ? rl_copy_text(0, INT_MAX) : nullptr};
    const auto matches = completions((line ? first_characters(line.get(), start) : "") + word);
    rl_attempted_completion_over = matches ? 1 : 0;
    if (!matches) return nullptr;
    constexpr int again = '?';  // the second Tab
    if (rl_completion_type == again && matches->size() > 1 && common_beginning(*matches) == word) {
        show(*matches);
        return nullptr;
    }
    const bool wants_value = matches->size() == 1 && matches->front().ends_with('=');
    rl_completion_append_character = wants_value ? 0 : static_cast<unsigned char>(' ');
    return handed_over(*matches);
}

}  // namespace

namespace {

// What the editing library falls over: its own commands at an open quotation mark; the mark, which stays where a longer
// line had it; the search letter by letter, which steps in front of the line; the word before, copied beyond the line's
// end; what is repeated a million times. In place of the search one for lines that begin as this one does.
constexpr std::array unbound{
    "bind -r ^[x",  "bind -r ^[X", "bind -a -r :", "bind -r ^X^X", "bind -r ^[w", "bind -r ^[W",
    "bind -r ^[^_", "bind -r ^[0", "bind -r ^[1",  "bind -r ^[2",  "bind -r ^[3", "bind -r ^[4",
    "bind -r ^[5",  "bind -r ^[6", "bind -r ^[7",  "bind -r ^[8",  "bind -r ^[9", "bind ^R ed-search-prev-history"};

}  // namespace

PromptEditor::PromptEditor(const std::vector<std::string>& earlier_lines) {
    static std::array<char, 3> word_ends{" \t"};
    std::setlocale(LC_CTYPE, "");
    // The editing library drops what is no character of the locale; the plain one has none beyond ASCII.
    if (std::string_view{::nl_langinfo(CODESET)} == "ANSI_X3.4-1968") std::setlocale(LC_CTYPE, "C.UTF-8");
    rl_readline_name = "finance";
    rl_catch_signals = 0;
    rl_instream = stdin;
    rl_outstream = ::isatty(STDOUT_FILENO) != 0 ? stdout : stderr;
    rl_basic_word_break_characters = word_ends.data();
    rl_completer_word_break_characters = word_ends.data();
    rl_attempted_completion_function = complete;
    rl_getc_function = read_character;
    rl_initialize();
    fit_to_window();
    for (const char* command : unbound) rl_parse_and_bind(command);
    using_history();
    stifle_history(static_cast<int>(kept_lines));
    for (const std::string& line : earlier_lines) remember(line);
}

// Of the one editor that there may be.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::optional<PromptEditor::Line> PromptEditor::read(const char* prompt) {
    Reading current;
    keys.begin_line();
    reading = &current;
    const OwnedText text{readline(prompt)};
    reading = nullptr;
    if (text == nullptr && !current.abandoned) return {};
    return Line{current.abandoned, text != nullptr && !current.abandoned ? text.get() : ""};
}

bool PromptEditor::remember(const std::string& line) {
    if (line.find_first_not_of(" \t") == std::string::npos || line == last_) return false;
    add_history(line.c_str());
    last_ = line;
    return true;
}

}  // namespace finance::command
