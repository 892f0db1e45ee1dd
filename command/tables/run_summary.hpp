// How many rows, or groups, came to what, and the first that were refused.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calls/answer.hpp"

namespace finance::command {

using calls::Verdict;

class RunSummary {
public:
    static constexpr std::size_t listed = 5;

    void count(Verdict verdict) { ++counts_[static_cast<std::size_t>(verdict)]; }
    // Whether a refusal that comes now would still be listed.
    [[nodiscard]] bool lists_more() const { return first_refused_.size() < listed; }
    void list(std::string refusal) {
        if (lists_more()) first_refused_.push_back(std::move(refusal));
    }
    // other: of what came after.
    void add(const RunSummary& other);
    void clear() { *this = {}; }

    [[nodiscard]] std::uint64_t of(Verdict verdict) const { return counts_[static_cast<std::size_t>(verdict)]; }
    [[nodiscard]] std::uint64_t all() const;
    // things: "rows". A line of counts, then one for each refusal that is listed.
    [[nodiscard]] std::string text(std::string_view job, std::string_view things) const;

private:
    std::array<std::uint64_t, 3> counts_{};
    std::vector<std::string> first_refused_;
};

}  // namespace finance::command
