#include "benchmarks/calls/times.hpp"

#include <algorithm>
#include <stdexcept>

namespace finance::benchmarks {

bool Times::ReportContext(const Context&) { return true; }

void Times::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.error_occurred) throw std::runtime_error{run.run_name.function_name + ": " + run.error_message};
        if (run.run_type != Run::RT_Iteration) continue;
        const auto [at, first] = measured_.try_emplace(run.run_name.function_name);
        Measured& best = at->second;
        const double time = run.GetAdjustedCPUTime();
        best.nanoseconds = first ? time : std::min(best.nanoseconds, time);
        if (const auto rate = run.counters.find(calls_counter); rate != run.counters.end()) {
            best.calls_per_second = std::max(best.calls_per_second, rate->second.value);
        }
    }
}

}  // namespace finance::benchmarks
