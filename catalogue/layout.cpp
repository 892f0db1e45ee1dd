#include "catalogue/layout.hpp"

#include <algorithm>

namespace finance::catalogue {

namespace {

// One value to each parameter for as long as there are some.
std::vector<std::size_t> one_each(std::size_t parameters, std::size_t values) {
    std::vector<std::size_t> result(parameters, 0);
    std::fill_n(result.begin(), std::min(parameters, values), std::size_t{1});
    return result;
}

}  // namespace

std::vector<std::size_t> shares(const Calculation& calculation, std::size_t values) {
    const auto& all = calculation.parameters;
    const std::size_t lists = list_count(calculation);
    if (lists == 0) return one_each(all.size(), values);

    std::vector<std::size_t> result(all.size(), 0);
    std::size_t left = values;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (is_list(all[i].kind) || all[i].need == Need::optional || left == 0) continue;
        result[i] = 1;
        --left;
    }
    const bool odd_one = lists == 2 && left % 2 == 1 && all.back().need == Need::optional;
    if (odd_one) result.back() = 1;
    left -= odd_one ? 1 : 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (is_list(all[i].kind)) result[i] = left / lists;
    }
    return result;
}

Place place_of(const Calculation& calculation, std::size_t position, std::size_t values) {
    const std::vector<std::size_t> taken = shares(calculation, values);
    std::size_t before = 0;
    for (std::size_t i = 0; i < taken.size(); ++i) {
        if (position <= before + taken[i]) {
            return {i, is_list(calculation.parameters[i].kind) ? position - before : 0};
        }
        before += taken[i];
    }
    return {taken.size(), 0};
}

}  // namespace finance::catalogue
