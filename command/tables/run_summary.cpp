#include "command/tables/run_summary.hpp"

#include <numeric>

namespace finance::command {

void RunSummary::add(const RunSummary& other) {
    for (std::size_t i = 0; i < counts_.size(); ++i) counts_[i] += other.counts_[i];
    for (const std::string& refusal : other.first_refused_) list(refusal);
}

std::uint64_t RunSummary::all() const { return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0}); }

std::string RunSummary::text(std::string_view job, std::string_view things) const {
    std::string text = "finance: " + std::string{job} + ": " + std::to_string(all()) + ' ' + std::string{things} +
                       ": " + std::to_string(of(Verdict::answered)) + " answered, " +
                       std::to_string(of(Verdict::missing)) + " missing, " + std::to_string(of(Verdict::refused)) +
                       " refused\n";
    for (const std::string& refusal : first_refused_) text += "  " + refusal + '\n';
    if (of(Verdict::refused) > first_refused_.size()) {
        text += "  and " + std::to_string(of(Verdict::refused) - first_refused_.size()) + " more\n";
    }
    return text;
}

}  // namespace finance::command
