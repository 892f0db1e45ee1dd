#include "command/pictures/schedule_picture.hpp"

#include <cstddef>
#include <string>
#include <vector>

#include "command/pictures/gnuplot.hpp"

namespace finance::command {

namespace {

// Both panels begin at the same place, whatever their numbers' widths.
constexpr std::string_view panels =
    "set lmargin 14\n"
    "set format y '%.9g'\n"
    "set rmargin 4\n"
    "set offsets 0, 0, graph 0.05, 0\n"
    "set style fill solid 1.0 noborder\n";

std::string multiplot(const std::string& title) {
    return std::string{panels} + "set multiplot layout 2,1 title " + gnuplot_string(title) + ".\"\\n\"\n";
}

// From before the first period to the end of the last; few periods are all named.
std::string period_range(double last) {
    constexpr double most_named = 24.0;
    return "set xrange [0:" + gnuplot_number(last + 0.5) + "]\n" + (last <= most_named ? "set xtics 1\n" : "");
}

// ---- Loan

// Steps are drawn over the whole period, from half a period before its number to half a period after it. What is paid
// is positive; interest stands on the axis, principal on top of it unless one is received.
std::string payment_steps(std::span<const Row> rows) {
    std::vector<Row> steps;
    for (const Row& row : rows) {
        const double interest = 0.0 - row[2];
        const double principal = 0.0 - row[3];
        const bool stacked = (interest < 0.0) == (principal < 0.0) || interest == 0.0 || principal == 0.0;
        steps.push_back({row[0] - 0.5, interest, stacked ? interest + principal : principal});
    }
    steps.push_back({rows.back()[0] + 0.5, steps.back()[1], steps.back()[2]});
    return data_block("payments", steps);
}

std::string balances(double opening, std::span<const Row> rows) {
    std::vector<Row> points{{rows.front()[0] - 1.0, opening}};
    for (const Row& row : rows) points.push_back({row[0], row[4]});
    return data_block("balances", points);
}

}  // namespace

std::string loan_script(const LoanPicture& picture, std::span<const Row> rows) {
    return payment_steps(rows) + balances(picture.opening_balance, rows) + multiplot(picture.title) +
           period_range(rows.back()[0]) +
           "set ylabel 'paid per period (money)'\n"
           "unset xlabel\n"
           "plot $payments using 1:3 with fillsteps linecolor rgb '#56b4e9' title 'principal', "
           "$payments using 1:2 with fillsteps linecolor rgb '#e69f00' title 'interest'\n"
           "set ylabel 'balance (money)'\n"
           "set xlabel 'period'\n"
           "plot $balances using 1:2 with lines linecolor rgb '#0072b2' linewidth 2 title 'balance after the payment'\n"
           "unset multiplot\n";
}

// ---- Depreciation

namespace {

struct Stroke {
    const char* colour;
    const char* dashes;
    const char* width;
    const char* point;
};

// Methods that agree for a while stay apart: the later one is thinner or dashed.
constexpr std::array<Stroke, depreciation_methods.size()> strokes{{
    {"#555555", "1", "2", "5"},
    {"#009e73", "1", "2", "7"},
    {"#e69f00", "1", "2", "9"},
    {"#56b4e9", "1", "5", "11"},
    {"#a3195b", "2", "2", "13"},
}};

std::string curves(std::string_view data, std::size_t first_column, bool with_points) {
    std::string text = "plot ";
    for (std::size_t i = 0; i < depreciation_methods.size(); ++i) {
        const Stroke& stroke = strokes[i];
        text.append(i > 0 ? ", " : "").append(data).append(" using 1:").append(std::to_string(first_column + i));
        text.append(with_points ? " with linespoints pointsize 0.7 pointtype " : " with lines");
        text.append(with_points ? stroke.point : "").append(" linecolor rgb '").append(stroke.colour);
        text.append("' dashtype ").append(stroke.dashes).append(" linewidth ").append(stroke.width);
        text.append(" title ").append(gnuplot_string(depreciation_methods[i]));
    }
    return text + '\n';
}

}  // namespace

std::string depreciation_script(const DepreciationPicture& picture, std::span<const Row> rows) {
    constexpr std::size_t most_marked = 40;  // periods: beyond it points run into each other
    constexpr std::size_t amount_column = 2;
    constexpr std::size_t value_column = amount_column + depreciation_methods.size();
    const bool with_points = rows.size() <= most_marked;
    std::vector<Row> from_cost{Row(1 + 2 * depreciation_methods.size(), picture.cost)};
    from_cost.front().front() = 0.0;
    from_cost.insert(from_cost.end(), rows.begin(), rows.end());
    return data_block("amounts", rows) + data_block("values", from_cost) + multiplot(picture.title) +
           period_range(rows.back()[0]) +
           "set ylabel 'depreciation (money)'\n"
           "unset xlabel\n" +
           curves("$amounts", amount_column, with_points) +
           "unset key\n"
           "set ylabel 'book value (money)'\n"
           "set xlabel 'period'\n" +
           curves("$values", value_column, with_points) + "unset multiplot\n";
}

}  // namespace finance::command
