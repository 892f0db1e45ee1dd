#include "command/pictures/plot_picture.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>

#include "catalogue/text.hpp"
#include "command/pictures/gnuplot.hpp"

namespace finance::command {

namespace {

// ---- Dates on an axis

using namespace std::chrono;

constexpr sys_days epoch{year{1960} / January / 1};

double day_of(sys_days date) { return static_cast<double>((date - epoch).count()); }
sys_days date_of(double day) { return epoch + days{static_cast<int>(day)}; }

constexpr std::array month_steps{1, 3, 6, 12, 24, 60, 120, 240, 600, 1200, 2400, 6000, 12000, 24000};
constexpr std::array day_steps{1, 2, 7, 14};

// "2008", "2008-02" or "2008-02-15", as far as the step needs it.
Tick tick_at(double day, std::size_t characters) {
    return {day, catalogue::iso_date(day).value_or("").substr(0, characters)};
}

std::vector<Tick> month_ticks(double first, double last, int step) {
    constexpr int months_in_year = 12;
    const year_month_day begin{date_of(first)};
    const int months = static_cast<int>(begin.year()) * months_in_year + static_cast<int>(unsigned{begin.month()}) - 1;
    std::vector<Tick> ticks;
    for (int month = months - months % step;; month += step) {
        const year_month_day date{year{month / months_in_year},
                                  std::chrono::month{static_cast<unsigned>(month % months_in_year) + 1},
                                  std::chrono::day{1}};
        const double day = day_of(sys_days{date});
        if (day > last) return ticks;
        if (day >= first) ticks.push_back(tick_at(day, step % months_in_year == 0 ? 4 : 7));
    }
}

std::vector<Tick> day_ticks(double first, double last, int step) {
    std::vector<Tick> ticks;
    for (double day = std::ceil(first); day <= last; day += step) ticks.push_back(tick_at(day, 10));
    return ticks;
}

std::string ticks_command(char axis, std::span<const Tick> ticks) {
    std::string text = std::string{"set "} + axis + "tics (";
    for (const Tick& tick : ticks) {
        text.append(text.ends_with('(') ? "" : ", ")
            .append(gnuplot_string(tick.label))
            .append(" ")
            .append(gnuplot_number(tick.day));
    }
    return text + ")\n";
}

// ---- The curve

struct Extent {
    double least = 0.0, most = 0.0;
};

Extent extent_of(std::span<const CurvePoint> points) {
    bool any = false;
    Extent extent;
    for (const CurvePoint& point : points) {
        if (!std::isfinite(point.y)) continue;
        extent =
            any ? Extent{std::min(extent.least, point.y), std::max(extent.most, point.y)} : Extent{point.y, point.y};
        any = true;
    }
    return extent;
}

std::string axis_commands(char name, const PlotAxis& axis, const Extent& extent) {
    constexpr std::size_t most_dates = 8, width = 110, height = 70;  // characters
    const std::string label = title_lines(axis.label, name == 'x' ? width : height, 1).front();
    std::string text = std::string{"set "} + name + "label " + gnuplot_string(label) + '\n';
    if (axis.percent) return text + "set format " + name + " \"%.12g%%\"\n";
    if (!axis.dated) return text;
    const std::vector<Tick> ticks = date_ticks(extent.least, extent.most, most_dates);
    return ticks.empty() ? text : text + ticks_command(name, ticks);
}

// As the axis shows it.
double placed(const PlotAxis& axis, double x) {
    constexpr double hundred = 100.0;
    return axis.percent ? x * hundred : x;
}

// Points without neighbours, which no line shows.
std::vector<std::vector<double>> lone_points(const PlotAxis& axis, std::span<const CurvePoint> points) {
    const auto there = [&](std::size_t i) { return i < points.size() && std::isfinite(points[i].y); };
    std::vector<std::vector<double>> lone;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (there(i) && !there(i + 1) && (i == 0 || !there(i - 1)))
            lone.push_back({placed(axis, points[i].x), points[i].y});
    }
    return lone;
}

std::string title_command(std::string_view title) {
    constexpr std::size_t width = 95, most = 3;
    std::string text = "set title ";
    for (const std::string& line : title_lines(title, width, most)) {
        text.append(text.ends_with(' ') ? "" : R"(."\n".)").append(gnuplot_string(line));
    }
    return text + '\n';
}

}  // namespace

