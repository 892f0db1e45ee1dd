// Writes what the extension is made of:
//
//     postgresql_script sql|entries > FILE
#include <cstdio>
#include <exception>
#include <string_view>

#include "adapters/postgresql/signatures.hpp"

int main(int argc, char** argv) {
    using namespace finance::adapters::postgresql;
    const std::string_view wanted = argc == 2 ? argv[1] : "";
    if (wanted != "sql" && wanted != "entries") {
        std::fputs("usage: postgresql_script sql|entries\n", stderr);
        return 2;
    }
    try {
        const std::string text = wanted == "sql" ? whole_script() : entry_list();
        return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "postgresql_script: %s\n", fault.what());
        return 1;
    }
}
