// The missing-value counters that the host may call by name.
//
//  (1) fncnmis reads every slot as a number, the name's too.
//  (2) fnccmis goes by type: bit 0 of the type byte set means a number, anything else is a text, missing when blank.
//  (3) fncmis looks at slot 0 whatever the count: who calls it has one.
//  (4) A slot without a value, and a text without characters, is missing.
#include "abi/arguments.hpp"
#include "abi/floating_point_mode.hpp"
#include "abi/steps.hpp"
#include "abi/text.hpp"

namespace finance {

namespace {

bool missing_as_number(const ArgSlot& slot) { return is_missing(numeric_value(slot)); }

bool missing_by_type(const ArgSlot& slot) {
    if ((slot.type & ZELKOVAN_TYPE_NUMERIC) != 0) return missing_as_number(slot);
    const CharacterValue value = character_value(slot);
    return value.text == nullptr || vzatl(' ', value.text, value.length) == 1;
}

template <bool (*test)(const ArgSlot& slot)>
std::uint32_t count_slots(const HostCallContext* context, double* result) {
    std::int64_t missing = 0;
    const std::int64_t count = argument_count(context);
    if (count > 0) count_steps(count);
    for (std::int64_t i = 0; i < count; ++i) {
        if (test(slots_of(context)[i])) ++missing;
    }
    *result = static_cast<double>(missing);
    return STATUS_SUCCESS;
}

std::uint32_t count_first_slot(const HostCallContext* context, double* result) {
    *result = missing_by_type(*slots_of(context)) ? 1.0 : 0.0;
    return STATUS_SUCCESS;
}

}  // namespace

}  // namespace finance

std::uint32_t fncnmis(const HostCallContext* context, double* result) {
    return finance::in_usual_mode(finance::count_slots<finance::missing_as_number>, context, result);
}

std::uint32_t fnccmis(const HostCallContext* context, double* result) {
    return finance::in_usual_mode(finance::count_slots<finance::missing_by_type>, context, result);
}

std::uint32_t fncmis(const HostCallContext* context, double* result) {
    return finance::in_usual_mode(finance::count_first_slot, context, result);
}
