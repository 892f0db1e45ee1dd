// What has no answer is a gap in the curve, and told on standard error: neighbouring points in one line, with the
// reason of the first.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "calls/answer.hpp"
#include "calls/meant.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/interruption.hpp"
#include "command/jobs.hpp"
#include "command/json_text.hpp"
#include "command/options.hpp"
#include "command/pictures/gnuplot.hpp"
#include "command/pictures/plot_call.hpp"
#include "command/pictures/plot_picture.hpp"
#include "command/text_layout.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::size_t usual_points = 200;

constexpr std::array plot_options{
    Option{"--output",
           "FILE",
           "ends in .svg or .png; without it SVG goes to standard output, characters to a terminal",
           {},
           "-o"},
    Option{"--points", "N", "how many points, 200 unless given", {2, 10'000}},
    json_option("the points instead of a picture on standard output, one object a line"),
};

PlotCall call_of(Words written) {
    if (written.size() == 2) return {written[0], read_range(written[1])};
    throw UsageError{"plot: a call and a range, as in 'PMT(rate, 360, 200000)' rate=0.001..0.01", "finance help plot"};
}

// ---- The points

struct Answer {
    CurvePoint point{};
    std::string why{};  // empty where there is a value
};

std::vector<Answer> answers_of(const PlotCall& call, std::size_t most, const host::EmbeddedHost& host) {
    std::vector<Answer> answers;
    for (const double x : call.points(most)) {
        stop_if_interrupted();
        const std::vector<host::Argument> arguments = call.arguments(x);
        const host::Evaluation evaluation = calls::evaluate(host, call.calculation(), arguments);
        std::string reason = calls::answer_of(host, call.calculation(), arguments, evaluation).sentence();
        answers.push_back({.point = {x, reason.empty() ? evaluation.value : std::nan("")}, .why = std::move(reason)});
    }
    return answers;
}

std::size_t gaps_in(std::span<const Answer> answers) {
    return static_cast<std::size_t>(
        std::ranges::count_if(answers, [](const Answer& answer) { return !answer.why.empty(); }));
}

// One past the gap that begins at i; i where none does.
std::size_t end_of_gap(std::span<const Answer> answers, std::size_t i) {
    while (i < answers.size() && !answers[i].why.empty()) ++i;
    return i;
}

std::string gap_line(const PlotCall& call, std::span<const Answer> gap) {
    const auto text = [&](const Answer& answer) { return catalogue::value_text(answer.point.x, call.dated()); };
    std::string line = "  " + shown(call.variable()) + '=' + text(gap.front());
    if (gap.size() > 1) line += ".." + text(gap.back()) + " (" + std::to_string(gap.size()) + " points)";
    return line + ": " + gap.front().why + '\n';
}

std::string gaps_text(const PlotCall& call, std::span<const Answer> answers) {
    constexpr std::size_t most_told = 5;
    const std::size_t gaps = gaps_in(answers);
    if (gaps == 0) return {};
    std::string text = "finance: " + std::string{call.calculation().name} + ": no answer at " + std::to_string(gaps) +
                       " of " + std::to_string(answers.size()) + " points" +
                       (gaps == answers.size() ? "; nothing is drawn\n" : "\n");
    std::size_t told = 0;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const std::size_t end = end_of_gap(answers, i);
        if (end == i) continue;
        if (++told > most_told) return text + "  and more\n";
        text += gap_line(call, answers.subspan(i, end - i));
        i = end;
    }
    return text;
}

// ---- The picture

std::string with_unit(const std::string& name, std::string_view unit) {
    return unit.empty() ? name : name + " (" + std::string{unit} + ')';
}

// "fraction a year: 0.05 is 5 %" as "percent a year".
std::string in_percent(std::string_view unit) {
    constexpr std::string_view fraction = "fraction";
    if (!unit.starts_with(fraction)) return "percent";
    return "percent" + std::string{unit.substr(fraction.size(), unit.find(':') - fraction.size())};
}

std::string variable_label(const PlotCall& call) {
    std::string name{call.parameter().name};
    if (name != call.variable()) name = std::string{call.variable()} + ": " + name;
    if (call.percent()) return with_unit(name, in_percent(call.parameter().unit));
    return with_unit(name, call.dated() ? "date" : call.parameter().unit);
}

std::string_view result_unit(catalogue::ResultKind kind) {
    constexpr std::array<std::string_view, 4> units{"", "date", "fraction: 0.05 is 5 %", "money"};
    return catalogue::item_of<catalogue::ResultKind::amount>(units, kind);
}

CurvePicture picture_of(const PlotCall& call, Words written) {
    const catalogue::Calculation& calculation = call.calculation();
    const std::string name = call.result_name().empty() ? std::string{calculation.name} : call.result_name();
    return {.title = std::string{written[0]}.append(", ").append(written[1]),
            .x = {variable_label(call), call.dated(), call.percent(), call.counted()},
            .y = {with_unit(name, result_unit(calculation.result)), calculation.result == catalogue::ResultKind::date}};
}

std::string script_of(const CurvePicture& picture, std::span<const Answer> answers) {
    std::vector<CurvePoint> points;
    points.reserve(answers.size());
    for (const Answer& answer : answers) points.push_back(answer.point);
    return curve_script(picture, points);
}

std::string points_as_json(const PlotCall& call, std::span<const Answer> answers) {
    std::string text;
    for (const Answer& answer : answers) {
        JsonText json;
        json.object().member(call.variable(), answer.point.x).member("value", answer.point.y);
        text += json.member_or_null("message", answer.why).end_object().str() + '\n';
    }
    return text;
}

// Where no file is named: for a terminal in characters, else as SVG.
std::string picture_for_output(std::string_view script, std::span<const std::string> titles) {
    return drawn(script, isatty(STDOUT_FILENO) == 1 ? PictureFormat::characters : PictureFormat::svg, titles);
}

std::string plot_help() {
    return "plot: a calculation drawn over a range of one of its arguments\n"
           "\n"
           "  finance plot 'CALL(ARGUMENT, ...)' NAME=FIRST..LAST [--output FILE] [--points N]\n"
           "\n"
           "NAME stands in the call for the argument that changes; the ends are values of that argument, dates too.\n"
           "Where it must be whole, only whole values are taken, and drawn as steps. Ends in percent make an axis in "
           "percent. Points without an answer are gaps, and told on\n"
           "standard error; where no point has one, nothing is drawn. gnuplot draws.\n"
           "\n"
           "Options\n" +
           option_lines(plot_options) +
           "\n"
           "Examples\n"
           "  finance plot 'PRICE(2008-02-15, 2017-11-15, 0.0575, y, 100, 2)' y=0.01..0.12 --output price.svg\n"
           "  finance plot 'PRICE(day, 2017-11-15, 0.0575, 0.065, 100, 2)' day=2008-02-15..2012-02-15 > price.svg\n";
}

Outcome plot(Words words, const Settings& settings) {
    const OptionsGiven given = read_options(plot_options, words, {.job = plot_job.word, .help_ends = true});
    const auto file = picture_file(given, "--output");
    if (given.help) return shown_help(plot_help());
    const PlotCall call = call_of(given.places);
    const std::vector<Answer> answers = answers_of(call, given.number("--points", usual_points), settings.host.get());
    Outcome outcome{.error = gaps_text(call, answers)};
    if (settings.json) outcome.output = points_as_json(call, answers);
    if (gaps_in(answers) == answers.size()) {
        outcome.exit_status = exit_refused;
        return outcome;
    }
    if (settings.json && !file) return outcome;
    const CurvePicture picture = picture_of(call, given.places);
    const std::string script = script_of(picture, answers);
    const std::vector<std::string> titles{picture.title, picture.y.label, picture.y.label};
    if (file) {
        write_picture(*file, drawn(script, picture_format(*file), titles));
    } else {
        outcome.output = picture_for_output(script, titles);
    }
    return outcome;
}

}  // namespace

constinit const Job plot_job{
    {"plot", "'CALL(...)' NAME=FIRST..LAST", "a calculation drawn over a range", plot_options, {}, Takes::variable},
    plot,
    plot_help};

}  // namespace finance::command