std::vector<Tick> date_ticks(double first, double last, std::size_t most) {
    if (!catalogue::iso_date(std::floor(first)) || !catalogue::iso_date(std::ceil(last))) return {};
    for (const int step : day_steps) {
        if ((last - first) / step < static_cast<double>(most)) return day_ticks(first, last, step);
    }
    for (const int step : month_steps) {
        std::vector<Tick> ticks = month_ticks(first, last, step);
        if (ticks.size() <= most) return ticks;
    }
    return {};
}

std::vector<std::string> title_lines(std::string_view title, std::size_t width, std::size_t most) {
    std::vector<std::string> lines;
    while (title.size() > width && lines.size() + 1 < most) {
        const std::size_t mark = title.find_last_of(" ,", width - 1);
        const std::size_t end = mark == std::string_view::npos ? width : mark + 1;
        lines.emplace_back(title.substr(0, end - (title[end - 1] == ' ' ? 1 : 0)));
        title.remove_prefix(std::min(title.find_first_not_of(' ', end), title.size()));
    }
    constexpr std::string_view more = "...";
    const bool fits = title.size() <= width;
    lines.push_back(fits ? std::string{title} : std::string{title.substr(0, width - more.size())}.append(more));
    return lines;
}

namespace {

// The halves of the way to the neighbours, which are equally far but for rounding; 1/2 where there is none.
struct Reach {
    double before = 0.5, after = 0.5;
};

Reach reach_of(std::span<const CurvePoint> points, std::size_t i) {
    if (points.size() < 2) return {};
    const double before = i > 0 ? points[i].x - points[i - 1].x : points[1].x - points[0].x;
    const double after = i + 1 < points.size() ? points[i + 1].x - points[i].x : before;
    return {before / 2.0, after / 2.0};
}

// A level for each point; lines between them rise where they meet.
std::vector<std::vector<double>> steps_of(std::span<const CurvePoint> points) {
    std::vector<std::vector<double>> rows;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Reach reach = reach_of(points, i);
        rows.push_back({points[i].x - reach.before, points[i].y});
        rows.push_back({points[i].x + reach.after, points[i].y});
    }
    return rows;
}

// None where they are not wanted.
std::vector<std::vector<double>> rows_of(const PlotAxis& axis, std::span<const CurvePoint> points, bool wanted) {
    std::vector<std::vector<double>> rows;
    for (const CurvePoint& point : points) {
        if (wanted) rows.push_back({placed(axis, point.x), point.y});
    }
    return rows;
}

std::string range_command(const PlotAxis& axis, std::span<const CurvePoint> points) {
    constexpr double most_named = 24.0;
    Extent across{placed(axis, points.front().x), placed(axis, points.back().x)};
    std::string text;
    if (axis.counted) {
        if (across.most - across.least <= most_named) text = "set xtics 1\n";
        across = {across.least - reach_of(points, 0).before, across.most + reach_of(points, points.size() - 1).after};
    }
    if (!(across.least < across.most)) return text;
    return text + "set xrange [" + gnuplot_number(across.least) + ':' + gnuplot_number(across.most) + "]\n";
}

}  // namespace

std::string curve_script(const CurvePicture& picture, std::span<const CurvePoint> points) {
    constexpr std::size_t most_marked = 40;  // beyond it points run into each other
    constexpr std::string_view marks = "points pointtype 7 pointsize 0.6 linecolor rgb '#0072b2'";
    const bool marked = points.size() <= most_marked;
    const PlotAxis& axis = picture.x;
    // Steps show every point; of a curve those that have no neighbour need a mark.
    const std::vector<std::vector<double>> apart =
        axis.counted ? rows_of(axis, points, marked) : lone_points(axis, points);
    std::string text = data_block("curve", axis.counted ? steps_of(points) : rows_of(axis, points, true)) +
                       data_block("lone", apart) + title_command(picture.title) +
                       axis_commands('x', axis, {points.front().x, points.back().x}) +
                       axis_commands('y', picture.y, extent_of(points)) + range_command(axis, points);
    text += "set rmargin 6\nset offsets 0, 0, graph 0.05, graph 0.05\nunset key\nplot $curve using 1:2 with ";
    text += marked && !axis.counted ? "linespoints pointtype 7 pointsize 0.6" : "lines";
    text += " linecolor rgb '#0072b2' linewidth 2";
    if (!apart.empty()) text.append(", $lone using 1:2 with ").append(marks);
    return text + '\n';
}

}  // namespace finance::command
