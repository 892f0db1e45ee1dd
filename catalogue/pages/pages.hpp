// What is made of the catalogue and of the command's words.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "catalogue/pages/command_words.hpp"

namespace finance::catalogue::pages {

// ---- The reference in Markdown: a page a calculation, and one that lists them

// The page's file: "PRICE.md".
std::string reference_file(const Calculation& calculation);
std::string reference_page(const Calculation& calculation, const Family& family);
std::string reference_index(std::span<const Family> families);

// ---- finance(1)

std::string man_page(std::span<const Family> families, const CommandWords& command);

// ---- Completion of `finance`: words, names of calculations, names of arguments, day-count bases

std::string bash_completion(std::span<const Calculation> calculations, const CommandWords& command);
std::string zsh_completion(std::span<const Calculation> calculations, const CommandWords& command);

// ---- All pages, as files of a folder: docs/reference/, docs/finance.1, completions/

struct PageFile {
    std::filesystem::path path;  // relative
    std::string text;
};

std::vector<PageFile> page_files(const CommandWords& command);

// Makes folders as needed; std::runtime_error with the path where a file cannot be written.
void write_files(const std::filesystem::path& folder, const std::vector<PageFile>& files);

}  // namespace finance::catalogue::pages
