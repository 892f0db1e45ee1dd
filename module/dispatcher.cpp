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
#include "abi/floating_point_mode.hpp"
#include "abi/host_control.hpp"
#include "abi/host_services.hpp"
#include "abi/text.hpp"
#include "module/financial_list.hpp"

namespace finance {

namespace {

constexpr std::int32_t unknown_row = -1;

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
    return unknown_row;
}

std::int32_t find_calculation(const CharacterValue& argument) {
    if (argument.text == nullptr) return unknown_row;
    const std::int64_t length = wzstrip(argument.text, argument.length);
    if (length == 0 || argument.text[0] == ' ') return unknown_row;
    if (multibyte_mode()) {
        translate_copy(argument.text, length);
        return find_row(
            [&](const FinancialRow& row) { return wzstcmn(argument.text, length, row.name, row.name_length, 0); });
    }
    const char* name = argument.text;
    const unsigned char* mapped = collating_table();
    const std::int32_t first = mapped[static_cast<unsigned char>(*name)];
    return find_row([=](const FinancialRow& row) {
        const std::int32_t order = first - mapped[static_cast<unsigned char>(*row.name)];
        return order != 0 ? order : order_by_table(mapped, name, length, row.name, row.name_length);
    });
}

[[gnu::cold]] void log_usage() {
    xpslog("The First argument of the %s function can be ", "Finance");
    xpslog("one of the following");
    for (const FinancialRow& row : FinancialList) xpslog("    %s", row.name);
    xpslog(" ");
    xpslog(" ");
}

// One copy, for both ways in.
[[gnu::noinline]] std::uint32_t dispatch(HostCallContext* context, double* result) {
    const std::int64_t count = argument_count(context);
    if (count < 1) {  // not even a name, and no slot to flag
        log_usage();
        return STATUS_INVALID_ARGUMENT;
    }
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

}  // namespace

}  // namespace finance

std::uint32_t fncfin(HostCallContext* context, double* result) {
    return finance::in_usual_mode(finance::dispatch, context, result);
}
