// How many rows, or groups, came to what, and the first that were refused, or whose answer does not hold.
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
    [[nodiscard]] std::uint64_t failures() const {
        return of(Verdict::does_not_solve) + of(Verdict::too_large) + of(Verdict::refused);
    }
    // things: "rows". A line of counts, then one for each that is listed.
    [[nodiscard]] std::string text(std::string_view job, std::string_view things) const;
    // The same of what is not kept: the first line says what has become of the output.
    [[nodiscard]] std::string text_unkept(std::string_view job, std::string_view outcome) const;

private:
    [[nodiscard]] std::string listed_lines() const;

    std::array<std::uint64_t, calls::verdict_words.size()> counts_{};
    std::vector<std::string> first_refused_;
};

}  // namespace finance::command
