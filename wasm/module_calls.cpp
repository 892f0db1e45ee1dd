#include "wasm/module_calls.hpp"

#include <cstddef>
#include <cstdint>

#include "wasm/call_record.hpp"
#include "wasm/host.hpp"
#include "wasm/memory.hpp"

namespace finance::wasm {

namespace {

using host::Argument;

// False where there is no memory.
bool set(CallRecord& record, std::uint32_t i, const Argument& argument) {
    switch (argument.kind()) {
        case Argument::Kind::number:
            record.set_number(i, &argument.number());
            return true;
        case Argument::Kind::text:
            return record.set_text(i, argument.text().data(), static_cast<std::uint32_t>(argument.text().size()));
        case Argument::Kind::absent_text:
            record.set_absent_text(i);
            return true;
        default:
            record.set_absent(i);
            return true;
    }
}

bool set_all(CallRecord& record, std::string_view name, std::span<const Argument> arguments) {
    if (!record || !set(record, 0, name)) return false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!set(record, static_cast<std::uint32_t>(i) + 1, arguments[i])) return false;
    }
    return true;
}

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
    forget_log();
    host::Evaluation evaluation{
        .status = ZELKOVAN_STATUS_INVALID_ARGUMENT, .value = missing, .flagged = -1, .log = {}, .notes = {}};
    {
        const Workspace workspace;  // ends before lines are kept
        CallRecord record{static_cast<std::uint32_t>(arguments.size()) + 1};
        if (!set_all(record, name, arguments)) return evaluation;
        double value = missing;
        evaluation.status = record.evaluate(value);
        if (evaluation.answered()) evaluation.value = value;
        evaluation.flagged = record.flagged();
    }
    evaluation.log = lines_of({logged.lines, logged.length});
    if (logged.note != 0) evaluation.notes.push_back({.message_set = 0, .message_number = logged.note});
    return evaluation;
}

}  // namespace finance::wasm
