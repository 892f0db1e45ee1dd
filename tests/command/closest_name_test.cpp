#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/usage_error.hpp"

namespace finance::test {
namespace {

// ---- The whole table of distances, as textbooks have it: slow, and its memory the product of the lengths

std::size_t distance_by_table(std::string_view a, std::string_view b) {
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

std::string suggestion_by_table(std::string_view mistyped, std::span<const std::string_view> names) {
    const auto distance = [&](std::string_view name) { return distance_by_table(mistyped, name); };
    const auto nearest = std::ranges::min_element(names, {}, distance);
    if (nearest == names.end() ||
        distance(*nearest) > std::clamp(nearest->size() / 2, std::size_t{1}, std::size_t{2})) {
        return {};
    }
    return " (did you mean " + std::string{*nearest} + "?)";
}

// ---- Names

std::vector<std::string_view> calculation_names() {
    std::vector<std::string_view> names;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) names.push_back(calculation.name);
    return names;
}

std::vector<std::string_view> parameter_names() {
    std::vector<std::string_view> names;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        for (const catalogue::Parameter& parameter : calculation.parameters) names.push_back(parameter.name);
    }
    return names;
}

class Edits {
public:
    std::string edited(std::string name, int count) {
        for (; count > 0; --count) edit(name);
        return name;
    }
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>{0, end - 1}(random_); }

private:
    void edit(std::string& name) {
        const std::size_t at = below(name.size() + 1);
        const char letter = "abPMTe_9"[below(8)];
        switch (below(5)) {
            case 0:
                name.insert(at, 1, letter);
                return;
            case 1:
                if (at < name.size()) name.erase(at, 1);
                return;
            case 2:
                if (at < name.size()) name[at] = letter;
                return;
            case 3:
                if (at + 1 < name.size()) std::swap(name[at], name[at + 1]);
                return;
            default:
                if (at < name.size()) name[at] = catalogue::lower(name[at]);
        }
    }
    std::mt19937_64 random_{20'261'122};
};

// ---- Tests

TEST(ClosestName, NearDistance) {
    EXPECT_EQ(command::near_distance("", ""), 0U);
    EXPECT_EQ(command::near_distance("", "PV"), 2U);
    EXPECT_EQ(command::near_distance("PV", ""), 2U);
    EXPECT_EQ(command::near_distance("", "PMT"), 3U);
    EXPECT_EQ(command::near_distance("pmt", "PMT"), 0U);
    EXPECT_EQ(command::near_distance("PTM", "PMT"), 1U) << "neighbours swapped";
    EXPECT_EQ(command::near_distance("IPMT", "PPMT"), 1U);
    EXPECT_EQ(command::near_distance("kitten", "sitting"), 3U);  // the textbook pair
    EXPECT_EQ(command::near_distance("duration", "PMT"), 3U) << "more than two are three";
}

TEST(ClosestName, Suggestion) {
    const std::vector<std::string_view> names{"CUMPRINC", "FV", "IPMT", "PMT", "PV"};
    EXPECT_EQ(command::suggestion("PNT", names), " (did you mean PMT?)");
    EXPECT_EQ(command::suggestion("cumprincipal", names), "");
    EXPECT_EQ(command::suggestion("CUMPRNC", names), " (did you mean CUMPRINC?)");
    EXPECT_EQ(command::suggestion("XV", names), " (did you mean FV?)") << "the first among equals";
    EXPECT_EQ(command::suggestion("AB", names), "");
    EXPECT_EQ(command::suggestion("PMT", {}), "");
}

TEST(ClosestName, DistancesAreThoseOfTheWholeTable) {
    std::vector<std::string_view> names = calculation_names();
    for (const std::string_view name : parameter_names()) names.push_back(name);
    Edits edits;
    std::array<int, 4> met{};
    for (const std::string_view a : names) {
        for (const std::string_view b : names) {
            const std::string edited = edits.edited(std::string{edits.below(2) == 0 ? a : b}, 3);
            const std::size_t distance = std::min<std::size_t>(distance_by_table(edited, b), 3);
            ASSERT_EQ(command::near_distance(edited, b), distance) << edited << " and " << b;
            ++met[distance];
        }
    }
    for (const int count : met) EXPECT_GT(count, 1'000) << "each distance is met often";
}

TEST(ClosestName, SuggestionsAreThoseOfTheWholeTable) {
    Edits edits;
    int checked = 0;
    int suggested = 0;
    for (const std::vector<std::string_view>& names : {calculation_names(), parameter_names()}) {
        for (const std::string_view name : names) {
            for (int count = 1; count <= 6; ++count, ++checked) {
                const std::string edited = edits.edited(std::string{name}, count);
                const std::string suggestion = command::suggestion(edited, names);
                ASSERT_EQ(suggestion, suggestion_by_table(edited, names)) << edited;
                suggested += suggestion.empty() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(suggested, 300);
    EXPECT_GT(checked - suggested, 300);
}

// The whole table of these would have 2.8e14 places.
TEST(ClosestName, LongNamesAreComparedInTheirLength) {
    constexpr std::size_t size = std::size_t{16} * 1024 * 1024;
    const std::string name(size, 'x');
    std::string other = name;
    other[size / 2] = 'y';
    EXPECT_EQ(command::near_distance(name, name), 0U);
    EXPECT_EQ(command::near_distance(name, other + 'z'), 2U);
    EXPECT_EQ(command::near_distance("rate", name), 3U);
    EXPECT_EQ(command::near_distance(name, std::string(size, 'y')), 3U);
    const std::vector<std::string_view> names{other, "rate"};
    EXPECT_EQ(command::suggestion(name, names), " (did you mean " + std::string(77, 'x') + "...?)");
}

}  // namespace
}  // namespace finance::test
