// Where the module is: as told, or beside the program as an installation puts it.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace finance::command {

class ModuleNotFound : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::filesystem::path this_program();

// told: may be empty. Otherwise ../lib/zelkovan.so from the program's folder, then zelkovan.so in it.
std::filesystem::path find_module(const std::filesystem::path& told, const std::filesystem::path& program);

}  // namespace finance::command
