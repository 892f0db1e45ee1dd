#include "catalogue/pages/command_words.hpp"

#include <algorithm>

namespace finance::catalogue::pages {

namespace {

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view letters_and_hyphen = "abcdefghijklmnopqrstuvwxyz-";

bool is_fixed_word(std::string_view token) {
    return token.size() > 1 && token.find_first_not_of(letters) == std::string_view::npos;
}

bool is_option(std::string_view token) {
    return token.size() > 2 && token.starts_with("--") &&
           token.find_first_not_of(letters_and_hyphen) == std::string_view::npos;
}

std::vector<std::string_view> tokens_of(std::string_view text) {
    constexpr std::string_view separators = " []()|,;:.\n\"";
    std::vector<std::string_view> tokens;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        if (end > 0) tokens.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return tokens;
}

}  // namespace

std::vector<std::string> typed_words(const Word& word) {
    std::vector<std::string> words;
    const auto add = [&](std::string_view token) {
        if (std::ranges::find(words, token) == words.end()) words.emplace_back(token);
    };
    const auto add_option = [&](std::string_view token) {
        const std::string_view name = token.substr(0, token.find('='));
        if (is_option(name)) add(name);
    };
    for (const std::string_view token : tokens_of(word.usage)) {
        if (is_fixed_word(token)) add(token);
        add_option(token);
    }
    for (const std::string_view token : tokens_of(word.help)) add_option(token);
    return words;
}

bool takes_calculation(const Word& word) {
    const auto tokens = tokens_of(word.usage);
    return std::ranges::find(tokens, "NAME") != tokens.end();
}

}  // namespace finance::catalogue::pages
