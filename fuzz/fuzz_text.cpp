// The text routines against the slowest models that can be written of them. Texts end at a guard page; tables of the
// host are any 256 bytes.
#include "abi/text.hpp"
#include "fuzz/input.hpp"
#include "fuzz/linked_host.hpp"

namespace finance::fuzz {
namespace {

using Table = std::array<unsigned char, 256>;

GuardedMemory<1>& memory(std::size_t i) {
    static std::array<GuardedMemory<1>, 2> all;
    return all[i];
}

std::int64_t size_of(std::string_view text) { return static_cast<std::int64_t>(text.size()); }

// Mostly the text's own length, at times a negative one or none.
std::int64_t length_of(Bytes& in, std::string_view text) {
    const std::uint8_t how = in.byte();
    if (how < 240) return size_of(text);
    return how < 248 ? 0 : how < 252 ? -1 : std::numeric_limits<std::int64_t>::min();
}

char at_or_blank(std::string_view text, std::size_t i) { return i < text.size() ? text[i] : ' '; }

// ---- Order

// Both texts padded to the longer one's length; padding is a blank that no table maps.
std::int32_t model_order(const Table& table, std::string_view a, std::string_view b) {
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        const int from_a = i < a.size() ? table[static_cast<unsigned char>(a[i])] : 0x20;
        const int from_b = i < b.size() ? table[static_cast<unsigned char>(b[i])] : 0x20;
        const auto position = static_cast<std::int32_t>(i + 1);
        if (from_a != from_b) return from_a < from_b ? -position : position;
    }
    return 0;
}

std::string_view as_counted(std::string_view text, std::int64_t length) {
    return length > 0 ? text : std::string_view{};
}

void check_order(Bytes& in) {
    static Table table;
    const std::uint8_t kind = in.byte();
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool lower = i >= 'a' && i <= 'z';
        table[i] = static_cast<unsigned char>((kind & 1) != 0 && lower ? i - 0x20 : (i * (kind | 1U)) & 0xFF);
    }
    for (int changes = kind >> 6; changes > 0; --changes) table[in.byte()] = in.flag() ? ' ' : in.byte();
    void*& word = linked_host().control_block()[6];
    void* const usual = word;
    word = table.data();
    linked_host().set_multibyte((kind & 2) != 0);

    const std::string_view a_text = in.text(in.below(48));
    const std::string_view b_text = in.flag() ? a_text.substr(0, in.byte()) : in.text(in.below(48));
    const std::int64_t a_length = length_of(in, a_text);
    const std::int64_t b_length = length_of(in, b_text);
    const char* a = memory(0).put(a_text);
    const char* b = memory(1).put(b_text);
    const std::int32_t expected = model_order(table, as_counted(a_text, a_length), as_counted(b_text, b_length));
    must(wzstcmn(a, a_length, b, b_length, 0) == expected, "order of two texts");
    must(wzstcmn(b, b_length, a, a_length, 0) == -expected, "order of two texts, swapped");
    linked_host().set_multibyte(false);
    word = usual;
}

// ---- Lengths, blanks, copies

void check_lengths(Bytes& in) {
    const char character = in.take<char>();
    const std::string_view text = in.text(in.byte());
    const std::int64_t length = length_of(in, text);
    const char* place = memory(0).put(text);
    std::int64_t stripped = length;
    while (stripped > 0 && text[static_cast<std::size_t>(stripped) - 1] == ' ') --stripped;
    must(wzstrip(place, length) == stripped, "length without trailing blanks");
    bool all = true;
    for (const char c : as_counted(text, length)) all = all && c == character;
    must(vzatl(character, place, length) == (all ? 1 : 0), "all of one character");
    const std::string terminated{text.substr(0, text.find('\0'))};
    const char* with_end = memory(1).put({terminated.c_str(), terminated.size() + 1});
    must(wzstlen(with_end) == size_of(terminated), "length up to the NUL");
    must(wzstlen(nullptr) == 0, "a null text has no length");
}

