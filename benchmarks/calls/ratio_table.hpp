// The report: Markdown tables of times, ratios and goals.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "benchmarks/calls/call_cases.hpp"
#include "benchmarks/calls/peers.hpp"
#include "benchmarks/calls/times.hpp"

namespace finance::benchmarks {

struct Measurements {
    const Times& times;
    const std::deque<CallCase>& usual;
    const std::deque<CallCase>& large;
    const std::vector<Peer>& peers;
};

// Times by the names dispatcher/LABEL, handler/LABEL, floor/LABEL, peer/LABEL, name and threads/1, threads/2. A row
// without its times is left out.
std::string ratio_table(const Measurements& measurements);

}  // namespace finance::benchmarks
