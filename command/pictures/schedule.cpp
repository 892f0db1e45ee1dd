#include "command/pictures/schedule.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "catalogue/number_text.hpp"
#include "command/pictures/gnuplot.hpp"
#include "command/tables/table_options.hpp"
#include "command/tables/table_writer.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr const char* hint = "finance help schedule";
constexpr std::int64_t longest_table = 10'000;  // lines; for a program there is no end

// ---- The request

struct Kind {
    std::string_view word;
    Schedule (*open)(Words words, const host::EmbeddedHost& host);
};

constexpr std::array kinds{Kind{"loan", loan_schedule}, Kind{"depreciation", depreciation_schedule}};

struct Request {
    const Kind* kind = nullptr;
    std::vector<std::string_view> arguments{};
    bool csv = false;
    bool help = false;
    std::optional<std::string_view> picture{};
};

const Kind& kind_named(std::string_view word) {
    const auto* const kind = std::ranges::find(kinds, word, &Kind::word);
    if (kind == kinds.end()) throw UsageError{"no schedule is called '" + std::string{word} + '\'', hint};
    return *kind;
}

// Whether the word is one of the options that are a single word.
bool take_flag(std::string_view word, Request& request) {
    if (word == "--csv") return request.csv = true;
    if (word == "--help" || word == "-h") return request.help = true;
    return false;
}

Request read_request(Words words, bool json) {
    Request request;
    std::vector<std::string_view>& rest = request.arguments;
    PictureOption plot{"--plot"};
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (take_flag(words[i], request) || plot.take(words, i)) continue;
        if (words[i].starts_with("--")) {
            throw UsageError{"schedule: no option is called " + std::string{words[i]}, hint};
        }
        rest.push_back(words[i]);
    }
    request.picture = plot.file();
    if (request.help) return request;
    if ((request.csv ? 1 : 0) + (request.picture ? 1 : 0) + (json ? 1 : 0) > 1) {
        throw UsageError{"schedule: --csv, --json and --plot exclude each other", hint};
    }
    if (rest.empty()) throw UsageError{"schedule: loan or depreciation?", hint};
    request.kind = &kind_named(rest.front());
    rest.erase(rest.begin());
    return request;
}

// ---- The table

// Rows go out as they are made.
Outcome stream(const Schedule& schedule, bool json) {
    constexpr std::size_t block = 65'536;
    TableWriter writer{std::string{standard_stream}, STDIN_FILENO, ','};
    std::string text = json ? "" : csv_header(schedule.columns);
    for (std::int64_t i = 0; i < schedule.rows; ++i) {
        const Row row = schedule.next_row();
        json ? append_json(text, schedule.columns, row) : append_csv(text, row);
        if (text.size() < block) continue;
        writer.write(text);
        text.clear();
    }
    writer.write(text);
    return {};
}

std::vector<Row> all_rows(std::string_view word, const Schedule& schedule) {
    if (schedule.rows > longest_table) {
        throw ScheduleRefused{"schedule " + std::string{word} + ": " + std::to_string(schedule.rows) +
                              " periods are too many to read or to draw (more than " + std::to_string(longest_table) +
                              "); --csv writes any number"};
    }
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(schedule.rows));
    for (std::int64_t i = 0; i < schedule.rows; ++i) rows.push_back(schedule.next_row());
    return rows;
}

}  // namespace

std::string schedule_help() {
    return "schedule: payment tables of loans, depreciation tables\n"
           "\n"
           "  finance schedule loan rate=... nper=... pv=... [fv=...] [type=...] [OPTION]\n"
           "  finance schedule depreciation cost=... salvage=... life=... [factor=...] [month=...] [OPTION]\n"
           "\n"
           "A loan's table has payment, interest and principal (PMT, IPMT, PPMT) of each period and the balance after\n"
           "it. Money paid is negative, money received positive; the balance begins at pv and ends at -fv. Where\n"
           "payments fall at the start (type=1) and there is a future value, a last line adds the interest of the\n"
           "last period to the balance.\n"
           "\n"
           "Depreciation is told by five methods side by side, each with the book value that it leaves: SLN, SYD, DB\n"
           "(month: months of the first year, 12 unless given), DDB and VDB (factor: 2 unless given), VDB with its\n"
           "switch to straight line. A first year of not 12 months adds a period for DB.\n"
           "\n"
           "Options\n"
           "  --csv         comma-separated, all digits, any number of periods; --json the same as objects\n"
           "  --plot FILE   a picture instead of a table; FILE ends in .svg or .png (gnuplot draws it)\n"
           "\n"
           "Examples\n"
           "  finance schedule loan rate=0.005 nper=360 pv=200000 --plot loan.svg\n"
           "  finance schedule depreciation cost=10000 salvage=1000 life=5 month=7\n";
}

std::int64_t period_count(std::string_view schedule, double periods) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    if (periods >= 1.0 && periods <= most) return static_cast<std::int64_t>(periods);
    throw ScheduleRefused{std::string{schedule} + ": " + catalogue::plain_text(periods) +
                          " is no number of periods (1 to " + std::to_string(most) + ')'};
}

Outcome schedule(Words words, const Settings& settings) {
    const Request request = read_request(words, settings.json);
    if (request.help) return {exit_answered, schedule_help(), ""};
    const Schedule schedule = request.kind->open(request.arguments, settings.host.get());
    if (request.csv || settings.json) return stream(schedule, settings.json);
    const std::vector<Row> rows = all_rows(request.kind->word, schedule);
    if (!request.picture) return {exit_answered, aligned_text(schedule.columns, rows), ""};
    write_picture(*request.picture, drawn(schedule.picture(rows), picture_format(*request.picture)));
    return {};
}

}  // namespace finance::command
