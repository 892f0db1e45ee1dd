// Batches: the rows are the calls that evaluate makes.
#include "host/batch.hpp"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "host/memory_vector.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/host/sample_calls.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::Batch;
using host::Column;
using host::EmbeddedHost;
using host::Evaluation;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double untouched = 12345.0;

struct Answers {
    explicit Answers(std::size_t rows) : results(rows, untouched), statuses(rows, 7), flagged(rows, 7) {}
    std::vector<double> results;
    std::vector<std::uint32_t> statuses;
    std::vector<std::int32_t> flagged;
    std::size_t refused = 0;
};

Answers answers_of(const EmbeddedHost& host, std::string_view name, const std::vector<Column>& columns,
                   std::size_t rows, unsigned threads = 1) {
    Answers answers{rows};
    answers.refused = host.evaluate_rows({.name = name,
                                          .columns = columns,
                                          .rows = rows,
                                          .results = answers.results.data(),
                                          .statuses = answers.statuses.data(),
                                          .flagged = answers.flagged.data()},
                                         threads);
    return answers;
}

// Each row beside the same call alone.
void expect_rows(const EmbeddedHost& host, std::string_view name, const std::vector<Column>& columns,
                 const Answers& answers) {
    std::size_t refused = 0;
    for (std::size_t row = 0; row < answers.results.size(); ++row) {
        std::vector<Argument> arguments;
        for (const Column& column : columns) arguments.push_back(column.argument(row));
        const Evaluation alone = host.evaluate(name, arguments);
        ASSERT_EQ(bits(answers.results[row]), bits(alone.value)) << name << ", row " << row;
        ASSERT_EQ(answers.statuses[row], alone.status) << name << ", row " << row;
        ASSERT_EQ(answers.flagged[row], alone.flagged) << name << ", row " << row;
        refused += alone.answered() ? 0U : 1U;
    }
    EXPECT_EQ(answers.refused, refused) << name;
}

const std::vector<double> rates{0.005, nan, 0.01, -1.0, 0.02, 0.0, 0.03};
const std::vector<double> periods{360, 12, 2.5, 24, 1e300, 36, 48};

TEST(Batch, RowsAreCalls) {
    for (const bool junk : {false, true}) {
        const EmbeddedHost host{real_module(), {.junk_in_host_bits = junk}};
        const std::vector<Column> columns{Column::numbers(rates.data()), Column::numbers(periods.data()),
                                          Argument{200000}};
        const Answers answers = answers_of(host, "PMT", columns, rates.size());
        expect_rows(host, "PMT", columns, answers);
        EXPECT_EQ(answers.refused, 5U) << "by hand: missing, 2.5, below 0, 1e300, 0";
        EXPECT_EQ(answers.flagged, (std::vector<std::int32_t>{-1, 1, 2, 1, 2, 1, -1}));
        EXPECT_EQ(answers.results[0], -1199.1010503055047);
    }
}

TEST(Batch, ConstantsAreTheSameInEveryRow) {
    const EmbeddedHost host{real_module()};
    for (const SampleCall& call : answered_calls()) {
        const std::vector<Column> columns{call.arguments.begin(), call.arguments.end()};
        expect_rows(host, call.name, columns, answers_of(host, call.name, columns, 3));
    }
    for (const SampleCall& call : other_calls()) {
        const std::vector<Column> columns{call.arguments.begin(), call.arguments.end()};
        expect_rows(host, call.name, columns, answers_of(host, call.name, columns, 3));
    }
    EXPECT_TRUE(host.log_outside_calls().empty());
}

