// `finance schedule`, the built command: tables, their sums, and what it refuses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "command/schedules/table_text.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using command::Column;
using command::Row;

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// ---- Tables as numbers

Row numbers(const std::string& line) {
    Row row;
    std::istringstream cells{line + ','};
    for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell.empty() ? none : std::stod(cell));
    return row;
}

std::vector<Row> table(const std::string& arguments) {
    const CommandRun run = run_command("schedule " + arguments + " --csv");
    EXPECT_EQ(run.exit_status, 0) << run.error;
    std::istringstream lines{run.output};
    std::string line;
    std::getline(lines, line);
    std::vector<Row> rows;
    while (std::getline(lines, line)) rows.push_back(numbers(line));
    return rows;
}

double answer(const std::string& call) { return std::stod(run_command(call).output); }

void expect_rows(const std::vector<Row>& rows, const std::vector<Row>& expected, double tolerance) {
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t k = 0; k < rows.size(); ++k) {
        ASSERT_EQ(rows[k].size(), expected[k].size());
        for (std::size_t i = 0; i < rows[k].size(); ++i) {
            const bool empty = std::isnan(expected[k][i]);
            EXPECT_EQ(std::isnan(rows[k][i]), empty) << "row " << k << ", column " << i;
            if (empty) continue;
            EXPECT_NEAR(rows[k][i], expected[k][i], tolerance) << "row " << k << ", column " << i;
        }
    }
}

double sum(const std::vector<Row>& rows, std::size_t column) {
    double total = 0.0;
    for (const Row& row : rows) total += std::isnan(row[column]) ? 0.0 : row[column];
    return total;
}

// ---- Loans

// By hand: 210 = 121 / 1.1 + 121 / 1.21.
TEST(ScheduleLoan, PaymentsAtTheEnd) {
    expect_rows(table("loan rate=0.1 nper=2 pv=210"), {{1, -121, -21, -100, 110}, {2, -121, -11, -110, 0}}, 1e-12);
    expect_rows(table("loan 10% 2 210"), {{1, -121, -21, -100, 110}, {2, -121, -11, -110, 0}}, 1e-12);
}

// By hand: 231 = 121 + 121 / 1.1.
TEST(ScheduleLoan, PaymentsAtTheStart) {
    expect_rows(table("loan rate=0.1 nper=2 pv=231 type=1"), {{1, -121, 0, -121, 110}, {2, -121, -11, -110, 0}}, 1e-12);
}

// By hand: 100 * 1.21 + 100 * 1.1 = 231; the interest on 210 is added at the end.
TEST(ScheduleLoan, SavingsFromTheStartEndWithTheLastInterest) {
    expect_rows(table("loan rate=0.1 nper=2 pv=0 fv=231 type=1"),
                {{1, -100, 0, -100, -100}, {2, -100, 10, -110, -210}, {3, 0, 21, -21, -231}}, 1e-12);
}

struct Loan {
    const char* arguments;
    double rate, periods, pv, fv;
    bool at_start;
};

constexpr Loan loans[] = {
    {"rate=0.005 nper=360 pv=200000", 0.005, 360, 200000, 0, false},
    {"rate=0.005 nper=360 pv=200000 type=1", 0.005, 360, 200000, 0, true},
    {"rate=0.01 nper=24 pv=5000 fv=-1000", 0.01, 24, 5000, -1000, false},
    {"rate=0.01 nper=24 pv=5000 fv=-1000 type=1", 0.01, 24, 5000, -1000, true},
    {"rate=0.02 nper=1 pv=100", 0.02, 1, 100, 0, false},
    {"rate=0.03 nper=17 pv=0 fv=1e6", 0.03, 17, 0, 1e6, false},
};

