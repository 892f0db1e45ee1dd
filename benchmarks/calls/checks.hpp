// What must hold before anything is timed.
#pragma once

#include "benchmarks/calls/call_cases.hpp"
#include "benchmarks/calls/peers.hpp"
#include "host/embedded_host.hpp"

namespace finance::benchmarks {

// All throw std::runtime_error.

// The call is answered; its floor, where it has one, gives the same bits.
void check_call(host::Dispatcher dispatcher, const CallCase& one);

// The peer's answer is the call's to within 1e-8 of its size.
void check_peer(host::Dispatcher dispatcher, const CallCase& one, const Peer& peer);

}  // namespace finance::benchmarks
