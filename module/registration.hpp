// The parts of the load protocol that have no entry of their own in zelkovan.so.
#pragma once

#include <cstdint>

#include "abi/zelkovan.h"

namespace finance {

using EntryPointAddress = std::uint32_t (*)(HostCallContext* context, double* result);

// Called once while the module is loaded. There is nothing to do.
void himodcn();

// Copies into a block of host memory what a registration request asks for, and returns the block:
//   request 1: the number of items and the pointer to them; request 2: a word of the host's, then count entry points.
// Null for any other request. Without memory the host's exit service is called, which does not return.
void* xfmuent(std::int32_t request, std::uint32_t count, const FunctionItem* items, const EntryPointAddress* entries);

}  // namespace finance
