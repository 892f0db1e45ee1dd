// The same answers from another library, as far as there is one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace finance::benchmarks {

struct Peer {
    std::string label;                // its own
    std::string_view call;            // label of the call that answers the same
    double (*answer)(double near_1);  // one input is multiplied by near_1
    double goal;                      // how many times faster than it a call has to be
    double scale = 1.0;               // its answer in our unit
};

// From scratch: dates, schedule, instrument and all are built anew each time. Empty without the library.
std::vector<Peer> peers();

// Name and version of the library, or why there is none.
std::string peer_library();

}  // namespace finance::benchmarks
