// Calls through the dispatcher, and what they left in the log.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "module/financial_list.hpp"
#include "tests/abi/bare_host.hpp"
#include "tests/support/call.hpp"

namespace finance::test {

inline std::vector<std::string> usage_lines() {
    std::vector<std::string> lines{"The First argument of the Finance function can be ", "one of the following"};
    for (const FinancialRow& row : FinancialList) lines.push_back(std::string(4, ' ').append(row.name));
    lines.insert(lines.end(), {" ", " "});
    return lines;
}

struct Dispatched {
    Outcome outcome;
    std::vector<std::string> log;
};

inline Dispatched dispatch(BareHost& host, Call& call) {
    host.log.clear();
    Outcome outcome = call.through_dispatcher();
    return {std::move(outcome), host.log};
}

inline Dispatched dispatch(BareHost& host, std::string_view name, const std::vector<Arg>& arguments) {
    Call call{name, arguments};
    return dispatch(host, call);
}

// Which calculation a name finds: a call of the name alone is refused, and the line says whose arguments are missing.
inline std::string found_by(BareHost& host, std::string_view name) {
    const Dispatched got = dispatch(host, name, {});
    constexpr std::string_view refusal = "Not enough arguments for ";
    if (got.log.size() == 1 && got.log[0].starts_with(refusal)) {
        EXPECT_TRUE(got.outcome.flagged.empty()) << name;
        EXPECT_EQ(got.log[0].back(), ' ');
        return got.log[0].substr(refusal.size(), got.log[0].size() - refusal.size() - 1);
    }
    EXPECT_EQ(got.log, usage_lines()) << name;
    EXPECT_EQ(got.outcome.flagged, std::vector<int>{0}) << name;
    EXPECT_EQ(got.outcome.status, STATUS_INVALID_ARGUMENT) << name;
    EXPECT_FALSE(got.outcome.written) << name;
    EXPECT_TRUE(got.outcome.host_bytes_kept) << name;
    return {};
}

class Dispatcher : public testing::Test {
protected:
    static void SetUpTestSuite() { ensure_host(); }
    BareHost host;
};

}  // namespace finance::test
