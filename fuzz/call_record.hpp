// A whole call record made from bytes: anything that a host may hand over, whatever sense it makes. Record, numbers,
// descriptors and texts each end at a page that cannot be read, so that a byte too many ends the run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "catalogue/catalogue.hpp"
#include "fuzz/input.hpp"
#include "host/embedded_host.hpp"

namespace finance::fuzz {

class CallRecord {
public:
    static constexpr std::size_t most_slots = 96;

    void fill(Bytes& in);

    [[nodiscard]] HostCallContext* context() const { return context_; }
    [[nodiscard]] ArgSlot* slots() const { return slots_; }
    // How many slots there are; the count in the record may say otherwise, where the rest is not read.
    [[nodiscard]] std::size_t size() const { return size_; }
    // The name's characters as the descriptor has them; nothing where there is no descriptor or no text.
    [[nodiscard]] std::string_view name() const { return name_; }
    // Of all texts.
    [[nodiscard]] std::size_t characters() const { return characters_; }

    // All bytes that the module is handed, in a text that is kept for them from call to call; and putting them back.
    void read_bytes(std::string& all) const;
    void restore(std::string_view bytes) const;

    // Gives the record a count, where it keeps to the rules: with more than there are slots, the module must know from
    // the name that it need not look at them.
    void claim(Bytes& in, const catalogue::Calculation* known);

private:
    struct Zone {
        char* begin;
        std::size_t size;
    };

    void place_zones(std::uint8_t junk);
    void put_name(Bytes& in);
    void put_argument(Bytes& in, std::size_t i, const host::Argument& usual);
    double some_number(Bytes& in, int way, double usual) const;
    void put_number(std::size_t i, double value);
    CharacterDescriptor* put_descriptor(std::size_t i, std::uint32_t length, char* text);
    void put_text(std::size_t i, std::string_view text);

    static constexpr std::size_t text_zones = 8;

    GuardedMemory<1> record_memory_;
    GuardedMemory<1> number_memory_;
    GuardedMemory<1> descriptor_memory_;
    GuardedMemory<2> name_memory_;
    std::array<GuardedMemory<2>, text_zones> text_memory_;

    std::vector<Zone> zones_;
    HostCallContext* context_ = nullptr;
    ArgSlot* slots_ = nullptr;
    double* numbers_ = nullptr;
    CharacterDescriptor* descriptors_ = nullptr;
    std::size_t size_ = 0;
    std::size_t characters_ = 0;
    double previous_ = 0.0;
    std::string name_;
};

}  // namespace finance::fuzz
