#include "lanes/staged_rows.hpp"

#include <algorithm>
#include <bit>
#include <numeric>

namespace finance {

namespace {

bool all_same(const RowOrder::Figure& figure) {
    unsigned others = 0;
    for (const double value : figure) others |= static_cast<unsigned>(value != figure[0]);
    return others == 0;
}

}  // namespace

RowOrder::RowOrder(std::uint64_t among, const Figure& kinds, const Figure& terms)
    : is_as_they_stand{among == ~std::uint64_t{0} && all_same(kinds) && all_same(terms)} {
    if (is_as_they_stand) {
        rows = among;
        size = RowBlock::most_rows;
        std::iota(at.begin(), at.end(), std::uint8_t{0});
    } else {
        sort(among, kinds, terms);
    }
}

// By counting: so many classes of so many terms.
void RowOrder::sort(std::uint64_t among, const Figure& kinds, const Figure& terms) {
    constexpr std::size_t classes = 64;
    constexpr double terms_of_class = 2.0;
    const double kind = kinds[static_cast<std::size_t>(std::countr_zero(among))];
    std::array<std::uint8_t, classes + 1> ends{};
    std::array<std::uint8_t, RowBlock::most_rows> class_of;
    for (std::uint64_t left = among; left != 0; left &= left - 1) {
        const auto row = static_cast<std::size_t>(std::countr_zero(left));
        if (kinds[row] != kind) continue;
        rows |= std::uint64_t{1} << row;
        const double by_class = terms[row] * (1.0 / terms_of_class);
        class_of[row] = static_cast<std::uint8_t>(by_class < classes - 1 ? by_class : classes - 1);
        ++ends[class_of[row] + 1U];
    }
    for (std::size_t i = 0; i < classes; ++i) ends[i + 1] = static_cast<std::uint8_t>(ends[i + 1] + ends[i]);
    size = ends[classes];
    for (std::uint64_t left = rows; left != 0; left &= left - 1) {
        const auto row = static_cast<std::size_t>(std::countr_zero(left));
        at[ends[class_of[row]]++] = static_cast<std::uint8_t>(row);
    }
    std::fill_n(at.begin() + size, most_lanes, at[size - 1U]);
}

}  // namespace finance
