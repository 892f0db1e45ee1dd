// Four threads give the bits that one gives. Run under the thread sanitizer, too.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <numeric>
#include <thread>
#include <vector>

#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/host/sample_calls.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using host::EmbeddedHost;
using host::Evaluation;

constexpr std::size_t threads = 4;
constexpr std::size_t rounds = 50;

std::vector<SampleCall> all_calls() {
    std::vector<SampleCall> calls = answered_calls();
    calls.insert(calls.end(), other_calls().begin(), other_calls().end());
    return calls;
}

bool same(const Evaluation& a, const Evaluation& b) {
    return a.status == b.status && bits(a.value) == bits(b.value) && a.flagged == b.flagged && a.log == b.log &&
           a.notes == b.notes;
}

// Each thread begins elsewhere and steps differently, so that different calls meet. Steps share no factor with count.
std::vector<std::size_t> steps_through(std::size_t count) {
    std::vector<std::size_t> steps;
    for (std::size_t step = 1; steps.size() < threads; ++step) {
        if (std::gcd(step, count) == 1) steps.push_back(step);
    }
    return steps;
}

void expect_same_from_all_threads(const EmbeddedHost& host) {
    const std::vector<SampleCall> calls = all_calls();
    const std::vector<std::size_t> steps = steps_through(calls.size());
    std::vector<Evaluation> expected;
    for (const SampleCall& call : calls) expected.push_back(host.evaluate(call.name, call.arguments));

    std::atomic<std::size_t> made{0};
    std::atomic<std::size_t> different{0};
    std::atomic<bool> start{false};
    std::vector<std::thread> running;
    for (std::size_t t = 0; t < threads; ++t) {
        running.emplace_back([&, t] {
            while (!start) std::this_thread::yield();
            std::size_t i = t * calls.size() / threads;
            for (std::size_t n = 0; n < rounds * calls.size(); ++n, i = (i + steps[t]) % calls.size()) {
                if (!same(host.evaluate(calls[i].name, calls[i].arguments), expected[i])) ++different;
                ++made;
            }
        });
    }
    start = true;
    for (std::thread& thread : running) thread.join();
    EXPECT_EQ(different, 0U);
    EXPECT_EQ(made, threads * rounds * calls.size());
}

TEST(Threads, SameBitsAsOne) {
    EmbeddedHost host{real_module()};
    expect_same_from_all_threads(host);
    EXPECT_EQ(host.memory().blocks(), 2) << "those of the registration";
    EXPECT_EQ(host.memory().errors(), 0U);
    EXPECT_EQ(host.toolkit().pools() + host.toolkit().blocks() + host.toolkit().bytes(), 0);
    EXPECT_EQ(host.toolkit().errors(), 0U);
    EXPECT_TRUE(host.log_outside_calls().empty());
    EXPECT_TRUE(host.notes_outside_calls().empty());
}

TEST(Threads, SameBitsAsOneInMultibyteModeAmongJunk) {
    EmbeddedHost host{real_module(),
                      {.multibyte = true, .note_mode = 104, .junk_in_host_bits = true, .toolkit = false}};
    expect_same_from_all_threads(host);
    EXPECT_EQ(host.memory().blocks(), 2);
    EXPECT_EQ(host.memory().errors(), 0U);
}

// Of threads that race for one fault, one gets it.
TEST(Threads, OneFaultIsOneFault) {
    host::MemoryVector memory;
    memory.fail_at(1000);
    std::atomic<int> refused{0};
    std::vector<std::thread> running;
    for (std::size_t t = 0; t < threads; ++t) {
        running.emplace_back([&] {
            for (int n = 0; n < 500; ++n) {
                void* block = memory.allocate(16, 0);
                if (block == nullptr) ++refused;
                memory.release(block, 16, 0);
            }
        });
    }
    for (std::thread& thread : running) thread.join();
    EXPECT_EQ(refused, 1);
    EXPECT_EQ(memory.requests(), 2000U);
    EXPECT_EQ(memory.blocks(), 0);
}

}  // namespace
}  // namespace finance::test
