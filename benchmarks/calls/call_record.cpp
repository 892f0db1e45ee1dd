#include "benchmarks/calls/call_record.hpp"

namespace finance::benchmarks {

CallRecord::CallRecord(std::string_view name, const std::vector<host::Argument>& arguments, std::size_t varied)
    : words_((sizeof(HostCallContext) + (arguments.size() + 1) * sizeof(ArgSlot)) / sizeof(std::uint64_t)),
      numbers_(arguments.size() + 1),
      texts_(arguments.size() + 1),
      descriptors_(arguments.size() + 1),
      varied_{varied} {
    context()->count = count();
    fill_slot(0, host::Argument{name});
    for (std::size_t i = 0; i < arguments.size(); ++i) fill_slot(i + 1, arguments[i]);
    for (std::size_t i = 0; i < values_.size(); ++i) {
        values_[i] = numbers_[varied_] * (1.0 + static_cast<double>(i) * 0x1p-30);
    }
}

void CallRecord::fill_slot(std::size_t position, const host::Argument& argument) {
    using enum host::Argument::Kind;
    ArgSlot& slot = reinterpret_cast<ArgSlot*>(context() + 1)[position];
    const bool numeric = argument.kind() == number || argument.kind() == absent;
    slot.type = numeric ? ZELKOVAN_TYPE_NUMERIC : ZELKOVAN_TYPE_CHARACTER;
    if (argument.kind() == number) {
        numbers_[position] = argument.number();
        slot.value = &numbers_[position];
    }
    if (argument.kind() == text) {
        texts_[position] = argument.text();
        CharacterDescriptor& descriptor = descriptors_[position];
        descriptor.length = static_cast<std::uint32_t>(texts_[position].size());
        descriptor.text = texts_[position].data();
        slot.value = &descriptor;
    }
}

}  // namespace finance::benchmarks
