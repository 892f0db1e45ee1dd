#include "tests/adapters/sqlite/call_runner.hpp"

#include <array>
#include <cmath>

#include "adapters/common/engine_call.hpp"
#include "catalogue/text.hpp"

namespace finance::test {

namespace {

using adapters::Way;
using catalogue::Calculation;
using catalogue::Kind;

constexpr double first_julian_day = 2e6;
constexpr double julian_day_of_host_day_0 = 2436934.5;

std::optional<SqlValue> date(double host_days, std::size_t way) {
    const auto text = catalogue::iso_date(host_days);
    if (text && way % 2 == 0) return *text;
    if (host_days < first_julian_day) return host_days;
    const double julian_day = host_days + julian_day_of_host_day_0;
    if (julian_day - julian_day_of_host_day_0 == host_days) return julian_day;
    return {};
}

SqlValue number(double x, std::size_t way) {
    const bool whole = x == std::trunc(x) && std::abs(x) < 0x1p53 && !(x == 0.0 && std::signbit(x));
    if (whole && way % 3 == 0) return static_cast<std::int64_t>(x);
    return x;
}

std::optional<SqlValue> said(Kind kind, const std::string& word, std::size_t way) {
    const std::string rest = word.substr(2);
    if (word[0] == 't') return rest;
    return is_dated(kind) ? date(number_of_bits(rest), way) : number(number_of_bits(rest), way);
}

SqlValue answered(const Calculation& calculation, double value) {
    if (calculation.result != catalogue::ResultKind::date) return value;
    if (const auto text = catalogue::iso_date(value)) return *text;
    return value < first_julian_day ? value : value + julian_day_of_host_day_0;
}

}  // namespace

CallRunner::CallRunner(const Database& database)
    : database_{database},
      clear_{(database.execute("CREATE TEMP TABLE flows(a, b)"), database.get()), "DELETE FROM flows"},
      insert_{database.get(), "INSERT INTO flows VALUES (?1, ?2)"} {}

bool CallRunner::fill(const CallLine& line, std::vector<SqlValue>& scalars, Lists& lists) {
    for (std::size_t i = 0; i < line.parameters.size(); ++i) {
        const auto& parameter = line.calculation->parameters[i];
        const bool list = is_list(parameter.kind);
        std::vector<SqlValue> values;
        if (line.parameters[i] == "-") return false;
        for (const std::string& word : list ? split(line.parameters[i], ',') : std::vector{line.parameters[i]}) {
            const auto value = said(parameter.kind, word, line.number + values.size());
            if (!value) return false;
            values.push_back(*value);
        }
        if (list) {
            lists.push_back(std::move(values));
        } else {
            scalars.push_back(values.front());
        }
    }
    return lists.size() < 2 || lists[0].size() == lists[1].size();
}

// "SELECT fin_xirr(a, b, ?1) FROM ..."
Statement& CallRunner::statement_for(const CallLine& line, Way way) {
    constexpr std::array columns{"a", "b"};
    std::string arguments;
    std::size_t lists = 0;
    int scalars = 0;
    for (std::size_t i = 0; i < line.parameters.size(); ++i) {
        const bool list = is_list(line.calculation->parameters[i].kind);
        arguments += i > 0 ? ", " : "";
        if (list) {
            arguments += columns.at(lists++);
        } else {
            arguments.append("?").append(std::to_string(++scalars));
        }
    }
    std::string sql = "SELECT " + adapters::way_name(*line.calculation, way) + '(' + arguments + ')';
    if (lists > 0) sql += " FROM (SELECT a, b FROM flows ORDER BY rowid)";
    return statements_.try_emplace(sql, database_.get(), sql).first->second;
}

void CallRunner::put_rows(const Lists& lists) {
    clear_.run();
    for (std::size_t row = 0; row < lists[0].size(); ++row) {
        for (std::size_t i = 0; i < lists.size(); ++i) insert_.bind(static_cast<int>(i) + 1, lists[i][row]);
        insert_.run();
    }
}

std::optional<Outcome> CallRunner::run(const CallLine& line, Way way) {
    std::vector<SqlValue> scalars;
    Lists lists;
    if (!fill(line, scalars, lists)) return {};
    if (!lists.empty()) put_rows(lists);
    Statement& statement = statement_for(line, way);
    for (std::size_t i = 0; i < scalars.size(); ++i) statement.bind(static_cast<int>(i) + 1, scalars[i]);
    return statement.run();
}

Outcome CallRunner::expected(const CallLine& line, Way way) {
    if (way == Way::reason && line.verdict == "missing")
        return {.values = {std::string{line.calculation->name} + ": "}};
    if (way == Way::reason) return {.values = {line.verdict == "answered" ? SqlValue{} : SqlValue{line.answer}}};
    if (line.verdict == "refused" && way == Way::answer) return {.error = line.answer};
    if (line.verdict != "answered") return {.values = {Null{}}};
    return {.values = {answered(*line.calculation, number_of_bits(line.answer))}};
}

}  // namespace finance::test
