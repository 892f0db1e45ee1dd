// `finance map`: what it leaves as it stands, and what the columns that it reads may say. Straight-line depreciation,
// (cost - salvage) / life, and a year by day counts are by hand.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

class MapColumns : public testing::Test {
protected:
    void TearDown() override { fs::remove(table_); }

    CommandRun map(const std::string& calls, const std::string& table, const std::string& options = "--quiet") const {
        std::ofstream{table_, std::ios::binary} << table;
        return run_command("map '" + calls + "' '" + table_.string() + "' " + options);
    }
    // The rows of a table with a header.
    static std::vector<std::string> rows(const std::string& output) {
        std::vector<std::string> lines;
        std::istringstream text{output};
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        lines.erase(lines.begin());
        return lines;
    }

    fs::path table_ = fs::temp_directory_path() / ("finance_map_columns_" + std::to_string(getpid()) + ".csv");
};

// The same for columns before, between and behind those that are named.
TEST_F(MapColumns, OthersPassAsTheyStand) {
    const std::vector<std::string> junk{
        "",         "abc",        "1.2.3",           "1e999",    " 5 ",    "5%%",       "2023-02-30", "\"\"", "\"a,b\"",
        "\"a\nb\"", "\"a\r\nb\"", "\"a \"\"b\"\"\"", "5\" pipe", "\"a\"x", "\"a\"x\"y", "\x01\xFF",   "\"",   "inf"};
    for (std::size_t place = 0; place < 3; ++place) {
        std::string table = place == 0 ? "j,cost,life\n" : place == 1 ? "cost,j,life\n" : "cost,life,j\n";
        std::string expected = table;
        expected.insert(expected.size() - 1, ",sln");
        for (int i = 0; i < 2000; ++i) {
            const std::string& other = junk[static_cast<std::size_t>(i) % (junk.size() - 2)];
            std::vector<std::string> fields{std::to_string(20 * i), "10"};
            fields.insert(fields.begin() + static_cast<std::ptrdiff_t>(place), other);
            std::string row = fields[0];
            row.append(",").append(fields[1]).append(",").append(fields[2]);
            table.append(row).append("\n");
            expected.append(row).append(",").append(std::to_string(2 * i)).append("\n");
        }
        const CommandRun run = map("SLN(cost, 0, life)", table);
        EXPECT_EQ(run.output, expected) << place;
        EXPECT_EQ(run.exit_status, 0);
    }
}

struct FieldCase {
    const char* field;
    const char* options;
    const char* result;  // of SLN(cost, 0, 10); "" where it is refused or missing
};

// One of each among a hundred plain rows.
constexpr FieldCase fields[] = {
    {"5", "", "0.5"},
    {"-5", "", "-0.5"},
    {"+5", "", "0.5"},
    {"5.", "", "0.5"},
    {".5", "", "0.05"},
    {" 5\t", "", "0.5"},
    {"\"5\"", "", "0.5"},
    {"5e1", "", "5"},
    {"500%", "", "0.5"},
    {"12345678901234567890", "", "1234567890123456768"},
    {"5,", "", ""},
    {"", "", ""},
    {".", "", ""},
    {"five", "", ""},
    {"5", "--missing 5", ""},
    {"5.0", "--missing 5", "0.5"},
    {"NA", "--missing NA", ""},
    {"na", "--missing NA", ""},
    {"5", "--missing NA", "0.5"},
    {"5", "--missing NA,5", ""},
    {"5", "--decimal comma", "0,5"},
    {"5.5", "--decimal comma", ""},
    {"$5", "--numbers loose", "0.5"},
    {"5", "--numbers loose", "0.5"},
    {"5", "--dates dmy", "0.5"},
    {"5", "--digits 3", "0.500"},
};

TEST_F(MapColumns, FieldsAreReadAsOptionsSay) {
    for (const FieldCase& row : fields) {
        std::string table = "cost;name\n";
        for (int i = 0; i < 100; ++i) table.append(i == 50 ? row.field : "20").append(";n\n");
        const auto lines = rows(map("SLN(cost, 0, 10)", table, std::string{"--quiet "}.append(row.options)).output);
        ASSERT_EQ(lines.size(), 100U) << row.field;
        EXPECT_EQ(lines[50], std::string{row.field}.append(";n;").append(row.result)) << row.options;
    }
}

struct BasisCase {
    const char* field;
    const char* options;
    const char* result;  // of the year 2023; a basis that is missing is 30/360
};

constexpr BasisCase bases[] = {
    {"30/360", "", "1"},
    {"ACT/360", "", "1.0138888888888888"},
    {"act/360", "", "1.0138888888888888"},
    {" ACT/360 ", "", "1.0138888888888888"},
    {"\"ACT/360\"", "", "1.0138888888888888"},
    {"2", "", "1.0138888888888888"},
    {"3", "", "1"},
    {"2.5", "", ""},
    {"", "", "1"},
    {"nonsense", "", ""},
    {"ACT/360", "--missing act/360", "1"},
    {"ACT/360", "--missing NA", "1.0138888888888888"},
    {"2", "--missing 2", "1"},
    {"2", "--missing 20", "1.0138888888888888"},
};

