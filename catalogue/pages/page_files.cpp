#include <fstream>
#include <ios>
#include <stdexcept>

#include "catalogue/pages/pages.hpp"

namespace finance::catalogue::pages {

std::vector<PageFile> page_files(const CommandWords& command) {
    const std::filesystem::path reference{"docs/reference"};
    std::vector<PageFile> files{
        {reference / "README.md", reference_index(families())},
        {"docs/finance.1", man_page(families(), command)},
        {"completions/finance.bash", bash_completion(calculations(), command)},
        {"completions/_finance", zsh_completion(calculations(), command)},
    };
    for (const Calculation& calculation : calculations()) {
        files.push_back({reference / reference_file(calculation), reference_page(calculation, family_of(calculation))});
    }
    return files;
}

void write_files(const std::filesystem::path& folder, const std::vector<PageFile>& files) {
    for (const PageFile& file : files) {
        const std::filesystem::path path = folder / file.path;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream stream{path, std::ios::binary};
        stream.write(file.text.data(), static_cast<std::streamsize>(file.text.size()));
        stream.close();
        if (!stream) throw std::runtime_error{path.string() + " cannot be written"};
    }
}

}  // namespace finance::catalogue::pages
