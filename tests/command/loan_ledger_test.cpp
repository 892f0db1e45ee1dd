// Payments in whole cents, with something extra, and on dates. Amounts are worked out by hand from the rounded payment,
// which is the closed form's: 1000 at 1 % over 6 periods 172.548, in advance over 4 with 200 left 204.975.
#include "command/schedules/loan_ledger.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/text.hpp"
#include "command/schedules/payment_dates.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

std::string csv(const std::string& arguments) {
    const CommandRun run = run_command("schedule loan " + arguments + " --csv");
    EXPECT_EQ(run.exit_status, 0) << arguments << ": " << run.error;
    return run.output;
}

struct TableCase {
    const char* arguments;
    const char* table;
};

const std::vector<TableCase> tables{
    {"rate=1% nper=6 pv=1000 --digits 2",
     "period,payment,interest,principal,balance\n"
     "1,-172.55,-10.00,-162.55,837.45\n"
     "2,-172.55,-8.37,-164.18,673.27\n"
     "3,-172.55,-6.73,-165.82,507.45\n"
     "4,-172.55,-5.07,-167.48,339.97\n"
     "5,-172.55,-3.40,-169.15,170.82\n"
     "6,-172.53,-1.71,-170.82,0.00\n"},
    {"rate=1% nper=6 pv=-1000 --digits 0",
     "period,payment,interest,principal,balance\n"
     "1,173,10,163,-837\n"
     "2,173,8,165,-672\n"
     "3,173,7,166,-506\n"
     "4,173,5,168,-338\n"
     "5,173,3,170,-168\n"
     "6,170,2,168,0\n"},
    {"rate=1% nper=6 pv=1000 start=2025-01-31 extra=100 --digits 2",
     "period,date,payment,interest,principal,balance\n"
     "1,2025-02-28,-272.55,-10.00,-262.55,737.45\n"
     "2,2025-03-31,-272.55,-7.37,-265.18,472.27\n"
     "3,2025-04-30,-272.55,-4.72,-267.83,204.44\n"
     "4,2025-05-31,-206.48,-2.04,-204.44,0.00\n"},
    {"rate=1% nper=4 pv=1000 fv=-200 type=1 start=2023-11-30 months=3 --digits 2",
     "period,date,payment,interest,principal,balance\n"
     "1,2023-11-30,-204.98,0.00,-204.98,795.02\n"
     "2,2024-02-29,-204.98,-7.95,-197.03,597.99\n"
     "3,2024-05-30,-204.98,-5.98,-199.00,398.99\n"
     "4,2024-08-30,-204.96,-3.99,-200.97,198.02\n"
     "5,2024-11-30,0.00,-1.98,1.98,200.00\n"},
    {"rate=1% nper=3 pv=1000 fv=-1000 --digits 2",
     "period,payment,interest,principal,balance\n"
     "1,-10.00,-10.00,0.00,1000.00\n"
     "2,-10.00,-10.00,0.00,1000.00\n"
     "3,-10.00,-10.00,0.00,1000.00\n"},
    {"rate=0.1% nper=12 pv=0.07 --digits 2",  // a payment of 0.0059 is rounded up: the loan ends earlier
     "period,payment,interest,principal,balance\n"
     "1,-0.01,0.00,-0.01,0.06\n"
     "2,-0.01,0.00,-0.01,0.05\n"
     "3,-0.01,0.00,-0.01,0.04\n"
     "4,-0.01,0.00,-0.01,0.03\n"
     "5,-0.01,0.00,-0.01,0.02\n"
     "6,-0.01,0.00,-0.01,0.01\n"
     "7,-0.01,0.00,-0.01,0.00\n"},
    {"rate=50% nper=2 pv=1250 extra=125",  // PMT 1125; exact in binary
     "period,payment,interest,principal,balance\n"
     "1,-1250,-625,-625,625\n"
     "2,-937.5,-312.5,-625,0\n"},
};

