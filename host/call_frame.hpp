// The record of one call, built from a program's arguments: context, slots, and the descriptors of the texts, in one
// buffer that a thread keeps and only ever enlarges.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "host/embedded_host.hpp"

namespace finance::host {

class CallFrame {
public:
    // What fills host-owned bytes and bits where junk is asked for.
    static constexpr std::uint8_t junk_byte = 0xA7;
    static constexpr std::uint8_t junk_flags = 0xFE;  // all but the module's own

    static CallFrame& of_this_thread();

    // Lays the record out. Numbers and texts stay where they are: slots point to them. Throws std::length_error for a
    // text of 4 GiB or more and for more arguments than a count of 32 bits can say.
    void fill(std::string_view name, std::span<const Argument> arguments, std::uint8_t note_mode, bool junk);

    [[nodiscard]] HostCallContext* context() { return static_cast<HostCallContext*>(static_cast<void*>(bytes())); }
    [[nodiscard]] ArgSlot& slot(std::size_t i) { return static_cast<ArgSlot*>(static_cast<void*>(context() + 1))[i]; }

    // For the same record again: another text in a slot that has one; any argument in any slot (free of junk, and the
    // number stays where it is); the first slot that the module marked (-1: none), all marks taken back; no notes
    // written.
    void set_text(std::size_t i, std::string_view text);
    void set_argument(std::size_t i, const Argument& argument) { put(i, argument, false); }
    int take_first_flag();
    void forget_notes();

    // For slots and descriptors outside a frame. Of an empty slot: its type, and where a number is; a text's descriptor is
    // another's to set. Throws std::length_error for a text of 4 GiB or more.
    static void set_kind(ArgSlot& slot, const Argument& argument);
    static void point_to(CharacterDescriptor& descriptor, std::string_view text);

    // The record's bytes before a call, and whether the module has since written where it may not: anywhere but bit 0
    // of the slots' flags and, in the modes that count notes, the note counter.
    [[nodiscard]] std::vector<std::byte> snapshot() const;
    [[nodiscard]] bool respected_since(const std::vector<std::byte>& before) const;

private:
    static constexpr std::size_t inline_slots = 33;  // the name and 32 arguments
    static constexpr std::size_t head_bytes = sizeof(HostCallContext);
    static constexpr std::size_t bytes_per_slot = sizeof(ArgSlot) + sizeof(CharacterDescriptor);

    [[nodiscard]] std::byte* bytes() { return larger_ ? larger_.get() : inline_.data(); }
    [[nodiscard]] const std::byte* bytes() const { return larger_ ? larger_.get() : inline_.data(); }

    void make_room(std::size_t slots);
    void put(std::size_t i, const Argument& argument, bool junk);
    CharacterDescriptor* put_text(std::size_t i, std::string_view text, bool junk);

    alignas(HostCallContext) std::array<std::byte, head_bytes + inline_slots * bytes_per_slot> inline_;
    std::unique_ptr<std::byte[]> larger_;
    std::size_t capacity_ = inline_slots;
    std::size_t slots_ = 0;
};

}  // namespace finance::host
