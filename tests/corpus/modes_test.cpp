// The corpus again, by callers in any floating-point mode: the same bits, and the caller's mode as it was. In a mode are
// the calls alone; everything is compared in the usual one.
#include "tests/support/modes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "module/financial_list.hpp"
#include "tests/corpus/batches.hpp"

namespace finance::test {
namespace {

const FloatingPointMode* callers_mode = &usual_mode;
bool mode_was_kept = true;

// The dispatcher for a caller in that mode.
std::uint32_t in_callers_mode(HostCallContext* context, double* result) {
    set_mode(*callers_mode);
    const std::uint32_t status = fncfin(context, result);
    mode_was_kept = mode_is(*callers_mode) && mode_was_kept;
    set_mode(usual_mode);
    return status;
}

class Modes : public testing::TestWithParam<std::string> {};

TEST_P(Modes, SameBits) {
    const std::vector<Draw> draws = corpus_of(GetParam());
    ASSERT_EQ(draws.size(), 3750U);
    for (const FloatingPointMode& mode : other_modes) {
        callers_mode = &mode;
        mode_was_kept = true;
        std::size_t same = 0;
        for (const Draw& draw : draws) {
            same += as_drawn(draw, Call{draw.name, draw.arguments}.through(in_callers_mode)) ? 1U : 0U;
        }
        EXPECT_EQ(same, draws.size()) << mode.name;
        EXPECT_TRUE(mode_was_kept) << mode.name;
    }
}

// ---- Batches

std::size_t rows_as_drawn(const Rows& rows, const FloatingPointMode& mode) {
    const std::size_t count = rows.draws.size();
    std::vector<host::Column> columns;
    for (const auto& column : rows.arguments) columns.push_back(host::Column::arguments(column.data()));
    Answers answers{count};
    const host::Batch batch = answers.batch(*rows.draws[0], columns);
    const host::EmbeddedHost& host = linked_host();
    set_mode(mode);
    (void)host.evaluate_rows(batch, 2);
    const bool kept = mode_is(mode);
    set_mode(usual_mode);
    EXPECT_TRUE(kept) << mode.name;
    std::size_t same = 0;
    for (std::size_t i = 0; i < count; ++i) same += as_drawn(*rows.draws[i], answers, i) ? 1U : 0U;
    return same;
}

TEST_P(Modes, SameBitsInBatches) {
    const std::vector<Draw> draws = corpus_of(GetParam());
    const std::map<std::size_t, Rows> rows = rows_by_count(draws);
    for (const FloatingPointMode& mode : other_modes) {
        std::size_t same = 0;
        for (const auto& [count, group] : rows) same += rows_as_drawn(group, mode);
        EXPECT_EQ(same, draws.size()) << mode.name;
    }
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Modes, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

// ---- That the modes above are what they are called: behind the dispatcher they do change results

std::uint32_t handler_in_callers_mode(HostCallContext* context, double* result) {
    const std::int32_t row = row_of("PMT");
    set_mode(*callers_mode);
    const std::uint32_t status =
        FinancialList[static_cast<std::size_t>(row)].handler(context, result, context->count, row);
    set_mode(usual_mode);
    return status;
}

TEST(ModesBehindTheDispatcher, ChangeResults) {
    const std::vector<Draw> draws = corpus_of("PMT");
    int modes = 0;
    for (const FloatingPointMode& mode : other_modes) {
        const bool of_sums = mode.control != usual_mode.control && (mode.x87 & 0x3F) == 0x3F;
        if (!of_sums) continue;
        callers_mode = &mode;
        EXPECT_FALSE(std::ranges::all_of(draws, [](const Draw& draw) {
            return as_drawn(draw, Call{draw.name, draw.arguments}.through(handler_in_callers_mode));
        })) << mode.name;
        ++modes;
    }
    EXPECT_EQ(modes, 7);
}

}  // namespace
}  // namespace finance::test
