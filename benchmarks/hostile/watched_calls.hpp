// Calls under a clock, in a process of their own: one that does not end, or crashes, ends that process and is known by
// what was kept of it before.
#pragma once

#include <sys/mman.h>
#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>

#include "hostile/call.hpp"

namespace finance::hostile {

// Memory that a process shares with those that it forks: made of zeros, kept until the program ends.
template <class Value>
Value& shared() {
    static_assert(std::is_trivially_copyable_v<Value>);
    void* const memory =
        mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc{};
    return *new (memory) Value{};
}

// A call in shared memory. std::length_error where it has more values than fit.
class KeptCall {
public:
    void keep(const Call& call);
    [[nodiscard]] Call call() const;

private:
    const catalogue::Calculation* calculation_;
    std::array<std::size_t, 16> sizes_;   // by parameter
    std::array<double, 250'000> values_;  // one after another
};

double processor_seconds();

enum class Ending : std::uint8_t { finished, endless, crashed };

// Runs the work in a forked process, and waits for it. std::runtime_error where the work threw; it is printed then.
Ending run_apart(const std::function<void()>& work);

using Evaluate = std::function<host::Evaluation(std::string_view name, std::span<const host::Argument> arguments)>;
Evaluate evaluate_by(const host::EmbeddedHost& host);

// Makes calls in the process that it was made in, one at a time, and each kept as `current` before it is made.
class WatchedCalls {
public:
    // A call that takes `longest` processor seconds ends the process: run_apart then says endless.
    WatchedCalls(Evaluate evaluate, double longest, KeptCall& current);
    ~WatchedCalls();
    WatchedCalls(const WatchedCalls&) = delete;
    WatchedCalls& operator=(const WatchedCalls&) = delete;

    struct Made {
        double seconds = 0.0;  // processor time
        double value = 0.0;    // NaN where there is none
    };
    Made make(const Call& call);

private:
    void set_alarm(double seconds);

    Evaluate evaluate_;
    double longest_;
    KeptCall& current_;
    timer_t timer_{};
};

}  // namespace finance::hostile
