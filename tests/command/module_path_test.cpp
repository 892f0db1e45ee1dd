#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "command/host_on_demand.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

class ModulePath : public testing::Test {
protected:
    void SetUp() override {
        root_ = fs::temp_directory_path() / ("finance_module_path_" + std::to_string(getpid()));
        fs::create_directories(root_ / "bin");
        fs::create_directories(root_ / "lib");
    }
    void TearDown() override { fs::remove_all(root_); }
    void put(const fs::path& file) const { std::ofstream{root_ / file} << "x"; }
    [[nodiscard]] fs::path program() const { return root_ / "bin" / "finance"; }

    fs::path root_;
};

TEST_F(ModulePath, InstalledThenBeside) {
    EXPECT_THROW(command::find_module("", program()), command::ModuleNotFound);
    put("bin/zelkovan.so");
    EXPECT_EQ(command::find_module("", program()), root_ / "bin" / "zelkovan.so");
    fs::create_directories(root_ / "lib/x86_64-linux-gnu/zelkovan");
    put("lib/x86_64-linux-gnu/zelkovan/zelkovan.so");
    EXPECT_EQ(command::find_module("", program()), root_ / "lib/x86_64-linux-gnu/zelkovan" / "zelkovan.so");
    put("lib/zelkovan.so");
    EXPECT_EQ(command::find_module("", program()), root_ / "lib" / "zelkovan.so");
}

TEST_F(ModulePath, ToldGoesFirst) {
    put("lib/zelkovan.so");
    put("other.so");
    EXPECT_EQ(command::find_module(root_ / "other.so", program()), root_ / "other.so");
    EXPECT_THROW(command::find_module(root_ / "none.so", program()), command::ModuleNotFound);
    EXPECT_THROW(command::find_module(root_, program()), command::ModuleNotFound) << "a folder is no module";
}

TEST_F(ModulePath, SaysWhereItLooked) {
    try {
        (void)command::find_module("", program());
        FAIL() << "found a module where there is none";
    } catch (const command::ModuleNotFound& error) {
        const std::string text = error.what();
        EXPECT_NE(text.find((root_ / "lib" / "zelkovan.so").string()), std::string::npos) << text;
        EXPECT_NE(text.find((root_ / "lib/x86_64-linux-gnu/zelkovan" / "zelkovan.so").string()), std::string::npos)
            << text;
        EXPECT_NE(text.find((root_ / "bin" / "zelkovan.so").string()), std::string::npos) << text;
        EXPECT_NE(text.find("--module PATH"), std::string::npos) << text;
    }
}

TEST(ThisProgram, IsTheTestItself) { EXPECT_TRUE(fs::exists(command::this_program())); }

}  // namespace
}  // namespace finance::test
