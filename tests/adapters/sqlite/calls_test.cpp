// Random calls against the embedded host's verdicts: same bits, same sentences; in one connection and in several threads.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <thread>

#include "tests/adapters/sqlite/call_runner.hpp"

namespace finance::test {

namespace {

using adapters::Way;

bool same_bits(const SqlValue& a, const SqlValue& b) {
    const auto* x = std::get_if<double>(&a);
    const auto* y = std::get_if<double>(&b);
    if (x == nullptr || y == nullptr) return a == b;
    return std::bit_cast<std::uint64_t>(*x) == std::bit_cast<std::uint64_t>(*y);
}

bool same(const Outcome& a, const Outcome& b) {
    return a.error == b.error && a.values.size() == b.values.size() &&
           (a.values.empty() || same_bits(a.values[0], b.values[0]));
}

std::string told(const Outcome& outcome) {
    return outcome.values.empty() ? "error: " + outcome.error : test::told(outcome.values[0]);
}

struct Count {
    int compared = 0, skipped = 0, different = 0;
    std::string first_difference{};
};

// The words for an answer that is missing are not in the line, only how they begin.
Outcome as_far_as_known(const CallLine& line, Outcome outcome, Way way) {
    if (way != Way::reason || line.verdict != "missing" || outcome.values.size() != 1) return outcome;
    if (auto* text = std::get_if<std::string>(&outcome.values[0])) text->resize(line.calculation->name.size() + 2);
    return outcome;
}

Count compare(const std::vector<CallLine>& lines, const Database& database, std::size_t every, Way way = Way::answer) {
    CallRunner runner{database};
    Count count;
    for (std::size_t i = 0; i < lines.size(); i += every) {
        auto outcome = runner.run(lines[i], way);
        if (!outcome) {
            ++count.skipped;
            continue;
        }
        ++count.compared;
        outcome = as_far_as_known(lines[i], std::move(*outcome), way);
        const Outcome expected = CallRunner::expected(lines[i], way);
        if (same(*outcome, expected)) continue;
        if (count.different++ == 0) {
            count.first_difference = "line " + std::to_string(lines[i].number + 1) + ", " +
                                     std::string{lines[i].calculation->name} + ": " + told(*outcome) + ", expected " +
                                     told(expected);
        }
    }
    return count;
}

// Of the lines that were taken at most one in fifty cannot be said.
void expect_most_compared(const Count& count, std::size_t taken) {
    EXPECT_EQ(count.compared + count.skipped, static_cast<int>(taken));
    EXPECT_LT(count.skipped, count.compared / 50);
}

TEST(SqliteCalls, AnswerAsTheEmbeddedHost) {
    const std::vector<CallLine> lines = read_call_lines();
    const Count count = compare(lines, Database{}, 1);
    EXPECT_EQ(count.different, 0) << count.first_difference;
    expect_most_compared(count, lines.size());
    RecordProperty("compared", count.compared);
    RecordProperty("skipped", count.skipped);
    std::printf("%d calls compared, %d cannot be said\n", count.compared, count.skipped);
}

// fin_try_ has the same bits and no error, fin_why_ the same sentences.
TEST(SqliteCalls, AreTriedAndExplained) {
    const std::vector<CallLine> lines = read_call_lines();
    for (const Way way : {Way::attempt, Way::reason}) {
        const Count count = compare(lines, Database{}, 1, way);
        EXPECT_EQ(count.different, 0) << count.first_difference;
        expect_most_compared(count, lines.size());
    }
}

// What a value of the corpus is, it is for the functions, too: bound, and read from a table.
TEST(SqliteCalls, NumbersKeepTheirBits) {
    const Database database;
    database.execute("CREATE TEMP TABLE kept(a)");
    Statement bound{database.get(), "SELECT ?1"};
    Statement insert{database.get(), "INSERT INTO kept VALUES (?1)"};
    Statement stored{database.get(), "SELECT a FROM kept ORDER BY rowid DESC LIMIT 1"};
    int checked = 0;
    for (const CallLine& line : read_call_lines()) {
        const std::string& word = line.parameters[0];
        if (!word.starts_with("n:")) continue;
        const SqlValue number = number_of_bits(word.substr(2, 16));
        bound.bind(1, number);
        insert.bind(1, number);
        (void)insert.run();
        EXPECT_TRUE(same_bits(bound.run().values.at(0), number)) << word;
        EXPECT_TRUE(same_bits(stored.run().values.at(0), number)) << word;
        ++checked;
    }
    EXPECT_GT(checked, 10'000);
}

// Each thread opens a connection, loads the extension and closes it, twice.
TEST(SqliteCalls, AnswerTheSameInSeveralThreads) {
    const std::vector<CallLine> lines = read_call_lines();
    std::array<std::array<Count, 2>, 4> counts;
    {
        std::vector<std::jthread> threads;
        for (auto& of_thread : counts) {
            threads.emplace_back([&] {
                for (Count& count : of_thread) count = compare(lines, Database{}, 20);
            });
        }
    }
    for (const auto& of_thread : counts) {
        for (const Count& count : of_thread) {
            EXPECT_EQ(count.different, 0) << count.first_difference;
            expect_most_compared(count, (lines.size() + 19) / 20);
        }
    }
}

}  // namespace

}  // namespace finance::test
