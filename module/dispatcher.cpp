// FINANCE: finds the calculation that the first argument names, checks the number of arguments, hands the call over.
//
//  (1) Trailing blanks of the name do not count; a leading one, or none but blanks, makes it unknown.
//  (2) The text of the argument itself is looked up, at its full length: whether lower case is found is a matter of
//      the host's collating table alone.
//  (3) An unknown name lists the known ones in the log and is flagged; a wrong number of arguments is logged and flags
//      nothing. Neither touches the result.
//  (4) The host sees one status for all failures.
#include <algorithm>
#include <cstdint>

#include "abi/arguments.hpp"
#include "abi/host_control.hpp"
#include "abi/host_services.hpp"
#include "abi/text.hpp"
#include "module/financial_list.hpp"

namespace finance {

namespace {

constexpr std::int32_t unknown_row = -1;

// The name as the host spells it, in upper case, in a buffer of its own. The search does not use it (2): in multibyte
// mode the translation is a service call that the host may watch, in the other mode nobody sees it.
void translate_copy(const char* name, std::int64_t length) {
    if (!multibyte_mode()) return;
    constexpr std::int64_t work_length = 16;
    char work[work_length];
    vzmp(name, length, work, work_length);
    wztxxlt(translation_to_upper, work, work, std::min(length, work_length));
}

// Binary search in wzstcmn's order. In single-byte mode the first bytes mostly tell, without the call.
std::int32_t find_row(const char* name, std::int64_t length) {
    const unsigned char* mapped = multibyte_mode() ? nullptr : collating_table();
    const auto first_byte = [mapped](const char* text) { return mapped[static_cast<unsigned char>(*text)]; };
    const unsigned char first = mapped != nullptr ? first_byte(name) : 0;
    std::int32_t low = 1;
    auto high = static_cast<std::int32_t>(FinancialList.size());
    while (low <= high) {
        const std::int32_t mid = (low + high) / 2;
        const FinancialRow& row = FinancialList[static_cast<std::uint32_t>(mid - 1)];
        std::int32_t order = mapped != nullptr ? first - first_byte(row.name) : 0;
        if (order == 0) order = wzstcmn(name, length, row.name, row.name_length, 0);
        if (order == 0) return mid - 1;
        if (order < 0) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    return unknown_row;
}

std::int32_t find_calculation(const CharacterValue& argument) {
    if (argument.text == nullptr) return unknown_row;
    const std::int64_t length = wzstrip(argument.text, argument.length);
    if (length == 0 || argument.text[0] == ' ') return unknown_row;
    translate_copy(argument.text, length);
    return find_row(argument.text, length);
}

[[gnu::cold]] void log_usage() {
    xpslog("The First argument of the %s function can be ", "Finance");
    xpslog("one of the following");
    for (const FinancialRow& row : FinancialList) xpslog("    %s", row.name);
    xpslog(" ");
    xpslog(" ");
}

}  // namespace

}  // namespace finance

std::uint32_t fncfin(HostCallContext* context, double* result) {
    using namespace finance;
    if (context->count < 1) {  // not even a name, and no slot to flag
        log_usage();
        return STATUS_INVALID_ARGUMENT;
    }
    const std::int64_t count = low_32_bits(context->count);
    ArgSlot& name = slots_of(context)[0];
    const std::int32_t found = find_calculation(character_value(name));
    if (found == unknown_row) {
        log_usage();
        flag_invalid(name);
        return STATUS_INVALID_ARGUMENT;
    }
    const FinancialRow& row = FinancialList[static_cast<std::uint32_t>(found)];
    if (count < row.minimum_count) {
        xpslog("Not enough arguments for %s ", row.name);
        return STATUS_INVALID_ARGUMENT;
    }
    if (row.maximum_count != 0 && count > row.maximum_count) {
        xpslog("Too many arguments for %s ", row.name);
        return STATUS_INVALID_ARGUMENT;
    }
    return row.handler(context, result, count, found) == STATUS_SUCCESS ? STATUS_SUCCESS : STATUS_INVALID_ARGUMENT;
}
