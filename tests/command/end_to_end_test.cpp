// The built command on the built module: what it prints, where, and its exit status.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

// ---- Values

struct AnswerCase {
    const char* arguments;
    double expected;
    double ulps;  // allowed distance, in units in the last place of the expected value
    const char* source;
};

constexpr const char* closed_form = "closed form at 60 digits, expected_values.py";
constexpr const char* by_hand = "by hand";

constexpr AnswerCase answers[] = {
    {"PMT rate=0.005 nper=360 pv=200000", -1199.1010503055047, 8, closed_form},
    {"PMT 0.005 360 200000", -1199.1010503055047, 8, closed_form},
    {"PMT 0.5% 360 2e5", -1199.1010503055047, 8, closed_form},
    {"pmt 0.005 360 pv=200000", -1199.1010503055047, 8, closed_form},
    {"PMT -- 0.005 360 200000", -1199.1010503055047, 8, closed_form},
    {"PMT 5.75% 10 1000", -134.26326713460793, 8, closed_form},
    {"PMT 0.005 360 100 type=1", -0.5965676867191566, 8, closed_form},
    {"PMT rate=1% nper=24 pv=0 fv=5000 type=1", -183.53204070923124, 8, closed_form},
    {"PMT 0.005 360 200000 fv= type=", -1199.1010503055047, 8, closed_form},
    {"PMT 0.005 360 200000 . .", -1199.1010503055047, 8, closed_form},
    {"FV 0.01 12 -100", 1268.2503013196972, 8, closed_form},
    {"FV rate=0.01 nper=12 pv=-100", 112.68250301319697, 8, closed_form},
    {"PV 0.01 12 -100", 1125.507747348463, 8, closed_form},
    {"IPMT 0.005 1 360 200000", -1000, 0, by_hand},
    {"IPMT 0.005 1 360 200000 0 1", 0, 0, "paid at once, the first payment bears no interest"},
    {"IPMT 0.005 13 360 200000", -987.7198828772329, 16, closed_form},
    {"PPMT 0.005 13 360 200000", -211.38116742827197, 16, closed_form},
    {"CUMIPMT 0.005 360 200000 1 12", -11933.18917911262, 16, closed_form},
    {"CUMIPMT 0.005 360 200000 5 4", 0, 0, "an empty range"},
    {"CUMPRINC 0.005 360 200000 1 12", -2456.0234245534375, 64, closed_form},
    {"ISPMT 0.01 3 12 1200", -9, 0, by_hand},
    {"ISPMT 0.01 3 4294967308 1200", -9, 0, "2^32 + 12 counts as 12"},
    {"RATE 60 -400 20000", 0.006183413161253964, 64, closed_form},
    {"RATE nper=2 pmt=0 pv=100 fv=121", 0.1, 16, "121 is 100 * 1.1^2; without payments both of one sign"},
    {"RATE 10 -10 100", 0, 0, "ten payments of 10 repay 100 without interest"},
    {"NPER 0.005 -400 20000", 57.68013595777512, 16, closed_form},
    {"NPER 0.005 -400 20000 0 1", 57.34790790434198, 16, closed_form},
    {"NPER 0.005 -400 20000 0 2", 57.68013595777512, 16, "a type of 2 acts as 0"},

    // one list: in order, with commas, by name, alone, before and after other arguments
    {"NPV 0.1 -1000 300 400 500 200", 105.05988786160904, 16, closed_form},
    {"NPV 10% -1000,300,400,500,200", 105.05988786160904, 16, closed_form},
    {"NPV flows=-1000,300,400 flows=500,200 rate=0.1", 105.05988786160904, 16, closed_form},
    {"NPV 0.1", 0, 0, "no flows"},
    {"NPV 0.25 0 125", 80, 8, "125 / 1.25^2"},
    {"IRR -1000 300 400 500 200", 0.1532213787718154, 64, closed_form},
    {"IRR -1000,300,400,500,200", 0.1532213787718154, 64, closed_form},
    {"IRR flows=-1000,300,400,500,200", 0.1532213787718154, 64, closed_form},
    {"IRR -100 110", 0.1, 64, "110 is 100 * 1.1"},
    {"IRR -1000 600 550", 0.1, 64, "600 / 1.1 + 550 / 1.21 = (660 + 550) / 1.21"},
    {"IRR 0 -100 110 0", 0.1, 64, "flows of 0 at the ends change nothing"},
    {"MIRR -1000 300 400 500 200 0.1 0.05", 0.10912465946801964, 64, closed_form},
    {"MIRR -1000,300,400,500,200 0.1 0.05", 0.10912465946801964, 64, closed_form},
    {"MIRR reinvestRate=5% financeRate=10% flows=-1000,300,400,500,200", 0.10912465946801964, 64, closed_form},
    {"FVSCHEDULE 1000 0.05 0.03 0.04", 1124.76, 8, closed_form},
    {"FVSCHEDULE 1000 5%,3%,4%", 1124.76, 8, closed_form},
    {"FVSCHEDULE principal=1000 rates=5%,3% rates=4%", 1124.76, 8, closed_form},
    {"FVSCHEDULE -1000", -1000, 0, "no rates"},

    // two lists
    {"XNPV 0.1 -1000 600 600 2023-01-01 2024-01-01 2025-01-01", 41.19284808738571, 64, closed_form},
    {"XNPV 0.1 -1000,600,600 2023-01-01,2024-01-01,2025-01-01", 41.19284808738571, 64, closed_form},
    {"XNPV dates=2023-01-01,2024-01-01,2025-01-01 values=-1000,600,600 rate=0.1", 41.19284808738571, 64, closed_form},
    {"XNPV 0.1 5 2024-01-01", 5, 0, "the first flow is not discounted"},
    {"XNPV 0.25 0 80 2024-01-01 2023-01-01", 100, 8, "a flow 365 days before the first date grows: 80 * 1.25"},
    {"XIRR -1000 600 600 2023-01-01 2024-01-01 2025-01-01", 0.13054099320394236, 256, closed_form},
    {"XIRR -1000,600,600 2023-01-01,2024-01-01,2025-01-01", 0.13054099320394236, 256, closed_form},
    {"XIRR -1000 600 600 2023-01-01 2024-01-01 2025-01-01 0.1", 0.13054099320394236, 256, closed_form},
    {"XIRR values=-1000,600,600 dates=2023-01-01,2024-01-01,2025-01-01 guess=-0.5", 0.13054099320394236, 256,
     closed_form},
    {"XIRR -100 110 2023-01-01 2024-01-01", 0.1, 64, "365 days: 110 is 100 * 1.1"},

    // other families
    {"EFFECT 12% 12", 0.12682503013196972, 16, closed_form},
    {"NOMINAL 12.68% 12", 0.11997756467064916, 16, closed_form},
    {"YEARFRAC 2024-01-01 2024-07-01 act/365", 182.0 / 365, 1, "31 + 29 + 31 + 30 + 31 + 30 days"},
    {"YEARFRAC 2024-01-01 2024-07-01", 0.5, 0, "six months of 30 days"},
    {"YEARFRAC 2023-03-01 2024-03-01 .", 366 / 365.5, 1, "a missing basis is ACTUAL: 365 and 366 averaged"},
    {"YEARFRAC 2024-01-01 2024-01-01 nonsense", 0, 0, "equal dates, the basis is not looked at"},
    {"COUPNUM 2025-01-20 2030-11-15 2", 12, 0, "May and November of six years, but not before 2025"},
    {"COUPDAYBS 2025-01-20 2030-11-15 2", 65, 0, "30/360 from 15 November: 2 months and 5 days"},
    {"COUPDAYBS 2025-01-20 2030-11-15 2 ACTUAL", 66, 0, "15 + 31 + 20"},
    {"COUPDAYS 2025-01-20 2030-11-15 2 act/365", 182.5, 0, "365 / 2"},
    {"TBILLPRICE 2025-01-20 2025-07-19 0.05", 97.5, 8, "180 days: half of 5 %"},
    {"TBILLYIELD 2025-01-20 2025-07-19 97.5", 5 / 97.5, 8, "180 days: 2.5 / 97.5 * 2"},
    {"DOLLARDE 1.02 16", 1.125, 8, "1 and 2/16"},
    {"DOLLARFR 1.125 16", 1.02, 8, "1 and 2/16"},
    {"ACCRINTM 2025-01-01 2025-07-01 0.06 1000", 30, 8, "half a year of 6 %"},
    {"PRICEDISC 2025-01-01 2025-07-01 0.05 100", 97.5, 8, "half a year of 5 %"},
    {"PRICE 2025-01-20 2025-01-20 0.05 0.06 100 2", 0, 0, "equal dates"},
    {"PRICE 2024-11-15 2030-11-15 0.05 0.05 100 2", 100, 16, "on a coupon date a yield equal to the rate is par"},
    {"YIELD 2024-11-15 2030-11-15 0.05 100 100 2", 0.05, 64, "on a coupon date par is a yield equal to the rate"},
    {"SLN 10000 1000 5", 1800, 0, by_hand},
    {"SYD 10000 1000 5 6", 0, 0, "the period after the life"},
    {"DDB 10000 1000 10 3", 1280, 8, "10000 * 0.8^2 * 0.2"},
    {"DDB 10000 1000 10 3 -1", 1280, 8, "a factor of -1 counts as 2"},
    {"VDB 10000 500 10 6 10 1.5 0", 3146.7083333333335, 16, closed_form},
    {"VDB 10000 1000 5 0 5 2 0", 9000, 0, "the whole life"},
    {"VDB 10000 1000 10 3 2", 0, 0, "an end before the start"},
    {"AMORLINC 2400 2025-08-19 2025-12-31 300 1 0.15", 360, 0, "2400 * 0.15"},
    {"AMORDEGRC 2400 2025-08-19 2025-12-31 300 0 0.4", 0, 0, "a life below 3 periods"},
};

