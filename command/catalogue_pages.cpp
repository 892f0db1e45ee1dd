// catalogue_pages FOLDER: writes reference pages, the man page and the completions of both shells into it,
// and the catalogue as JavaScript reads it.
#include <cstdio>
#include <exception>

#include "catalogue/pages/pages.hpp"
#include "command/help.hpp"
#include "command/jobs.hpp"

namespace {

namespace pages = finance::catalogue::pages;

void write_pages(const char* folder) {
    const auto jobs = finance::command::jobs();
    const std::vector<pages::Word> words{jobs.begin(), jobs.end()};
    std::vector<pages::PageFile> files =
        pages::page_files({words, finance::command::options(), FINANCE_VERSION, FINANCE_LICENSE});
    files.push_back(
        {"wasm/javascript/catalogue.json", finance::command::json_catalogue(finance::catalogue::calculations())});
    pages::write_files(folder, files);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: catalogue_pages FOLDER\n", stderr);
        return 2;
    }
    try {
        write_pages(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "catalogue_pages: %s\n", error.what());
        return 1;
    }
    return 0;
}
