// evaluate() takes nothing from the free store where there is nothing to report. A program of its own, because it
// replaces operator new.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "host/embedded_host.hpp"
#include "module/financial_list.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/host/sample_calls.hpp"

namespace {

constinit thread_local std::int64_t allocations_here = 0;

void* counted(void* memory) {
    ++allocations_here;
    if (memory == nullptr) throw std::bad_alloc{};
    return memory;
}

std::size_t rounded_up(std::size_t size, std::size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

}  // namespace

// The array and nothrow forms of the library call these.
void* operator new(std::size_t size) { return counted(std::malloc(size != 0 ? size : 1)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(unit, rounded_up(size != 0 ? size : 1, unit)));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

namespace finance::test {
namespace {

using host::Argument;
using host::EmbeddedHost;
using host::Evaluation;

struct CountCase {
    int arguments;
    int allocations;  // of the first such call of a thread
};

constexpr CountCase count_cases[] = {{1, 0}, {2, 0}, {31, 0}, {32, 0}, {33, 1}, {34, 1}, {65, 1}, {66, 1}, {500, 1}};

// In a thread of its own, so that no earlier call has made room.
template <typename Work>
void in_new_thread(Work work) {
    std::thread{work}.join();
}

TEST(Allocation, OnceBeyond32Arguments) {
    const EmbeddedHost host{real_module()};
    for (const CountCase& row : count_cases) {
        in_new_thread([&] {
            std::vector<Argument> arguments(static_cast<std::size_t>(row.arguments), Argument{0.0});
            arguments[0] = 8.0;
            const std::int64_t before = allocations_here;
            const Evaluation first = host.evaluate("FVSCHEDULE", arguments);
            const std::int64_t between = allocations_here;
            const Evaluation second = host.evaluate("FVSCHEDULE", arguments);
            const std::int64_t after = allocations_here;
            EXPECT_EQ(between - before, row.allocations) << row.arguments;
            EXPECT_EQ(after - between, 0) << row.arguments;
            EXPECT_EQ(first.value, 8.0) << row.arguments;
            EXPECT_EQ(second.value, first.value) << row.arguments;
        });
    }
}

// The counter does count: it is the log line that is allocated.
TEST(Allocation, ForALogLineAlone) {
    const EmbeddedHost host{real_module()};
    const std::int64_t before = allocations_here;
    const Evaluation quiet = host.evaluate("SLN", {10000, 1000, 5});
    const std::int64_t between = allocations_here;
    const Evaluation talking = host.evaluate("SLN", {10000, 1000});
    EXPECT_EQ(between, before);
    EXPECT_GT(allocations_here, between);
    EXPECT_TRUE(quiet.answered() && !talking.answered());
}

TEST(Allocation, NoneForAnyCalculation) {
    const EmbeddedHost host{real_module()};
    int checked = 0;
    for (const SampleCall& call : answered_calls()) {
        // The toolkit keeps the name of the pool that IRR asks for.
        (void)host.evaluate(call.name, call.arguments);
        const std::int64_t before = allocations_here;
        const Evaluation got = host.evaluate(call.name, call.arguments);
        const std::int64_t pools = call.name == "IRR" ? 1 : 0;
        EXPECT_EQ(allocations_here - before, pools) << call.name;
        EXPECT_TRUE(got.answered()) << call.name;
        ++checked;
    }
    EXPECT_EQ(checked, 1 + 2 * static_cast<int>(calculation_count));
}

}  // namespace
}  // namespace finance::test
