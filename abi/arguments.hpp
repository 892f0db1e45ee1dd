// How every calculation reads, checks and rejects its arguments.
//
//  (1) Arguments are examined strictly left to right, each completely before the next. The first failure ends the call.
//  (2) An absent value (no value pointer) is invalid; a missing one (any NaN) makes the result missing; a value that
//      breaks its rule is invalid. All three flag the argument and write the missing value, where there is a result to
//      write to. No type byte is looked at, but for the basis.
//  (3) A whole number is at most 2^53 (there is no lower bound) and differs from its truncation by no more than 1e-12
//      of its own size: 3.0000000000001 is 3.
//  (4) Positions count from 1: slot 1 is the first argument after the name.
#pragma once

#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "abi/conversions.hpp"
#include "abi/limits.hpp"
#include "abi/status.hpp"
#include "abi/zelkovan.h"

namespace finance {

// ---- The record of a call

inline ArgSlot* slots_of(HostCallContext* context) { return reinterpret_cast<ArgSlot*>(context + 1); }
inline const ArgSlot* slots_of(const HostCallContext* context) { return reinterpret_cast<const ArgSlot*>(context + 1); }

// The name included. The high half of the field is not looked at: 0xFFFFFFFF00000004 is 4, 0xFFFFFFFF is -1.
inline std::int64_t argument_count(const HostCallContext* context) { return low_32_bits(context->count); }

inline int slot_type(const ArgSlot& slot) { return slot.type & ~ZELKOVAN_TYPE_HOST_MARK & 0xFF; }

inline void flag_invalid(ArgSlot& slot) { slot.flags |= ZELKOVAN_FLAG_INVALID; }

// A slot read as a number whatever its type; without a value it is missing.
inline double numeric_value(const ArgSlot& slot) {
    if (slot.value == nullptr) return MISSING_VALUE;
    double value;
    std::memcpy(&value, slot.value, sizeof value);
    return value;
}

// A slot read as characters whatever its type. text is null where there is no value or no text.
struct CharacterValue {
    const char* text;
    std::int64_t length;
};

inline CharacterValue character_value(const ArgSlot& slot) {
    if (slot.value == nullptr) return {nullptr, 0};
    const auto* descriptor = static_cast<const char*>(slot.value);  // at any address
    const char* text;
    std::uint32_t length;
    std::memcpy(&text, descriptor + offsetof(CharacterDescriptor, text), sizeof text);
    std::memcpy(&length, descriptor + offsetof(CharacterDescriptor, length), sizeof length);
    return {text, length};
}

// ---- The takers

// Reads the arguments of one call. A taker that returns false has dealt with the failure: return status().
class Arguments {
public:
    using Number = double;
    using Outcome = Status;

    Arguments(HostCallContext* context, double* result, std::int64_t count)
        : slots_{slots_of(context)}, result_{result}, count_{count} {}

    // -- required
    bool number(int i, double& value) {
        const ArgSlot& slot = required(i);
        if (slot.value == nullptr) [[unlikely]]
            return refuse(i);
        value = numeric_value(slot);
        if (is_missing(value)) [[unlikely]]
            return refuse_missing(i);
        return true;
    }
    bool above(int i, double bound, double& value) { return number(i, value) && (value > bound || refuse(i)); }
    bool positive(int i, double& value) { return above(i, 0.0, value); }

    // A whole number of any sign, as 64 bits or as the low 32 of them.
    bool whole(int i, std::int64_t& value) {
        double x;
        if (!number(i, x)) return false;
        if (x > largest_whole_number) return refuse(i);
        value = truncate_to_int64(x);
        return !(std::abs(x - static_cast<double>(value)) > 1e-12 * std::abs(x)) || refuse(i);
    }
    bool whole(int i, std::int32_t& value) {
        std::int64_t k;
        if (!whole(i, k)) return false;
        value = low_32_bits(k);
        return true;
    }
    // A whole number whose low 32 bits are at least 1: 2^32 + 3 counts as 3, 2^31 fails.
    bool count(int i, std::int32_t& value) { return whole(i, value) && (value >= 1 || refuse(i)); }
    // A whole number of at least 1, as 64 bits or kept as its low 32: 2^32 counts as 0.
    bool whole_from_1(int i, std::int64_t& value) { return whole(i, value) && (value >= 1 || refuse(i)); }
    bool whole_from_1(int i, std::int32_t& value) {
        std::int64_t k;
        if (!whole_from_1(i, k)) return false;
        value = low_32_bits(k);
        return true;
    }

