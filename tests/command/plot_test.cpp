// `finance plot`: the range, the points, the axes; the built command and its gaps.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/text.hpp"
#include "command/pictures/gnuplot.hpp"
#include "command/pictures/plot_call.hpp"
#include "command/pictures/plot_picture.hpp"
#include "command/usage_error.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;
using command::CurvePoint;
using command::PlotCall;

double day(const char* iso) { return catalogue::host_date(iso).value(); }

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

std::vector<double> points(const char* call, const char* range, std::size_t most) {
    return PlotCall{call, command::read_range(range)}.points(most);
}

// ---- Ranges and points

TEST(PlotCall, Range) {
    const command::Range range = command::read_range("y=-1e-3..+2.5%");
    EXPECT_EQ(range.name, "y");
    EXPECT_EQ(range.first, "-1e-3");
    EXPECT_EQ(range.last, "+2.5%");
}

TEST(PlotCall, Points) {
    EXPECT_EQ(points("PMT(r, 12, 100)", "r=1..2", 5), (std::vector<double>{1, 1.25, 1.5, 1.75, 2}));
    EXPECT_EQ(points("PMT(r, 12, 100)", "r=0.1..30%", 2), (std::vector<double>{0.1, 0.3}));
    EXPECT_EQ(points("PMT(r, 12, 100)", "r=-1e308..1e308", 3), (std::vector<double>{-1e308, 0, 1e308}));
    EXPECT_EQ(points("PMT(0.1, n, 100)", "n=2..5", 200), (std::vector<double>{2, 3, 4, 5})) << "whole";
    EXPECT_EQ(points("PMT(0.1, n, 100)", "n=0.5..2.5", 200), (std::vector<double>{1, 2}));
    EXPECT_EQ(points("PMT(0.1, n, 100)", "n=0.5..1.5", 200), (std::vector<double>{1}));
    EXPECT_EQ(points("PMT(0.1, n, 100)", "n=0..1000", 3), (std::vector<double>{0, 500, 1000}));
}

TEST(PlotCall, DatesAreWholeDays) {
    EXPECT_EQ(points("COUPNUM(day, 2017-11-15, 2)", "day=2008-02-28..2008-03-01", 200),
              (std::vector<double>{day("2008-02-28"), day("2008-02-29"), day("2008-03-01")}));
}

TEST(PlotCall, TheVariableIsANamedArgumentOrAValueOfAList) {
    const PlotCall named{"PMT(nper=12, pv=x, rate=0.1)", command::read_range("x=1..2")};
    EXPECT_EQ(named.parameter().name, "pv");
    const std::vector<host::Argument> arguments = named.arguments(7.0);
    ASSERT_EQ(arguments.size(), 3U);
    EXPECT_EQ(arguments[0].number(), 0.1);
    EXPECT_EQ(arguments[2].number(), 7.0);
    const PlotCall formulas{"PMT(x/4, 6*2, max(x, 2)^2, x)", command::read_range("x=1..2")};
    EXPECT_EQ(formulas.arguments(3.0)[0].number(), 0.75);
    EXPECT_EQ(formulas.arguments(3.0)[1].number(), 12.0);
    EXPECT_EQ(formulas.arguments(3.0)[2].number(), 9.0);
    EXPECT_EQ(formulas.arguments(3.0)[3].number(), 3.0);
    const PlotCall twice{"IRR(-100, x, x)", command::read_range("x=1..2")};
    EXPECT_EQ(twice.arguments(60.0)[1].number(), 60.0);
    EXPECT_EQ(twice.arguments(60.0)[2].number(), 60.0);
}

// ---- The picture's pieces

TEST(Gnuplot, TextsStandForThemselves) {
    EXPECT_EQ(command::gnuplot_string("PMT(0.01, n_1, -1e+3), n=1..9"), "\"PMT(0.01, n_1, -1e+3), n=1..9\"");
    EXPECT_EQ(command::gnuplot_string("'\"`\\$@{}"), R"("\047\042\140\134\044\100\173\175")");
    EXPECT_EQ(command::gnuplot_string("a\nset output\t.\x7f.\xc3.\xa4"), R"("a\077set output\077.\077.\077.\077")");
}

TEST(Gnuplot, TextsBetweenTags) { EXPECT_EQ(command::xml_text("a<b & \"c\">\n\xc3"), "a&lt;b &amp; \"c\"&gt;??"); }

