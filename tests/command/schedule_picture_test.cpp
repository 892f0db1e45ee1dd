// Pictures of schedules: what gnuplot is told, what it draws, what happens without it.
#include "command/pictures/schedule_picture.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;
using command::Row;

class SchedulePicture : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_schedule_" + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    [[nodiscard]] std::string drawn(const std::string& arguments, const std::string& name) const {
        const CommandRun run = run_command("schedule " + arguments + " --plot \"" + (folder_ / name).string() + "\"");
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, "");
        std::ifstream file{folder_ / name, std::ios::binary};
        return {std::istreambuf_iterator<char>{file}, {}};
    }

    fs::path folder_;
};

void expect_all(const std::string& text, const std::vector<std::string>& parts) {
    for (const std::string& part : parts) EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST_F(SchedulePicture, Svg) {
    expect_all(drawn("loan 0.01 12 1000", "it's a loan.svg"),
               {"<svg", "</svg>", "Loan: rate 0.01 per period, 12 periods, pv 1000", ">paid per period (money)<",
                ">balance (money)<", ">period<", ">principal<", ">interest<", ">balance after the payment<",
                "<title>Loan: rate 0.01 per period, 12 periods, pv 1000</title>", "<title>principal</title>",
                "<title>interest</title>", "<title>balance after the payment</title>"});
    expect_all(drawn("depreciation 10000 1000 50", "depreciation.SVG"),
               {"Depreciation: cost 10000, salvage 1000, life 50, factor 2, 12 months in the first year",
                ">depreciation (money)<", ">book value (money)<", ">SLN<", ">SYD<", ">DB<", ">DDB<", ">VDB<",
                "<title>SLN</title>", "<title>VDB book value</title>"});
}

TEST_F(SchedulePicture, Png) { EXPECT_EQ(drawn("loan 0.01 12 1000", "loan.png").substr(0, 8), "\x89PNG\r\n\x1a\n"); }

// Interest on the axis, principal on top of it; what is received below the axis.
TEST(SchedulePictureScript, WhatIsPaidStandsOnTheAxis) {
    const std::vector<Row> loan{{1, -121, -21, -100, 110}, {2, -121, -11, -110, 0}};
    expect_all(command::loan_script({.title = "it's", .opening_balance = 210}, loan),
               {"$payments << end_of_data\n0.5 21 121 \n1.5 11 121 \n2.5 11 121 \nend_of_data\n",
                "$balances << end_of_data\n0 210 \n1 110 \n2 0 \nend_of_data\n", R"(title "it\047s")"});
    const std::vector<Row> savings{{1, -100, 0, -100, -100}, {2, -100, 10, -110, -210}};
    expect_all(command::loan_script({}, savings), {"0.5 0 100 \n1.5 -10 110 \n2.5 -10 110 \n"});
}

TEST_F(SchedulePicture, AFileThatCannotBeWrittenFails) {
    const CommandRun nowhere = run_command("schedule loan 0.01 12 1000 --plot /nowhere/loan.svg");
    EXPECT_EQ(nowhere.exit_status, 1);
    EXPECT_EQ(nowhere.error, "finance: /nowhere/loan.svg cannot be written: No such file or directory\n");
    const fs::path full = folder_ / "full.svg";
    fs::create_symlink("/dev/full", full);
    const CommandRun no_room = run_command("schedule loan 0.01 12 1000 --plot '" + full.string() + "'");
    EXPECT_EQ(no_room.exit_status, 1);
    EXPECT_EQ(no_room.error, "finance: " + full.string() + " cannot be written: No space left on device\n");
}

TEST_F(SchedulePicture, WithoutGnuplotASentenceNamesThePackage) {
    const std::string path = std::getenv("PATH");
    setenv("PATH", folder_.c_str(), 1);
    const CommandRun run = run_command("schedule loan 0.01 12 1000 --plot '" + (folder_ / "loan.svg").string() + "'");
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.error,
              "finance: pictures are drawn by gnuplot, which is not installed; Debian's package is gnuplot-nox: "
              "apt-get install gnuplot-nox\n");
    EXPECT_FALSE(fs::exists(folder_ / "loan.svg"));
}

}  // namespace
}  // namespace finance::test