// interest + principal = payment; the balance bears the next interest; it begins at pv and ends at -fv.
TEST(ScheduleLoan, RowsHangTogether) {
    for (const Loan& loan : loans) {
        SCOPED_TRACE(loan.arguments);
        const double tolerance = 1e-10 * (std::abs(loan.pv) + std::abs(loan.fv));
        const std::vector<Row> rows = table(std::string{"loan "} + loan.arguments);
        ASSERT_EQ(static_cast<double>(rows.size()), loan.periods + (loan.at_start && loan.fv != 0.0 ? 1 : 0));
        double balance = loan.pv;
        double period = 0.0;
        for (const Row& row : rows) {
            const double interest = loan.at_start && period == 0.0 ? 0.0 : -balance * loan.rate;
            EXPECT_EQ(row[0], ++period);
            EXPECT_NEAR(row[2] + row[3], row[1], tolerance);
            EXPECT_NEAR(row[2], interest, tolerance) << "period " << period;
            EXPECT_NEAR(row[4], balance + row[3], tolerance);
            balance = row[4];
        }
        EXPECT_NEAR(balance, -loan.fv, tolerance);
    }
}

TEST(ScheduleLoan, SumsAreTheCumulativeCalculations) {
    for (const std::string type : {"0", "1"}) {
        const std::vector<Row> rows = table("loan 0.005 360 200000 type=" + type);
        EXPECT_NEAR(sum(rows, 2), answer("CUMIPMT 0.005 360 200000 1 360 " + type), 1e-5);
        EXPECT_NEAR(sum(rows, 3), answer("CUMPRINC 0.005 360 200000 1 360 " + type), 1e-5);
        EXPECT_NEAR(sum(rows, 3), -200000, 1e-5);
    }
}

// ---- Depreciation

// By hand: rate of DB 1 - 0.1^(1/5) = 0.369, its first year 7 months; SYD fifteenths of 9000; DDB two fifths of what is
// left, down to 1000; VDB does not switch, since what is left to depreciate is always less.
TEST(ScheduleDepreciation, MethodsSideBySide) {
    const double b1 = 7847.5, b2 = b1 * 0.631, b3 = b2 * 0.631, b4 = b3 * 0.631, b5 = b4 * 0.631;
    const double b6 = b5 - b5 * 0.369 * 5 / 12;
    expect_rows(table("depreciation cost=10000 salvage=1000 life=5 month=7"),
                {{1, 1800, 3000, 2152.5, 4000, 4000, 8200, 7000, b1, 6000, 6000},
                 {2, 1800, 2400, b1 - b2, 2400, 2400, 6400, 4600, b2, 3600, 3600},
                 {3, 1800, 1800, b2 - b3, 1440, 1440, 4600, 2800, b3, 2160, 2160},
                 {4, 1800, 1200, b3 - b4, 864, 864, 2800, 1600, b4, 1296, 1296},
                 {5, 1800, 600, b4 - b5, 296, 296, 1000, 1000, b5, 1000, 1000},
                 {6, none, none, b5 - b6, none, none, 1000, 1000, b6, 1000, 1000}},
                1e-9);
}

// By hand: with factor 1.5 over four periods and no salvage, straight line over what is left is 1/3 in the second
// period, less than 0.375; 1/2 in the third, more, and stays.
TEST(ScheduleDepreciation, FactorAndSwitch) {
    const std::vector<Row> rows = table("depreciation 1000 0 4 1.5");
    const std::vector<double> ddb{375, 234.375, 146.484375, 91.552734375};
    const std::vector<double> vdb{375, 234.375, 195.3125, 195.3125};
    ASSERT_EQ(rows.size(), 4U);
    for (std::size_t k = 0; k < rows.size(); ++k) {
        EXPECT_NEAR(rows[k][4], ddb[k], 1e-9);
        EXPECT_NEAR(rows[k][5], vdb[k], 1e-9);
    }
}