TEST_F(MapColumns, BasesAreWordsAndCodes) {
    for (const BasisCase& row : bases) {
        std::string table = "from,basis\n";
        for (int i = 0; i < 20; ++i) table.append("2023-01-01,").append(i == 10 ? row.field : "ACT/365").append("\n");
        const auto lines =
            rows(map("YEARFRAC(from, 2024-01-01, basis)", table, std::string{"--quiet "}.append(row.options)).output);
        ASSERT_EQ(lines.size(), 20U) << row.field;
        EXPECT_EQ(lines[10], std::string{"2023-01-01,"}.append(row.field).append(",").append(row.result))
            << row.options;
        EXPECT_EQ(lines[11], "2023-01-01,ACT/365,1");
    }
}

struct DateCase {
    const char* field;
    const char* options;
    const char* result;  // days since 1960-01-01: 23011 are 63 years of 365 days and 16 leap days, 1960 to 2020
};

constexpr DateCase dates[] = {
    {"2023-01-01", "", "23011"},
    {"23011", "", "23011"},
    {"20230101", "", ""},
    {"20230101", "--dates ymd", "23011"},
    {"2023-02-29", "", ""},
    {"2023-00-01", "", ""},
    {"2023-01-00", "", ""},
    {"2023-13-01", "", ""},
    {"0000-01-01", "", ""},
    {"2023-01-0x", "", ""},
    {"x023-01-01", "", ""},
    {"2023/01/01", "", ""},
    {"01.01.2023", "--dates dmy", "23011"},
    {"2023-01-01", "--dates dmy", "23011"},
    {"23011", "--dates dmy", ""},
    {"2023-01-01", "--missing 2023-01-01", ""},
    {"2023-01-01", "--missing 23011", "23011"},
    {"44927", "--dates sheet", "23011"},
    {"", "", ""},
};

TEST_F(MapColumns, DatesAreDaysOfTheCalendar) {
    for (const DateCase& row : dates) {
        std::string table = "a,from\n";
        for (int i = 0; i < 20; ++i) table.append("x,").append(i == 10 ? row.field : "2023-12-31").append("\n");
        const auto lines = rows(map("from + 0", table, std::string{"--quiet "}.append(row.options)).output);
        ASSERT_EQ(lines.size(), 20U) << row.field;
        EXPECT_EQ(lines[10], std::string{"x,"}.append(row.field).append(",").append(row.result)) << row.options;
        EXPECT_EQ(lines[11], "x,2023-12-31,23375");
    }
}

// Lines longer than what is written together, and lines with more results.
TEST_F(MapColumns, LongLinesHaveTheirResults) {
    std::string table = "text,cost\n";
    for (const std::size_t size : {10U, 16000U, 16300U, 16400U, 50000U, 400000U, 20U}) {
        table.append(std::string(size, 'x')).append(",20\n");
    }
    const auto lines = rows(map("SLN(cost, 0, 10)", table).output);
    ASSERT_EQ(lines.size(), 7U);
    for (const std::string& line : lines) EXPECT_TRUE(line.ends_with("x,20,2")) << line.size();

    std::string calls = "SLN(cost, 0, 10)";
    std::string results = ",2";
    for (int i = 1; i < 300; ++i) {
        calls.append(", SLN(cost, 0, 10)");
        results.append(",2");
    }
    const auto many = rows(map(calls, "cost\n20\n20\n").output);
    EXPECT_EQ(many, (std::vector<std::string>{"20" + results, "20" + results}));
}

// A row in a hundred, so that rows of many blocks of records are evaluated together.
TEST_F(MapColumns, FewRowsAreTaken) {
    std::string table = "n,cost,name\n";
    std::string expected = "n,cost,name,sln\n";
    for (int i = 0; i < 60000; ++i) {
        const std::string row = std::to_string(i % 100) + "," + std::to_string(20 * i) + (i % 7 == 0 ? ",\"a\"" : ",a");
        table.append(row).append("\n");
        if (i % 100 == 42) expected.append(row).append(",").append(std::to_string(2 * i)).append("\n");
    }
    EXPECT_EQ(map("SLN(cost, 0, 10)", table, "--quiet --where 'n = 42'").output, expected);
}

TEST_F(MapColumns, StatusesStandBesideAnswers) {
    const CommandRun run = map("SLN(cost, 0, 10) as a, COUPNCD(from, 2030-01-15, 2) as b",
                               "cost,from\n20,2024-01-01\nx,2024-01-01\n20,2024-07-20", "--quiet --status");
    EXPECT_EQ(rows(run.output),
              (std::vector<std::string>{"20,2024-01-01,2,,2024-01-15,",
                                        "x,2024-01-01,,argument 1 (cost): 'x' is not a number,2024-01-15,",
                                        "20,2024-07-20,2,,2025-01-15,"}));
    EXPECT_TRUE(run.output.ends_with("2025-01-15,\n"));
}

}  // namespace
}  // namespace finance::test
