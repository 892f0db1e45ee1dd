// The embedded host, loaded when it is first needed, so that help and lists need no module.
#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "host/embedded_host.hpp"

namespace finance::command {

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
