#include "command/schedules/schedule.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "catalogue/text.hpp"
#include "command/argument_list.hpp"
#include "command/interruption.hpp"
#include "command/jobs.hpp"
#include "command/number_form.hpp"
#include "command/options.hpp"
#include "command/pictures/gnuplot.hpp"
#include "command/tables/table_options.hpp"
#include "command/tables/table_writer.hpp"
#include "command/text_layout.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr const char* hint = "finance help schedule";
constexpr std::int64_t longest_table = 10'000;  // lines; for a program there is no end

// ---- The request

struct Kind {
    FixedWord word;
    Schedule (*open)(Words words, const Settings& settings, const std::optional<int>& decimals);
};

constexpr std::array kinds{Kind{{"loan", loan_parameters}, loan_schedule},
                           Kind{{"depreciation", depreciation_parameters}, depreciation_schedule}};
constexpr std::array kind_words{kinds[0].word, kinds[1].word};

constexpr std::array schedule_options{
    Option{"--csv", "", "comma-separated, all digits, any number of periods"},
    json_option("the same, each period as an object on a line"),
    Option{"--digits", "N",
           "amounts rounded to N decimals, so that columns add up; a loan's last payment carries the rest",
           digits_option.range},
    Option{"--plot", "FILE", "a picture instead of a table; FILE ends in .svg or .png (gnuplot draws it)"},
};

const Kind& kind_of(Words words) {
    if (words.empty()) throw UsageError{"schedule: loan or depreciation?", hint};
    const auto* const kind = std::ranges::find(kinds, words[0], [](const Kind& one) { return one.word.word; });
    if (kind == kinds.end()) throw UsageError{"no schedule is called " + in_quotes(words[0]), hint};
    return *kind;
}

// ---- The table

// Rows go out as they are made.
Outcome stream(const Schedule& schedule, bool json, const std::optional<int>& decimals) {
    constexpr std::size_t block = 65'536;
    TableWriter writer{std::string{standard_stream}, STDIN_FILENO, ','};
    std::string text = json ? "" : csv_header(schedule.columns);
    for (std::int64_t i = 0; i < schedule.rows; ++i) {
        stop_if_interrupted();
        const Row row = schedule.next_row();
        if (row.empty()) break;
        json ? append_json(text, schedule.columns, row) : append_csv(text, schedule.columns, row, decimals);
        if (text.size() < block) continue;
        writer.write(text);
        text.clear();
    }
    writer.write(text);
    return {};
}

std::vector<Row> all_rows(std::string_view word, const Schedule& schedule) {
    if (schedule.rows > longest_table) {
        throw calls::CallRefused{"schedule " + std::string{word} + ": " + std::to_string(schedule.rows) +
                                 " periods are too many to read or to draw (more than " +
                                 std::to_string(longest_table) + "); --csv writes any number"};
    }
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(schedule.rows));
    for (std::int64_t i = 0; i < schedule.rows; ++i) {
        stop_if_interrupted();
        Row row = schedule.next_row();
        if (row.empty()) break;
        rows.push_back(std::move(row));
    }
    return rows;
}

// ---- Help

std::string calls_text() {
    std::string text;
    for (const FixedWord& word : kind_words) {
        text.append("  finance schedule ").append(word.word);
        for (const catalogue::Parameter& parameter : word.arguments) {
            const bool optional = parameter.need == catalogue::Need::optional;
            text.append(optional ? " [" : " ").append(parameter.name).append(optional ? "=...]" : "=...");
        }
        text += " [OPTION]\n";
    }
    return text;
}

std::string schedule_help() {
    return "schedule: payment tables of loans, depreciation tables\n"
           "\n" +
           calls_text() +
           "\n"
           "A loan's table has payment, interest and principal (PMT, IPMT, PPMT) of each period and the balance after\n"
           "it. Money paid is negative, money received positive; the balance begins at pv and ends at -fv. Where\n"
           "payments fall at the start (type=1) and there is a future value, a last line adds the interest of the\n"
           "last period to the balance.\n"
           "\n"
           "start=2025-01-31 adds dates: it is the day on which the first period begins. Payments are months=1 apart,\n"
           "or as many as are said, on the day of the month that start has, or the month's last: 02-28, 03-31. What\n"
           "is paid with each payment beside it, extra=100, is above 0 and ends the loan earlier.\n"
           "\n"
           "Depreciation is told by five methods side by side, each with the book value that it leaves: SLN, SYD, DB\n"
           "(month: months of the first year, 12 unless given), DDB and VDB (factor: 2 unless given), VDB with its\n"
           "switch to straight line. A first year of not 12 months adds a period for DB.\n"
           "\n"
           "Options\n" +
           option_lines(schedule_options) +
           "\n"
           "Examples\n"
           "  finance schedule loan rate=0.005 nper=360 pv=200000 --plot loan.svg\n"
           "  finance schedule loan rate=0.005 nper=360 pv=200000 start=2025-01-31 extra=100 --digits 2\n"
           "  finance schedule depreciation cost=10000 salvage=1000 life=5 month=7\n";
}

// The file that is drawn into, if one is.
std::optional<std::string_view> checked_picture(const OptionsGiven& given, bool json) {
    const auto picture = picture_file(given, "--plot");
    if (!given.help && int{given.has("--csv")} + int{picture.has_value()} + int{json} > 1) {
        throw UsageError{"schedule: --csv, --json and --plot exclude each other", hint};
    }
    return picture;
}

Outcome schedule(Words words, const Settings& settings) {
    const OptionsGiven given = read_options(schedule_options, words, {.job = schedule_job.word});
    const auto picture = checked_picture(given, settings.json);
    if (given.help) return shown_help(schedule_help());
    const Kind& kind = kind_of(given.places);
    const std::optional<int> decimals = digits_of(given, settings.digits);
    const Schedule schedule = kind.open(Words{given.places}.subspan(1), settings, decimals);
    if (given.has("--csv") || settings.json) return stream(schedule, settings.json, decimals);
    const std::vector<Row> rows = all_rows(kind.word.word, schedule);
    if (!picture) return {exit_answered, aligned_text(schedule.columns, rows, decimals), ""};
    write_picture(*picture, drawn(schedule.picture(rows), picture_format(*picture), schedule.titles));
    return {};
}

}  // namespace

constinit const Job schedule_job{
    {"schedule", "loan|depreciation NAME=VALUE...", "payment and depreciation tables", schedule_options, kind_words},
    schedule,
    schedule_help};

std::vector<host::Argument> schedule_arguments(const catalogue::Calculation& schedule, Words words,
                                               const Settings& settings) {
    try {
        return read_arguments(schedule, words, settings.variables);
    } catch (const UsageError& error) {
        throw UsageError{error.what(), hint};
    }
}

std::int64_t period_count(std::string_view schedule, double periods) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    if (periods >= 1.0 && periods <= most) return static_cast<std::int64_t>(periods);
    throw calls::CallRefused{std::string{schedule} + ": " + catalogue::plain_text(periods) +
                             " is no number of periods (1 to " + std::to_string(most) + ')'};
}

}  // namespace finance::command
