// FINANCE: finds the calculation that the first argument names, checks the number of arguments, hands the call over.
//
//  (1) An unknown name lists the known ones in the log and is flagged; a wrong number of arguments is logged and flags
//      nothing. Neither touches the result.
//  (2) The host sees one status for all failures.
#include <cstdint>

#include "abi/arguments.hpp"
#include "abi/floating_point_mode.hpp"
#include "abi/host_services.hpp"
#include "module/financial_list.hpp"
#include "module/find_calculation.hpp"

namespace finance {

namespace {

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
    if (found == unknown_calculation) {
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
