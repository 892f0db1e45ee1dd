#include "command/usage_error.hpp"

#include <algorithm>
#include <numeric>
#include <vector>

#include "catalogue/text.hpp"

namespace finance::command {

std::size_t edit_distance(std::string_view a, std::string_view b) {
    const auto same = [&](std::size_t i, std::size_t j) { return catalogue::upper(a[i]) == catalogue::upper(b[j]); };
    using Row = std::vector<std::size_t>;  // distances of one beginning of a to each beginning of b
    std::vector<Row> rows(a.size() + 1, Row(b.size() + 1, 0));
    std::iota(rows[0].begin(), rows[0].end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        rows[i][0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = rows[i - 1][j - 1] + (same(i - 1, j - 1) ? 0U : 1U);
            rows[i][j] = std::min({replaced, rows[i - 1][j] + 1, rows[i][j - 1] + 1});
            const bool swapped = i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1);
            if (swapped) rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
    }
    return rows[a.size()][b.size()];
}

std::string suggestion(std::string_view mistyped, std::span<const std::string_view> names) {
    const auto distance = [&](std::string_view name) { return edit_distance(mistyped, name); };
    const auto nearest = std::ranges::min_element(names, {}, distance);
    // Half of the letters may be wrong, but no more than two.
    if (nearest == names.end() ||
        distance(*nearest) > std::clamp(nearest->size() / 2, std::size_t{1}, std::size_t{2})) {
        return {};
    }
    return " (did you mean " + std::string{*nearest} + "?)";
}

}  // namespace finance::command
