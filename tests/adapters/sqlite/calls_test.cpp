// Random calls against the embedded host's verdicts: same bits, same sentences; in one connection and in several threads.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <thread>

#include "tests/adapters/sqlite/call_runner.hpp"

namespace finance::test {

namespace {

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

Count compare(const std::vector<CallLine>& lines, const Database& database, std::size_t every) {
    CallRunner runner{database};
    Count count;
    for (std::size_t i = 0; i < lines.size(); i += every) {
        const auto outcome = runner.run(lines[i]);
        if (!outcome) {
            ++count.skipped;
            continue;
        }
        ++count.compared;
        const Outcome expected = CallRunner::expected(lines[i]);
        if (same(*outcome, expected)) continue;
        if (count.different++ == 0) {
            count.first_difference = "line " + std::to_string(lines[i].number + 1) + ", " +
                                     std::string{lines[i].calculation->name} + ": " + told(*outcome) + ", expected " +
                                     told(expected);
        }
    }
    return count;
}

TEST(SqliteCalls, AnswerAsTheEmbeddedHost) {
    const Count count = compare(read_call_lines(), Database{}, 1);
    EXPECT_EQ(count.different, 0) << count.first_difference;
    EXPECT_GE(count.compared, 33'000);
    RecordProperty("compared", count.compared);
    RecordProperty("skipped", count.skipped);
    std::printf("%d calls compared, %d cannot be said\n", count.compared, count.skipped);
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
            EXPECT_GE(count.compared, 1'600);
        }
    }
}

}  // namespace

}  // namespace finance::test
