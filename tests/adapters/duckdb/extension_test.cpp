// The file itself, how it is loaded, and what it does to the process.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "database.hpp"

namespace finance::test {

namespace {

std::string field_of(const std::string& footer, std::size_t index) {
    const std::string field = footer.substr(index * 32, 32);
    return field.substr(0, field.find('\0'));
}

// Eight fields of 32 bytes and a signature of 256, as DuckDB reads them from the end of the file.
TEST(DuckdbExtension, EndsWithItsFooter) {
    std::ifstream file{ZELKOVAN_DUCKDB_EXTENSION, std::ios::binary};
    const std::string bytes{std::istreambuf_iterator<char>{file}, {}};
    ASSERT_GT(bytes.size(), 512U);
    const std::string footer = bytes.substr(bytes.size() - 512);
    const std::array<std::string, 8> expected{"", "", "", "C_STRUCT", "v" ZELKOVAN_VERSION, "v1.2.0", "linux_amd64",
                                              "4"};
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(field_of(footer, i), expected[i]) << i;
    EXPECT_TRUE(std::all_of(footer.begin() + 256, footer.end(), [](char c) { return c == '\0'; }));
}

TEST(DuckdbExtension, IsInstalledFromItsFolder) {
    const std::filesystem::path installed =
        std::filesystem::temp_directory_path() / ("zelkovan-installed-" + std::to_string(getpid()));
    const Database database{nullptr};
    database.run("SET extension_directory = '" + installed.string() + "'");
    database.run("INSTALL zelkovan FROM '" ZELKOVAN_DUCKDB_REPOSITORY "'");
    database.run("LOAD zelkovan");
    EXPECT_EQ(database.value("SELECT fin_sln(10000, 1000, 5)"), "1800.0");
    EXPECT_EQ(database.value("SELECT installed_from FROM duckdb_extensions() WHERE extension_name = 'zelkovan'"),
              ZELKOVAN_DUCKDB_REPOSITORY);
    std::filesystem::remove_all(installed);
}

TEST(DuckdbExtension, IsListedWithItsVersion) {
    const Database database;
    EXPECT_EQ(database.value("SELECT extension_version || ' ' || loaded FROM duckdb_extensions() "
                             "WHERE extension_name = 'zelkovan'"),
              "v" ZELKOVAN_VERSION " true");
}

TEST(DuckdbExtension, MayBeLoadedTwiceAndByTwoDatabases) {
    const Database one;
    const Database two;
    one.run("LOAD '" ZELKOVAN_DUCKDB_EXTENSION "'");
    for (const Database* database : {&one, &two}) {
        EXPECT_EQ(database->value("SELECT fin_sln(10000, 1000, 5)"), "1800.0");
    }
}

TEST(DuckdbExtension, OpensAgainAfterItsDatabaseWasClosed) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Database{}.value("SELECT fin_sln(10000, 1000, 5)"), "1800.0");
}

// (10000 - 1000) / life, for lives of 1 to 1000, a thousand times each: DuckDB divides as well as the module does.
constexpr const char* lives =
    "SELECT count(*) FROM range(1000000) rows(i) WHERE fin_sln(10000, 1000, i % 1000 + 1) = "
    "9000 / (i % 1000 + 1)::DOUBLE";

TEST(DuckdbExtension, AnswersAlikeInAnyNumberOfThreads) {
    const Database database;
    for (const char* threads : {"1", "4"}) {
        database.run("SET threads = " + std::string{threads});
        EXPECT_EQ(database.value(lives), "1000000") << threads;
    }
}

TEST(DuckdbExtension, ServesSeveralDatabasesAtOnce) {
    std::vector<std::string> said(4);
    {
        std::vector<std::jthread> running;
        for (std::string& answer : said) running.emplace_back([&answer] { answer = Database{}.value(lives); });
    }
    for (const std::string& answer : said) EXPECT_EQ(answer, "1000000");
}

long resident_kibibytes() {
    std::ifstream file{"/proc/self/statm"};
    long all = 0;
    long resident = 0;
    file >> all >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// What a million rows take is given back: ten more million are not to be seen. A leak of one byte a row would be 9.5 MiB.
TEST(DuckdbExtension, MemoryStaysFlat) {
    if (SANITIZED) GTEST_SKIP() << "what was freed is kept for a while";
    const Database database;
    database.run("SET threads = 1");
    const std::string price =
        "SELECT sum(fin_price(DATE '2008-02-15', DATE '2017-11-15', 0.0575, 0.05 + i * 1e-9, 100, 2, "
        "CASE WHEN i % 2 = 0 THEN 'ACTUAL' ELSE '30/360' END)) > 0 FROM range(1000000) rows(i)";
    const std::string flows = "SELECT count(fin_npv(0.1, [i, 2, NULLIF(i % 5, 0)])) FROM range(1000000) rows(i)";
    EXPECT_EQ(database.value(price), "true");
    EXPECT_EQ(database.value(flows), "800000");
    const long before = resident_kibibytes();
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(database.value(price), "true");
        EXPECT_EQ(database.value(flows), "800000");
    }
    EXPECT_LT(resident_kibibytes() - before, 4096);
}

}  // namespace

}  // namespace finance::test
