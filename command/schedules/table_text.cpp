#include "command/schedules/table_text.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "catalogue/text.hpp"
#include "command/json_text.hpp"
#include "command/number_form.hpp"

namespace finance::command {

namespace {

constexpr std::size_t gap = 2;
constexpr double widest_plain_amount = 1e15;  // beyond it two decimals are no longer held by a double

// ---- Cells

int decimals_for(double largest) {
    constexpr int least = 2, most = 17, places_after_the_first_digit = 2;
    if (!(largest > 0.0)) return least;
    const double leading = std::floor(std::log10(largest));  // the place of the first digit
    return static_cast<int>(std::clamp(places_after_the_first_digit - leading, double{least}, double{most}));
}

double largest_amount(std::span<const Column> columns, std::span<const Row> rows) {
    double largest = 0.0;
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].amount && std::isfinite(row[i])) largest = std::max(largest, std::abs(row[i]));
        }
    }
    return largest;
}

std::string amount_text(double amount, int decimals) {
    if (!(std::abs(amount) < widest_plain_amount)) return catalogue::shortest_text(amount);
    return rounded_text(amount, decimals);
}

std::string cell_text(const Column& column, double value, int decimals) {
    if (std::isnan(value)) return {};
    return column.amount ? amount_text(value, decimals) : catalogue::value_text(value, column.date);
}

Row totals(std::span<const Column> columns, std::span<const Row> rows) {
    Row sums;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        double sum = 0.0;
        for (const Row& row : rows) sum += std::isnan(row[i]) ? 0.0 : row[i];
        sums.push_back(columns[i].summed ? sum : std::nan(""));
    }
    return sums;
}

// ---- Lines

using Line = std::vector<std::string>;

std::vector<std::size_t> widths_of(std::span<const Line> lines) {
    std::vector<std::size_t> widths(lines.front().size(), 0);
    for (const Line& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
    }
    return widths;
}

void append_line(std::string& text, const Line& line, std::span<const std::size_t> widths) {
    std::string joined;
    for (std::size_t i = 0; i < line.size(); ++i) {
        joined.append(i > 0 ? gap : 0, ' ').append(widths[i] - line[i].size(), ' ').append(line[i]);
    }
    text.append(joined, 0, joined.find_last_not_of(' ') + 1) += '\n';
}

// The groups' names, each with a rule as far as its columns go.
std::string group_line(std::span<const Column> columns, std::span<const std::size_t> widths) {
    std::string line;
    for (std::size_t i = 0; i < columns.size();) {
        const std::string_view group = columns[i].group;
        std::size_t width = 0;
        std::size_t end = i;
        for (; end < columns.size() && columns[end].group == group; ++end) width += widths[end] + (end > i ? gap : 0);
        std::string name{group};
        if (!group.empty()) name += ' ';
        name.resize(std::max(width, name.size()), group.empty() ? ' ' : '-');
        line.append(i > 0 ? gap : 0, ' ').append(name);
        i = end;
    }
    return line + '\n';
}

}  // namespace

std::string aligned_text(std::span<const Column> columns, std::span<const Row> rows, const std::optional<int>& told) {
    const int decimals = told ? *told : decimals_for(largest_amount(columns, rows));
    std::vector<Line> lines(1);
    for (const Column& column : columns) lines.front().emplace_back(column.heading);
    const auto add = [&](const Row& row) {
        Line& line = lines.emplace_back();
        for (std::size_t i = 0; i < columns.size(); ++i) line.push_back(cell_text(columns[i], row[i], decimals));
    };
    for (const Row& row : rows) add(row);
    add(totals(columns, rows));
    lines.back().front() = "total";
    const std::vector<std::size_t> widths = widths_of(lines);
    const bool grouped = std::ranges::any_of(columns, [](const Column& column) { return !column.group.empty(); });
    std::string text = grouped ? group_line(columns, widths) : "";
    for (const Line& line : lines) append_line(text, line, widths);
    return text;
}

std::string csv_header(std::span<const Column> columns) {
    std::string text;
    for (const Column& column : columns) text.append(text.empty() ? "" : ",").append(column.name);
    return text += '\n';
}

void append_csv(std::string& text, std::span<const Column> columns, const Row& row,
                const std::optional<int>& decimals) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (i > 0) text += ',';
        const bool all_digits = !decimals || !columns[i].amount;
        if (std::isnan(row[i])) continue;
        text += all_digits ? catalogue::value_text(row[i], columns[i].date) : rounded_text(row[i], *decimals);
    }
    text += '\n';
}

void append_json(std::string& text, std::span<const Column> columns, const Row& row) {
    JsonText json;
    json.object();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        json.key(columns[i].name);
        columns[i].date ? json.text(catalogue::value_text(row[i], true)) : json.number(row[i]);
    }
    text += json.end_object().str() + '\n';
}

}  // namespace finance::command
