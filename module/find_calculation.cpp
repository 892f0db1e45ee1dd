#include "module/find_calculation.hpp"

#include <algorithm>
#include <cstdint>

#include "abi/host_control.hpp"
#include "abi/text.hpp"
#include "module/collating_letters.hpp"
#include "module/financial_list.hpp"
#include "module/find_by_letters.hpp"

namespace finance {

namespace {

// The name as the host spells it, in upper case, in a buffer of its own. The search does not use it (2), but in multibyte
// mode the translation is a service call that the host may watch. In the other mode nobody would see it. (Not inlined:
// its buffer is guarded, and calls in the other mode need not pay for that.)
[[gnu::noinline]] void translate_copy(const char* name, std::int64_t length) {
    constexpr std::int64_t work_length = 16;
    char work[work_length];
    vzmp(name, length, work, work_length);
    wztxxlt(translation_to_upper, work, work, std::min(length, work_length));
}

// Binary search by an order of the name and the name of a row.
template <typename Order>
std::int32_t find_row(Order order_to) {
    std::uint32_t low = 1;
    std::uint32_t high = FinancialList.size();
    while (low <= high) {
        const std::uint32_t mid = (low + high) / 2;
        const std::int32_t order = order_to(FinancialList[mid - 1]);
        if (order == 0) return static_cast<std::int32_t>(mid - 1);
        if (order < 0) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    return unknown_calculation;
}

[[gnu::noinline]] std::int32_t search_by_host(const char* name, std::int64_t length) {
    translate_copy(name, length);
    return find_row([=](const FinancialRow& row) { return wzstcmn(name, length, row.name, row.name_length, 0); });
}

[[gnu::noinline]] std::int32_t search_by_table(const unsigned char* mapped, const char* name, std::int64_t length) {
    const std::int32_t first = mapped[static_cast<unsigned char>(*name)];
    return find_row([=](const FinancialRow& row) {
        const std::int32_t order = first - mapped[static_cast<unsigned char>(*row.name)];
        return order != 0 ? order : order_by_table(mapped, name, length, row.name, row.name_length);
    });
}

}  // namespace

std::int32_t find_calculation(CharacterValue name) {
    if (name.text == nullptr) return unknown_calculation;
    const std::int64_t length = wzstrip(name.text, name.length);
    if (length == 0 || *name.text == blank) return unknown_calculation;
    if (multibyte_mode()) return search_by_host(name.text, length);
    const unsigned char* mapped = collating_table();
    if (letters_ascend(mapped)) {
        const std::int32_t row = find_by_letters(mapped, name.text, length);
        if (row != unknown_calculation) return row;
    }
    return search_by_table(mapped, name.text, length);
}

}  // namespace finance
