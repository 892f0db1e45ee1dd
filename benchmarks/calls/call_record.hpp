// A call of FINANCE as a host holds it: built once, called often, one number moved a little before every call.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "host/embedded_host.hpp"

namespace finance::benchmarks {

class CallRecord {
public:
    // varied: the position of the number that vary() moves, 1 the first after the name; 0 none.
    CallRecord(std::string_view name, const std::vector<host::Argument>& arguments, std::size_t varied);
    CallRecord(const CallRecord&) = delete;
    CallRecord& operator=(const CallRecord&) = delete;

    // The next of four values, which differ by 2^-30 of the first.
    void vary() {
        turn_ = (turn_ + 1) % values_.size();
        numbers_[varied_] = values_[turn_];
    }

    HostCallContext* context() { return reinterpret_cast<HostCallContext*>(words_.data()); }
    double* result() { return &result_; }
    [[nodiscard]] const double* numbers() const { return numbers_.data(); }  // 1 the first after the name
    [[nodiscard]] std::int64_t count() const { return static_cast<std::int64_t>(numbers_.size()); }

private:
    void fill_slot(std::size_t position, const host::Argument& argument);

    std::vector<std::uint64_t> words_;  // the context, then the slots
    std::vector<double> numbers_;       // by position; 0 where the name is
    std::vector<std::string> texts_;
    std::vector<CharacterDescriptor> descriptors_;
    std::array<double, 4> values_{};
    std::size_t varied_;
    std::size_t turn_ = 0;
    double result_ = 0.0;
};

}  // namespace finance::benchmarks