TEST(ScheduleDepreciation, SumsAreWhatTheMethodsPromise) {
    for (const std::string life : {"1", "2", "7", "40"}) {
        const std::vector<Row> rows = table("depreciation 10000 1000 " + life);
        ASSERT_EQ(std::to_string(rows.size()), life);
        for (const std::size_t reaching : {1U, 2U, 5U}) EXPECT_NEAR(sum(rows, reaching), 9000, 1e-8) << life;
        EXPECT_LE(sum(rows, 4), 9000 + 1e-8) << "DDB may stay above salvage, never falls below";
        for (std::size_t method = 1; method <= 5; ++method) {
            EXPECT_NEAR(10000 - sum(rows, method), rows.back()[method + 5], 1e-8) << "book value " << method;
        }
    }
}

// ---- Text

TEST(Schedule, LoanAsText) {
    EXPECT_EQ(run_command("schedule loan rate=0.1 nper=2 pv=210").output,
              "period  payment  interest  principal  balance\n"
              "     1  -121.00    -21.00    -100.00   110.00\n"
              "     2  -121.00    -11.00    -110.00     0.00\n"
              " total  -242.00    -32.00    -210.00\n");
}

// By hand: without salvage the rate of DB is 1, so that its second year takes all that half a first one has left; VDB
// switches to straight line in the second year.
TEST(Schedule, DepreciationAsText) {
    EXPECT_EQ(run_command("schedule depreciation 120 0 2 1 6").output,
              "        depreciation of the period ----------  book value at its end -----------\n"
              "period     SLN     SYD      DB    DDB     VDB    SLN    SYD     DB    DDB    VDB\n"
              "     1   60.00   80.00   60.00  60.00   60.00  60.00  40.00  60.00  60.00  60.00\n"
              "     2   60.00   40.00   60.00  30.00   60.00   0.00   0.00   0.00  30.00   0.00\n"
              "     3                    0.00                  0.00   0.00   0.00  30.00   0.00\n"
              " total  120.00  120.00  120.00  90.00  120.00\n");
}

TEST(Schedule, CsvAndJson) {
    EXPECT_EQ(run_command("schedule loan 0.5 1 100 --csv").output,
              "period,payment,interest,principal,balance\n1,-150,-50,-100,0\n");
    EXPECT_EQ(run_command("schedule loan 0.5 1 100 --json").output,
              "{\"period\":1,\"payment\":-150,\"interest\":-50,\"principal\":-100,\"balance\":0}\n");
}

std::string amount(double value) {
    const std::vector<Column> columns{{"a", "a"}};
    const std::vector<Row> rows{{value}};
    const std::string text = command::aligned_text(columns, rows);
    const std::size_t begin = text.find('\n') + 1;
    const std::string line = text.substr(begin, text.find('\n', begin) - begin);
    return line.substr(std::min(line.size(), line.find_first_not_of(' ')));
}

TEST(TableText, Amounts) {
    EXPECT_EQ(amount(0.0), "0.00");
    EXPECT_EQ(amount(-0.0), "0.00");
    EXPECT_EQ(amount(1234.567), "1234.57");
    EXPECT_EQ(amount(100.0), "100.00");
    EXPECT_EQ(amount(1.0), "1.00");
    EXPECT_EQ(amount(0.5), "0.500") << "three digits";
    EXPECT_EQ(amount(-0.00012345), "-0.000123");
    EXPECT_EQ(amount(1e15), "1e+15");
    EXPECT_EQ(amount(none), "");
}

// ---- Refusals and wrong usage

struct FailureCase {
    const char* arguments;
    int exit_status;
    const char* error;
};