TEST(LoanLedger, GivesTheTablesByHand) {
    for (const TableCase& row : tables) EXPECT_EQ(csv(row.arguments), row.table) << row.arguments;
    EXPECT_EQ(tables.size(), 7U);
}

std::int64_t cents(const std::string& cell) { return std::llround(std::stod(cell) * 100.0); }

// Of every table: payment = interest + principal, balance = balance before + principal, and the last one is 0.
TEST(LoanLedger, CentsAddUp) {
    std::size_t checked = 0;
    for (const std::string rate : {"0.05%", "0.4166%", "1%", "2.5%"}) {
        for (const std::string rest : {"", " type=1", " extra=33.33", " extra=250 type=1"}) {
            std::istringstream lines{csv("rate=" + rate + " nper=120 pv=98765.43 --digits 2" + rest)};
            std::string line;
            std::getline(lines, line);
            std::int64_t balance = 9876543;
            while (std::getline(lines, line)) {
                std::istringstream cells{line};
                std::vector<std::string> row;
                for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell);
                ASSERT_EQ(row.size(), 5U);
                EXPECT_EQ(cents(row[1]), cents(row[2]) + cents(row[3])) << rate << rest << ": " << line;
                EXPECT_EQ(cents(row[4]), balance + cents(row[3])) << rate << rest << ": " << line;
                balance = cents(row[4]);
                ++checked;
            }
            EXPECT_EQ(balance, 0) << rate << rest;
        }
    }
    EXPECT_GT(checked, 1200U);
}

// Without decimals and without extra nothing is other than before: the module's own parts of each payment.
TEST(LoanLedger, ExtraAloneKeepsAllDigits) {
    command::LoanLedger ledger{{.rate = 0.25, .periods = 4, .present = 1000.0, .payment = -500.0, .extra = 125.0},
                               std::nullopt};
    const std::vector<double> balances{625.0, 156.25, 0.0};  // 1000 * 1.25 - 625, 625 * 1.25 - 625, the rest
    for (const double balance : balances) {
        const auto row = ledger.next();
        ASSERT_TRUE(row);
        EXPECT_EQ(row->balance, balance);
        EXPECT_EQ(row->payment, balance == 0.0 ? -195.3125 : -625.0);
    }
    EXPECT_FALSE(ledger.next());
}

struct DateCase {
    const char* start;
    std::int64_t months;
    const char* date;
};

const std::vector<DateCase> dates{
    {"2025-01-31", 0, "2025-01-31"},  {"2025-01-31", 1, "2025-02-28"},   {"2025-01-31", 2, "2025-03-31"},
    {"2025-01-31", 3, "2025-04-30"},  {"2024-01-31", 1, "2024-02-29"},   {"2024-02-29", 12, "2025-02-28"},
    {"2024-02-29", 48, "2028-02-29"}, {"2025-02-28", 1, "2025-03-28"},   {"2025-12-30", 2, "2026-02-28"},
    {"1900-01-31", 1, "1900-02-28"},  {"2000-01-30", 1, "2000-02-29"},   {"1959-12-31", 2, "1960-02-29"},
    {"0001-01-31", 1, "0001-02-28"},  {"2025-01-31", 1200, "2125-01-31"}};

TEST(PaymentDates, KeepTheDayThatWasAskedFor) {
    for (const DateCase& row : dates) {
        const double date = command::months_later(*catalogue::host_date(row.start), row.months);
        EXPECT_EQ(catalogue::iso_date(date), row.date) << row.start << " + " << row.months;
    }
    EXPECT_EQ(dates.size(), 14U);
}

