#include "benchmarks/calls/checks.hpp"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "benchmarks/calls/call_record.hpp"

namespace finance::benchmarks {

namespace {

double answer(host::Dispatcher dispatcher, const CallCase& one) {
    CallRecord call{one.name, one.arguments, one.varied};
    call.vary();
    if (dispatcher(call.context(), call.result()) != 0) throw std::runtime_error{one.label + " is refused"};
    return *call.result();
}

}  // namespace

void check_call(host::Dispatcher dispatcher, const CallCase& one) {
    const double expected = answer(dispatcher, one);
    if (one.floor == nullptr) return;
    CallRecord call{one.name, one.arguments, one.varied};
    call.vary();
    const double floor = one.floor({call.numbers(), one.flows});
    if (std::bit_cast<std::uint64_t>(floor) == std::bit_cast<std::uint64_t>(expected)) return;
    std::fprintf(stderr, "%s: %.17g, its floor %.17g\n", one.label.c_str(), expected, floor);
    throw std::runtime_error{"a floor that is not the call's arithmetic"};
}

void check_peer(host::Dispatcher dispatcher, const CallCase& one, const Peer& peer) {
    constexpr double near_enough = 1e-8;
    const double expected = answer(dispatcher, one);
    const double theirs = peer.answer(1.0 + 0x1p-30) * peer.scale;
    if (std::abs(theirs - expected) <= near_enough * std::abs(expected)) return;
    std::fprintf(stderr, "%s: %.17g, the peer's %.17g\n", one.label.c_str(), expected, theirs);
    throw std::runtime_error{"a peer that answers something else"};
}

}  // namespace finance::benchmarks
