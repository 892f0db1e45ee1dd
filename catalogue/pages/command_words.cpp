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

std::vector<std::string_view> fixed_words(const Word& word) {
    std::vector<std::string_view> words = tokens_of(word.usage);
    std::erase_if(words, [](std::string_view token) { return !is_fixed_word(token); });
    return words;
}

std::vector<std::string> typed_words(const Word& word, std::string_view fixed_word) {
    const std::string call = "finance " + std::string{word.word} + ' ' + std::string{fixed_word} + ' ';
    const std::size_t begin = word.help.find(call);
    if (begin == std::string::npos) return {};
    std::vector<std::string> words;
    const std::string line = word.help.substr(begin, word.help.find('\n', begin) - begin);
    for (const std::string_view token : tokens_of(line)) {
        if (token.find('=') != std::string_view::npos) words.emplace_back(token.substr(0, token.find('=') + 1));
    }
    for (const std::string& one : typed_words(word)) {
        if (is_option(one)) words.push_back(one);
    }
    return words;
}

std::vector<std::string> typed_words(const Word& word) {
    std::vector<std::string> words;
    const auto add = [&](std::string_view token) {
        if (std::ranges::find(words, token) == words.end()) words.emplace_back(token);
    };
    const auto add_option = [&](std::string_view token) {
        const std::string_view name = token.substr(0, token.find('='));
        if (is_option(name)) add(name);
    };
    for (const std::string_view token : fixed_words(word)) add(token);
    for (const std::string_view token : tokens_of(word.usage)) add_option(token);
    for (const std::string_view token : tokens_of(word.help)) add_option(token);
    return words;
}

bool takes_calculation(const Word& word) {
    const auto tokens = tokens_of(word.usage);
    return std::ranges::find(tokens, "NAME") != tokens.end();
}

bool takes_variable(const Word& word) { return word.usage.find("NAME=FIRST..LAST") != std::string_view::npos; }

}  // namespace finance::catalogue::pages
