// Which parameter a position belongs to. Expected by hand from the order of the parameters.
#include "catalogue/layout.hpp"

#include <gtest/gtest.h>

#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

using catalogue::Calculation;

struct ShareCase {
    const char* id;
    const Calculation& calculation;
    std::size_t values;
    std::vector<std::size_t> expected;
};

const std::vector<ShareCase> share_cases{
    {"no list, all", bond, 5, {1, 1, 1, 1, 1}},
    {"no list, the last left out", bond, 4, {1, 1, 1, 1, 0}},
    {"list after, empty", one_list_after, 1, {1, 0}},
    {"list after, three", one_list_after, 4, {1, 3}},
    {"list alone", one_list, 7, {7}},
    {"list before two", one_list_before, 5, {3, 1, 1}},
    {"list before two, none left", one_list_before, 2, {0, 1, 1}},
    {"two lists after", two_lists_after, 7, {1, 3, 3}},
    {"two lists, no guess", two_lists_before, 6, {3, 3, 0}},
    {"two lists, a guess", two_lists_before, 7, {3, 3, 1}},
};

TEST(Layout, Shares) {
    for (const ShareCase& row : share_cases) {
        EXPECT_EQ(catalogue::shares(row.calculation, row.values), row.expected) << row.id;
    }
}

struct PlaceCase {
    const char* id;
    const Calculation& calculation;
    std::size_t position, values;
    std::size_t parameter, element;
};

const PlaceCase place_cases[] = {
    {"no list", bond, 4, 5, 3, 0},
    {"beyond all", bond, 6, 6, 5, 0},
    {"before the list", one_list_after, 1, 4, 0, 0},
    {"first of the list", one_list_after, 2, 4, 1, 1},
    {"last of the list", one_list_after, 4, 4, 1, 3},
    {"after the list", one_list_before, 4, 5, 1, 0},
    {"last after the list", one_list_before, 5, 5, 2, 0},
    {"second list", two_lists_after, 6, 7, 2, 2},
    {"second list without a guess", two_lists_before, 4, 6, 1, 1},
    {"guess", two_lists_before, 7, 7, 2, 0},
};

TEST(Layout, Places) {
    for (const PlaceCase& row : place_cases) {
        const catalogue::Place place = catalogue::place_of(row.calculation, row.position, row.values);
        EXPECT_EQ(place.parameter, row.parameter) << row.id;
        EXPECT_EQ(place.element, row.element) << row.id;
    }
}

}  // namespace
}  // namespace finance::test
