// Bonds in files that DuckDB itself has written, Parquet and CSV, priced as they are read. The bonds and their prices are
// those of the random calls.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>

#include "call_table.hpp"

namespace finance::test {

namespace {

class Folder {
public:
    Folder() : path_{std::filesystem::temp_directory_path() / ("zelkovan-" + std::to_string(getpid()))} {
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// Seven arguments, the basis a text, dates of our time.
std::vector<EngineCall> bonds() {
    auto calls = by_function(engine_calls())["PRICE 7 t"];
    const auto of_our_time = [](double day) { return day == std::trunc(day) && day >= 0 && day <= 50'000; };
    std::erase_if(calls, [&](const EngineCall& call) {
        return call.verdict != "answered" || !of_our_time(call.entries[0].numbers[0]) ||
               !of_our_time(call.entries[1].numbers[0]);
    });
    return calls;
}

void expect_prices(const Database& database, const CallTable& table, const std::string& source) {
    const auto answers =
        database.doubles("SELECT fin_price(settlement, maturity, rate, yield, redemption, frequency, basis) FROM " +
                         source + " ORDER BY id");
    ASSERT_EQ(answers.size(), table.calls().size());
    for (std::size_t i = 0; i < answers.size(); ++i) {
        ASSERT_TRUE(answers[i]) << source << ' ' << i;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(*answers[i]), std::bit_cast<std::uint64_t>(table.calls()[i].value))
            << source << ' ' << i;
    }
}

class DuckdbFiles : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_GT(table_.calls().size(), 50U);
        database_.run(
            "CREATE VIEW bonds AS SELECT id, DATE '1960-01-01' + c0::INTEGER settlement, DATE '1960-01-01' + "
            "c1::INTEGER maturity, c2 rate, c3 yield, c4 redemption, c5 frequency, c6 basis FROM calls");
    }

    Folder folder_;
    Database database_;
    CallTable table_{database_, bonds()};
};

TEST_F(DuckdbFiles, ParquetIsPricedAsItIsRead) {
    const std::string file = folder_.file("bonds.parquet");
    database_.run("COPY bonds TO '" + file + "' (FORMAT parquet)");
    expect_prices(database_, table_, "read_parquet('" + file + "')");
}

TEST_F(DuckdbFiles, CsvIsPricedAsItIsRead) {
    const std::string file = folder_.file("bonds.csv");
    database_.run("COPY bonds TO '" + file + "' (HEADER)");
    expect_prices(database_, table_,
                  "read_csv('" + file +
                      "', types = {'rate': 'DOUBLE', 'yield': 'DOUBLE', 'redemption': 'DOUBLE', 'frequency': 'DOUBLE', "
                      "'basis': 'VARCHAR'})");
}

TEST_F(DuckdbFiles, PricesGoIntoAFile) {
    const std::string file = folder_.file("prices.parquet");
    database_.run(
        "COPY (SELECT id, fin_price(settlement, maturity, rate, yield, redemption, frequency, basis) price "
        "FROM bonds) TO '" +
        file + "' (FORMAT parquet)");
    const auto prices = database_.doubles("SELECT price FROM '" + file + "' ORDER BY id");
    ASSERT_EQ(prices.size(), table_.calls().size());
    for (std::size_t i = 0; i < prices.size(); ++i) EXPECT_EQ(prices[i], table_.calls()[i].value) << i;
}

}  // namespace

}  // namespace finance::test
