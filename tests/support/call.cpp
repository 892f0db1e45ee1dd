#include "tests/support/call.hpp"

#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "host/embedded_host.hpp"
#include "module/financial_list.hpp"

namespace finance::test {

namespace {

constexpr std::uint8_t junk_byte = 0xA5;
constexpr std::uint8_t junk_flags = 0xFE;  // all but the bit that the module may set
constexpr std::uint64_t untouched_bits = 0x7FF4123456789ABC;

}  // namespace

host::EmbeddedHost& linked_host() {
    static host::EmbeddedHost host{mcn_main, {}, fnccols};
    return host;
}

void ensure_host() { linked_host(); }

std::uint64_t bits(double x) { return std::bit_cast<std::uint64_t>(x); }

bool same_value(double a, double b) { return bits(a) == bits(b) || (std::isnan(a) && std::isnan(b)); }

double units_in_last_place(double got, double expected) {
    if (same_value(got, expected) || got == expected) return 0.0;
    if (!std::isfinite(got) || !std::isfinite(expected)) return std::numeric_limits<double>::infinity();
    const double size = std::abs(expected);
    const double ulp = std::nextafter(size, std::numeric_limits<double>::infinity()) - size;
    return std::abs(got - expected) / ulp;
}

std::int32_t row_of(std::string_view name) {
    for (std::size_t i = 0; i < FinancialList.size(); ++i) {
        if (name == FinancialList[i].name) return static_cast<std::int32_t>(i);
    }
    throw std::logic_error("no calculation " + std::string{name});
}

Call::Call(std::string_view name, std::vector<Arg> arguments) : name_{name}, arguments_{std::move(arguments)} {
    prepare();
}

void Call::fill_slot(std::size_t i, const Arg& argument) {
    ArgSlot& slot = reinterpret_cast<ArgSlot*>(context() + 1)[i];
    using enum Arg::Kind;
    const bool numeric = argument.kind() == number || argument.kind() == absent;
    slot.type = numeric ? ZELKOVAN_TYPE_NUMERIC : ZELKOVAN_TYPE_CHARACTER;
    if (argument.kind() == other_type) slot.type = 3;
    slot.type |= ZELKOVAN_TYPE_HOST_MARK;
    slot.flags = junk_flags;
    numbers_[i] = argument.number();
    CharacterDescriptor& descriptor = descriptors_[i];
    std::fill(std::begin(descriptor.host_owned), std::end(descriptor.host_owned), junk_byte);
    std::fill(std::begin(descriptor.host_owned_too), std::end(descriptor.host_owned_too), junk_byte);
    descriptor.length = static_cast<std::uint32_t>(argument.text().size());
    descriptor.text = argument.kind() == text ? const_cast<char*>(argument.text().data()) : nullptr;
    switch (argument.kind()) {
        case number:
        case other_type:
            slot.value = &numbers_[i];
            break;
        case text:
        case absent_text:
            slot.value = &descriptor;
            break;
        default:
            slot.value = nullptr;
    }
}

void Call::prepare() {
    const std::size_t count = arguments_.size() + 1;
    record_.assign((sizeof(HostCallContext) + count * sizeof(ArgSlot)) / sizeof(std::uint64_t), 0xA5A5A5A5A5A5A5A5);
    numbers_.assign(count, 0.0);
    descriptors_.assign(count, CharacterDescriptor{});
    context()->count = static_cast<std::int64_t>(count);
    context()->mode = 0;
    context()->notes_written = 0;
    arguments_.insert(arguments_.begin(), Arg{name_});
    for (std::size_t i = 0; i < count; ++i) fill_slot(i, arguments_[i]);
    result_ = std::bit_cast<double>(untouched_bits);
}

void Call::set_mode(std::uint8_t mode) { context()->mode = mode; }

Outcome Call::outcome(Status status) {
    Outcome left;
    left.status = status;
    left.value = result_;
    left.written = bits(result_) != untouched_bits;
    auto* slots = reinterpret_cast<ArgSlot*>(context() + 1);
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        if ((slots[i].flags & ZELKOVAN_FLAG_INVALID) == 0) continue;
        left.flagged.push_back(static_cast<int>(i));
        slots[i].flags = static_cast<std::uint8_t>(slots[i].flags & ~ZELKOVAN_FLAG_INVALID);
    }
    reinterpret_cast<HostCallContext*>(before_.data())->notes_written = context()->notes_written;
    left.host_bytes_kept = record_ == before_;
    return left;
}

Outcome Call::through_handler() {
    ensure_host();
    const std::int32_t row = row_of(name_);
    before_ = record_;
    result_ = std::bit_cast<double>(untouched_bits);
    return outcome(FinancialList[static_cast<std::size_t>(row)].handler(context(), &result_, count(), row));
}

Outcome Call::through_dispatcher() {
    ensure_host();
    before_ = record_;
    result_ = std::bit_cast<double>(untouched_bits);
    return outcome(linked_host().evaluate(context(), &result_).status);
}

Outcome Call::through(std::uint32_t (*routine)(HostCallContext* context, double* result)) {
    ensure_host();
    before_ = record_;
    result_ = std::bit_cast<double>(untouched_bits);
    return outcome(routine(context(), &result_));
}

}  // namespace finance::test