constexpr FailureCase failures[] = {
    {"loan 0 12 1000", 1, "finance: schedule loan: argument 1 (rate): 0 is not above 0\n"},
    {"loan 0.01 2.5 1000", 1, "finance: schedule loan: argument 2 (nper): 2.5 is not a whole number\n"},
    {"loan 0.01 0 1000 --csv", 1, "finance: schedule loan: argument 2 (nper): 0 is below 1\n"},
    {"loan 0.01 12 . --csv", 1, "finance: schedule loan: argument 3 (pv): a value is missing\n"},
    {"loan 0.01 12 1000 type=2", 1, "finance: schedule loan: argument 5 (type): 2 is above 1\n"},
    {"loan 1 1024 1", 1,
     "finance: schedule loan: no answer: nper * ln(1 + rate) is 709.78 or more, so that the growth factor "
     "(1 + rate)^nper is too large\n"},
    {"loan 0.0001 10001 1000", 1,
     "finance: schedule loan: 10001 periods are too many to read or to draw (more than 10000); --csv writes any "
     "number\n"},
    {"loan 1e-12 4294967297 1 --csv", 1,
     "finance: schedule loan: 4294967297 is no number of periods (1 to 2147483647)\n"},
    {"depreciation . 0 5", 1, "finance: schedule depreciation: argument 1 (cost): a value is missing\n"},
    {"depreciation 10 0 2.5", 1, "finance: schedule depreciation: argument 3 (life): 2.5 is not a whole number\n"},
    {"depreciation 10 0 0", 1, "finance: schedule depreciation: argument 3 (life): 0 is below 1\n"},
    {"depreciation 10 0 5 0", 1, "finance: schedule depreciation: argument 4 (factor): 0 is not above 0\n"},
    {"depreciation 10 0 5 .", 1,
     "finance: schedule depreciation: argument 4 (factor): a value is missing (it must not be missing)\n"},
    {"depreciation 10 0 5 month=0", 1, "finance: schedule depreciation: argument 5 (month): 0 is below 1\n"},
    {"", 2, "finance: schedule: loan or depreciation?\ntry: finance help schedule\n"},
    {"lone", 2, "finance: no schedule is called 'lone'\ntry: finance help schedule\n"},
    {"loan 0.01 12", 2, "finance: schedule loan: too few arguments: no pv\ntry: finance help schedule\n"},
    {"loan 0.01 12 x", 2, "finance: schedule loan: argument 3 (pv): 'x' is not a number\ntry: finance help schedule\n"},
    {"loan 0.01 12 1 --cvs", 2, "finance: schedule: no option is called --cvs\ntry: finance help schedule\n"},
    {"loan 0.01 12 1 --csv --plot x.svg", 2,
     "finance: schedule: --csv, --json and --plot exclude each other\ntry: finance help schedule\n"},
    {"loan 0.01 12 1 --plot x.pdf", 2,
     "finance: a picture's file ends in .svg or .png: 'x.pdf'\ntry: FILE.svg or FILE.png\n"},
};

TEST(Schedule, Failures) {
    for (const FailureCase& row : failures) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(std::string{"schedule "} + row.arguments);
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, row.error);
    }
}

TEST(Schedule, LongOnesAreStreamed) {
    const std::vector<Row> rows = table("loan rate=0.0001 nper=20000 pv=1000");
    ASSERT_EQ(rows.size(), 20000U);
    EXPECT_NEAR(rows.back()[4], 0.0, 1e-8);
}

TEST(Schedule, AnOutputThatCannotBeWrittenFails) {
    for (const std::string form : {"", " --csv"}) {
        const CommandRun full = run_command("schedule loan 0.0001 9000 1000" + form + " >/dev/full");
        EXPECT_EQ(full.exit_status, 1);
        EXPECT_EQ(full.error, "finance: the output cannot be written: No space left on device\n");
    }
    const CommandRun closed = run_command("schedule loan 0.0001 9000 1000 --csv >&-");
    EXPECT_EQ(closed.exit_status, 1);
    EXPECT_EQ(closed.error, "finance: the output cannot be written: Bad file descriptor\n");
    const CommandRun broken = run_command("schedule loan 0.000001 1000000 1000 --csv | head -1");
    EXPECT_EQ(broken.output, "period,payment,interest,principal,balance\n");
    EXPECT_EQ(broken.error, "");  // as with others: closed_pipe_test.cpp
}

TEST(Schedule, Help) {
    const CommandRun run = run_command("help schedule");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("schedule: payment tables", 0), 0U);
    EXPECT_EQ(run_command("schedule loan --help").output, run.output);
}

}  // namespace
}  // namespace finance::test
