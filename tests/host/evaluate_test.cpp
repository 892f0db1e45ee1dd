// evaluate(): any number of arguments.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

#include "host/embedded_host.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::EmbeddedHost;
using host::Evaluation;

// NPV at a rate of 1 of the flows k 2^k, k from 1 to n: the sum 1 + 2 + .. + n, all of it exact.
std::vector<Argument> doubling_flows(int arguments) {
    std::vector<Argument> made{Argument{1.0}};
    for (int k = 1; k < arguments; ++k) made.emplace_back(std::ldexp(k, k));
    return made;
}

double sum_to(int n) { return static_cast<double>(n) * (n + 1) / 2.0; }

TEST(Evaluate, AnyNumberOfArgumentsInAnyOrder) {
    for (const bool junk : {false, true}) {
        const EmbeddedHost host{real_module(), {.junk_in_host_bits = junk}};
        for (const int arguments : {500, 1, 33, 501, 34, 2, 1000, 32, 33}) {
            EXPECT_EQ(host.evaluate("NPV", doubling_flows(arguments)).value, sum_to(arguments - 1)) << arguments;
        }
        EXPECT_EQ(host.evaluate("FVSCHEDULE", std::vector<Argument>(5000, Argument{1e-300})).value, 1e-300);
        const Evaluation none = host.evaluate("NPV", {});
        EXPECT_EQ(none.log, std::vector<std::string>{"Not enough arguments for NPV "});
        EXPECT_EQ(none.flagged, -1);
    }
}

TEST(Evaluate, RefusesWhatARecordCannotHold) {
    const EmbeddedHost host{real_module()};
    const char letter = 'x';
    const std::string_view endless{&letter, std::size_t{1} << 32};
    const Argument one{1.0};
    const std::span<const Argument> countless{&one, std::size_t{1} << 31};
    EXPECT_THROW((void)host.evaluate("YEARFRAC", {0, 90, endless}), std::length_error);
    EXPECT_THROW((void)host.evaluate(endless, {0, 90}), std::length_error);
    EXPECT_THROW((void)host.evaluate("NPV", countless), std::length_error);
    EXPECT_EQ(host.evaluate("SLN", {10000, 1000, 5}).value, 1800.0) << "the thread's record is as good as before";
}

// A head without slots, and nothing behind it.
TEST(Evaluate, ReadsNoSlotOfARecordWithANegativeCount) {
    const EmbeddedHost host{real_module()};
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void* pages = ::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    ASSERT_EQ(::mprotect(static_cast<std::byte*>(pages) + page, page, PROT_NONE), 0);
    auto* context = new (static_cast<std::byte*>(pages) + page - sizeof(HostCallContext)) HostCallContext{};
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{0xFFFFFFFF}, std::int64_t{1} << 31,
                                     std::numeric_limits<std::int64_t>::min()}) {
        context->count = count;
        double result = 1234.5;
        const Evaluation got = host.evaluate(context, &result);
        EXPECT_EQ(got.status, ZELKOVAN_STATUS_INVALID_ARGUMENT) << count;
        EXPECT_EQ(got.flagged, -1) << count;
        EXPECT_EQ(result, 1234.5) << count;
    }
    ::munmap(pages, 2 * page);
}

}  // namespace
}  // namespace finance::test