    // -- optional: an argument that is left out, absent or missing leaves value as it is
    void optional_number(int i, double& value) const {
        const double x = number_or_missing(i);
        if (!is_missing(x)) value = x;
    }
    // A number that is exactly its own conversion to 32 bits.
    bool optional_exact(int i, std::int32_t& value) {
        const double x = number_or_missing(i);
        if (is_missing(x)) return true;
        value = truncate_to_int32(x);
        return static_cast<double>(value) == x || refuse(i);
    }
    // Payment timing: 1 at the start of each period; 0 and every negative whole number at its end.
    bool payment_timing(int i, std::int32_t& type) { return optional_exact(i, type) && (type <= 1 || refuse(i)); }
    // Of two amounts one may be missing, not both. (The second is not, where it has no value at all.)
    [[nodiscard]] bool both_missing(int first, int second) const {
        return is_missing(number_or_missing(first)) && has_value(second) && is_missing(number_or_missing(second));
    }
    // What the payments leave, or begin with, and in the next position their timing.
    bool amount_and_timing(int i, double& amount, std::int32_t& type) {
        optional_number(i, amount);
        return payment_timing(i + 1, type);
    }

    // A basis that is left out leaves value as it is; one that is there but missing is ACTUAL.
    bool basis(int i, std::int32_t& value);

    // -- what the call holds
    [[nodiscard]] bool given(int i) const { return i < count_; }
    [[nodiscard]] bool has_value(int i) const { return given(i) && slots_[i].value != nullptr; }
    // The value of an argument that no rule requires; missing where it is left out or absent.
    [[nodiscard]] double number_or_missing(int i) const { return given(i) ? numeric_value(slots_[i]) : MISSING_VALUE; }

    // Two questions about what was read, after which the call may be at its end: return status(). An argument is at fault;
    // the answer is known.
    bool refuses(int i, bool at_fault) { return at_fault && !refuse(i); }
    bool settles(bool settled, double value) { return settled && answer(value) == STATUS_SUCCESS; }

    // What is rare is left to single calls: this is one.
    static constexpr bool leaves(bool) { return false; }

    // -- the end of the call
    // An argument that is found at fault after it was read: as a taker (false), or as the call's status.
    bool reject(int i) { return refuse(i); }
    Status invalid(int i) {
        refuse(i);
        return status_;
    }
    // The calculation has no answer; no argument is at fault.
    Status fail();
    Status answer(double value) {
        if (result_ != nullptr) *result_ = value;
        return STATUS_SUCCESS;
    }
    // What a kernel left behind, unless it failed. (By reference: the kernel runs in the same argument list.)
    Status answer_if(int kernel_failure, const double& value) { return kernel_failure == 0 ? answer(value) : fail(); }
    Status answer_where(bool answered, const double& value) { return answered ? answer(value) : fail(); }
    // Without an answer the result is left as the caller had it.
    Status answer_or_leave(bool answered, const double& value) {
        return answered ? answer(value) : STATUS_INVALID_ARGUMENT;
    }
    // What the failed taker decided.
    [[nodiscard]] Status status() const { return status_; }

private:
    [[nodiscard]] const ArgSlot& required(int i) const {
        assert(given(i));
        return slots_[i];
    }
    bool refuse(int i) {
        mark(i, STATUS_INVALID_ARGUMENT);
        return false;
    }
    bool refuse_missing(int i) {
        mark(i, STATUS_MISSING_RESULT);
        return false;
    }
    void mark(int i, Status status);

    ArgSlot* slots_;
    double* result_;
    std::int64_t count_;
    Status status_ = STATUS_SUCCESS;
};

// ---- The handlers

// Evaluates one calculation. count includes the name; row is the calculation's index in FinancialList, by which the
// members of a family may tell themselves apart.
using Handler = Status(HostCallContext* context, double* result, std::int64_t count, std::int32_t row);

}  // namespace finance

// Begins the definition of a calculation, of the arguments of one call or of the rows of columns.
#define FINANCE_CALCULATION(name) \
    template <typename In>        \
    [[gnu::always_inline]] inline typename In::Outcome calculate_##name(In& in)

// Begins the definition of a calculation's handler. (module/financial_list.hpp has them all.)
#define FINANCE_HANDLER(name)                                                                                \
    ::finance::Handler fnc_##name;                                                                           \
    ::finance::Status fnc_##name([[maybe_unused]] HostCallContext* context, [[maybe_unused]] double* result, \
                                 [[maybe_unused]] std::int64_t count, [[maybe_unused]] std::int32_t row)

// Defines the handler of one that begins so.
#define FINANCE_HANDLER_OF(name)              \
    FINANCE_HANDLER(name) {                   \
        Arguments in{context, result, count}; \
        return calculate_##name(in);          \
    }