TEST(Batch, ColumnsOfARecord) {
    struct Row {
        double settlement, maturity;
        Argument basis;
    };
    const std::vector<Row> rows{{host_date(2008, 2, 15), host_date(2017, 11, 15), "ACTUAL"},
                                {host_date(2008, 2, 15), host_date(2017, 11, 15), "act/360"},
                                {host_date(2008, 2, 15), host_date(2017, 11, 15), "nonsense"},
                                {host_date(2017, 11, 15), host_date(2008, 2, 15), "30/360"},
                                {host_date(2008, 2, 15), host_date(2017, 11, 15), ""},
                                {nan, host_date(2017, 11, 15), "30/360"}};
    const EmbeddedHost host{real_module()};
    const std::vector<Column> columns{Column::numbers(&rows[0].settlement, sizeof(Row)),
                                      Column::numbers(&rows[0].maturity, sizeof(Row)), Argument{2},
                                      Column::arguments(&rows[0].basis, sizeof(Row))};
    for (const char* name : {"COUPDAYS", "COUPNCD"}) {
        const Answers answers = answers_of(host, name, columns, rows.size());
        expect_rows(host, name, columns, answers);
        EXPECT_EQ(answers.statuses[0], ZELKOVAN_STATUS_SUCCESS);
        EXPECT_EQ(answers.flagged[2], 4);
    }
    const std::vector<Column> backwards{Column::numbers(&rows[5].maturity, -std::ptrdiff_t{sizeof(Row)}),
                                        Argument{60000}, Argument{2}};
    expect_rows(host, "COUPDAYS", backwards, answers_of(host, "COUPDAYS", backwards, rows.size()));
}

// Bases of all kinds after each other, so that each slot is laid out anew after each other kind.
const std::vector<Argument> mixed{0.0,
                                  "ACTUAL",
                                  Argument::missing(),
                                  1,
                                  "act/360",
                                  Argument::absent(),
                                  2.5,
                                  "nonsense",
                                  Argument::absent_text(),
                                  4,
                                  "",
                                  std::string_view{},
                                  nan,
                                  Argument::absent(),
                                  "30/360",
                                  -1,
                                  1e300,
                                  Argument::absent_text()};

TEST(Batch, ArgumentsOfMixedKinds) {
    for (const bool junk : {false, true}) {
        const EmbeddedHost host{real_module(), {.junk_in_host_bits = junk}};
        const std::vector<Column> columns{Argument{host_date(2008, 2, 15)}, Argument{host_date(2017, 11, 15)},
                                          Argument{2}, Column::arguments(mixed.data())};
        for (const char* name : {"COUPDAYS", "COUPNUM"}) {
            const Answers answers = answers_of(host, name, columns, mixed.size());
            expect_rows(host, name, columns, answers);
            EXPECT_EQ(answers.statuses[1], ZELKOVAN_STATUS_SUCCESS) << "a keyword";
            EXPECT_EQ(answers.statuses[3], ZELKOVAN_STATUS_SUCCESS) << "a number after a missing value";
            EXPECT_EQ(answers.flagged[7], 4) << "no keyword";
        }
        const std::vector<Column> backwards{Argument{host_date(2008, 2, 15)}, Argument{host_date(2017, 11, 15)},
                                            Argument{2},
                                            Column::arguments(&mixed.back(), -std::ptrdiff_t{sizeof(Argument)})};
        expect_rows(host, "COUPDAYS", backwards, answers_of(host, "COUPDAYS", backwards, mixed.size()));
    }
}

