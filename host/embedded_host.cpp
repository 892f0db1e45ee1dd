#include "host/embedded_host.hpp"

#include <bit>

#include "host/batch.hpp"
#include "host/call_frame.hpp"
#include "host/control_block.hpp"
#include "host/memory_vector.hpp"
#include "host/module_loader.hpp"
#include "host/services.hpp"
#include "host/toolkit.hpp"

namespace finance::host {
namespace {

constexpr double missing_value = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);

// Modules take the low 32 bits of the count.
std::int32_t slot_count(const HostCallContext* context) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(context->count));
}

// The first slot that the module marked.
int first_flagged(const HostCallContext* context, std::int32_t count) {
    const auto* slot = static_cast<const ArgSlot*>(static_cast<const void*>(context + 1));
    for (int i = 0; i < count; ++i) {
        if ((slot[i].flags & ZELKOVAN_FLAG_INVALID) != 0) return i;
    }
    return -1;
}

}  // namespace

// Destroyed from the last to the first: the module's blocks go back before the memory goes, all before its code.
struct EmbeddedHost::State {
    State(SharedObject object, EntryPoint entry, ColumnsEntry columns_, const std::string& name,
          const Options& options_)
        : options{options_},
          columns{columns_},
          shared_object{std::move(object)},
          claim{entry, name},
          control_block{memory.entry_points(), options.toolkit ? toolkit.object() : nullptr},
          desk{control_block},
          registration{prepared(name), entry} {
        memory.fail_at(0);
    }

    RegistrationHost prepared(const std::string& name) {
        control_block.set_case_blind(options.case_blind);
        control_block.set_multibyte(options.multibyte);
        memory.fail_at(options.failing_request);
        return {desk, memory, control_block, name};
    }

    Evaluation call(HostCallContext* context, double* result) {
        Evaluation evaluation;
        const CurrentEvaluation current{desk, evaluation};
        const std::int32_t count = slot_count(context);  // before a module that is at fault can change it
        evaluation.status = registration.dispatcher()(context, result);
        evaluation.value = evaluation.answered() && result != nullptr ? *result : missing_value;
        evaluation.flagged = first_flagged(context, count);
        return evaluation;
    }

    Options options;
    ColumnsEntry columns;
    SharedObject shared_object;
    ModuleClaim claim;
    MemoryVector memory;
    Toolkit toolkit;
    ControlBlock control_block;
    ServiceDesk desk;
    Registration registration;
};

EmbeddedHost::EmbeddedHost(const std::filesystem::path& module, const Options& options) {
    SharedObject object{module};
    const EntryPoint entry = object.entry_point();
    const ColumnsEntry columns = object.columns_entry();
    state_ = std::make_unique<State>(std::move(object), entry, columns, module.string(), options);
}

EmbeddedHost::EmbeddedHost(EntryPoint entry, const Options& options, ColumnsEntry columns)
    : state_{std::make_unique<State>(SharedObject{}, entry, columns, "linked into the program", options)} {}

EmbeddedHost::~EmbeddedHost() = default;

Evaluation EmbeddedHost::evaluate(std::string_view name, std::span<const Argument> arguments) const {
    CallFrame& frame = CallFrame::of_this_thread();
    const bool junk = state_->options.junk_in_host_bits;
    frame.fill(name, arguments, state_->options.note_mode, junk);
    double result = missing_value;
    if (!junk) return state_->call(frame.context(), &result);

    const auto before = frame.snapshot();
    Evaluation evaluation = state_->call(frame.context(), &result);
    if (!frame.respected_since(before))
        throw std::logic_error{"the module wrote into the host's part of a call record"};
    return evaluation;
}

Evaluation EmbeddedHost::evaluate(std::string_view name, std::initializer_list<Argument> arguments) const {
    return evaluate(name, std::span<const Argument>{arguments.begin(), arguments.size()});
}

Evaluation EmbeddedHost::evaluate(HostCallContext* context, double* result) const {
    return state_->call(context, result);
}

// Among junk every call is checked: row by row.
std::size_t EmbeddedHost::evaluate_rows(const Batch& batch, unsigned threads) const {
    if (!state_->options.junk_in_host_bits) {
        const RowCalls calls{batch, dispatcher(), state_->columns, state_->desk, state_->options.note_mode};
        return call_rows(calls, threads);
    }
    std::vector<Argument> arguments;
    std::size_t refused = 0;
    for (std::size_t row = 0; row < batch.rows; ++row) {
        arguments.clear();
        for (const Column& column : batch.columns) column.append_to(arguments, row);
        const Evaluation evaluation = evaluate(batch.name, arguments);
        batch.store(row, evaluation.status, evaluation.value, evaluation.flagged);
        refused += evaluation.answered() ? 0U : 1U;
    }
    return refused;
}

Dispatcher EmbeddedHost::dispatcher() const { return state_->registration.dispatcher(); }

const ImageInformation& EmbeddedHost::image() const { return state_->registration.image(); }

const FunctionItem& EmbeddedHost::item() const { return state_->registration.item(); }

void EmbeddedHost::set_case_blind(bool on) { state_->control_block.set_case_blind(on); }

void EmbeddedHost::set_multibyte(bool on) { state_->control_block.set_multibyte(on); }

MemoryVector& EmbeddedHost::memory() { return state_->memory; }

Toolkit& EmbeddedHost::toolkit() { return state_->toolkit; }

std::vector<std::string> EmbeddedHost::log_outside_calls() const { return state_->desk.log(); }

std::vector<Note> EmbeddedHost::notes_outside_calls() const { return state_->desk.notes(); }

void** EmbeddedHost::control_block() { return state_->control_block.words(); }

}  // namespace finance::host
