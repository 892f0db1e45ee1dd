#include "command/host_on_demand.hpp"

#include <string>

#include "catalogue/text.hpp"
#include "command/files/descriptors.hpp"

namespace finance::command {

namespace {

constexpr const char* module_file = "zelkovan.so";
constexpr const char* packaged_folder = "lib/x86_64-linux-gnu/zelkovan";  // below /usr: cmake/DebianPackages.cmake
constexpr std::size_t most_said = 1000;

}  // namespace

std::filesystem::path this_program() { return std::filesystem::read_symlink("/proc/self/exe"); }

std::filesystem::path find_module(const std::filesystem::path& told, const std::filesystem::path& program) {
    if (!told.empty()) {
        if (is_file(told)) return told;
        throw ModuleNotFound{"there is no module at " + catalogue::shown(told.string())};
    }
    const std::filesystem::path folder = program.parent_path();
    std::filesystem::path installed = folder.parent_path() / "lib" / module_file;
    std::filesystem::path packaged = folder.parent_path() / packaged_folder / module_file;
    std::filesystem::path beside = folder / module_file;
    if (is_file(installed)) return installed;
    if (is_file(packaged)) return packaged;
    if (is_file(beside)) return beside;
    throw ModuleNotFound{"the module is neither at " + catalogue::shown(installed.string()) + ", nor at " +
                         catalogue::shown(packaged.string()) + ", nor at " + catalogue::shown(beside.string()) +
                         "; say where it is with --module PATH"};
}

const host::EmbeddedHost& HostOnDemand::get() {
    if (host_) return *host_;
    const std::filesystem::path module = find_module(told_module_, this_program());
    try {
        return host_.emplace(module);
    } catch (const host::LoadError& error) {  // with the module's path, and the loader's words
        throw host::LoadError{catalogue::shown(error.what(), most_said)};
    }
}

}  // namespace finance::command
