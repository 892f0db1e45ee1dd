// Two copies of the host library in one process: neither knows of the other, and of each module there is one.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "host/embedded_host.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::EmbeddedHost;
using host::LoadError;

class SecondCopy : public testing::Test {
protected:
    void SetUp() override {
        library_ = ::dlopen(ZELKOVAN_SECOND_COPY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library_, nullptr) << ::dlerror();
    }
    ~SecondCopy() override {
        if (library_ == nullptr) return;
        end();
        ::dlclose(library_);
    }

    // Why it cannot load that module; empty where it can.
    std::string load(const std::filesystem::path& module) {
        std::array<char, 1000> reason{};
        routine<void(const char*, char*, std::size_t)>("second_copy_load")(module.c_str(), reason.data(),
                                                                           reason.size());
        return reason.data();
    }
    double evaluate(double rate, double count, double amount) {
        return routine<double(double, double, double)>("second_copy_evaluate")(rate, count, amount);
    }
    void end() { routine<void()>("second_copy_end")(); }

private:
    template <typename Signature>
    Signature* routine(const char* name) {
        return reinterpret_cast<Signature*>(::dlsym(library_, name));
    }

    void* library_ = nullptr;
};

std::string refusal_of(const std::filesystem::path& module) {
    return "The module " + module.string() +
           " is loaded in this process already, by another copy of the host library or by the program itself, and "
           "serves one host only: a second host needs a copy of the file.";
}

TEST_F(SecondCopy, IsRefusedAModuleThatServes) {
    const EmbeddedHost first{real_module()};
    EXPECT_EQ(load(real_module()), refusal_of(real_module()));
    EXPECT_EQ(first.evaluate("PMT", {1.0, 1, -1}).value, 2.0) << "the first host is none the worse";
}

TEST_F(SecondCopy, ServesAndIsNotDisturbed) {
    ASSERT_EQ(load(real_module()), "");
    std::string refusal;
    try {
        const EmbeddedHost second{real_module()};
    } catch (const LoadError& error) {
        refusal = error.what();
    }
    EXPECT_EQ(refusal, refusal_of(real_module()));
    EXPECT_EQ(evaluate(1, 1, -1), 2.0);
    end();
    const EmbeddedHost after{real_module()};
    EXPECT_EQ(after.evaluate("PMT", {1.0, 1, -1}).value, 2.0);
}

// As the refusal says: another file is another module.
TEST_F(SecondCopy, HasACopyOfTheFileForItself) {
    const std::filesystem::path copy = testing::TempDir() + "zelkovan_second_copy.so";
    std::filesystem::copy_file(real_module(), copy, std::filesystem::copy_options::overwrite_existing);
    const EmbeddedHost first{real_module()};
    EXPECT_EQ(load(copy), "");
    EXPECT_EQ(evaluate(1, 1, -1), 2.0);
    EXPECT_EQ(first.evaluate("PMT", {1.0, 1, -1}).value, 2.0);
    end();
    EXPECT_EQ(first.evaluate("PMT", {1.0, 1, -1}).value, 2.0);
    std::filesystem::remove(copy);
}

}  // namespace
}  // namespace finance::test
