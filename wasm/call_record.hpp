// The record of a call, as the module takes it: a context, a slot for the name and for each argument, and descriptors of
// texts. All of it is of the workspace (wasm/memory.hpp).
#pragma once

#include <cstdint>

#include "abi/zelkovan.h"
#include "wasm/memory.hpp"

namespace finance::wasm {

inline constexpr double missing = __builtin_bit_cast(double, ZELKOVAN_MISSING_VALUE_BITS);

class CallRecord {
public:
    CallRecord() = default;
    // With nothing in its slots. There is none where there is no memory for it.
    explicit CallRecord(std::uint32_t slots)
        : context_{static_cast<HostCallContext*>(
              allocate(sizeof(HostCallContext) + std::uint64_t{slots} * sizeof(ArgSlot)))},
          slots_{slots} {
        if (context_ == nullptr) return;
        *context_ = {};
        context_->count = slots;
    }
    explicit operator bool() const { return context_ != nullptr; }

    // What a slot has, 0 the name's. Numbers and texts stay where they are.
    void set_number(std::uint32_t i, const double* number) { slot(i) = made(ZELKOVAN_TYPE_NUMERIC, number); }
    void set_absent(std::uint32_t i) { slot(i) = made(ZELKOVAN_TYPE_NUMERIC, nullptr); }
    void set_absent_text(std::uint32_t i) { slot(i) = made(ZELKOVAN_TYPE_CHARACTER, nullptr); }
    // False where there is no memory for its descriptor.
    [[nodiscard]] bool set_text(std::uint32_t i, const char* text, std::uint32_t bytes) {
        auto* descriptor = static_cast<CharacterDescriptor*>(allocate(sizeof(CharacterDescriptor)));
        if (descriptor == nullptr) return false;
        *descriptor = {};
        descriptor->text = const_cast<char*>(text);
        descriptor->length = bytes;
        slot(i) = made(ZELKOVAN_TYPE_CHARACTER, descriptor);
        return true;
    }

    // The status. Without an answer the value is the missing one.
    std::uint32_t evaluate(double& value) const {
        value = missing;
        return fncfin(context_, &value);
    }

    // The first slot that is marked as invalid; -1: none is.
    [[nodiscard]] std::int32_t flagged() const {
        for (std::uint32_t i = 0; i < slots_; ++i) {
            if ((slot(i).flags & ZELKOVAN_FLAG_INVALID) != 0) return static_cast<std::int32_t>(i);
        }
        return -1;
    }

private:
    static ArgSlot made(std::uint8_t type, const void* value) {
        return {.type = type, .flags = 0, .host_owned = {}, .value = const_cast<void*>(value)};
    }
    [[nodiscard]] ArgSlot& slot(std::uint32_t i) const { return reinterpret_cast<ArgSlot*>(context_ + 1)[i]; }

    HostCallContext* context_ = nullptr;
    std::uint32_t slots_ = 0;
};

}  // namespace finance::wasm