double number(const std::string& text) {
    double value = std::numeric_limits<double>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

double ulp(double x) { return std::nextafter(std::abs(x), std::numeric_limits<double>::infinity()) - std::abs(x); }

TEST(Command, Answers) {
    for (const AnswerCase& row : answers) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(row.arguments);
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.error, "");
        EXPECT_NEAR(number(run.output), row.expected, row.ulps * ulp(row.expected)) << row.source;
        EXPECT_EQ(run.output.find('\n'), run.output.size() - 1) << "one line";
    }
}

struct TextCase {
    const char* arguments;
    const char* expected;
    const char* source;
};

constexpr TextCase texts[] = {
    {"COUPNCD 2025-01-20 2030-11-15 2", "2025-05-15", by_hand},
    {"COUPNCD settlement=2025-01-20 maturity=2030-11-15 frequency=2", "2025-05-15", by_hand},
    {"COUPNCD 23761 25886 2", "2025-05-15", "the same days, counted from 1960-01-01"},
    {"COUPPCD 2025-01-20 2030-11-15 4", "2024-11-15", by_hand},
    {"COUPPCD 2025-02-28 2030-08-31 2", "2025-02-28", "a maturity at a month's end: all coupon dates are"},
    {"COUPNCD 1950-01-20 1955-11-15 1", "1950-11-15", "days before 1960 are negative"},
    {"XNPV -2 5 6 0 300", ".", "a power of a negative number"},
    {"EFFECT -13 12", ".", "a logarithm of a negative number"},
};

