#include "abi/basis.hpp"

#include <algorithm>
#include <cstring>

#include "abi/arguments.hpp"
#include "abi/conversions.hpp"
#include "abi/host_services.hpp"
#include "abi/status.hpp"
#include "abi/text.hpp"

namespace finance {

namespace {

constexpr std::int64_t longest_text = ZELKOVAN_LONGEST_BASIS_TEXT;

bool read_code(const ArgSlot& slot, std::int32_t& basis) {
    const double value = numeric_value(slot);
    if (is_missing(value)) {
        basis = BASIS_ACTUAL;
        return true;
    }
    const std::int32_t code = truncate_to_int32(value);
    const auto key = std::ranges::find(Keys, static_cast<std::uint32_t>(code), &BasisKey::code);
    if (key == Keys.end()) return false;
    basis = code;
    return true;
}

bool read_keyword(const ArgSlot& slot, std::int32_t& basis) {
    const CharacterValue value = character_value(slot);
    if (value.text == nullptr || value.length < 1 || value.length > longest_text) return false;

    char work[longest_text + 1];
    std::memcpy(work, value.text, static_cast<std::size_t>(value.length));
    work[value.length] = '\0';
    const std::int64_t length = wzstdel(work, value.length, " ", 1);
    wzstrup(work, length);

    // What the host made of a letter may be a blank: where lengths differ, trailing blanks do not count.
    const std::int64_t stripped = wzstrip(work, length);
    const auto names_it = [&](const BasisKey& key) {
        const char* keyword = key.keyword.data();
        const auto keyword_length = static_cast<std::int64_t>(key.keyword.size());
        if (length == keyword_length) return wzstcmn(work, length, keyword, keyword_length, 0) == 0;
        return stripped == wzstrip(keyword, keyword_length) && wzstcmn(work, stripped, keyword, stripped, 0) == 0;
    };
    const auto key = std::ranges::find_if(Keys, names_it);
    if (key == Keys.end()) return false;
    basis = static_cast<std::int32_t>(key->code);
    return true;
}

}  // namespace

bool read_basis(const ArgSlot& slot, std::int32_t& basis) {
    switch (slot_type(slot)) {
        case ZELKOVAN_TYPE_NUMERIC:
            return read_code(slot, basis);
        case ZELKOVAN_TYPE_CHARACTER:
            return read_keyword(slot, basis);
        default:
            return false;
    }
}

}  // namespace finance