// What the module sees of a row is laid out anew: where numbers, texts and nothing come in any place.
TEST(Batch, EveryPlaceMayMixKinds) {
    const EmbeddedHost host{real_module()};
    const std::vector<Argument> mixed_rates{0.005, "text", Argument::absent(), 0.01, Argument::missing(), 0.02};
    const std::vector<Argument> amounts{"", 200000, Argument::absent_text(), 100, 100, Argument::absent()};
    const std::vector<Column> columns{Column::arguments(mixed_rates.data()), Argument{360},
                                      Column::arguments(amounts.data())};
    const Answers answers = answers_of(host, "PMT", columns, mixed_rates.size());
    expect_rows(host, "PMT", columns, answers);
    EXPECT_EQ(answers.statuses[3], ZELKOVAN_STATUS_SUCCESS);
    EXPECT_EQ(answers.statuses[4], ZELKOVAN_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(answers.flagged[4], 1) << "a missing rate";
}

TEST(Batch, ThreadsShareMixedRows) {
    constexpr std::size_t rows = 6'000;
    std::vector<Argument> bases;
    for (std::size_t i = 0; i < rows; ++i) bases.push_back(mixed[i % mixed.size()]);
    const EmbeddedHost host{real_module()};
    const std::vector<Column> columns{Argument{host_date(2008, 2, 15)}, Argument{host_date(2017, 11, 15)}, Argument{2},
                                      Column::arguments(bases.data())};
    const Answers shared = answers_of(host, "COUPDAYS", columns, rows, 3);
    expect_rows(host, "COUPDAYS", columns, shared);
    EXPECT_EQ(shared.refused, rows / mixed.size() * 7);
}

TEST(Batch, ThreadsShareTheRows) {
    constexpr std::size_t rows = 10'007;
    std::vector<double> lives;
    for (std::size_t i = 0; i < rows; ++i) lives.push_back(static_cast<double>(i % 100) - 5.0);  // refused up to 0
    const EmbeddedHost host{real_module()};
    const std::vector<Column> columns{Argument{10000}, Argument{1000}, Column::numbers(lives.data())};
    const Answers alone = answers_of(host, "SLN", columns, rows);
    expect_rows(host, "SLN", columns, alone);
    EXPECT_EQ(alone.refused, 606U);
    for (const unsigned threads : {0U, 2U, 3U, 8U, 1000U}) {
        const Answers shared = answers_of(host, "SLN", columns, rows, threads);
        EXPECT_EQ(shared.refused, alone.refused) << threads;
        EXPECT_EQ(shared.statuses, alone.statuses) << threads;
        EXPECT_EQ(shared.flagged, alone.flagged) << threads;
        for (std::size_t row = 0; row < rows; ++row) ASSERT_EQ(bits(shared.results[row]), bits(alone.results[row]));
    }
}

// Stacks of 2^46 bytes fit nowhere: no thread can be made, and this one does all parts.
TEST(Batch, ThreadsThatCannotBeMadeAreDoneWithout) {
    pthread_attr_t usual, huge;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    huge = usual;
    ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 46U), 0);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    EXPECT_THROW(std::thread{[] {}}.join(), std::system_error);
    const EmbeddedHost host{real_module()};
    std::vector<double> steps(8'000);
    for (std::size_t i = 0; i < steps.size(); ++i) steps[i] = static_cast<double>(i) / 8'000.0;  // the first is refused
    const std::vector<Column> columns{Column::numbers(steps.data()), Argument{360.0}, Argument{200'000.0}};
    const Answers alone = answers_of(host, "PMT", columns, steps.size(), 4);
    ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
    const Answers together = answers_of(host, "PMT", columns, steps.size(), 4);
    EXPECT_EQ(alone.refused, 1U);
    EXPECT_EQ(together.refused, 1U);
    EXPECT_EQ(alone.statuses, together.statuses);
    for (std::size_t i = 0; i < steps.size(); ++i) EXPECT_EQ(bits(alone.results[i]), bits(together.results[i])) << i;
}

TEST(Batch, NoRowsAndNoPlaceForMore) {
    const EmbeddedHost host{real_module()};
    EXPECT_EQ(host.evaluate_rows({.name = "SLN"}, 2), 0U);
    const std::vector<Column> columns{Argument{10000}, Argument{1000}, Argument{5}};
    double result = untouched;
    EXPECT_EQ(host.evaluate_rows({.name = "SLN", .columns = columns, .rows = 1, .results = &result}), 0U);
    EXPECT_EQ(result, 1800.0);
}

// What XIRR notes is limited a call, not a batch: the counter begins anew in each row.
TEST(Batch, NotesAreCountedByRow) {
    const EmbeddedHost host{real_module(), {.note_mode = 72}};
    const std::vector<Column> columns{Argument{100}, Argument{110}, Argument{0}, Argument{365}};
    expect_rows(host, "XIRR", columns, answers_of(host, "XIRR", columns, 50));
    EXPECT_TRUE(host.notes_outside_calls().empty());
}

TEST(Batch, ATextThatNoRecordHolds) {
    const EmbeddedHost host{real_module()};
    const char letter = 'x';
    const std::array<Argument, 2> texts{"ACTUAL", std::string_view{&letter, std::size_t{1} << 32}};
    const std::vector<Column> columns{Argument{0}, Argument{90}, Column::arguments(texts.data())};
    Answers answers{2};
    const Batch batch{.name = "YEARFRAC", .columns = columns, .rows = 2, .results = answers.results.data()};
    EXPECT_THROW((void)host.evaluate_rows(batch), std::length_error);
    EXPECT_EQ(host.evaluate("SLN", {10000, 1000, 5}).value, 1800.0) << "the thread's record is as good as before";
}

}  // namespace
}  // namespace finance::test
