// Where the module is: as told, or beside the program as an installation puts it. The embedded host is loaded when it
// is first needed, so that help and lists need no module.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/embedded_host.hpp"

namespace finance::command {

class ModuleNotFound : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::filesystem::path this_program();

// told: may be empty. Otherwise zelkovan.so in ../lib from the program's folder, in the folder of the distribution's packages
// (../lib/x86_64-linux-gnu/zelkovan), or beside the program.
std::filesystem::path find_module(const std::filesystem::path& told, const std::filesystem::path& program);

class HostOnDemand {
public:
    // told_module: may be empty, then the installed one.
    explicit HostOnDemand(std::filesystem::path told_module) : told_module_{std::move(told_module)} {}

    // ModuleNotFound, host::LoadError: each time anew as long as it cannot be loaded.
    const host::EmbeddedHost& get();

private:
    std::filesystem::path told_module_;
    std::optional<host::EmbeddedHost> host_{};
};

}  // namespace finance::command
