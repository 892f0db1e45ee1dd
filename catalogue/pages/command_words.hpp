// What can be typed beside the names of calculations, as data: the command reads by it and tells its help from it, the
// man page and the completions are made of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue::pages {

struct Range {
    std::size_t first = 0;
    std::size_t last = 0;  // 0: there is none
};

struct Option {
    std::string_view name;          // with its dashes
    std::string_view value{};       // of what follows it: FILE; empty where nothing does
    std::string_view help{};        // a line, or more; empty where another option's line tells of it
    Range range{};                  // of a value that is a whole number
    std::string_view short_name{};  // with its dash
    bool anywhere = false;          // of all jobs: taken from the words before a job reads them
};

// A word that is typed as it stands after another: loan after schedule.
struct FixedWord {
    std::string_view word;
    std::span<const Parameter> arguments;  // that follow it, by name
};

enum class Takes : std::uint8_t {
    nothing,
    calculation,  // the name of one, or a word
    variable,     // NAME=FIRST..LAST after a call, NAME being one of the call's own
};

struct Word {
    std::string_view word;
    std::string_view usage;    // what follows the word
    std::string_view purpose;  // one line
    std::span<const Option> options{};
    std::span<const FixedWord> fixed_words{};
    Takes takes = Takes::nothing;
};

enum class ValueIs : std::uint8_t { none, file, columns, other };

// What follows an option, as its help calls it.
constexpr ValueIs value_of(const Option& option) {
    if (option.value.empty()) return ValueIs::none;
    if (option.value == "FILE") return ValueIs::file;
    return option.value.starts_with("COLUMN") ? ValueIs::columns : ValueIs::other;
}

struct CommandWords {
    std::span<const Word> words;
    std::span<const Option> options;  // before the first word
    std::string_view version;
    std::string_view license;  // a line
};

// How a shell's script says what can be typed: "echo " LIST " ;;", and what stands in a list for names that it knows.
struct ListForm {
    std::string_view begin, end;
    std::string_view calculations, variables;
};

// The names, short ones too, of the words' options that such a value follows, each once, with a blank between.
std::string names_of_options(std::span<const Word> words, ValueIs value);

// The branches of the script's case on a word, or on a word and a fixed word after it: what can be typed then as it
// stands.
std::string typed_cases(std::span<const Word> words, const ListForm& form);

}  // namespace finance::catalogue::pages
