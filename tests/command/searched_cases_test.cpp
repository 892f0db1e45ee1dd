// Plans and flows whose true rates are known: the command answers the right rate, or what it says to type does.
#include "tests/command/searched_cases.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

bool is_right(const CommandRun& run, const SearchedCase& row) {
    const double answer = std::strtod(run.output.c_str(), nullptr);
    return run.exit_status == 0 && run.error.empty() &&
           std::ranges::any_of(row.rates, [&](double rate) { return std::abs(answer - rate) <= 1e-9 * (1.0 + rate); });
}

// The last line of a refusal, less the program's name; "" where it says nothing to type.
std::string proposed(const CommandRun& run) {
    const std::string mark = "\n  finance ";
    const std::size_t at = run.error.find(mark);
    return at == std::string::npos ? "" : run.error.substr(at + mark.size());
}

TEST(SearchedCases, AreRightOrSayWhatToType) {
    std::map<std::string, int> right;
    std::map<std::string, int> proposals;
    for (const SearchedCase& row : searched_cases) {
        SCOPED_TRACE(row.call);
        const std::string call = row.call;
        const std::string name = call.substr(0, call.find(' '));
        const CommandRun run = run_command(call);
        if (is_right(run, row)) {
            ++right[name];
            continue;
        }
        EXPECT_EQ(run.exit_status, run.output == ".\n" ? 0 : 1) << run.output;
        const std::string other = proposed(run);
        ASSERT_NE(other, "") << run.output << run.error;
        EXPECT_TRUE(is_right(run_command(other), row)) << other;
        ++proposals[name];
    }
    EXPECT_EQ(right["RATE"] + proposals["RATE"], 20);
    EXPECT_EQ(right["IRR"] + proposals["IRR"], 20);
    EXPECT_EQ(right["XIRR"] + proposals["XIRR"], 24);
    for (const char* name : {"RATE", "IRR", "XIRR"}) {
        std::printf("%s: %d right, %d say what to type\n", name, right[name], proposals[name]);
        EXPECT_GT(right[name], 0);
        EXPECT_GT(proposals[name], 0);
    }
}

// Amounts whose signs are wrong, and what was meant.
struct SignCase {
    const char* call;
    const char* meant;
};

constexpr SignCase signs[] = {
    {"RATE 60 400 20000", "RATE nper=60 pmt=-400 pv=20000"},
    {"RATE 60 -400 -20000 0 1", "RATE nper=60 pmt=400 pv=-20000 fv=0 type=1"},
    {"RATE 10 0 100 -200", "RATE nper=10 pmt=0 pv=100 fv=200"},
    {"RATE 3 200 0 700", "IRR flows=0,-200,-200,500"},
};

TEST(SearchedCases, SignsArePutRight) {
    for (const SignCase& row : signs) {
        SCOPED_TRACE(row.call);
        const CommandRun run = run_command(row.call);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(proposed(run), std::string{row.meant} + '\n');
        EXPECT_EQ(run_command(row.meant).exit_status, 0);
    }
}

struct CauseCase {
    const char* call;
    const char* error;
};

constexpr CauseCase causes[] = {
    {"IRR -1,2,-1.5", "finance: IRR: no answer: the search does not settle\n"},
    {"IRR 1,2", "finance: IRR: no answer: the flows do not change sign: a rate needs money paid and money received\n"},
    {"IRR 1,-inf", "finance: IRR: no answer: flow 2 is infinite\n"},
    {"IRR -1 $(yes 1 | head -n 32767 | paste -s -d ' ')",
     "finance: IRR: no answer: there are 32768 flows, more than 32767\n"},
    {"RATE 10 0 0 100",
     "finance: RATE: no answer: with pmt=0 the rate is that of the growth from pv to fv, and pv is 0\n"},
    {"RATE 10 0 100",
     "finance: RATE: no answer: with pmt=0 the rate is that of the growth from pv to fv, and fv is 0\n"},
    {"RATE 10 -1 0",
     "finance: RATE: no answer: pmt, pv and fv have no two signs: money paid is negative, money received positive\n"},
    {"RATE 3 -2000 -1000 8000",
     "finance: RATE: no answer: the search starts at -pmt / pv, and -2 is no rate (IRR of the plan's flows needs no "
     "start)\n  finance IRR flows=-1000,-2000,-2000,6000\n"},
    {"RATE 5 -100 -1000 1800",
     "finance: RATE: no answer: the search starts at -pmt / pv, here -0.1, and finds no rate from there\n"
     "  finance IRR flows=-1000,-100,-100,-100,-100,1700\n"},
};

TEST(SearchedCases, OneCauseIsNamed) {
    for (const CauseCase& row : causes) {
        SCOPED_TRACE(row.call);
        const CommandRun run = run_command(row.call);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, row.error);
    }
}

constexpr CauseCase unsolved[] = {
    {"XIRR values=100 dates=2019-01-01",
     "finance: XIRR: does not solve: the search ended at the lowest rate that it tries; XNPV at this rate is 100, not "
     "0; the values do not change sign: a rate needs money paid and money received\n"},
    {"XIRR values=100,-100 dates=2019-01-01,2019-01-01",
     "finance: XIRR: does not solve: the search ended at the lowest rate that it tries; XNPV at this rate is 0, as at "
     "any other; all values fall on one day\n"},
    {"XIRR values=-4,1,-6 dates=1964-12-30,1960-01-01,1961-12-31",
     "finance: XIRR: does not solve: the search ended at the lowest rate that it tries; XNPV at this rate is -4, not "
     "0; "
     "give the earliest flow first\n  finance XIRR values=1,-6,-4 dates=1960-01-01,1961-12-31,1964-12-30\n"},
};

TEST(SearchedCases, TheValueIsPrintedAndDoesNotSolve) {
    for (const CauseCase& row : unsolved) {
        SCOPED_TRACE(row.call);
        const CommandRun run = run_command(row.call);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.output, "-0.9999999\n");
        EXPECT_EQ(run.error, row.error);
    }
}

}  // namespace
}  // namespace finance::test