TEST(Gnuplot, DataBlocks) {
    const std::vector<std::vector<double>> rows{{1, 0.1}, {2, std::nan("")}, {3, HUGE_VAL}};
    EXPECT_EQ(command::data_block("d", rows), "$d << end_of_data\n1 0.1 \n2 NaN \n3 NaN \nend_of_data\n");
}

std::string labels(const char* first, const char* last, std::size_t most = 8) {
    std::string text;
    for (const command::Tick& tick : command::date_ticks(day(first), day(last), most)) text += tick.label + ' ';
    return text;
}

TEST(DateTicks, WholeYearsMonthsOrDays) {
    EXPECT_EQ(labels("2008-02-15", "2012-02-15"), "2008-07 2009-01 2009-07 2010-01 2010-07 2011-01 2011-07 2012-01 ");
    EXPECT_EQ(labels("2008-02-15", "2018-02-15"), "2010 2012 2014 2016 2018 ");
    EXPECT_EQ(labels("2008-01-01", "2014-12-31"), "2008 2009 2010 2011 2012 2013 2014 ");
    EXPECT_EQ(labels("2008-02-27", "2008-03-01"), "2008-02-27 2008-02-28 2008-02-29 2008-03-01 ");
    EXPECT_EQ(labels("2008-02-01", "2008-02-28"), "2008-02-01 2008-02-08 2008-02-15 2008-02-22 ");
    EXPECT_EQ(labels("0001-01-01", "9999-12-31"), "2000 4000 6000 8000 ");
    EXPECT_EQ(command::date_ticks(day("2008-02-15"), 4e6, 8).size(), 0U) << "a year of five digits";
    for (const command::Tick& tick : command::date_ticks(day("1950-02-15"), day("1951-02-15"), 8)) {
        EXPECT_EQ(catalogue::iso_date(tick.day), tick.label + "-01");
    }
}

TEST(TitleLines, AreBrokenAndCut) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(command::title_lines("PMT(r, 12)", 10, 2), (Lines{"PMT(r, 12)"}));
    EXPECT_EQ(command::title_lines("PMT(r, 12), r=1..2", 11, 2), (Lines{"PMT(r, 12),", "r=1..2"}));
    EXPECT_EQ(command::title_lines("12,34,56,78", 6, 3), (Lines{"12,34,", "56,78"}));
    EXPECT_EQ(command::title_lines("abcdefghijkl", 5, 2), (Lines{"abcde", "fg..."}));
}

TEST(PlotCall, RangesInPercentAndCounts) {
    EXPECT_TRUE((PlotCall{"PMT(r, 12, 100)", command::read_range("r=0.01..2%")}).percent());
    EXPECT_FALSE((PlotCall{"PMT(r, 12, 100)", command::read_range("r=0.01..0.02")}).percent());
    EXPECT_TRUE((PlotCall{"PMT(0.1, n, 100)", command::read_range("n=1..2")}).counted());
    EXPECT_FALSE((PlotCall{"PMT(r, 12, 100)", command::read_range("r=1..2")}).counted());
    EXPECT_FALSE((PlotCall{"COUPNUM(d, 2017-11-15, 2)", command::read_range("d=2008-02-28..2008-03-01")}).counted());
}

TEST(CurveScript, AnAxisInPercentIsLabelledSo) {
    const std::vector<CurvePoint> curve{{0.25, 1.0}, {0.5, 2.0}};
    const command::CurvePicture picture{.x = {.percent = true}};
    const std::string script = command::curve_script(picture, curve);
    EXPECT_TRUE(contains(script, "$curve << end_of_data\n25 1 \n50 2 \nend_of_data\n")) << script;
    EXPECT_TRUE(contains(script, "set format x \"%.12g%%\"\n")) << script;
    EXPECT_TRUE(contains(script, "set xrange [25:50]\n")) << script;
    EXPECT_FALSE(contains(command::curve_script({}, curve), "%%"));
}

TEST(CurveScript, WholeNumbersAreStepsFromHalfwayToHalfway) {
    const std::vector<CurvePoint> curve{{3, 1.0}, {4, std::nan("")}, {5, 2.0}};
    const command::CurvePicture picture{.x = {.counted = true}};
    const std::string script = command::curve_script(picture, curve);
    EXPECT_TRUE(
        contains(script, "$curve << end_of_data\n2.5 1 \n3.5 1 \n3.5 NaN \n4.5 NaN \n4.5 2 \n5.5 2 \nend_of_data\n"))
        << script;
    EXPECT_TRUE(contains(script, "$lone << end_of_data\n3 1 \n4 NaN \n5 2 \nend_of_data\n")) << "marks";
    EXPECT_TRUE(contains(script, "set xtics 1\nset xrange [2.5:5.5]\n")) << script;
    const std::string far = command::curve_script(picture, std::vector<CurvePoint>{{0, 1.0}, {500, 2.0}});
    EXPECT_TRUE(contains(far, "-250 1 \n250 1 \n250 2 \n750 2 \n")) << far;
    EXPECT_TRUE(contains(command::curve_script(picture, std::vector<CurvePoint>{{7, 1.0}}), "6.5 1 \n7.5 1 \n"));
}

