// Paths of the modules that the tests load.
#pragma once

#include <filesystem>
#include <string_view>

namespace finance::test {

[[nodiscard]] std::filesystem::path real_module();
[[nodiscard]] std::filesystem::path fake_module(std::string_view behaviour);  // of fake_module.cpp

}  // namespace finance::test