// Source and destination are parts of one text, so that they may overlap in any way.
void check_copy(Bytes& in) {
    const std::string_view text = in.text(in.byte());
    const std::size_t from = in.byte() % (text.size() + 1);
    const std::size_t to = in.byte() % (text.size() + 1);
    const std::string_view source = text.substr(from, in.byte());
    const std::size_t destination_size = text.substr(to, in.byte()).size();
    const std::int64_t source_length = length_of(in, source);
    const std::int64_t destination_length = length_of(in, text.substr(to, destination_size));
    std::string expected{text};
    for (std::size_t i = 0; destination_length > 0 && i < destination_size; ++i) {
        expected[to + i] = at_or_blank(as_counted(source, source_length), i);
    }
    char* place = memory(0).put(text);
    vzmp(place + from, source_length, place + to, destination_length);
    must(std::string_view{place, text.size()} == expected, "a copy, filled with blanks");
}

// ---- Deletion

void check_deletion(Bytes& in) {
    std::string text{in.text(in.byte())};
    std::string set{in.text(in.below(12))};
    const bool text_ends = in.flag();  // with a NUL, its length not being told
    const bool set_ends = in.flag();
    if (text_ends) text = text.substr(0, text.find('\0'));
    if (set_ends) set = set.substr(0, set.find('\0'));
    std::string kept;
    for (const char c : text) {
        if (set.find(c) == std::string::npos) kept += c;
    }
    const std::size_t end = text_ends ? 1 : 0;
    char* place = memory(0).put({text.c_str(), text.size() + end});
    const char* set_place = memory(1).put({set.c_str(), set.size() + (set_ends ? 1 : 0)});
    const std::int64_t length = wzstdel(place, text_ends ? -1 : size_of(text), set_place, set_ends ? -1 : size_of(set));
    must(length == size_of(kept), "length after a deletion");
    must(std::string_view{place, kept.size()} == kept, "what a deletion keeps");
    if (text_ends) {
        must(place[kept.size()] == '\0', "a NUL after what is kept");
    } else {
        kept.resize(text.size(), ' ');
        must(std::string_view{place, text.size()} == kept, "blanks after what is kept");
    }
}

// ---- Translation

char other_case(char c, std::uint32_t mode) {
    const bool change = mode == translation_to_upper ? c >= 'a' && c <= 'z' : mode == 3 && c >= 'A' && c <= 'Z';
    return change ? static_cast<char>(c ^ 0x20) : c;
}

// In multibyte mode a byte from 0x80 on begins a character of two bytes, which has no case.
void check_translation(Bytes& in) {
    const std::uint32_t mode = in.below(8) < 6 ? in.below(5) : in.take<std::uint32_t>();
    const bool multibyte = in.flag();
    const bool in_place = in.flag();
    const std::string_view text = in.text(in.byte());
    const std::int64_t length = length_of(in, text);
    std::string expected{in_place ? text : std::string(text.size(), '#')};
    for (std::size_t i = 0; mode <= 4 && length > 0 && i < text.size(); ++i) {
        const bool lead = multibyte && static_cast<unsigned char>(text[i]) >= 0x80;
        expected[i] = lead ? text[i] : other_case(text[i], mode);
        if (lead && i + 1 < text.size()) {
            ++i;
            expected[i] = text[i];
        }
    }
    const char* source = memory(0).put(text);
    char* destination = in_place ? memory(0).last(text.size()) : memory(1).put(std::string(text.size(), '#'));
    linked_host().set_multibyte(multibyte);
    const std::uint32_t status = wztxxlt(mode, source, destination, length);
    linked_host().set_multibyte(false);
    must(status == (mode > 4 ? translation_mode_unknown : 0), "translation modes 0 to 4 are known");
    must(std::string_view{destination, text.size()} == expected, "translated text");
}

void run(Bytes in) {
    linked_host();
    switch (in.below(5)) {
        case 0:
            return check_order(in);
        case 1:
            return check_lengths(in);
        case 2:
            return check_copy(in);
        case 3:
            return check_deletion(in);
        default:
            return check_translation(in);
    }
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
