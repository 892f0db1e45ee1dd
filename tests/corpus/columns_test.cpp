// The corpus in columns, in every set of instructions: the same statuses, flags and bits as the calls, four rows in ten of
// which are refused; in batches of 1 to 70 rows, so that blocks end anywhere; as columns of arguments and as columns of
// numbers; and calls of flows as columns of lists.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "module/column_list.hpp"
#include "tests/corpus/batches.hpp"

namespace finance::test {
namespace {

struct Instructions {
    const char* name;
    std::uint32_t number;
};
constexpr Instructions all_instructions[] = {{"SSE2", ZELKOVAN_INSTRUCTIONS_SSE2},
                                             {"AVX2", ZELKOVAN_INSTRUCTIONS_AVX2}};

// Some rows of a group, and how their columns are given.
using ColumnsOf = std::vector<host::Column> (*)(const Rows& rows, std::size_t first);

std::vector<host::Column> as_arguments(const Rows& rows, std::size_t first) {
    std::vector<host::Column> columns;
    for (const auto& column : rows.arguments) columns.push_back(host::Column::arguments(column.data() + first));
    return columns;
}

std::size_t rows_as_drawn(const Rows& rows, ColumnsOf columns_of, std::uint32_t instructions) {
    constexpr std::size_t longest = 70;
    std::size_t same = 0;
    std::size_t length = 1;
    for (std::size_t first = 0; first < rows.draws.size(); first += length, length = length % longest + 1) {
        length = std::min(length, rows.draws.size() - first);
        const std::vector<host::Column> columns = columns_of(rows, first);
        Answers answers{length};
        host::Batch batch = answers.batch(*rows.draws[0], columns);
        batch.instructions = instructions;
        (void)linked_host().evaluate_rows(batch);
        for (std::size_t i = 0; i < length; ++i) same += as_drawn(*rows.draws[first + i], answers, i) ? 1U : 0U;
    }
    return same;
}

// Those rows of which every argument is a number.
Rows numeric_rows(const Rows& rows) {
    Rows numeric;
    numeric.arguments.resize(rows.arguments.size());
    for (std::size_t i = 0; i < rows.draws.size(); ++i) {
        const bool all = std::ranges::all_of(
            rows.arguments, [i](const auto& column) { return column[i].kind() == host::Argument::Kind::number; });
        if (!all) continue;
        numeric.draws.push_back(rows.draws[i]);
        for (std::size_t k = 0; k < rows.arguments.size(); ++k) numeric.arguments[k].push_back(rows.arguments[k][i]);
    }
    return numeric;
}

std::vector<host::Column> as_numbers(const Rows& rows, std::size_t first) {
    std::vector<host::Column> columns;
    for (const auto& column : rows.arguments) {
        columns.push_back(host::Column::numbers(&column[first].number(), sizeof(host::Argument)));
    }
    return columns;
}

class Columns : public testing::TestWithParam<std::string> {};

TEST_P(Columns, HaveTheBitsOfCalls) {
    const std::vector<Draw> draws = corpus_of(GetParam());
    ASSERT_EQ(draws.size(), 3750U);
    for (const Instructions& instructions : all_instructions) {
        std::size_t same = 0;
        for (const auto& [count, rows] : rows_by_count(draws)) {
            same += rows_as_drawn(rows, as_arguments, instructions.number);
        }
        EXPECT_EQ(same, draws.size()) << instructions.name;
    }
}

TEST_P(Columns, OfNumbersHaveThemToo) {
    const std::vector<Draw> draws = corpus_of(GetParam());
    for (const Instructions& instructions : all_instructions) {
        std::size_t checked = 0;
        for (const auto& [count, all] : rows_by_count(draws)) {
            const Rows rows = numeric_rows(all);
            if (rows.draws.empty()) continue;
            EXPECT_EQ(rows_as_drawn(rows, as_numbers, instructions.number), rows.draws.size()) << instructions.name;
            checked += rows.draws.size();
        }
        EXPECT_GT(checked, 100U);
    }
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Columns, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

// ---- Lists: calls of numbers alone, whose lengths differ from row to row

struct ListRows {
    std::vector<const Draw*> draws;
    std::vector<std::vector<double>> values;  // of a column
    std::vector<std::vector<std::int64_t>> starts{};

    void add(const Draw& draw, const std::vector<std::size_t>& lengths) {
        values.resize(lengths.size());
        starts.resize(lengths.size(), {0});
        auto argument = draw.arguments.begin();
        for (std::size_t k = 0; k < lengths.size(); ++k) {
            for (std::size_t i = 0; i < lengths[k]; ++i) values[k].push_back((argument++)->number());
            starts[k].push_back(std::ssize(values[k]));
        }
        draws.push_back(&draw);
    }
    [[nodiscard]] std::vector<host::Column> columns() const {
        std::vector<host::Column> all;
        for (std::size_t k = 0; k < values.size(); ++k) {
            all.push_back(host::Column::lists(values[k].data(), starts[k].data()));
        }
        return all;
    }
};

// How long the lists of a call with n arguments are, and what stands before and behind them.
struct ListCalculation {
    const char* name;
    std::vector<std::size_t> (*lengths)(std::size_t n);
};

const ListCalculation list_calculations[] = {
    {"FVSCHEDULE",
     [](std::size_t n) {
         return std::vector{std::size_t{1}, n - 1};
     }},
    {"IRR", [](std::size_t n) { return std::vector{n}; }},
    {"MIRR",
     [](std::size_t n) {
         return n < 2 ? std::vector{n} : std::vector{n - 2, std::size_t{1}, std::size_t{1}};
     }},
    {"NPV",
     [](std::size_t n) {
         return std::vector{std::size_t{1}, n - 1};
     }},
    {"XIRR",
     [](std::size_t n) {
         return n % 2 == 0 ? std::vector{n / 2, n / 2} : std::vector{n / 2, n / 2, std::size_t{1}};
     }},
    {"XNPV",
     [](std::size_t n) {
         return std::vector{std::size_t{1}, (n - 1) / 2, n - 1 - (n - 1) / 2};
     }},
};

bool all_numbers(const Draw& draw) {
    return std::ranges::all_of(draw.arguments, [](const Arg& one) { return one.kind() == Arg::Kind::number; });
}

TEST(ListColumns, HaveTheBitsOfCalls) {
    for (const ListCalculation& calculation : list_calculations) {
        const std::vector<Draw> draws = corpus_of(calculation.name);
        std::map<std::size_t, ListRows> by_columns;
        for (const Draw& draw : draws) {
            if (draw.arguments.empty() || !all_numbers(draw)) continue;
            const std::vector<std::size_t> lengths = calculation.lengths(draw.arguments.size());
            by_columns[lengths.size()].add(draw, lengths);
        }
        for (const Instructions& instructions : all_instructions) {
            std::size_t checked = 0;
            for (const auto& [count, rows] : by_columns) {
                const std::vector<host::Column> columns = rows.columns();
                Answers answers{rows.draws.size()};
                host::Batch batch = answers.batch(*rows.draws[0], columns);
                batch.instructions = instructions.number;
                (void)linked_host().evaluate_rows(batch);
                for (std::size_t i = 0; i < rows.draws.size(); ++i) {
                    EXPECT_TRUE(as_drawn(*rows.draws[i], answers, i)) << calculation.name << " " << instructions.name;
                }
                checked += rows.draws.size();
            }
            EXPECT_GT(checked, 1000U) << calculation.name;
        }
    }
}

}  // namespace
}  // namespace finance::test