TEST(CurveScript, LonePointsAreMarked) {
    std::vector<CurvePoint> curve;
    for (int i = 0; i < 50; ++i) curve.push_back({double(i), i == 3 || i > 5 ? 1.0 : std::nan("")});
    const std::string script = command::curve_script({}, curve);
    EXPECT_TRUE(contains(script, "$lone << end_of_data\n3 1 \nend_of_data\n")) << script;
    EXPECT_TRUE(contains(script, "$lone using 1:2 with points"));
    curve[4].y = 1.0;
    EXPECT_FALSE(contains(command::curve_script({}, curve), "with points"));
}

// ---- The built command

constexpr const char* price = "plot 'PRICE(2008-02-15, 2017-11-15, 0.0575, y, 100, 2)' ";

// The price at 6.5 % is the closed form at 60 digits.
TEST(Plot, PointsAreTheCalculations) {
    const CommandRun run = run_command(std::string{price} + "y=0.065..0.07 --points 2 --json");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("{\"y\":0.065,\"value\":94.6343616213", 0), 0U) << run.output;
    EXPECT_EQ(std::ranges::count(run.output, '\n'), 2);
}

TEST(Plot, SvgOnStandardOutput) {
    const CommandRun run = run_command(std::string{price} + "y=0.01..0.12");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.error, "");
    for (const char* part : {"<svg", "</svg>", ">PRICE(2008-02-15, 2017-11-15, 0.0575, y, 100, 2), y=0.01..0.12<",
                             ">y: yield (fraction a year: 0.05 is 5 %)<", ">PRICE (money)<", ">0.02<",
                             "<title>PRICE(2008-02-15, 2017-11-15, 0.0575, y, 100, 2), y=0.01..0.12</title>",
                             "<title>PRICE (money)</title>"}) {
        EXPECT_TRUE(contains(run.output, part)) << part;
    }
}

TEST(Plot, PercentAndSteps) {
    const CommandRun percent = run_command(std::string{price} + "y=1%..12%");
    for (const char* part : {">y: yield (percent a year)<", ">2%<", ">12%<"}) {
        EXPECT_TRUE(contains(percent.output, part)) << part;
    }
    const CommandRun steps = run_command("plot 'PMT(0.5%, n, 1000)' n=3..6");
    for (const char* part : {">n: nper (periods)<", ">3<", ">6<"}) EXPECT_TRUE(contains(steps.output, part)) << part;
    EXPECT_FALSE(contains(steps.output, ">3.5<"));
}

TEST(Plot, DatesOnBothAxes) {
    const CommandRun run = run_command("plot 'COUPNCD(settlement, 2017-11-15, 2)' settlement=2008-02-15..2012-02-15");
    EXPECT_EQ(run.exit_status, 0);
    for (const char* part : {">settlement (date)<", ">COUPNCD (date)<", ">2008-07<", ">2012-01<"}) {
        EXPECT_TRUE(contains(run.output, part)) << part;
    }
}

TEST(Plot, WhatHasNoAnswerIsAGapAndSaid) {
    const CommandRun run = run_command("plot 'PMT(r, 12, 1000)' r=-1..1 --points 5");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_TRUE(contains(run.output, "</svg>"));
    EXPECT_EQ(run.error,
              "finance: PMT: no answer at 3 of 5 points\n  r=-1..0 (3 points): argument 1 (rate): -1 is not above 0\n");
    const CommandRun nothing = run_command("plot 'PMT(r, 12, 1000)' r=-2..-1 --points 2");
    EXPECT_EQ(nothing.exit_status, 1);
    EXPECT_EQ(nothing.output, "");
    EXPECT_EQ(nothing.error,
              "finance: PMT: no answer at 2 of 2 points; nothing is drawn\n"
              "  r=-2..-1 (2 points): argument 1 (rate): -2 is not above 0\n");
}

