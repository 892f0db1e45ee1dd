// What has no answer is a gap in the curve, and told on standard error: neighbouring points in one line, with the
// reason of the first.
#include "command/pictures/plot.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

#include "calls/answer.hpp"
#include "catalogue/number_text.hpp"
#include "command/json_text.hpp"
#include "command/pictures/gnuplot.hpp"
#include "command/pictures/plot_call.hpp"
#include "command/pictures/plot_picture.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

[[noreturn]] void fail(const std::string& message) { throw UsageError{"plot: " + message, "finance help plot"}; }

// ---- The request

constexpr std::size_t usual_points = 200;
constexpr std::size_t most_points = 10'000;

struct Request {
    std::string_view call{};
    std::string_view range{};
    std::optional<std::string_view> output{};
    std::size_t points = usual_points;
    bool help = false;
};

std::size_t read_points(std::string_view text) {
    std::size_t points = 0;
    const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), points);
    if (fault != std::errc{} || stop != text.data() + text.size() || points < 2 || points > most_points) {
        fail("--points is a whole number from 2 to " + std::to_string(most_points) + ", not '" + std::string{text} +
             '\'');
    }
    return points;
}

// Whether the word at i is "--points N" or "--points=N"; i then stands on its last word.
bool take_points(Words words, std::size_t& i, Request& request) {
    constexpr std::string_view name = "--points";
    if (words[i] == name && i + 1 < words.size()) {
        request.points = read_points(words[++i]);
        return true;
    }
    if (words[i] != name && !words[i].starts_with("--points=")) return false;
    request.points = read_points(words[i].substr(std::min(words[i].size(), name.size() + 1)));
    return true;
}

Request read_request(Words words) {
    Request request;
    PictureOption output{"--output"};
    std::vector<std::string_view> rest;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--help" || words[i] == "-h") request.help = true;
        if (request.help) return request;
        if (output.take(words, i) || take_points(words, i, request)) continue;
        if (words[i].starts_with("--")) fail("no option is called " + std::string{words[i]});
        rest.push_back(words[i]);
    }
    if (rest.size() != 2) fail("a call and a range, as in 'PMT(rate, 360, 200000)' rate=0.001..0.01");
    request.call = rest[0];
    request.range = rest[1];
    request.output = output.file();
    return request;
}

// ---- The points

struct Answer {
    CurvePoint point{};
    std::string why{};  // empty where there is a value
};

std::vector<Answer> answers_of(const PlotCall& call, std::size_t most, const host::EmbeddedHost& host) {
    std::vector<Answer> answers;
    for (const double x : call.points(most)) {
        const std::vector<host::Argument> arguments = call.arguments(x);
        const host::Evaluation evaluation = host.evaluate(call.calculation().name, arguments);
        std::string reason = calls::answer_of(call.calculation(), arguments, evaluation).sentence();
        if (reason.empty() && std::isinf(evaluation.value)) reason = "the answer is infinite";
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
    std::string line = "  " + std::string{call.variable()} + '=' + text(gap.front());
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

std::string variable_label(const PlotCall& call) {
    std::string name{call.parameter().name};
    if (name != call.variable()) name = std::string{call.variable()} + ": " + name;
    return with_unit(name, call.dated() ? "date" : call.parameter().unit);
}

std::string_view result_unit(catalogue::ResultKind kind) {
    switch (kind) {
        case catalogue::ResultKind::amount:
            return "money";
        case catalogue::ResultKind::rate:
            return "fraction: 0.05 is 5 %";
        case catalogue::ResultKind::date:
            return "date";
        case catalogue::ResultKind::number:
            break;
    }
    return {};
}

CurvePicture picture_of(const PlotCall& call, const Request& request) {
    const catalogue::Calculation& calculation = call.calculation();
    const std::string name = call.result_name().empty() ? std::string{calculation.name} : call.result_name();
    return {.title = std::string{request.call} + ", " + std::string{request.range},
            .x = {variable_label(call), call.dated()},
            .y = {with_unit(name, result_unit(calculation.result)), calculation.result == catalogue::ResultKind::date}};
}

std::string script_of(const PlotCall& call, const Request& request, std::span<const Answer> answers) {
    std::vector<CurvePoint> points;
    points.reserve(answers.size());
    for (const Answer& answer : answers) points.push_back(answer.point);
    return curve_script(picture_of(call, request), points);
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
std::string picture_for_output(std::string_view script) {
    return drawn(script, isatty(STDOUT_FILENO) == 1 ? PictureFormat::characters : PictureFormat::svg);
}

}  // namespace

std::string plot_help() {
    return "plot: a calculation drawn over a range of one of its arguments\n"
           "\n"
           "  finance plot 'CALL(ARGUMENT, ...)' NAME=FIRST..LAST [--output FILE] [--points N]\n"
           "\n"
           "NAME stands in the call for the argument that changes; the ends are values of that argument, dates too.\n"
           "Where it must be whole, only whole values are taken. Points without an answer are gaps, and told on\n"
           "standard error; where no point has one, nothing is drawn. gnuplot draws.\n"
           "\n"
           "Options\n"
           "  --output FILE   ends in .svg or .png; without it SVG goes to standard output, characters to a terminal\n"
           "  --points N      how many points, 200 unless given\n"
           "  --json          the points instead of a picture on standard output, one object a line\n"
           "\n"
           "Examples\n"
           "  finance plot 'PRICE(2008-02-15, 2017-11-15, 0.0575, y, 100, 2)' y=0.01..0.12 --output price.svg\n"
           "  finance plot 'PRICE(day, 2017-11-15, 0.0575, 0.065, 100, 2)' day=2008-02-15..2012-02-15 > price.svg\n";
}

Outcome plot(Words words, const Settings& settings) {
    const Request request = read_request(words);
    if (request.help) return {exit_answered, plot_help(), ""};
    const PlotCall call{request.call, read_range(request.range)};
    const std::vector<Answer> answers = answers_of(call, request.points, settings.host.get());
    Outcome outcome{.error = gaps_text(call, answers)};
    if (settings.json) outcome.output = points_as_json(call, answers);
    if (gaps_in(answers) == answers.size()) {
        outcome.exit_status = exit_refused;
        return outcome;
    }
    if (settings.json && !request.output) return outcome;
    const std::string script = script_of(call, request, answers);
    if (request.output) {
        write_picture(*request.output, drawn(script, picture_format(*request.output)));
    } else {
        outcome.output = picture_for_output(script);
    }
    return outcome;
}

}  // namespace finance::command
