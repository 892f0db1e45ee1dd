// Makes one event to come fail, so that the paths behind a failure can be tested.
#pragma once

#include <atomic>
#include <cstdint>

namespace finance::host {

class FaultCountdown {
public:
    // The n-th event from now fails, once; 0 takes a fault back.
    void fail_at(std::uint64_t n) noexcept { remaining_.store(n, std::memory_order_relaxed); }

    // Counts one event; true where it is the one to fail. Of threads that race for it, one gets it.
    [[nodiscard]] bool due() noexcept {
        std::uint64_t remaining = remaining_.load(std::memory_order_relaxed);
        while (remaining != 0 &&
               !remaining_.compare_exchange_weak(remaining, remaining - 1, std::memory_order_relaxed)) {
        }
        return remaining == 1;
    }

private:
    std::atomic<std::uint64_t> remaining_{0};
};

}  // namespace finance::host
