// What stands in a row of a request's column.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "abi/arguments.hpp"
#include "abi/zelkovan.h"

namespace finance {

// Where doubles may be read in place.
inline bool is_aligned(const void* place) { return std::bit_cast<std::uintptr_t>(place) % alignof(double) == 0; }

// Not of lists.
inline const void* place_of(const ZelkovanColumn& column, std::int64_t row) {
    return static_cast<const char*>(column.first) + row * column.stride;
}

inline ArgSlot slot_at(const void* place) {
    ArgSlot slot;
    std::memcpy(&slot, place, sizeof slot);
    return slot;
}

inline double double_at(const void* place) {
    double number;
    std::memcpy(&number, place, sizeof number);
    return number;
}

// A number that no basis is; there is none in a slot without a value, or of another kind.
struct ColumnNumber {
    double number;
    bool present;
};

inline ColumnNumber number_in(const ZelkovanColumn& column, const void* place) {
    if (column.kind != ZELKOVAN_COLUMN_SLOTS) return {double_at(place), true};
    const ArgSlot slot = slot_at(place);
    return {numeric_value(slot), slot.value != nullptr && slot_type(slot) == ZELKOVAN_TYPE_NUMERIC};
}

}  // namespace finance