TEST(Command, AnswersThatAreNoPlainNumbers) {
    for (const TextCase& row : texts) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(row.arguments);
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.output, std::string{row.expected} + '\n') << row.source;
        EXPECT_EQ(run.error, "");
    }
}

TEST(Command, ASearchThatFindsNothingAnswersADotAndSaysWhy) {
    const CommandRun run = run_command("XIRR 100 100 0 365");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, ".\n");
    EXPECT_EQ(run.error,
              "finance: XIRR: no answer: the values do not change sign: a rate needs money paid and money received\n");
}

TEST(Command, ExamplesPrintWhatTheCatalogueSays) {
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        SCOPED_TRACE(calculation.name);
        const CommandRun run =
            run_command(std::string{calculation.name} + ' ' + std::string{calculation.example.arguments});
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.output, std::string{calculation.example.result} + '\n');
        EXPECT_EQ(run.error, "");
    }
}

TEST(Command, AMissingAnswerIsADot) {
    const CommandRun run = run_command("PV 0 12 -100");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, ".\n");
    EXPECT_EQ(run.error, "");
}

// ---- Refusals and wrong usage: nothing on the output, one sentence on standard error

struct FailureCase {
    const char* arguments;
    int exit_status;
    const char* error;
};

const FailureCase failures[] = {
    // refused: the argument and its rule
    {"PMT 0.005 2.5 200000", 1, "finance: PMT: argument 2 (nper): 2.5 is not a whole number\n"},
    {"PMT 0 12 1", 1, "finance: PMT: argument 1 (rate): 0 is not above 0\n"},
    {"PMT 0.005 . 200000", 1, "finance: PMT: argument 2 (nper): a value is missing\n"},
    {"PMT rate=0.005 pv=200000", 1, "finance: PMT: argument 2 (nper): no value given\n"},
    {"PMT 0.005 360 pv=", 1, "finance: PMT: argument 3 (pv): no value given\n"},
    {"PMT 0.005 9007199254740994 1", 1, "finance: PMT: argument 2 (nper): 9007199254740994 is above 2^53\n"},
    {"PMT 0.005 2147483648 1", 1,
     "finance: PMT: argument 2 (nper): 2147483648 does not fit a count (1 to 2147483647)\n"},
    {"PMT 0.005 -1e300 1", 1, "finance: PMT: argument 2 (nper): -1e+300 is below -2^63\n"},
    {"PMT 0.005 -inf 1", 1, "finance: PMT: argument 2 (nper): -inf is below 1\n"},
    {"PMT 0.005 12 1 0 2", 1, "finance: PMT: argument 5 (type): 2 is above 1\n"},
    {"PMT 0.005 12 1 type=0.5", 1, "finance: PMT: argument 5 (type): 0.5 is not a whole number\n"},
    {"PV -1 12 1", 1, "finance: PV: argument 1 (rate): -1 is not above -1\n"},
    {"IPMT 0.01 13 12 100", 1, "finance: IPMT: argument 2 (per): 13 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 13 14", 1, "finance: CUMPRINC: argument 4 (startPeriod): 13 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 5 14", 1, "finance: CUMPRINC: argument 5 (endPeriod): 14 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 5 4", 1, "finance: CUMPRINC: argument 4 (startPeriod): 5 is above endPeriod (4)\n"},
    {"CUMIPMT 0.01 12 0 1 2", 1, "finance: CUMIPMT: argument 3 (pv): 0 is not above 0\n"},
    {"FV 0.1 3 . .", 1,
     "finance: FV: argument 4 (pv): a value is missing (it must not be missing where pmt is missing too)\n"},

    {"NPER 0.01 -100 1000 type=1", 1,
     "finance: NPER: argument 4 (fv): no value given (it must not be missing, nor be left out where type is given)\n"},
    {"IRR -100 . 60", 1, "finance: IRR: argument 1 (flows, value 2): a value is missing\n"},
    {"IRR flows=-100,,60", 1, "finance: IRR: argument 1 (flows, value 2): no value given\n"},
    {"NPV 0 100", 1, "finance: NPV: argument 1 (rate): 0 is not above 0\n"},
    {"NPV 0.1 . 100 . 100", 1, "finance: NPV: argument 2 (flows, value 3): a value is missing\n"},
    {"MIRR . 110 0.1 0", 1, "finance: MIRR: argument 3 (reinvestRate): 0 is not above 0\n"},
    {"FVSCHEDULE 100 0.1 . 0.2", 1, "finance: FVSCHEDULE: argument 2 (rates, value 2): a value is missing\n"},
    {"XNPV 0.1 1 2 0 1.5", 1, "finance: XNPV: argument 3 (dates, value 2): 1.5 is not a whole number\n"},
    {"XIRR -100 110 0 365 .", 1, "finance: XIRR: argument 3 (guess): a value is missing (it must not be missing)\n"},
    {"YEARFRAC 2025-01-20 2025-01-19", 1,
     "finance: YEARFRAC: argument 2 (endDate): 2025-01-19 is before startDate (2025-01-20)\n"},
    {"COUPDAYBS 2025-01-20 2025-01-20 2", 1,
     "finance: COUPDAYBS: argument 3 (frequency): maturity (2025-01-20) is not after settlement (2025-01-20)\n"},
    {"COUPPCD 2025-01-20 2025-01-20 2", 1,
     "finance: COUPPCD: argument 2 (maturity): 2025-01-20 is not after settlement (2025-01-20)\n"},
    {"COUPNUM 2025-01-20 2030-11-15 2.5", 1, "finance: COUPNUM: argument 3 (frequency): 2.5 is not a whole number\n"},
    {"PRICE 2025-01-20 2025-01-19 0.05 0.06 100 2", 1,
     "finance: PRICE: argument 2 (maturity): 2025-01-19 is before settlement (2025-01-20)\n"},
    {"PRICE 2025-01-20 2030-11-15 0 0.06 100 2", 1, "finance: PRICE: argument 3 (rate): 0 is not above 0\n"},
    {"PRICE 2025-01-20 2030-11-15 0.05 0.06 100 2 act/364", 1,
     "finance: PRICE: argument 7 (basis): 'act/364' is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, "
     "EU30/360 or 0 to 4\n"},
    {"PRICEMAT 2025-01-20 2025-01-20 2024-01-20 0.05 0.06", 1,
     "finance: PRICEMAT: argument 2 (maturity): 2025-01-20 is not after settlement (2025-01-20)\n"},
    {"YIELDMAT 2025-01-20 2025-06-20 2025-06-21 0.05 99", 1,
     "finance: YIELDMAT: argument 3 (issue): 2025-06-21 is after maturity (2025-06-20)\n"},
    {"ODDFPRICE 2025-01-20 2030-11-15 2025-01-21 2025-11-15 0.05 0.06 100 2", 1,
     "finance: ODDFPRICE: argument 3 (issue): 2025-01-21 is after settlement (2025-01-20)\n"},
    {"ODDFPRICE 2025-01-20 2030-11-15 2024-12-10 2025-11-14 0.05 0.06 100 2", 1,
     "finance: ODDFPRICE: argument 4 (firstCoupon): 2025-11-14 is refused: it must be a coupon date: whole periods of "
     "12 / frequency months before maturity\n"},
    {"ODDLYIELD 2025-01-20 2025-08-31 2025-01-21 0.05 99 100 2", 1,
     "finance: ODDLYIELD: argument 3 (lastInterest): 2025-01-21 is after settlement (2025-01-20)\n"},
    {"ACCRINT 2025-03-01 2025-09-01 2025-02-28 0.06 1000 2", 1,
     "finance: ACCRINT: argument 3 (settlement): 2025-02-28 is before issue (2025-03-01)\n"},
    {"AMORLINC 2400 2025-08-19 2025-12-31 2500 1 0.15", 1,
     "finance: AMORLINC: argument 4 (salvage): 2500 is above cost (2400)\n"},
    {"AMORLINC 2400 2025-08-19 2025-12-31 300 1 0.15 act/360", 1,
     "finance: AMORLINC: argument 7 (basis): 'act/360' is refused: it must not be ACT/360\n"},
    {"AMORDEGRC 2400 2025-08-19 2025-12-31 300 1 0.15 2", 1,
     "finance: AMORDEGRC: argument 7 (basis): 2 is refused: it must not be ACT/360\n"},
    {"VDB 10000 1000 5 6 7", 1, "finance: VDB: argument 4 (start): 6 is above life (5)\n"},
    {"VDB 10000 1000 5 0 1 2 2", 1, "finance: VDB: argument 7 (noSwitch): 2 is above 1\n"},
    {"VDB 10000 1000 5 0 1 noSwitch=0", 1,
     "finance: VDB: argument 6 (factor): no value given (it must not be missing, nor be left out where noSwitch is "
     "given)\n"},
    {"DB 10000 1000 5 7", 1, "finance: DB: argument 4 (period): 7 is above life + 1 (6)\n"},
    {"DDB 10000 1000 5 6", 1, "finance: DDB: argument 4 (period): 6 is above life (5)\n"},
    {"SYD 10000 1000 5 0", 1, "finance: SYD: argument 4 (period): 0 is below 1\n"},
    {"TBILLEQ 2025-01-20 2025-01-20 0.05", 1,
     "finance: TBILLEQ: argument 2 (maturity): 2025-01-20 is not after settlement (2025-01-20)\n"},
    {"TBILLEQ 2025-01-20 2025-01-20 .", 1, "finance: TBILLEQ: argument 3 (discount): a value is missing\n"},
    {"TBILLYIELD 2025-01-20 2025-01-20 .", 1,
     "finance: TBILLYIELD: argument 2 (maturity): 2025-01-20 is not after settlement (2025-01-20)\n"},
    {"DOLLARDE 1.02 0", 1, "finance: DOLLARDE: argument 2 (denominator): 0 is below 1\n"},

    // refused: no argument is at fault, and the catalogue says why
    {"PMT 1 1024 1", 1, nullptr},
    {"PPMT 1 1 1024 1 0 1", 1, nullptr},
    {"FV 1 1024 1", 1, nullptr},
    {"RATE 2 0 100 -121", 1,
     "finance: RATE: no answer: with pmt=0 the rate is that of the growth from pv to fv: both must be positive, or "
     "both negative\n  finance RATE nper=2 pmt=0 pv=100 fv=121\n"},
    {"INTRATE 2025-01-31 2025-02-01 97 100", 1,  // no days between them under 30/360
     "finance: INTRATE: too large: the answer is infinite, beyond the largest number or divided by 0\n"},
    {"NPER 0.01 -5 1000", 1, nullptr},
    {"IRR 100 110", 1,
     "finance: IRR: no answer: the flows do not change sign: a rate needs money paid and money received\n"},
    {"IRR 100", 1,
     "finance: IRR: no answer: the flows do not change sign: a rate needs money paid and money received\n"},
    {"MIRR 100 110 0.1 0.1", 1, nullptr},
    {"PRICE 2025-01-20 2030-11-15 0.05 -2 100 2", 1, nullptr},
    {"DURATION 2025-01-20 2030-11-15 0.05 1e17 2", 1, nullptr},
    {"DISC 2025-01-30 2025-01-31 97 100", 1, nullptr},
    {"RECEIVED 2025-01-01 2025-07-01 100 2", 1, nullptr},
    {"PRICEMAT 2025-01-01 2026-01-01 2024-07-01 0.05 -1", 1, nullptr},
    {"TBILLEQ 20000 20400 1", 1, nullptr},

    // wrong usage
    {"PTM 1 2 3", 2, "finance: no calculation is called 'PTM' (did you mean PMT?)\ntry: finance list\n"},
    {"PMTT 1 2 3", 2, "finance: no calculation is called 'PMTT' (did you mean PMT?)\ntry: finance list\n"},
    {"WHATEVER 1", 2, "finance: no calculation is called 'WHATEVER'\ntry: finance list\n"},
    {"-100 1", 2, "finance: no option is called -100\ntry: finance help\n"},
    {"--modul x PMT 1 2 3", 2, "finance: no option is called --modul\ntry: finance help\n"},
    {"PMT 1 2 3 --module x", 2, "finance: options come before the name: --module\ntry: finance help\n"},
    {"PMT 1 2", 2, "finance: PMT: too few arguments: no pv\ntry: finance help PMT\n"},
    {"PMT 1 2 3 4 1 6", 2, "finance: PMT: too many arguments, from '6' on\ntry: finance help PMT\n"},
    {"PMT 1 2 3 typ=1", 2, "finance: PMT: no argument is called 'typ' (did you mean type?)\ntry: finance help PMT\n"},
    {"PMT rate=1 2 3", 2,
     "finance: PMT: '2' follows a named argument and needs a name as well\ntry: finance help PMT\n"},
    {"PMT 1 2x 3", 2, "finance: PMT: argument 2 (nper): '2x' is not a number\ntry: finance help PMT\n"},
    {"PMT 1 2 1,234", 2, "finance: PMT: argument 3 (pv): '1,234' is not a number\ntry: finance help PMT\n"},
    {"IRR", 2, "finance: IRR: too few arguments: no flows\ntry: finance help IRR\n"},
    {"XNPV 0.1 1 2 3", 2, "finance: XNPV: values and dates do not pair up\ntry: finance help XNPV\n"},
    {"XIRR 1,2 0,1,2", 2, "finance: XIRR: values and dates do not pair up: 2 and 3 values\ntry: finance help XIRR\n"},
    {"COUPNCD 2025-02-30 2030-11-15 2", 2,
     "finance: COUPNCD: argument 1 (settlement): '2025-02-30' is not a date: year-month-day as in 2008-02-15, or days "
     "since 1960-01-01\ntry: finance help COUPNCD\n"},
    {"list all", 2, "finance: list takes no argument\ntry: finance help all\n"},
    {"help XYZ", 2, "finance: no calculation is called 'XYZ'\ntry: finance list\n"},
    {"help PMT PV", 2, "finance: help takes one name\ntry: finance list\n"},
};

