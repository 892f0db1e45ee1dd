#include "command/tables/run_summary.hpp"

#include <numeric>

namespace finance::command {

void RunSummary::add(const RunSummary& other) {
    for (std::size_t i = 0; i < counts_.size(); ++i) counts_[i] += other.counts_[i];
    for (const std::string& refusal : other.first_refused_) list(refusal);
}

std::uint64_t RunSummary::all() const { return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0}); }

namespace {

// Verdicts that are told where there are any, the others always.
bool is_rare(Verdict verdict) { return verdict == Verdict::does_not_solve || verdict == Verdict::too_large; }

std::string counted(Verdict verdict, std::uint64_t count) {
    const bool plural = verdict == Verdict::does_not_solve && count != 1;
    return std::to_string(count) + ' ' + (plural ? "do not solve" : std::string{word_of(verdict)});
}

}  // namespace

std::string RunSummary::text(std::string_view job, std::string_view things) const {
    std::string text = "finance: " + std::string{job} + ": " + std::to_string(all()) + ' ' + std::string{things} + ": ";
    for (std::size_t i = 0; i < counts_.size(); ++i) {
        const auto verdict = static_cast<Verdict>(i);
        if (is_rare(verdict) && counts_[i] == 0) continue;
        text += (i > 0 ? ", " : "") + counted(verdict, counts_[i]);
    }
    return text.append("\n").append(listed_lines());
}

std::string RunSummary::text_unkept(std::string_view job, std::string_view outcome) const {
    std::string text{"finance: "};
    return text.append(job).append(": ").append(outcome).append("\n").append(listed_lines());
}

std::string RunSummary::listed_lines() const {
    std::string text;
    for (const std::string& refusal : first_refused_) text += "  " + refusal + '\n';
    if (failures() > first_refused_.size()) {
        text += "  and " + std::to_string(failures() - first_refused_.size()) + " more\n";
    }
    return text;
}

}  // namespace finance::command
