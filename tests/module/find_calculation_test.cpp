// Which calculation a name means: what a binary search through the host's table finds, under tables of all kinds and for
// names of all kinds, whether it is found by letters or by the search. Expected is the rule, written down a second time
// (collating_tables.hpp).
#include "module/find_calculation.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "module/financial_list.hpp"
#include "tests/abi/bare_host.hpp"
#include "tests/module/collating_tables.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

int meaning_of(const std::string& name) {
    return find_calculation({name.data(), static_cast<std::int64_t>(name.size())});
}

std::string other_case(std::string name, std::uint64_t which) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if ((which >> i & 1) != 0) name[i] = static_cast<char>(name[i] ^ 0x20);
    }
    return name;
}

// All names, and what is nearest to them: in other cases, cut, lengthened, a byte of them another.
std::vector<std::string> names_and_neighbours(std::mt19937_64& draw) {
    std::set<std::string> names{""s, " "s, "  "s, "\0"s, "\0\0"s, "AA"s, "AAA"s, "A"s, "Z"s, "ZZZZZZZZZZZZZZZZ"s};
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        for (std::size_t length = 1; length <= name.size(); ++length) {
            const std::string prefix = name.substr(0, length);
            const std::string suffix = name.substr(name.size() - length);
            for (const std::string& part : {prefix, suffix}) {
                names.insert(part);
                names.insert(other_case(part, ~0ULL));
                names.insert(other_case(part, draw()));
            }
        }
        for (char c = 'A'; c <= 'Z'; ++c) {
            names.insert(name + c);
            names.insert(std::string(1, c).append(name));
            std::string changed = name;
            changed[draw() % name.size()] = c;
            names.insert(changed);
        }
        for (std::size_t i = 0; i < name.size(); ++i) {
            names.insert(other_case(name, 1ULL << i));
            for (const char c : {'\0', ' ', '_', '7', '@', '[', '`', '{', '\x7F', '\xC1', '\xFF'}) {
                std::string changed = name;
                changed[i] = c;
                names.insert(changed);
            }
            std::string changed = name;
            changed[i] = static_cast<char>(draw());
            names.insert(changed);
        }
        for (const std::string& end : {" "s, "   "s, std::string(40, ' '), "_"s, "__"s, "\0"s, "\0\0"s, "\0\0\0\0\0\0"s,
                                       " _"s, std::string(1, ' ').append(name), name})
            names.insert(name + end);
        names.insert(std::string(1, ' ').append(name));
    }
    return {names.begin(), names.end()};
}

std::string random_bytes(std::mt19937_64& draw, std::string_view of) {
    std::string name(draw() % 20, ' ');
    for (char& c : name) c = of.empty() ? static_cast<char>(draw()) : of[draw() % of.size()];
    return name;
}

class FindCalculation : public testing::Test {
protected:
    // How many of the names are found; -1 at the first that is not found as it should be.
    int check(const NamedTable& one, const std::vector<std::string>& names) {
        host.collating = one.table;
        int found = 0;
        for (const std::string& name : names) {
            const int expected = meaning_by_search(one.table, name);
            const int got = meaning_of(name);
            if (got != expected) {
                ADD_FAILURE() << '"' << name << "\" is " << got << ", not " << expected << ", table " << one.name;
                return -1;
            }
            found += expected >= 0 ? 1 : 0;
        }
        return found;
    }

    // The names themselves, and a quarter of their neighbours, others for each table.
    std::vector<std::string> share_of(const std::vector<std::string>& neighbours) {
        std::vector<std::string> names;
        for (const FinancialRow& row : FinancialList) names.emplace_back(row.name);
        for (std::size_t i = draw() % 8; i < neighbours.size(); i += 1 + draw() % 7) names.push_back(neighbours[i]);
        return names;
    }

    BareHost host;
    std::mt19937_64 draw{20261122};
};

// ---- The model, by hand

TEST_F(FindCalculation, TheSearchByHand) {
    const int rows = static_cast<int>(FinancialList.size());
    for (int i = 0; i < rows; ++i) {
        const std::string name = FinancialList[static_cast<std::size_t>(i)].name;
        EXPECT_EQ(meaning_by_search(plain_table(), name + " "), i);
        EXPECT_EQ(meaning_by_search(folding_table(), other_case(name, 2)), i);
        EXPECT_EQ(meaning_by_search(plain_table(), other_case(name, 2)), -1);
    }
    // Where all bytes are one, texts of which both have a byte differ only in what is beyond the shorter: 0x20 is none.
    ByteTable all_blank{};
    all_blank.fill(0x20);
    EXPECT_EQ(meaning_by_search(all_blank, "anything"), (1 + rows) / 2 - 1) << "the first row that is met";
    EXPECT_EQ(meaning_of("nothing"), -1);
    host.collating = all_blank;
    EXPECT_EQ(meaning_of("anything"), (1 + rows) / 2 - 1);
}

// ---- The same as the search

TEST_F(FindCalculation, TablesThatAscend) {
    const std::vector<std::string> names = names_and_neighbours(draw);
    ASSERT_GT(names.size(), 5000U);
    for (const NamedTable& one : tables_that_ascend()) EXPECT_GT(check(one, names), 54) << one.name;
}

TEST_F(FindCalculation, TablesWithOneChange) {
    const std::vector<std::string> names = names_and_neighbours(draw);
    const std::vector<NamedTable> tables = tables_with_one_change();
    ASSERT_GT(tables.size(), 700U);
    for (const NamedTable& one : tables) ASSERT_GE(check(one, share_of(names)), 0);
}

TEST_F(FindCalculation, RandomTables) {
    const std::vector<std::string> names = names_and_neighbours(draw);
    int found = 0;
    for (const NamedTable& one : random_tables(draw, 100)) {
        const int of_table = check(one, share_of(names));
        ASSERT_GE(of_table, 0);
        found += of_table;
    }
    EXPECT_GT(found, 50'000);
}

TEST_F(FindCalculation, RandomBytes) {
    std::vector<NamedTable> tables = tables_that_ascend();
    std::ranges::copy(random_tables(draw, 10), std::back_inserter(tables));
    for (const NamedTable& one : tables) {
        std::vector<std::string> names;
        for (int i = 0; i < 2000; ++i) names.push_back(random_bytes(draw, i % 2 == 0 ? "" : "PVMTDBFpvmtdbf "));
        ASSERT_GE(check(one, names), 0);
    }
}

// ---- Where the table says nothing

TEST_F(FindCalculation, NoText) {
    EXPECT_EQ(find_calculation({nullptr, 0}), unknown_calculation);
    EXPECT_EQ(find_calculation({nullptr, 3}), unknown_calculation);
    EXPECT_EQ(find_calculation({"PMT", 0}), unknown_calculation);
}

// In multibyte mode the host compares, whatever its table is.
TEST_F(FindCalculation, MultibyteNamesAreTheHosts) {
    host.set_multibyte(true);
    host.answer = 0;
    EXPECT_EQ(meaning_of("PMT"), (1 + static_cast<int>(FinancialList.size())) / 2 - 1);
    host.answer = 1;
    EXPECT_EQ(meaning_of("PMT"), unknown_calculation);
    const auto compared = std::ranges::count(host.calls, service_compare, &Registers::r10);
    EXPECT_EQ(compared, 1 + 6) << "of 54 rows one is met, then 27th, 41st, 48th, 51st, 53rd and 54th";
}

}  // namespace
}  // namespace finance::test
