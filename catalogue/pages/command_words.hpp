// What the pages say of the command beside its calculations: handed in by the command, whose table it is.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace finance::catalogue::pages {

struct Word {
    std::string_view word;
    std::string_view usage;  // what follows the word
    std::string_view purpose;
    std::string help{};  // all there is to know of it; empty where usage and purpose are
};

struct Option {
    std::string_view name;   // with its dashes
    std::string_view value;  // of what follows it; empty where nothing does
    std::string_view purpose;
};

struct CommandWords {
    std::span<const Word> words;
    std::span<const Option> options;
    std::string_view version;
};

// What can be typed as it stands after a word, each once: its fixed words (loan) as its usage shows them, its options
// (--by) from the usage and the help. Capitals and name=value stand for something else and are left out.
std::vector<std::string> typed_words(const Word& word);

// What follows one of its fixed words: the name= of the line of the help that begins "finance WORD FIXED ", then the
// options. Empty where the help has no such line.
std::vector<std::string> typed_words(const Word& word, std::string_view fixed_word);

// The fixed words of the usage.
std::vector<std::string_view> fixed_words(const Word& word);

// Whether the name of a calculation follows.
bool takes_calculation(const Word& word);

// Whether NAME=FIRST..LAST follows a call, NAME being one of the call's own.
bool takes_variable(const Word& word);

}  // namespace finance::catalogue::pages
