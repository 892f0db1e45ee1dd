// Collects what Google Benchmark measures, and keeps the best of the repetitions.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace finance::benchmarks {

struct Measured {
    double nanoseconds = 0.0;       // of processor time, the least
    double calls_per_second = 0.0;  // of wall time, all threads together, the most; 0 where not counted
};

class Times : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    // Throws std::out_of_range for what was not measured.
    [[nodiscard]] const Measured& operator[](const std::string& name) const { return measured_.at(name); }
    [[nodiscard]] bool has(const std::string& name) const { return measured_.contains(name); }
    [[nodiscard]] bool have(const std::vector<std::string>& names) const {
        return std::ranges::all_of(names, [&](const std::string& name) { return has(name); });
    }

private:
    std::map<std::string, Measured> measured_;
};

inline constexpr const char* calls_counter = "calls";

}  // namespace finance::benchmarks
