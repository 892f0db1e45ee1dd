// Calls of all calculations, drawn by the model, from eight threads at once: the bits that one thread gets. Run under
// the thread sanitizer, too.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <numeric>
#include <set>
#include <thread>
#include <vector>

#include "host/embedded_host.hpp"
#include "module/financial_list.hpp"
#include "tests/corpus/corpus.hpp"

namespace finance::test {
namespace {

constexpr std::size_t threads = 8;
constexpr int calls_each = 20;  // of every calculation

struct HostCall {
    Draw draw;
    std::vector<host::Argument> arguments;
    host::Evaluation alone;
};

// Arguments are views into the draws, which stay where they are.
std::vector<HostCall> calls_of_all() {
    std::vector<HostCall> calls;
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        for (Draw& draw : corpus_of(name, calls_each)) {
            calls.push_back({.draw = std::move(draw), .arguments = {}, .alone = {}});
        }
    }
    for (HostCall& call : calls) {
        call.arguments = host_arguments(call.draw);
        call.alone = linked_host().evaluate(call.draw.name, call.arguments);
    }
    return calls;
}

bool same(const host::Evaluation& a, const host::Evaluation& b) {
    return a.status == b.status && bits(a.value) == bits(b.value) && a.flagged == b.flagged && a.notes == b.notes;
}

// Each thread begins elsewhere and steps differently, so that different calls meet. Without a common factor with their
// number, a step comes by all of them.
std::array<std::size_t, threads> steps_through(std::size_t calls) {
    std::array<std::size_t, threads> steps{};
    std::size_t next = 1;
    for (std::size_t& step : steps) {
        while (std::gcd(next, calls) != 1) ++next;
        step = next++;
    }
    return steps;
}

TEST(Threads, AllCalculationsFromEight) {
    const std::vector<HostCall> calls = calls_of_all();
    ASSERT_EQ(calls.size(), static_cast<std::size_t>(calls_each) * FinancialList.size());
    const std::array<std::size_t, threads> steps = steps_through(calls.size());
    std::atomic<bool> start{false};
    std::atomic<std::size_t> made{0};
    std::array<std::set<std::string>, threads> different;
    std::vector<std::thread> running;
    for (std::size_t t = 0; t < threads; ++t) {
        running.emplace_back([&, t] {
            while (!start) std::this_thread::yield();
            std::size_t i = t * calls.size() / threads;
            for (std::size_t n = 0; n < calls.size(); ++n, i = (i + steps[t]) % calls.size()) {
                const HostCall& call = calls[i];
                if (!same(linked_host().evaluate(call.draw.name, call.arguments), call.alone)) {
                    different[t].insert(call.draw.name);
                }
                ++made;
            }
        });
    }
    start = true;
    for (std::thread& thread : running) thread.join();
    EXPECT_EQ(made, threads * calls.size());
    for (const std::set<std::string>& names : different) EXPECT_EQ(names, std::set<std::string>{});
}

}  // namespace
}  // namespace finance::test
