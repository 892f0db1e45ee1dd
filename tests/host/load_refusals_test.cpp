// Modules that a host must not take, and what is left after it has refused one.
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

#include "host/control_block.hpp"
#include "host/embedded_host.hpp"
#include "host/memory_vector.hpp"
#include "host/module_loader.hpp"
#include "host/services.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::EmbeddedHost;
using host::ExitRequest;
using host::LoadError;

constexpr ExitRequest fake_exit{1016, 7};

struct RefusedModule {
    const char* behaviour;
    const char* reason;  // what follows the module's name
    std::optional<ExitRequest> exit = std::nullopt;
};

const RefusedModule refused[] = {
    // the entry point
    {"without_entry", " has no entry point mcn_main."},
    {"null_image", " returned no image record from its entry point."},
    {"exit_at_entry", " ended the process at its entry point, with code 1016 and detail 7.", fake_exit},

    // the image record
    {"wrong_tag", " has an image record without the tag ZOT_Image_Information=."},
    {"tag_with_a_tail", " has an image record without the tag ZOT_Image_Information=."},
    {"wrong_magic", " has an image record with the wrong magic number."},
    {"wrong_layout", " has an image record of another layout than 8."},
    {"without_controls", " has an image record without program controls."},
    {"other_program", " has no program control named zelkovan."},
    {"without_registration", " has a program control zelkovan without an entry."},

    // the function items
    {"null_items", " gave nothing when asked for its function items."},
    {"two_items", " offers other than one function."},
    {"without_item", " offers other than one function."},
    {"other_item", " offers a function other than FINANCE."},
    {"exit_at_items", " ended the process when asked for its function items, with code 1016 and detail 7.", fake_exit},

    // the entry points
    {"null_entries", " gave nothing when asked for its entry points."},
    {"exit_at_entries", " ended the process when asked for its entry points, with code 1016 and detail 7.", fake_exit},
    {"without_dispatcher", " names no dispatcher for FINANCE."},
};

struct Refusal {
    std::string what;
    std::optional<ExitRequest> exit;
};

template <typename Attempt>
std::optional<Refusal> refusal_of(Attempt attempt) {
    try {
        attempt();
    } catch (const LoadError& error) {
        return Refusal{error.what(), error.exit_request()};
    }
    return std::nullopt;
}

TEST(LoadRefusals, SayWhatIsWrong) {
    for (const RefusedModule& row : refused) {
        SCOPED_TRACE(row.behaviour);
        const auto path = fake_module(row.behaviour);
        for (int time = 1; time <= 2; ++time) {  // the first attempt leaves no claim behind
            const auto refusal = refusal_of([&] { const EmbeddedHost host{path}; });
            ASSERT_TRUE(refusal) << "attempt " << time;
            EXPECT_EQ(refusal->what, "The module " + path.string() + row.reason);
            EXPECT_EQ(refusal->exit, row.exit);
        }
    }
}

// What a refused module had taken goes back to the host's memory.
TEST(LoadRefusals, LeaveNoMemory) {
    host::MemoryVector memory;
    host::ControlBlock control_block{memory.entry_points(), nullptr};
    host::ServiceDesk desk{control_block};
    int refusals = 0;
    for (const RefusedModule& row : refused) {
        SCOPED_TRACE(row.behaviour);
        if (std::string{"without_entry"} == row.behaviour) continue;
        const host::SharedObject object{fake_module(row.behaviour)};
        EXPECT_THROW((host::Registration{{desk, memory, control_block, "fake"}, object.entry_point()}), LoadError);
        EXPECT_EQ(memory.blocks(), 0);
        EXPECT_EQ(memory.errors(), 0U);
        ++refusals;
    }
    EXPECT_EQ(refusals, 17);
    EXPECT_GT(memory.requests(), 0U);
}

TEST(LoadRefusals, FilesThatAreNoModules) {
    const std::string missing_file = testing::TempDir() + "zelkovan_no_such_module.so";
    const std::string text_file = testing::TempDir() + "zelkovan_text_module.so";
    std::ofstream{text_file} << "not a shared object\n";
    for (const std::string& path : {missing_file, text_file, testing::TempDir()}) {
        const auto refusal = refusal_of([&] { const EmbeddedHost host{std::filesystem::path{path}}; });
        ASSERT_TRUE(refusal) << path;
        EXPECT_EQ(refusal->what.rfind("The module " + path + " cannot be loaded: ", 0), 0U) << refusal->what;
        EXPECT_FALSE(refusal->exit) << path;
    }
    std::filesystem::remove(text_file);
}

TEST(LoadRefusals, ALinkedModuleIsNamedAsOne) {
    const auto refusal =
        refusal_of([] { const EmbeddedHost host{[](void*, void*) -> const ImageInformation* { return nullptr; }}; });
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->what, "The module linked into the program returned no image record from its entry point.");
}

TEST(LoadRefusals, TwoHostsOfOneModule) {
    const auto path = fake_module("good");
    const EmbeddedHost first{path};
    const auto refusal = refusal_of([&] { const EmbeddedHost second{path}; });
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->what, "The module " + path.string() + " already serves another host of this process.");
    EXPECT_FALSE(refusal->exit);
    EXPECT_EQ(first.evaluate("SUM", {1, 2}).value, 3.0) << "the first host is none the worse";
}

}  // namespace
}  // namespace finance::test
