#include "tests/host/fake_modules.hpp"

#include <string>

namespace finance::test {

std::filesystem::path real_module() { return ZELKOVAN_MODULE; }

std::filesystem::path fake_module(std::string_view behaviour) {
    return std::filesystem::path{ZELKOVAN_FAKE_MODULES} / ("fake_" + std::string{behaviour} + ".so");
}

}  // namespace finance::test
