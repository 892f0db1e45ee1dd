#include "host/call_frame.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <stdexcept>

namespace finance::host {
namespace {

constexpr std::size_t slot_offset(std::size_t i) { return sizeof(HostCallContext) + i * sizeof(ArgSlot); }

// Records before a call's own fields are set.
struct Blanks {
    HostCallContext head{};
    ArgSlot slot{};
    CharacterDescriptor descriptor{};
};

constexpr Blanks filled_with(std::uint8_t byte, std::uint8_t type, std::uint8_t flags) {
    Blanks blanks;
    std::fill(std::begin(blanks.head.host_owned), std::end(blanks.head.host_owned), byte);
    std::fill(std::begin(blanks.head.host_owned_too), std::end(blanks.head.host_owned_too), byte);
    blanks.head.notes_written = static_cast<std::int32_t>(byte * 0x01010101U);
    blanks.slot.type = type;
    blanks.slot.flags = flags;
    std::fill(std::begin(blanks.slot.host_owned), std::end(blanks.slot.host_owned), byte);
    std::fill(std::begin(blanks.descriptor.host_owned), std::end(blanks.descriptor.host_owned), byte);
    std::fill(std::begin(blanks.descriptor.host_owned_too), std::end(blanks.descriptor.host_owned_too), byte);
    return blanks;
}

constexpr Blanks clean = filled_with(0, 0, 0);
constexpr Blanks junk_filled = filled_with(CallFrame::junk_byte, ZELKOVAN_TYPE_HOST_MARK, CallFrame::junk_flags);

void check_size(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw std::length_error{"a text of 4 GiB or more"};
}

const Blanks& blanks(bool junk) { return junk ? junk_filled : clean; }

}  // namespace

CallFrame& CallFrame::of_this_thread() {
    thread_local CallFrame frame;
    return frame;
}

void CallFrame::make_room(std::size_t slots) {
    if (slots > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
        throw std::length_error{"a call has more arguments than its count can say"};
    }
    if (slots > capacity_) {
        const std::size_t enough = std::max(slots, 2 * capacity_);
        larger_ = std::make_unique<std::byte[]>(head_bytes + enough * bytes_per_slot);
        capacity_ = enough;
    }
    slots_ = slots;
}

void CallFrame::fill(std::string_view name, std::span<const Argument> arguments, std::uint8_t note_mode, bool junk) {
    make_room(arguments.size() + 1);
    auto* head = new (bytes()) HostCallContext{blanks(junk).head};
    head->mode = note_mode;
    if (ZELKOVAN_COUNTS_NOTES(note_mode)) head->notes_written = 0;
    head->count = static_cast<std::int64_t>(slots_);
    put(0, Argument{name}, junk);
    for (std::size_t i = 0; i < arguments.size(); ++i) put(i + 1, arguments[i], junk);
}

void CallFrame::put(std::size_t i, const Argument& argument, bool junk) {
    auto* slot = new (bytes() + slot_offset(i)) ArgSlot{blanks(junk).slot};
    set_kind(*slot, argument);
    if (argument.kind() == Argument::Kind::text) slot->value = put_text(i, argument.text(), junk);
}

void CallFrame::set_kind(ArgSlot& slot, const Argument& argument) {
    const bool numeric = argument.kind() == Argument::Kind::number || argument.kind() == Argument::Kind::absent;
    slot.type |= static_cast<std::uint8_t>(numeric ? ZELKOVAN_TYPE_NUMERIC : ZELKOVAN_TYPE_CHARACTER);
    // Modules read what a value pointer designates and never write there.
    if (argument.kind() == Argument::Kind::number) slot.value = const_cast<double*>(&argument.number());
}

CharacterDescriptor* CallFrame::put_text(std::size_t i, std::string_view text, bool junk) {
    const std::size_t offset = slot_offset(slots_) + i * sizeof(CharacterDescriptor);
    auto* descriptor = new (bytes() + offset) CharacterDescriptor{blanks(junk).descriptor};
    point_to(*descriptor, text);
    return descriptor;
}

void CallFrame::point_to(CharacterDescriptor& descriptor, std::string_view text) {
    check_size(text);
    descriptor.length = static_cast<std::uint32_t>(text.size());
    descriptor.text = const_cast<char*>(text.data());
}

void CallFrame::set_text(std::size_t i, std::string_view text) {
    point_to(*static_cast<CharacterDescriptor*>(slot(i).value), text);
}

int CallFrame::take_first_flag() {
    int first = -1;
    for (std::size_t i = 0; i < slots_; ++i) {
        if ((slot(i).flags & ZELKOVAN_FLAG_INVALID) == 0) continue;
        if (first < 0) first = static_cast<int>(i);
        slot(i).flags &= static_cast<std::uint8_t>(~ZELKOVAN_FLAG_INVALID);
    }
    return first;
}

void CallFrame::forget_notes() {
    if (ZELKOVAN_COUNTS_NOTES(context()->mode)) context()->notes_written = 0;
}

std::vector<std::byte> CallFrame::snapshot() const { return {bytes(), bytes() + head_bytes + slots_ * bytes_per_slot}; }

bool CallFrame::respected_since(const std::vector<std::byte>& before) const {
    std::vector<std::byte> after = snapshot();
    for (std::size_t i = 0; i < slots_; ++i) {
        after[slot_offset(i) + offsetof(ArgSlot, flags)] &= ~std::byte{ZELKOVAN_FLAG_INVALID};
    }
    if (ZELKOVAN_COUNTS_NOTES(std::to_integer<std::uint8_t>(before[offsetof(HostCallContext, mode)]))) {
        constexpr std::size_t counter = offsetof(HostCallContext, notes_written);
        std::copy_n(before.data() + counter, sizeof(std::int32_t), after.data() + counter);
    }
    return after == before;
}

}  // namespace finance::host
