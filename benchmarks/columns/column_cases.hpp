// The tables of column_speed: columns as they may come, and the same as calls take them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <vector>

#include "host/batch.hpp"

namespace finance::bench {

using host::Argument;
using host::Column;

inline constexpr std::size_t usual_rows = 8192;
inline constexpr std::size_t rows_of_lists = 512;
inline constexpr int flows = 250;  // in a list

class Random {
public:
    double uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(random_() >> 11U) * 0x1p-53;
    }
    double whole(int low, int high) {
        return low + static_cast<double>(random_() % static_cast<std::uint64_t>(high - low + 1));
    }

private:
    std::mt19937_64 random_{1};
};

struct Table {
    std::vector<std::vector<double>> values{};  // a column each
    std::vector<Column> columns{};
    std::vector<Column> columns_of_calls{};  // the same: each value of a list is a column
    std::vector<std::int64_t> starts{};      // of the lists
    std::size_t rows = usual_rows;

    void add(const std::function<double()>& draw) {
        values.emplace_back(rows);
        std::generate(values.back().begin(), values.back().end(), draw);
        columns.push_back(Column::numbers(values.back().data()));
        columns_of_calls.push_back(columns.back());
    }
    void add(const Argument& constant) {
        columns.emplace_back(constant);
        columns_of_calls.emplace_back(constant);
    }
    // Of a table without lists.
    void take_out(std::ptrdiff_t column) {
        columns.erase(columns.begin() + column);
        columns_of_calls = columns;
    }
    // draw(i) is the i-th value of a row's list.
    void add_lists(const std::function<double(int i)>& draw) {
        std::vector<double>& list = values.emplace_back();
        starts.assign(1, 0);
        for (std::size_t row = 0; row < rows; ++row) {
            for (int i = 0; i < flows; ++i) list.push_back(draw(i));
            starts.push_back(static_cast<std::int64_t>(list.size()));
        }
        columns.push_back(Column::lists(list.data(), starts.data()));
        for (int i = 0; i < flows; ++i) {
            columns_of_calls.push_back(Column::numbers(list.data() + i, std::ptrdiff_t{flows} * sizeof(double)));
        }
    }
};

struct Case {
    const char* name;         // of the calculation
    const char* description;  // of the rows
    void (*fill)(Table& table, Random& random);
};

std::span<const Case> column_cases();

}  // namespace finance::bench
