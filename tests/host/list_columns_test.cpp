// Columns of lists: a row is the call that has the values of its list as arguments, one behind the other.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "host/batch.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::Batch;
using host::Column;
using host::EmbeddedHost;
using host::Evaluation;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr std::uint32_t all_instructions[] = {ZELKOVAN_INSTRUCTIONS_BEST, ZELKOVAN_INSTRUCTIONS_SSE2,
                                              ZELKOVAN_INSTRUCTIONS_AVX2, ZELKOVAN_INSTRUCTIONS_NONE};

struct Lists {
    std::vector<double> values;
    std::vector<std::int64_t> starts{0};

    Lists(std::initializer_list<std::vector<double>> rows) {
        for (const std::vector<double>& row : rows) {
            values.insert(values.end(), row.begin(), row.end());
            starts.push_back(std::ssize(values));
        }
    }
    [[nodiscard]] Column column() const { return Column::lists(values.data(), starts.data()); }
    [[nodiscard]] std::size_t rows() const { return starts.size() - 1; }
};

// Each row beside the same call alone. Returns how many are refused.
std::size_t expect_rows(const EmbeddedHost& host, std::string_view name, const std::vector<Column>& columns,
                        std::size_t rows, unsigned threads = 1) {
    std::vector<Evaluation> alone;
    for (std::size_t row = 0; row < rows; ++row) {
        std::vector<Argument> arguments;
        for (const Column& column : columns) column.append_to(arguments, row);
        alone.push_back(host.evaluate(name, arguments));
    }
    std::size_t refused = 0;
    for (const std::uint32_t instructions : all_instructions) {
        std::vector<double> results(rows);
        std::vector<std::uint32_t> statuses(rows, 7);
        std::vector<std::int32_t> flagged(rows, 7);
        refused = host.evaluate_rows({.name = name,
                                      .columns = columns,
                                      .rows = rows,
                                      .results = results.data(),
                                      .statuses = statuses.data(),
                                      .flagged = flagged.data(),
                                      .instructions = instructions},
                                     threads);
        for (std::size_t row = 0; row < rows; ++row) {
            EXPECT_EQ(bits(results[row]), bits(alone[row].value)) << name << ", row " << row;
            EXPECT_EQ(statuses[row], alone[row].status) << name << ", row " << row;
            EXPECT_EQ(flagged[row], alone[row].flagged) << name << ", row " << row;
        }
    }
    return refused;
}

const Lists amounts{{-1000, 600, 600},          {-100, 110}, {-100, 110}, {},          {-100, 110},   {100}, {nan, 110},
                    {-100, 50, 40, 30, 20, 10}, {100, 110},  {-100, inf}, {-100, 110}, {-100, 110, 5}};
const Lists dates{{17000, 17365, 17730},
                  {17000, 17400},
                  {17000.5, 17400},
                  {},
                  {17400, 17000},
                  {17000},
                  {17000, 17400},
                  {17000, 17100, 17200, 17300, 17400, 17500},
                  {0, 365},
                  {17000, 17400},
                  {17000, 1e12},
                  {17000, 17001}};

TEST(ListColumns, RowsAreCalls) {
    for (const bool junk : {false, true}) {
        const EmbeddedHost host{real_module(), {.junk_in_host_bits = junk}};
        const std::vector<double> rates(amounts.rows(), 0.1);
        EXPECT_EQ(expect_rows(host, "XNPV", {Column::numbers(rates.data()), amounts.column(), dates.column()},
                              amounts.rows()),
                  3U)
            << "by hand: half a day, missing, an odd number of values";
        EXPECT_EQ(expect_rows(host, "XIRR", {amounts.column(), dates.column()}, amounts.rows()), 3U);
    }
}

TEST(ListColumns, OtherColumnsAreNumbersOrAnything) {
    const EmbeddedHost host{real_module()};
    const std::size_t rows = amounts.rows();
    const std::vector<Argument> mixed{0.1, "10", 0.2, Argument::absent(), nan, -0.5, 0.1, -1.0, -2.0, inf, 0.0, 0.3};
    ASSERT_EQ(mixed.size(), rows);
    const std::vector<double> guesses{0.1, nan, 0.2, 0.0, 5.0, -0.5, 0.1, -0.99, 0.1, 0.1, 0.1, 0.1};
    for (const Column& other :
         {Column{Argument{0.1}}, Column{Argument{"0.1"}}, Column{Argument::absent()}, Column{Argument{nan}},
          Column::arguments(mixed.data()), Column::numbers(guesses.data())}) {
        (void)expect_rows(host, "XNPV", {other, amounts.column(), dates.column()}, rows);
        (void)expect_rows(host, "XIRR", {amounts.column(), dates.column(), other}, rows);
    }
    // The same values in other columns: lists of one, one list of all, too many columns.
    const Lists ones{{0.1}, {0.1, 0.2}, {}, {nan}, {0.1}, {0.1}, {0.1}, {0.1}, {0.1}, {0.1}, {0.1}, {0.1}};
    (void)expect_rows(host, "XNPV", {ones.column(), amounts.column(), dates.column()}, rows);
    (void)expect_rows(host, "XIRR", {amounts.column(), dates.column(), ones.column()}, rows);
    (void)expect_rows(host, "XIRR", {amounts.column()}, rows);
    (void)expect_rows(host, "XIRR", {amounts.column(), dates.column(), Argument{0.1}, Argument{0.1}}, rows);
    (void)expect_rows(host, "XNPV", {Argument{0.1}, amounts.column()}, rows);
    (void)expect_rows(host, "XNPV", {amounts.column(), amounts.column(), dates.column(), dates.column(), ones.column()},
                      rows);
}

TEST(ListColumns, OfAllCalculations) {
    const EmbeddedHost host{real_module()};
    const std::size_t rows = amounts.rows();
    (void)expect_rows(host, "NPV", {Argument{0.1}, amounts.column()}, rows);
    (void)expect_rows(host, "IRR", {amounts.column()}, rows);
    (void)expect_rows(host, "MIRR", {amounts.column(), Argument{0.1}, Argument{0.12}}, rows);
    (void)expect_rows(host, "FVSCHEDULE", {Argument{1000}, amounts.column()}, rows);
    (void)expect_rows(host, "PMT", {dates.column()}, rows);
    (void)expect_rows(host, "NOSUCH", {dates.column()}, rows);
}

TEST(ListColumns, ThreadsShareTheRows) {
    const EmbeddedHost host{real_module()};
    Lists flows{};
    Lists days{};
    for (int row = 0; row < 5000; ++row) {
        const int count = row % 7;
        for (int i = 0; i < count; ++i) {
            flows.values.push_back(i == 0 ? -100.0 : 30.0 + row % 11);
            days.values.push_back(17000.0 + i * 100);
        }
        if (row % 97 == 0) days.values.push_back(1.0);
        flows.starts.push_back(std::ssize(flows.values));
        days.starts.push_back(std::ssize(days.values));
    }
    (void)expect_rows(host, "XIRR", {flows.column(), days.column()}, flows.rows(), 3);
    (void)expect_rows(host, "XNPV", {Argument{0.05}, flows.column(), days.column()}, flows.rows(), 3);
}

}  // namespace
}  // namespace finance::test
