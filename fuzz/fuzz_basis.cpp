// How an argument names a day-count basis, against a model that writes out every rule.
#include <cmath>
#include <optional>

#include "abi/basis.hpp"
#include "catalogue/text.hpp"
#include "fuzz/input.hpp"
#include "fuzz/linked_host.hpp"

namespace finance::fuzz {
namespace {

constexpr std::array<std::string_view, 5> keywords{"30/360", "ACTUAL", "ACT/360", "ACT/365", "EU30/360"};
constexpr std::int32_t actual = 1;

// Toward zero: all between -1 and 5, both excluded, has a code.
std::optional<std::int32_t> model_code(double value) {
    if (value != value) return actual;
    if (!(value > -1.0 && value < 5.0)) return {};
    return static_cast<std::int32_t>(std::trunc(value));
}

std::optional<std::int32_t> model_keyword(std::string_view text) {
    constexpr std::size_t longest = 255;
    if (text.empty() || text.size() > longest) return {};
    std::string word;
    for (const char c : text) {
        if (c != ' ') word += catalogue::upper(c);
    }
    for (std::size_t code = 0; code < keywords.size(); ++code) {
        if (word == keywords[code]) return static_cast<std::int32_t>(code);
    }
    return {};
}

// A keyword with blanks and other cases, and perhaps one character changed; or any text.
std::string some_text(Bytes& in) {
    const std::uint8_t how = in.byte();
    if (how >= 128) return how < 250 ? std::string{in.text(how - 128U)} : std::string(in.byte() + 200U, ' ');
    std::string text;
    for (const char c : keywords[how % keywords.size()]) {
        const std::uint8_t change = in.byte();
        if ((change & 0x30) == 0x30) text.append(change & 0xF, ' ');
        text += (change & 1) != 0 && c >= 'A' ? static_cast<char>(c | 0x20) : c;
    }
    if ((how & 64) != 0) text.append(in.byte(), ' ');
    if ((how & 32) != 0) text[in.byte() % text.size()] = in.take<char>();
    return text;
}

void check(const ArgSlot& slot, std::optional<std::int32_t> expected) {
    const ArgSlot before = slot;
    const std::int32_t untouched = 77;
    std::int32_t basis = untouched;
    must(read_basis(slot, basis) == expected.has_value(), "which arguments name a basis");
    must(basis == expected.value_or(untouched), "the basis that is named");
    must(std::memcmp(&before, &slot, sizeof slot) == 0, "a slot is only read");
}

// A copy that ends where readable memory ends.
template <typename Value>
char* guarded(const Value& value) {
    static GuardedMemory<1> memory;
    return memory.put({reinterpret_cast<const char*>(&value), sizeof value});
}

void check_number(Bytes& in, ArgSlot slot, bool near_codes) {
    const double value = near_codes ? in.take<std::int8_t>() / 16.0 : number(in, 1.0);
    slot.type |= ZELKOVAN_TYPE_NUMERIC;
    slot.value = guarded(value);
    check(slot, model_code(value));
    slot.value = nullptr;
    check(slot, actual);
}

void check_text(Bytes& in, ArgSlot slot) {
    static GuardedMemory<1> texts;
    const std::string text = some_text(in);
    CharacterDescriptor descriptor{};
    descriptor.length = static_cast<std::uint32_t>(text.size());
    descriptor.text = texts.put(text);
    slot.type |= ZELKOVAN_TYPE_CHARACTER;
    slot.value = guarded(descriptor);
    check(slot, model_keyword(text));
    must(std::string_view{descriptor.text, text.size()} == text, "a text is only read");

    ArgSlot other = slot;
    other.type = in.byte();
    const int bare_type = other.type & ~ZELKOVAN_TYPE_HOST_MARK;
    if (bare_type != ZELKOVAN_TYPE_NUMERIC && bare_type != ZELKOVAN_TYPE_CHARACTER) check(other, {});
    slot.value = nullptr;
    check(slot, {});
    descriptor.text = nullptr;
    slot.value = guarded(descriptor);
    check(slot, {});
}

void run(Bytes in) {
    const std::uint8_t how = in.byte();
    linked_host().set_case_blind((how & 1) == 0);
    linked_host().set_multibyte((how & 2) != 0);
    ArgSlot slot{};
    slot.type = (how & 4) != 0 ? std::uint8_t{ZELKOVAN_TYPE_HOST_MARK} : std::uint8_t{0};
    slot.flags = in.byte();
    std::memset(slot.host_owned, how, sizeof slot.host_owned);
    if ((how & 8) != 0) {
        check_number(in, slot, (how & 16) != 0);
    } else {
        check_text(in, slot);
    }
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