TEST(LoanLedger, RefusalsNameTheArgument) {
    const std::string loan = "schedule loan rate=1% nper=4 pv=1000 ";
    const std::vector<TableCase> refusals{
        {"extra=-5", "argument 8 (extra): -5 is not above 0"},
        {"extra=0", "argument 8 (extra): 0 is not above 0"},
        {"extra=5 fv=-10", "argument 8 (extra): it ends a loan early, and this one has an fv"},
        {"months=3", "argument 7 (months): it says how far dates are apart, and there is no start"},
        {"start=2025-01-31 months=1.5", "argument 7 (months): 1.5 is no number of months (1 to 120000)"},
        {"start=2025-01-31 months=0", "argument 7 (months): 0 is no number of months (1 to 120000)"},
        {"start=9999-09-01", "argument 6 (start): the last payment would fall after the year 9999"},
        {"start=2025-01-31 months=120000", "argument 6 (start): the last payment would fall after the year 9999"},
        {"start=5000000", "argument 6 (start): it is no day of the years 1 to 9999"},
        {"pv=1000.005 --digits 2", "argument 3 (pv): 1000.005 has more than 2 decimals"},
        {"fv=-0.5 --digits 0", "argument 4 (fv): -0.5 has more than 0 decimals"},
        {"extra=0.125 --digits 2", "argument 8 (extra): 0.125 has more than 2 decimals"},
        {"pv=1e14 --digits 2", "argument 3 (pv): amounts are too large for 2 decimals"},
    };
    for (const TableCase& row : refusals) {
        std::string arguments = row.arguments;
        const bool own_pv = arguments.starts_with("pv=");
        const CommandRun run = run_command((own_pv ? "schedule loan rate=1% nper=4 " : loan) + arguments);
        EXPECT_EQ(run.exit_status, 1) << arguments;
        EXPECT_EQ(run.output, "") << arguments;
        EXPECT_EQ(run.error, std::string{"finance: schedule loan: "} + row.table + '\n');
    }
    EXPECT_EQ(refusals.size(), 13U);
    const CommandRun unread = run_command(loan + "start=31.01.2025");
    EXPECT_EQ(unread.exit_status, 2);
}

TEST(LoanLedger, ObjectsAndPicturesHaveTheDatesTheyCanHave) {
    EXPECT_EQ(run_command("--json schedule loan rate=1% nper=2 pv=1000 start=2024-01-31 --digits 2").output,
              "{\"period\":1,\"date\":\"2024-02-29\",\"payment\":-507.51,\"interest\":-10,\"principal\":-497.51,"
              "\"balance\":502.49}\n"
              "{\"period\":2,\"date\":\"2024-03-31\",\"payment\":-507.51,\"interest\":-5.02,\"principal\":-502.49,"
              "\"balance\":0}\n");
    const auto file = std::filesystem::temp_directory_path() / "finance_dated_loan.svg";
    const CommandRun run =
        run_command("schedule loan rate=1% nper=12 pv=1000 start=2024-01-31 extra=50 --plot " + file.string());
    EXPECT_EQ(run.exit_status, 0) << run.error;
    EXPECT_TRUE(std::filesystem::exists(file));
    std::filesystem::remove(file);
}

// Straight-line parts of 10000 - 1000 over 7 years are 1285.714: book values 8714.29, 7428.57, ..., 1000.00.
TEST(LoanLedger, DepreciationAddsUpToo) {
    std::istringstream lines{
        run_command("schedule depreciation cost=10000 salvage=1000 life=7 --digits 2 --csv").output};
    std::string line;
    std::getline(lines, line);
    std::vector<std::int64_t> book(5, 1'000'000);
    std::size_t rows = 0;
    for (; std::getline(lines, line); ++rows) {
        std::istringstream cells{line};
        std::vector<std::string> row;
        for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell);
        ASSERT_EQ(row.size(), 11U);
        for (std::size_t i = 0; i < book.size(); ++i) {
            book[i] -= cents(row[1 + i]);
            EXPECT_EQ(cents(row[6 + i]), book[i]) << line;
        }
        EXPECT_EQ(cents(row[6]), std::llround(1e6 - 900000.0 * static_cast<double>(rows + 1) / 7.0)) << line;
    }
    EXPECT_EQ(rows, 7U);
    EXPECT_EQ(book[0], 100'000);
}

}  // namespace
}  // namespace finance::test
