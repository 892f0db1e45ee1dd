// Bonds as columns of the module's entry: rows that go through sums and searches in another order than they stand.
#include <gtest/gtest.h>

#include <limits>
#include <string_view>
#include <vector>

#include "tests/module/answered_columns.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr std::size_t places_of_block = 64;
constexpr double settled = 17577;        // 15 February 2008
constexpr double june_2018 = 21350;      // the 15th: 21 half years
constexpr double december_2037 = 28473;  // the 15th: 60 half years
constexpr double march_2013 = 19432;     // the 15th: 21 quarters

// Three blocks and a half of bonds with other rates and yields each, all of 21 coupons but one of the second block. One of
// the third has four coupons a year.
struct Bonds {
    std::vector<double> maturity = std::vector<double>(3 * places_of_block + 32, june_2018);
    std::vector<double> frequency = std::vector<double>(maturity.size(), 2);
    std::vector<double> rate{};
    std::vector<double> given{};

    Bonds(double first, double step) {
        maturity[places_of_block + 5] = december_2037;
        maturity[2 * places_of_block + 7] = march_2013;
        frequency[2 * places_of_block + 7] = 4;
        for (std::size_t row = 0; row < maturity.size(); ++row) {
            rate.push_back(0.03 + 0.0005 * static_cast<double>(row));
            given.push_back(first + step * static_cast<double>(row));
        }
    }
};

// Bits, row by row, beside the same call alone. Behind the yield or price stand these, and the frequency.
void expect_calls(std::string_view name, const Bonds& bonds, const std::vector<double>& behind) {
    std::vector<ZelkovanColumn> columns{numbers(&settled, 0), numbers(bonds.maturity.data()),
                                        numbers(bonds.rate.data()), numbers(bonds.given.data())};
    for (const double& constant : behind) columns.push_back(numbers(&constant, 0));
    columns.push_back(numbers(bonds.frequency.data()));
    const std::size_t rows = bonds.maturity.size();
    for (const std::uint32_t instructions : instruction_sets()) {
        const Answered got = answer(name, columns, static_cast<std::int64_t>(rows), instructions);
        ASSERT_EQ(got.count, static_cast<std::int64_t>(rows)) << name;
        for (std::size_t row = 0; row < rows; ++row) {
            std::vector<Arg> arguments{settled, bonds.maturity[row], bonds.rate[row], bonds.given[row]};
            for (const double constant : behind) arguments.emplace_back(constant);
            arguments.emplace_back(bonds.frequency[row]);
            const Outcome alone = Call{name, arguments}.through_dispatcher();
            EXPECT_EQ(bits(got.results[row]), bits(alone.value)) << name << ", row " << row;
        }
    }
}

TEST(BondColumns, BlocksOfAsManyCouponsAndOthers) {
    expect_calls("PRICE", Bonds{0.02, 0.0004}, {100});
    expect_calls("YIELD", Bonds{90, 0.2}, {100});
    expect_calls("DURATION", Bonds{0.02, 0.0004}, {});
}

// Bonds of 6 % issued on a coupon date, two months before settlement and six before the first coupon; basis 30/360.
struct OddFirstColumns {
    std::vector<double> settlement;
    std::vector<double> maturity;
    std::vector<double> issue;
    std::vector<double> first_coupon;
    std::vector<double> rate;
    std::vector<double> given;
    std::vector<double> redemption;
    std::vector<double> frequency;

    OddFirstColumns(std::size_t rows, double yield_or_price)
        : settlement(rows, 17577),    // 15 February 2008
          maturity(rows, 17881),      // 15 December 2008
          issue(rows, 17515),         // 15 December 2007
          first_coupon(rows, 17698),  // 15 June 2008
          rate(rows, 0.06),
          given(rows, yield_or_price),
          redemption(rows, 100),
          frequency(rows, 2) {}
    [[nodiscard]] std::vector<ZelkovanColumn> columns() const {
        return {numbers(settlement.data()),   numbers(maturity.data()), numbers(issue.data()),
                numbers(first_coupon.data()), numbers(rate.data()),     numbers(given.data()),
                numbers(redemption.data()),   numbers(frequency.data())};
    }
};

constexpr double june_2108 = 54222;  // the 15th
constexpr double july_2108 = 54252;

TEST(BondColumns, OddFirstPeriodsAreWalkedRowByRow) {
    OddFirstColumns rows{10, 0.0};
    rows.settlement[1] = rows.issue[1];
    rows.first_coupon[2] += 1;  // on no schedule
    rows.frequency[3] = 5;      // without months
    rows.rate[4] = nan;
    rows.given[5] = -2;  // 1 + y/2 is 0
    rows.frequency[6] = 12;
    rows.maturity[7] = june_2108;
    rows.frequency[7] = 12;
    rows.maturity[8] = july_2108;
    rows.frequency[8] = 12;
    rows.given[9] = std::numeric_limits<double>::infinity();
    const OddFirstColumns prices{8, 105.0};
    for (const std::uint32_t instructions : instruction_sets()) {
        const Answered got = answer("ODDFPRICE", rows.columns(), 10, instructions);
        EXPECT_EQ(got.rows[0], 0b1011000001U) << "settled, off the schedule, without months, missing, without a factor";
        EXPECT_EQ(got.count, 4) << "1,200 coupons after the first are, 1,201 are not";
        // Undiscounted: a first coupon of 3 and a last one, less a third for two months of six, and 100.
        EXPECT_NEAR(got.results[0], 105.0, 1e-12);
        // Monthly coupons of 0.5: six of them in the first period, six and 1,200 after it, two months accrued.
        EXPECT_NEAR(got.results[6], 100.0 + 0.5 * (6 + 6 - 2), 1e-12);
        EXPECT_NEAR(got.results[7], 100.0 + 0.5 * (6 + 1200 - 2), 1e-9);
        const Answered yields = answer("ODDFYIELD", prices.columns(), 8, instructions);
        EXPECT_EQ(yields.rows[0], 0xFFU);
        EXPECT_NEAR(yields.results[7], 0.0, 1e-12);
    }
}

}  // namespace
}  // namespace finance::test
