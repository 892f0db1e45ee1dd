#include "command/usage_error.hpp"

#include <algorithm>
#include <array>

namespace finance::command {

namespace {

constexpr std::size_t most_wrong = 2;

// Half of the letters may be wrong, but no more than two.
std::size_t most_wrong_of(std::string_view name) { return std::clamp(name.size() / 2, std::size_t{1}, most_wrong); }

// A row of the table of distances, of one beginning of a to the beginnings of b. Those whose lengths differ by more than
// `most_wrong` are too far away to matter: a row keeps the others, its middle being the beginning of the same length.
using Band = std::array<std::size_t, 2 * most_wrong + 1>;
constexpr std::size_t far = most_wrong + 1;
constexpr Band far_away{far, far, far, far, far};

class BandedDistance {
public:
    BandedDistance(std::string_view a, std::string_view b) : a_{a}, b_{b} {}

    // `far` where it is more than most_wrong.
    std::size_t distance() {
        if (std::max(a_.size(), b_.size()) - std::min(a_.size(), b_.size()) > most_wrong) return far;
        for (std::size_t j = 0; j <= most_wrong; ++j) row_[most_wrong + j] = j;
        for (std::size_t i = 1; i <= a_.size(); ++i) {
            fill_next(i);
            if (std::ranges::min(row_) > most_wrong && std::ranges::min(before_) > most_wrong) return far;
        }
        return std::min(row_[most_wrong + b_.size() - a_.size()], far);
    }

private:
    [[nodiscard]] bool same(std::size_t i, std::size_t j) const {
        return catalogue::upper(a_[i]) == catalogue::upper(b_[j]);
    }

    void fill_next(std::size_t i) {
        Band next = far_away;
        for (std::size_t k = 0; k < next.size(); ++k) {  // of b's first j letters
            const std::size_t j = i + k - most_wrong;
            if (i + k < most_wrong || j > b_.size()) continue;
            next[k] = j == 0 ? i : cheapest(next, i, j, k);
        }
        before_ = row_;
        row_ = next;
    }

    [[nodiscard]] std::size_t cheapest(const Band& next, std::size_t i, std::size_t j, std::size_t k) const {
        std::size_t least = row_[k] + (same(i - 1, j - 1) ? 0U : 1U);
        if (k + 1 < next.size()) least = std::min(least, row_[k + 1] + 1);
        if (k > 0) least = std::min(least, next[k - 1] + 1);
        const bool swapped = i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1);
        return swapped ? std::min(least, before_[k] + 1) : least;
    }

    std::string_view a_;
    std::string_view b_;
    Band row_ = far_away;     // of i letters
    Band before_ = far_away;  // of i - 1
};

}  // namespace

std::size_t near_distance(std::string_view a, std::string_view b) { return BandedDistance{a, b}.distance(); }

std::string suggestion(std::string_view mistyped, std::span<const std::string_view> names) {
    std::string_view nearest;
    std::size_t least = far;
    for (const std::string_view name : names) {
        const std::size_t distance = near_distance(mistyped, name);
        if (distance >= least) continue;
        least = distance;
        nearest = name;
    }
    if (least == far || least > most_wrong_of(nearest)) return {};
    return " (did you mean " + shown(nearest) + "?)";
}

}  // namespace finance::command
