#include "wasm/module_calls.hpp"

#include "wasm/host.hpp"
#include "wasm/memory.hpp"

namespace finance::wasm {

namespace {

using host::Argument;

CharacterDescriptor described(std::string_view text) {
    CharacterDescriptor descriptor{};
    descriptor.text = const_cast<char*>(text.data());
    descriptor.length = static_cast<std::uint32_t>(text.size());
    return descriptor;
}

// Context, a slot and a descriptor for the name and each argument, one behind the other.
class Record {
public:
    static constexpr std::uint64_t bytes(std::size_t slots) {
        return sizeof(HostCallContext) + std::uint64_t{slots} * (sizeof(ArgSlot) + sizeof(CharacterDescriptor));
    }

    Record(void* place, std::string_view name, std::span<const Argument> arguments)
        : context_{static_cast<HostCallContext*>(place)},
          slots_{reinterpret_cast<ArgSlot*>(context_ + 1), arguments.size() + 1},
          descriptors_{reinterpret_cast<CharacterDescriptor*>(slots_.data() + slots_.size())} {
        *context_ = {};
        context_->count = static_cast<std::int64_t>(slots_.size());
        put(0, name);
        for (std::size_t i = 0; i < arguments.size(); ++i) put(i + 1, arguments[i]);
    }

    [[nodiscard]] HostCallContext* context() const { return context_; }

    [[nodiscard]] int flagged() const {
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if ((slots_[i].flags & ZELKOVAN_FLAG_INVALID) != 0) return static_cast<int>(i);
        }
        return -1;
    }

private:
    void put(std::size_t i, const Argument& argument) {
        slots_[i] = {};
        const bool is_text = argument.kind() == Argument::Kind::text;
        const bool is_character = is_text || argument.kind() == Argument::Kind::absent_text;
        slots_[i].type = is_character ? ZELKOVAN_TYPE_CHARACTER : ZELKOVAN_TYPE_NUMERIC;
        if (argument.kind() == Argument::Kind::number) slots_[i].value = const_cast<double*>(&argument.number());
        if (!is_text) return;
        descriptors_[i] = described(argument.text());
        slots_[i].value = &descriptors_[i];
    }

    HostCallContext* context_;
    std::span<ArgSlot> slots_;
    CharacterDescriptor* descriptors_;
};

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

}  // namespace

host::Evaluation ModuleCalls::evaluate(std::string_view name, std::span<const Argument> arguments) const {
    logged.length = 0;
    logged.note = 0;
    host::Evaluation evaluation{.status = ZELKOVAN_STATUS_INVALID_ARGUMENT,
                                .value = Argument::missing().number(),
                                .flagged = -1,
                                .log = {},
                                .notes = {}};
    {
        const Workspace workspace;  // ends before lines are kept
        void* place = allocate(Record::bytes(arguments.size() + 1));
        if (place == nullptr) return evaluation;
        const Record record{place, name, arguments};
        double value = evaluation.value;
        evaluation.status = fncfin(record.context(), &value);
        if (evaluation.answered()) evaluation.value = value;
        evaluation.flagged = record.flagged();
    }
    evaluation.log = lines_of({logged.lines, logged.length});
    if (logged.note != 0) evaluation.notes.push_back({.message_set = 0, .message_number = logged.note});
    return evaluation;
}

}  // namespace finance::wasm
