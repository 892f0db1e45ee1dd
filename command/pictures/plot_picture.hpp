// How gnuplot draws a curve.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

struct PlotAxis {
    std::string label{};
    bool dated = false;    // values are days since 1960-01-01
    bool percent = false;  // 0.05 stands at 5 %
    bool counted = false;  // whole numbers: each has its value from half a step before it to half a step after it
};

struct CurvePoint {
    double x = 0.0;
    double y = 0.0;  // not finite: a gap
};

struct CurvePicture {
    std::string title{};
    PlotAxis x{}, y{};
};

// At least one point is no gap.
std::string curve_script(const CurvePicture& picture, std::span<const CurvePoint> points);

struct Tick {
    double day = 0.0;
    std::string label{};
};

// First days of years or months, or single days, whichever gives at most that many ticks from day to day. None where a
// year has not four digits.
std::vector<Tick> date_ticks(double first, double last, std::size_t most);

// Lines of at most that many characters, broken at blanks and after commas where there are any; a last one that does
// not hold the rest ends in "...".
std::vector<std::string> title_lines(std::string_view title, std::size_t width, std::size_t most);

}  // namespace finance::command
