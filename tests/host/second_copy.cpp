// A plug-in with a host library of its own, as an extension brings one along into a process that has another.
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "host/embedded_host.hpp"

namespace {

std::unique_ptr<finance::host::EmbeddedHost> host;

}  // namespace

extern "C" {

// Loads a module, or gives the reason why not: into that many bytes, an empty text where it did.
__attribute__((visibility("default"))) void second_copy_load(const char* module, char* reason, std::size_t size) {
    try {
        host = std::make_unique<finance::host::EmbeddedHost>(std::filesystem::path{module});
        std::snprintf(reason, size, "%s", "");
    } catch (const finance::host::LoadError& error) {
        std::snprintf(reason, size, "%s", error.what());
    }
}

__attribute__((visibility("default"))) double second_copy_evaluate(double rate, double count, double amount) {
    return host->evaluate("PMT", {rate, count, amount}).value;
}

__attribute__((visibility("default"))) void second_copy_end() { host.reset(); }
}
