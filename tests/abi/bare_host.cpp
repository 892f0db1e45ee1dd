#include "tests/abi/bare_host.hpp"

#include <xmmintrin.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "abi/host_control.hpp"

namespace finance::test {

namespace {

BareHost* current_host = nullptr;

template <typename T>
std::uint64_t word(T* address) {
    return std::bit_cast<std::uint64_t>(address);
}

char* text_of(const Registers& registers) { return std::bit_cast<char*>(registers.integers[0]); }

// Letters from first to last change their case, in place.
void convert(const Registers& registers, char first, char last) {
    constexpr int case_bit = 0x20;
    char* text = text_of(registers);
    const auto length = static_cast<std::int64_t>(registers.integers[1]);
    for (std::int64_t i = 0; i < length; ++i) {
        if (text[i] >= first && text[i] <= last) text[i] = static_cast<char>(text[i] ^ case_bit);
    }
}

// A line of the module: a format with one %s, or with none.
std::string line_of(const Registers& registers) {
    const std::string format = text_of(registers);
    const std::size_t place = format.find("%s");
    if (place == std::string::npos) return format;
    return format.substr(0, place) + std::bit_cast<const char*>(registers.integers[1]) + format.substr(place + 2);
}

}  // namespace

ByteTable plain_table() {
    ByteTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<unsigned char>(i);
    return table;
}

ByteTable folding_table() {
    ByteTable table = plain_table();
    for (unsigned char c = 'a'; c <= 'z'; ++c) table[c] = static_cast<unsigned char>(c - 'a' + 'A');
    return table;
}

BareHost::BareHost()
    : outer_anchor_{v_global_gcb_anchor},
      outer_process_anchor_{v_global_pidb_anchor},
      outer_toolkit_{Exported_KXHandle},
      outer_{current_host} {
    slots_.fill(reinterpret_cast<void*>(&registers_record));
    vectors_.fill(slots_.data());
    memory_vector_ = {reinterpret_cast<void*>(&allocate), reinterpret_cast<void*>(&release)};
    words.fill(junk_word);
    marks.fill(untouched_mark);
    collating = plain_table();
    locale.fill(junk_word);
    multibyte_record.fill(0xA5);
    translation_pointers_.fill(std::bit_cast<void*>(junk_word));
    for (std::size_t mode = 0; mode < translations.size(); ++mode) {
        for (std::size_t i = 0; i < 256; ++i) translations[mode][i] = static_cast<unsigned char>(i + mode + 1);
        translation_pointers_[2 + mode] = translations[mode].data();
    }
    words[0] = word(vectors_.data());
    words[1] = word(marks.data());
    words[6] = word(collating.data());
    words[10] = word(memory_vector_.data());
    words[13] = word(locale.data());
    words[27] = word(translation_pointers_.data());
    locale[3] = word(multibyte_record.data());
    set_multibyte(false);
    v_global_gcb_anchor = words.data();
    current_host = this;
}

BareHost::~BareHost() {
    v_global_gcb_anchor = outer_anchor_;
    v_global_pidb_anchor = outer_process_anchor_;
    Exported_KXHandle = outer_toolkit_;
    current_host = outer_;
    for (void* block : blocks_) std::free(block);
}

BareHost* BareHost::current() { return current_host; }

std::uint64_t BareHost::serve(const Registers& registers) {
    modes.push_back(_mm_getcsr());
    calls.push_back(registers);
    switch (registers.r10) {
        case service_log:
            log.push_back(line_of(registers));
            break;
        case service_lower:
            convert(registers, 'A', 'Z');
            break;
        case service_upper:
            convert(registers, 'a', 'z');
            std::replace(text_of(registers), text_of(registers) + registers.integers[1], '~', ' ');
            break;
        default:
            break;
    }
    return answer;
}

std::vector<int> BareHost::marked_vectors() const {
    std::vector<int> marked;
    for (std::size_t v = 0; v < marks.size(); ++v) {
        if (marks[v] != untouched_mark) marked.push_back(static_cast<int>(v));
    }
    return marked;
}

void* BareHost::allocate(void** vector, std::int64_t bytes, std::int64_t flags) {
    BareHost& host = *current_host;
    host.requests.push_back({vector, nullptr, bytes, flags});
    if (host.memory_is_out) return nullptr;
    const auto size = static_cast<std::size_t>(bytes);
    void* block = std::malloc(size);
    if (block == nullptr) return nullptr;
    std::memset(block, fresh_byte, size);
    host.blocks_.push_back(block);
    return block;
}

void* BareHost::release(void** vector, void* block, std::int64_t bytes, std::int64_t flags) {
    BareHost& host = *current_host;
    host.requests.push_back({vector, block, bytes, flags});
    if (std::erase(host.blocks_, block) != 0) std::free(block);
    return nullptr;
}

extern "C" std::uint64_t registers_recorded(const Registers* registers) {
    BareHost* host = BareHost::current();
    if (host == nullptr) {
        std::fprintf(stderr, "a recorded routine was reached without a host\n");
        std::abort();
    }
    return host->serve(*registers);
}

}  // namespace finance::test
