#include "host/control_block.hpp"

#include <bit>
#include <stdexcept>

#include "abi/zelkovan.h"
#include "host/byte_tables.hpp"
#include "host/services.hpp"

namespace finance::host {
namespace {

constexpr unsigned char junk_byte = 0xA5;

void* junk_address(std::size_t i) { return std::bit_cast<void*>(ControlBlock::junk_word(i)); }

template <std::size_t size>
void fill_with_junk(std::array<void*, size>& words) {
    for (std::size_t i = 0; i < size; ++i) words[i] = junk_address(i);
}

// Word 6 is typed for writing, like all words; no module writes through it.
void* as_word(const unsigned char* table) { return const_cast<unsigned char*>(table); }

}  // namespace

const unsigned char* ControlBlock::plain_table() { return identity.data(); }

const unsigned char* ControlBlock::case_blind_table() { return to_upper.data(); }

ControlBlock::ControlBlock(void** memory_vector, void* toolkit)
    : translation_tables_{junk_address(0), junk_address(1), identity.data(), identity.data(),
                          to_upper.data(), to_lower.data(), identity.data()} {
    fill_with_junk(words_);
    fill_with_junk(locale_);
    marks_.fill(untouched_mark);
    multibyte_record_.fill(junk_byte);
    process_block_.fill(junk_byte);
    place_services();
    words_[ZELKOVAN_GCB_SERVICES] = vectors_.data();
    words_[ZELKOVAN_GCB_MARKS] = marks_.data();
    words_[ZELKOVAN_GCB_MEMORY] = memory_vector;
    words_[ZELKOVAN_GCB_LOCALE] = locale_.data();
    words_[ZELKOVAN_GCB_TRANSLATION] = translation_tables_.data();
    words_[ZELKOVAN_GCB_TOOLKIT] = toolkit;
    set_case_blind(false);
    set_multibyte(false);
}

ControlBlock::SlotTable& ControlBlock::new_slot_table() {
    slot_tables_.push_back(std::make_unique<SlotTable>());
    slot_tables_.back()->fill(unexpected_service());
    return *slot_tables_.back();
}

void ControlBlock::place_services() {
    void* const without_service = new_slot_table().data();
    vectors_.fill(without_service);
    for (const Service& service : offered_services()) {
        void*& vector = vectors_.at(service.vector);
        if (vector == without_service) vector = new_slot_table().data();
        if (service.slot >= slot_count) throw std::logic_error{"a service lies outside its vector's table"};
        static_cast<void**>(vector)[service.slot] = service.routine;
    }
}

void ControlBlock::set_case_blind(bool on) {
    words_[ZELKOVAN_GCB_COLLATING] = as_word(on ? case_blind_table() : plain_table());
}

void ControlBlock::set_multibyte(bool on) {
    multibyte_record_[ZELKOVAN_MODE_RECORD_ACTIVE] = on ? 1 : 0;
    locale_[ZELKOVAN_LOCALE_MODE_RECORD] = on ? multibyte_record_.data() : nullptr;
}

const unsigned char* ControlBlock::collating_table() const {
    return static_cast<const unsigned char*>(words_[ZELKOVAN_GCB_COLLATING]);
}

bool ControlBlock::multibyte() const {
    const auto* locale = static_cast<void* const*>(words_[ZELKOVAN_GCB_LOCALE]);
    const auto* record =
        locale != nullptr ? static_cast<const unsigned char*>(locale[ZELKOVAN_LOCALE_MODE_RECORD]) : nullptr;
    return record != nullptr && record[ZELKOVAN_MODE_RECORD_ACTIVE] != 0;
}

}  // namespace finance::host
