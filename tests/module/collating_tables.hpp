// Collating tables of all kinds, and what names mean under them by the rule itself, written down a second time: a binary
// search, byte by byte.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "module/financial_list.hpp"
#include "tests/abi/bare_host.hpp"

namespace finance::test {

struct NamedTable {
    std::string name;
    ByteTable table;
};

inline int mapped_by(const ByteTable& table, char c) { return table[static_cast<unsigned char>(c)]; }

// Below 0 where a comes first. What pads the shorter text is the value 0x20, mapped by no table.
inline int order_of(const ByteTable& table, std::string_view a, std::string_view b) {
    for (std::size_t i = 0; i < a.size() || i < b.size(); ++i) {
        const int of_a = i < a.size() ? mapped_by(table, a[i]) : 0x20;
        const int of_b = i < b.size() ? mapped_by(table, b[i]) : 0x20;
        if (of_a != of_b) return of_a - of_b;
    }
    return 0;
}

// Index in FinancialList, or -1.
inline int meaning_by_search(const ByteTable& table, std::string_view name) {
    while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
    if (name.empty() || name.front() == ' ') return -1;
    int low = 1;
    int high = static_cast<int>(FinancialList.size());
    while (low <= high) {
        const int mid = (low + high) / 2;
        const int order = order_of(table, name, FinancialList[static_cast<std::size_t>(mid - 1)].name);
        if (order == 0) return mid - 1;
        if (order < 0) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    return -1;
}

// Letters in order, some of them as others or out of place.
std::vector<NamedTable> tables_that_ascend();
std::vector<NamedTable> tables_with_one_change();
std::vector<NamedTable> random_tables(std::mt19937_64& draw, int of_each_kind);

}  // namespace finance::test