TEST(Plot, ManyGapsAreNotAllTold) {
    const CommandRun run =
        run_command("plot 'PMT(0.01, 12, 1000, type=t)' t=-1..3 --json");  // flags above 1 are refused
    EXPECT_EQ(run.error,
              "finance: PMT: no answer at 2 of 5 points\n  t=2..3 (2 points): argument 5 (type): 2 is above 1\n");
    const CommandRun gappy = run_command("plot 'DOLLARDE(1.5, d)' d=-1..1 --json");
    EXPECT_EQ(gappy.error,
              "finance: DOLLARDE: no answer at 2 of 3 points\n"
              "  d=-1..0 (2 points): argument 2 (denominator): -1 is below 1\n");
}

// A name of the user's own choice reaches the script as text only.
TEST(Plot, NamesAreNoCommands) {
    const fs::path folder = fs::temp_directory_path() / ("finance_plot_" + std::to_string(getpid()));
    fs::create_directories(folder);
    const fs::path trace = folder / "trace";
    std::ofstream{folder / "calls"} << "PMT(r, 12, 100) as \"'; system('touch " << trace.string() << "') ; `touch "
                                    << trace.string() << "` $(touch " << trace.string() << ") <b>&\nsystem('touch "
                                    << trace.string() << "')\"";
    const CommandRun run = run_command("plot \"$(cat '" + (folder / "calls").string() + "')\" r=0.1..0.2");
    EXPECT_EQ(run.exit_status, 0) << run.error;
    EXPECT_FALSE(fs::exists(trace));
    EXPECT_TRUE(contains(run.output, "&lt;b>&amp;")) << "escaped in SVG";
    fs::remove_all(folder);
}

struct FailureCase {
    const char* arguments;
    const char* error;
};

constexpr FailureCase failures[] = {
    {"", "a call and a range, as in 'PMT(rate, 360, 200000)' rate=0.001..0.01"},
    {"'PMT(r, 12, 1)'", "a call and a range, as in 'PMT(rate, 360, 200000)' rate=0.001..0.01"},
    {"'PMT(r, 12, 1)' r=1", "'r=1' is no range: name=first..last, as in y=0.01..0.12"},
    {"'PMT(r, 12, 1)' 1=1..2", "'1' cannot be a variable: letters, digits and _, the first no digit"},
    {"'PMT(r, 12, 1)' nan=1..2", "'nan' cannot be a variable: letters, digits and _, the first no digit"},
    {"'PMT(r, 12, 1)' r=2..1", "r: a range goes upwards, not from 2 to 1"},
    {"'PMT(r, 12, 1)' r=1..", "r: a range goes from number to number, not ''"},
    {"'PMT(r, 12, 1)' r=1..inf", "r: a range goes from number to number, not 'inf'"},
    {"'PMT(r, 12, 1)' r=1..x", "r: 'x' is not a number"},
    {"'PMT(0.1, n, 1)' n=0.2..0.8", "n: there is no whole number in the range"},
    {"'PMT(0.1, 12, 1)' r=1..2", "PMT has no variable 'r'"},
    {"'PMT(0.1, nprr, 1)' nper=1..2", "PMT has no variable 'nper' (did you mean nprr?)"},
    {"'PMT(r, x, 1)' r=1..2", "PMT: 'x' is neither a value nor the variable"},
    {"'PMT(r, 12, 1), PMT(r, 12, 2)' r=1..2", "one call is drawn at a time"},
    {"'PMT(r, 12, 1' r=1..2", "',' or ')' is expected at the end of the calls"},
    {"'PMT(r, 12, 1)' r=1..2 --points 1", "--points is a whole number from 2 to 10000, not '1'"},
    {"'PMT(r, 12, 1)' r=1..2 --points=x", "--points is a whole number from 2 to 10000, not 'x'"},
    {"'PMT(r, 12, 1)' r=1..2 --point 7", "no option is called --point"},
};

TEST(Plot, WrongUsage) {
    for (const FailureCase& row : failures) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(std::string{"plot "} + row.arguments);
        EXPECT_EQ(run.exit_status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, std::string{"finance: plot: "} + row.error + "\ntry: finance help plot\n");
    }
}

TEST(Plot, Help) {
    const CommandRun run = run_command("help plot");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("plot: a calculation drawn", 0), 0U);
    EXPECT_EQ(run_command("plot --help").output, run.output);
}

TEST(Plot, AnOutputThatCannotBeWrittenFails) {
    const CommandRun full = run_command("plot 'PMT(r, 12, 1)' r=1..2 >/dev/full");
    EXPECT_EQ(full.exit_status, 1);
    EXPECT_EQ(full.error, "finance: the output cannot be written: No space left on device\n");
}

}  // namespace
}  // namespace finance::test
