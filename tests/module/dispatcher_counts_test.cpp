// The dispatcher: counts, log lines, flags, results that are left alone, what the host is asked.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>
#include <vector>

#include "abi/arguments.hpp"
#include "tests/module/dispatched.hpp"

namespace finance::test {
namespace {

// ---- Counts

TEST_F(Dispatcher, CountBoundsOfEveryRow) {
    int unbounded = 0;
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        const auto log_of = [&](std::int32_t count) {
            const auto given = static_cast<std::size_t>(count - 1);
            const Dispatched got = dispatch(host, name, std::vector<Arg>(given, absent));
            EXPECT_EQ(got.outcome.status, STATUS_INVALID_ARGUMENT) << name << ' ' << count;
            EXPECT_TRUE(got.outcome.host_bytes_kept) << name << ' ' << count;
            if (!got.log.empty()) {
                EXPECT_TRUE(got.outcome.flagged.empty()) << name << ' ' << count;
                EXPECT_FALSE(got.outcome.written) << name << ' ' << count;
            }
            return got.log;
        };
        const std::vector<std::string> reached{};
        const std::vector<std::string> not_enough{std::string{"Not enough arguments for "}.append(name).append(" ")};
        const std::vector<std::string> too_many{std::string{"Too many arguments for "}.append(name).append(" ")};
        EXPECT_EQ(log_of(1), not_enough) << name;
        EXPECT_EQ(log_of(row.minimum_count - 1), not_enough) << name;
        EXPECT_EQ(log_of(row.minimum_count), reached) << name;
        if (row.maximum_count == 0) {
            ++unbounded;
            EXPECT_EQ(log_of(row.minimum_count + 500), reached) << name;
            continue;
        }
        EXPECT_EQ(log_of(row.maximum_count), reached) << name;
        EXPECT_EQ(log_of(row.maximum_count + 1), too_many) << name;
        EXPECT_EQ(log_of(row.maximum_count + 100), too_many) << name;
    }
    const auto without_bound = std::ranges::count(FinancialList, 0, &FinancialRow::maximum_count);
    EXPECT_EQ(unbounded, without_bound);
}

// Calculations of an exact number of arguments, and of any number.
TEST_F(Dispatcher, ExactAndOpenCounts) {
    const Dispatched exact = dispatch(host, "ISPMT", {0.1, 2, 3, 300});
    EXPECT_EQ(exact.outcome.status, STATUS_SUCCESS);
    EXPECT_TRUE(exact.log.empty());
    const Dispatched many = dispatch(host, "ISPMT", {0.1, 2, 3, 300, 0});
    EXPECT_EQ(many.outcome.status, STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(many.log, std::vector<std::string>{"Too many arguments for ISPMT "});
    EXPECT_DOUBLE_EQ(dispatch(host, "DOLLARDE", {1.02, 16}).outcome.value, 1.125) << "1 and 2/16";
    EXPECT_EQ(dispatch(host, "DOLLARDE", {1.02, 16, 0}).log,
              std::vector<std::string>{"Too many arguments for DOLLARDE "});
    EXPECT_TRUE(dispatch(host, "NPV", {0.1}).log.empty()) << "reaches its handler";
    EXPECT_EQ(dispatch(host, "NPV", {}).log, std::vector<std::string>{"Not enough arguments for NPV "});
}

// The low 32 bits of the count decide; below 1 there is no name to look at.
TEST_F(Dispatcher, OddCounts) {
    struct Row {
        std::int64_t count;
        std::vector<std::string> log;
        bool answered;
    };
    const std::vector<std::string> not_enough{"Not enough arguments for PMT "};
    const std::vector<std::string> too_many{"Too many arguments for PMT "};
    const std::vector<Row> rows{
        {4, {}, true},
        {4294967296 + 4, {}, true},
        {3 * 4294967296 + 5, {}, true},
        {4294967296 + 3, not_enough, false},
        {4294967296 + 7, too_many, false},
        {INT64_MIN + 4, {}, true},
        {-4294967296 + 4, {}, true},         // 0xFFFFFFFF00000004
        {4294967295, usage_lines(), false},  // -1
        {4294967296, usage_lines(), false},
        {2147483648, usage_lines(), false},  // the smallest 32-bit number
        {2147483647, too_many, false},
        {INT64_MAX, usage_lines(), false},
        {0, usage_lines(), false},
        {-1, usage_lines(), false},
        {-4, usage_lines(), false},
        {INT64_MIN, usage_lines(), false},
    };
    for (const Row& row : rows) {
        Call call{"PMT", {1, 1, 5, 0, 0}};
        call.set_count(row.count);
        HostCallContext* context = call.context();
        double result = 1234.5;
        host.log.clear();
        const Status status = fncfin(context, &result);
        EXPECT_EQ(status, row.answered ? STATUS_SUCCESS : STATUS_INVALID_ARGUMENT) << row.count;
        EXPECT_EQ(result, row.answered ? -10.0 : 1234.5) << row.count;
        EXPECT_EQ(host.log, row.log) << row.count;
        for (int i = 0; i < 6; ++i) EXPECT_EQ(slots_of(context)[i].flags, 0xFE) << row.count << ", slot " << i;
        EXPECT_EQ(context->count, row.count);
    }
}

// ---- Statuses, marks, services

TEST_F(Dispatcher, OneStatusForAllFailures) {
    Call missing_rate{"PMT", {missing, 5, 100}};
    EXPECT_EQ(missing_rate.through_handler().status, STATUS_MISSING_RESULT);
    const Dispatched got = dispatch(host, missing_rate);
    EXPECT_EQ(got.outcome.status, STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(got.outcome.flagged, std::vector<int>{1});
    EXPECT_TRUE(got.outcome.written);
    EXPECT_EQ(bits(got.outcome.value), ZELKOVAN_MISSING_VALUE_BITS);
    EXPECT_TRUE(got.log.empty()) << "argument failures are silent";
}

TEST_F(Dispatcher, LogServiceIsMarkedAndIdentified) {
    const Dispatched answered = dispatch(host, "PMT", {1, 1, 5});
    EXPECT_EQ(answered.outcome.value, -10.0);
    EXPECT_TRUE(host.calls.empty());
    EXPECT_TRUE(host.marked_vectors().empty()) << "no service, no mark";

    dispatch(host, "PMT", {1});
    ASSERT_EQ(host.calls.size(), 1U);
    EXPECT_EQ(host.calls[0].r10, service_log);
    EXPECT_EQ(host.calls[0].stack_pointer % 16, 8U) << "an aligned stack, a return address on it";
    EXPECT_EQ(host.calls[0].rax & 0xFF, 0U) << "no vector registers in a variadic call";
    EXPECT_EQ(host.marks[39], 0);
    EXPECT_EQ(host.marked_vectors(), std::vector<int>{39});

    dispatch(host, "?", {});
    EXPECT_EQ(host.calls.size(), 1 + usage_lines().size());
    for (const Registers& call : host.calls) EXPECT_EQ(call.r10, service_log);
}

// In multibyte mode a copy of the name, cut to 16, goes through the case service; the search asks the host with the
// argument's own text at its full length.
TEST_F(Dispatcher, MultibyteNames) {
    host.set_multibyte(true);
    host.answer = 0;  // equal
    const std::string name = "pmt-of-seventeen-";
    Call call{name, {}};
    const char* text = static_cast<const CharacterDescriptor*>(slots_of(call.context())[0].value)->text;
    const Dispatched got = dispatch(host, call);
    ASSERT_EQ(host.calls.size(), 3U);
    EXPECT_EQ(host.calls[0].r10, service_upper);
    EXPECT_NE(host.calls[0].integers[0], std::bit_cast<std::uint64_t>(text));
    EXPECT_EQ(host.calls[0].integers[1], 16U);
    EXPECT_EQ(host.calls[1].r10, service_compare);
    EXPECT_EQ(host.calls[1].integers[0], std::bit_cast<std::uint64_t>(text));
    EXPECT_EQ(host.calls[1].integers[1], 17U);
    EXPECT_EQ(host.calls[1].integers[4], 0U);
    const FinancialRow& middle = FinancialList[(FinancialList.size() + 1) / 2 - 1];
    EXPECT_EQ(host.calls[1].integers[2], std::bit_cast<std::uint64_t>(middle.name)) << "the search begins here";
    EXPECT_EQ(host.calls[1].integers[3], middle.name_length);
    EXPECT_EQ(got.log,
              std::vector<std::string>{std::string{"Not enough arguments for "}.append(middle.name).append(" ")});
    EXPECT_EQ(std::string(text, 17), name) << "the argument's text is left alone";
}

TEST_F(Dispatcher, MultibyteNamesBelow16) {
    host.set_multibyte(true);
    host.answer = 0;
    dispatch(host, "pmt   ", {});
    ASSERT_FALSE(host.calls.empty());
    EXPECT_EQ(host.calls[0].r10, service_upper);
    EXPECT_EQ(host.calls[0].integers[1], 3U) << "the name without its trailing blanks, not the copy's 16 bytes";
}

// A leading blank makes a name unknown, whatever the host takes for equal.
TEST_F(Dispatcher, LeadingBlankIsNotLookedUp) {
    host.collating[' '] = 'P';
    EXPECT_EQ(found_by(host, " MT"), "");
    EXPECT_EQ(found_by(host, " "), "");
    host.calls.clear();
    host.set_multibyte(true);
    host.answer = 0;
    EXPECT_EQ(found_by(host, " PMT"), "");
    for (const Registers& call : host.calls) EXPECT_EQ(call.r10, service_log);
}

// Which rows the search meets, by hand from (low + high) / 2.
TEST_F(Dispatcher, StepsOfTheSearch) {
    host.set_multibyte(true);
    for (const bool upwards : {false, true}) {
        host.calls.clear();
        host.answer = upwards ? 1 : 0xFFFFFFFFFFFFFFFF;
        dispatch(host, "NAME", {});
        std::vector<std::uint64_t> met;
        for (const Registers& call : host.calls) {
            if (call.r10 == service_compare) met.push_back(call.integers[2]);
        }
        std::vector<std::uint64_t> expected;
        std::size_t low = 1;
        std::size_t high = FinancialList.size();
        while (low <= high) {
            const std::size_t mid = (low + high) / 2;
            expected.push_back(std::bit_cast<std::uint64_t>(FinancialList[mid - 1].name));
            if (upwards) {
                low = mid + 1;
            } else {
                high = mid - 1;
            }
        }
        EXPECT_GE(expected.size(), 3U);
        EXPECT_EQ(met, expected);
    }
}

}  // namespace
}  // namespace finance::test