std::string no_answer(const std::string& name) {
    return "finance: " + name + ": no answer: " + std::string{catalogue::find(name)->failure} + '\n';
}

TEST(Command, Failures) {
    std::set<std::string> seen;
    for (const FailureCase& row : failures) {
        SCOPED_TRACE(row.arguments);
        EXPECT_TRUE(seen.insert(row.arguments).second) << "the same row twice";
        const CommandRun run = run_command(row.arguments);
        const std::string arguments = row.arguments;
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, row.error != nullptr ? row.error : no_answer(arguments.substr(0, arguments.find(' '))));
    }
}

// ---- Other jobs

TEST(Command, List) {
    const CommandRun run = run_command("list");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("Annuities and loans\n  CUMIPMT", 0), 0U);
    EXPECT_NE(run.output.find("\n\nDepreciation\n  AMORDEGRC"), std::string::npos) << run.output;
    EXPECT_EQ(run.error, "");
    std::istringstream lines{run.output};
    int calculations = 0;
    for (std::string line; std::getline(lines, line);) calculations += line.rfind("  ", 0) == 0 ? 1 : 0;
    EXPECT_EQ(calculations, std::ssize(catalogue::calculations()));
}

TEST(Command, Help) {
    const CommandRun help = run_command("help pmt");
    EXPECT_EQ(help.exit_status, 0);
    EXPECT_EQ(help.output.rfind("PMT: Level payment", 0), 0U);
    EXPECT_EQ(run_command("PMT --help").output, help.output);
    EXPECT_EQ(run_command("PMT 1 -h").output, help.output);
    const CommandRun general = run_command("help");
    EXPECT_EQ(general.exit_status, 0);
    EXPECT_EQ(general.output.rfind("Usage\n", 0), 0U);
    EXPECT_EQ(run_command("--help").output, general.output);
    EXPECT_EQ(run_command("-h").output, general.output);
}

