// All pages, as files of a folder: docs/reference/, docs/finance.1, completions/.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "catalogue/pages/command_words.hpp"

namespace finance::catalogue::pages {

struct PageFile {
    std::filesystem::path path;  // relative
    std::string text;
};

std::vector<PageFile> page_files(const CommandWords& command);

// Makes folders as needed; std::runtime_error with the path where a file cannot be written.
void write_files(const std::filesystem::path& folder, const std::vector<PageFile>& files);

}  // namespace finance::catalogue::pages
