// Working memory of the host's, given back when the call ends, on whatever path.
#pragma once

#include <cstdint>

#include "abi/host_control.hpp"

namespace finance {

template <typename T>
class HostArray {
public:
    explicit HostArray(std::int64_t length)
        : bytes_{length * static_cast<std::int64_t>(sizeof(T))}, data_{static_cast<T*>(host_allocate(bytes_))} {}
    ~HostArray() {
        if (data_ != nullptr) host_release(data_, bytes_);
    }
    HostArray(const HostArray&) = delete;
    HostArray& operator=(const HostArray&) = delete;

    // Null where the host had no memory.
    [[nodiscard]] T* data() const { return data_; }

private:
    std::int64_t bytes_;
    T* data_;
};

}  // namespace finance