TEST(Command, Version) {
    const CommandRun run = run_command("--version");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("finance ", 0), 0U);
    EXPECT_GT(number(run.output.substr(8)), 0.0);
    EXPECT_NE(run.output.find("\nCopyright 2026 the zelkovan authors. MIT license.\n"), std::string::npos)
        << run.output;
}

TEST(Command, ToldModule) {
    const CommandRun none = run_command("--module /nowhere/zelkovan.so PMT 1 2 3");
    EXPECT_EQ(none.exit_status, 1);
    EXPECT_EQ(none.output, "");
    EXPECT_EQ(none.error, "finance: there is no module at /nowhere/zelkovan.so\n");
    const CommandRun no_module = run_command("--module /etc/os-release PMT 1 2 3");
    EXPECT_EQ(no_module.exit_status, 1);
    EXPECT_NE(no_module.error.find("/etc/os-release"), std::string::npos) << no_module.error;
    EXPECT_EQ(run_command("--module").exit_status, 2);
}

TEST(Command, AnOutputThatCannotBeWrittenFails) {
    const CommandRun full = run_command("PMT 0.005 360 200000 >/dev/full");
    EXPECT_EQ(full.exit_status, 1);
    EXPECT_EQ(full.error, "finance: the output cannot be written: No space left on device\n");
    const CommandRun closed = run_command("PMT 0.005 360 200000 >&-");
    EXPECT_EQ(closed.exit_status, 1);
    EXPECT_EQ(closed.error, "finance: the output cannot be written: Bad file descriptor\n");
}

}  // namespace
}  // namespace finance::test
