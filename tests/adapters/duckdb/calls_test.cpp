// Random calls of every function, from the embedded host's own verdicts on them: the same bits, or the same sentence.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "call_table.hpp"

namespace finance::test {

namespace {

using catalogue::ResultKind;

constexpr double host_day_of_1970 = 3653;          // 1960, 1964 and 1968 are leap years
constexpr double last_day_of_duckdb = 2147483646;  // of either side of 1970

bool beyond_dates(const EngineCall& call) {
    return call.calculation->result == ResultKind::date && call.verdict == "answered" &&
           std::abs(call.value - host_day_of_1970) > last_day_of_duckdb;
}

// Days that DATE and INTEGER both hold.
bool has_plain_dates(const EngineCall& call) {
    bool any = false;
    for (std::size_t i = 0; i < call.entries.size(); ++i) {
        if (!is_dated(call.calculation->parameters[i].kind)) continue;
        any = true;
        const auto& days = call.entries[i].numbers;
        if (!std::ranges::all_of(days, [](double x) { return std::abs(x) < 1e9 && x == std::trunc(x); })) return false;
    }
    return any;
}

std::uint64_t bits(double x) { return std::bit_cast<std::uint64_t>(x); }

// A date as the day of its number: a date has no zero with a sign.
void expect_answer(const EngineCall& call, const std::optional<double>& answer, const std::string& sql) {
    ASSERT_EQ(answer.has_value(), call.verdict == "answered") << sql;
    if (!answer) return;
    if (call.calculation->result == ResultKind::date) {
        ASSERT_EQ(*answer, call.value) << sql;
    } else {
        ASSERT_EQ(bits(*answer), bits(call.value)) << sql;
    }
}

// In SQL an argument that is no list has a value.
bool can_be_said(const EngineCall& call) {
    for (std::size_t i = 0; i < call.entries.size(); ++i) {
        const bool list = is_list(call.calculation->parameters[i].kind);
        if (!list && !call.entries[i].is_text && call.entries[i].numbers.empty()) return false;
    }
    return true;
}

// The numbers of the table are those of the draws.
void expect_bits_kept(const Database& database, const CallTable& table) {
    for (std::size_t i = 0; i < table.calls()[0].entries.size(); ++i) {
        if (sql_types(table.calls()[0])[i] != "DOUBLE") continue;
        const auto kept = database.doubles("SELECT c" + std::to_string(i) + " FROM calls ORDER BY id");
        ASSERT_EQ(kept.size(), table.calls().size());
        for (std::size_t row = 0; row < kept.size(); ++row) {
            ASSERT_EQ(bits(kept[row].value()), bits(table.calls()[row].entries[i].numbers.at(0)));
        }
    }
}

// fin_price(...) -> fin_try_price(...)
std::string in_way(const std::string& way, const std::string& call) { return "fin_" + way + '_' + call.substr(4); }

// NULL where there is an answer; of one that is missing no more is known than how the sentence begins.
void expect_reasons(const Database& database, const CallTable& table, const std::string& call) {
    const Table reasons = database.query("SELECT " + call + " FROM calls ORDER BY id");
    ASSERT_EQ(reasons.error, "") << call;
    ASSERT_EQ(reasons.rows.size(), table.calls().size()) << call;
    for (std::size_t i = 0; i < reasons.rows.size(); ++i) {
        const EngineCall& made = table.calls()[i];
        const auto& reason = reasons.rows[i].at(0);
        ASSERT_EQ(reason.has_value(), made.verdict != "answered") << call << " row " << i;
        if (!reason) continue;
        if (made.sentence.empty()) {
            EXPECT_TRUE(reason->starts_with(std::string{made.calculation->name} + ": ")) << *reason;
        } else {
            EXPECT_EQ(*reason, made.sentence) << call;
        }
    }
}

// Answered and missing calls of one function, in one query.
std::size_t compare_answers(const Database& database, std::vector<EngineCall> calls, bool dates_as_date) {
    if (calls.empty()) return 0;
    const CallTable table{database, std::move(calls)};
    expect_bits_kept(database, table);
    const bool date = table.calls()[0].calculation->result == ResultKind::date;
    const std::string call = table.call(dates_as_date);
    const std::string sql =
        "SELECT " + (date ? "CAST(" + call + " - DATE '1960-01-01' AS DOUBLE)" : call) + " FROM calls ORDER BY id";
    const auto answers = database.doubles(sql);
    EXPECT_EQ(answers.size(), table.calls().size()) << sql;
    for (std::size_t i = 0; i < answers.size(); ++i) expect_answer(table.calls()[i], answers[i], sql);
    const std::string differ = in_way("try", call) + " IS DISTINCT FROM " + call;
    EXPECT_EQ(database.value("SELECT count(*) FILTER (WHERE " + differ + ") FROM calls"), "0") << call;
    expect_reasons(database, table, in_way("why", call));
    return answers.size();
}

std::string said_of(duckdb_prepared_statement statement) {
    duckdb_result result{};
    const bool failed = duckdb_execute_prepared(statement, &result) == DuckDBError;
    std::string said = failed ? sentence_of(duckdb_result_error(&result)) : "no error";
    duckdb_destroy_result(&result);
    return said;
}

// Refused calls of one function, one after the other; together they are all NULL under TRY.
std::size_t compare_refusals(const Database& database, std::vector<EngineCall> calls) {
    if (calls.empty()) return 0;
    const CallTable table{database, std::move(calls)};
    EXPECT_EQ(database.value("SELECT count(TRY(" + table.call() + ")) FROM calls"), "0") << table.call();
    EXPECT_EQ(database.value("SELECT count(" + in_way("try", table.call()) + ") FROM calls"), "0") << table.call();
    expect_reasons(database, table, in_way("why", table.call()));
    std::string parameters;
    for (const std::string& type : sql_types(table.calls()[0])) {
        parameters.append(parameters.empty() ? "" : ", ").append("?::" + type);
    }
    const std::string sql = "SELECT " + table.call().substr(0, table.call().find('(')) + '(' + parameters + ')';
    duckdb_prepared_statement statement = nullptr;
    EXPECT_EQ(duckdb_prepare(database.connection(), sql.c_str(), &statement), DuckDBSuccess) << sql;
    for (const EngineCall& call : table.calls()) {
        for (std::size_t i = 0; i < call.entries.size(); ++i) {
            duckdb_value value = value_of(call, i);
            EXPECT_EQ(duckdb_bind_value(statement, i + 1, value), DuckDBSuccess);
            duckdb_destroy_value(&value);
        }
        EXPECT_EQ(said_of(statement), call.sentence) << sql;
    }
    duckdb_destroy_prepare(&statement);
    return table.calls().size();
}

template <typename Condition>
std::vector<EngineCall> those(const std::vector<EngineCall>& calls, Condition condition) {
    std::vector<EngineCall> chosen;
    std::ranges::copy_if(calls, std::back_inserter(chosen), condition);
    return chosen;
}

TEST(DuckdbCalls, SameBitsAsTheEmbeddedHost) {
    const Database database;
    std::size_t compared = 0;
    std::size_t as_dates = 0;
    std::size_t all = 0;
    std::size_t beyond = 0;
    for (const auto& [function, calls] : by_function(engine_calls())) {
        const auto unrefused = those(calls, [](const auto& call) { return call.verdict != "refused"; });
        EXPECT_TRUE(std::ranges::all_of(unrefused, can_be_said));
        const auto plain = those(unrefused, [](const auto& call) { return !beyond_dates(call); });
        beyond += unrefused.size() - plain.size();
        all += unrefused.size();
        compared += compare_answers(database, plain, false);
        as_dates += compare_answers(database, those(plain, has_plain_dates), true);
    }
    EXPECT_EQ(compared, all - beyond);
    EXPECT_GT(as_dates, all / 4);
    EXPECT_LT(beyond, 100U);
    std::printf("%zu calls compared, %zu of them with DATE too; %zu answers lie beyond DuckDB's dates\n", compared,
                as_dates, beyond);
}

TEST(DuckdbCalls, SameSentencesAsTheEmbeddedHost) {
    const Database database;
    std::size_t compared = 0;
    std::size_t skipped = 0;
    std::size_t all = 0;
    for (const auto& [function, calls] : by_function(engine_calls())) {
        const auto refused = those(calls, [](const auto& call) { return call.verdict == "refused"; });
        const auto said = those(refused, can_be_said);
        all += refused.size();
        skipped += refused.size() - said.size();
        compared += compare_refusals(database, said);
    }
    EXPECT_EQ(compared, all - skipped);
    EXPECT_GT(compared, 100 * skipped);
    EXPECT_LT(skipped, 100U);
    std::printf("%zu refusals compared, %zu cannot be said\n", compared, skipped);
}

TEST(DuckdbCalls, AnswersBeyondDuckdbsDatesAreRefused) {
    const Database database;
    const auto calls = those(engine_calls(), beyond_dates);
    ASSERT_FALSE(calls.empty());
    for (const EngineCall& call : calls) {
        const CallTable table{database, {call}};
        const std::string said = database.value("SELECT " + table.call() + " FROM calls");
        EXPECT_NE(said.find("since 1960-01-01, is no date of DuckDB's"), said.npos) << said;
        EXPECT_EQ(database.value("SELECT " + in_way("try", table.call()) + " FROM calls"), "NULL");
        EXPECT_EQ(database.value("SELECT " + in_way("why", table.call()) + " FROM calls"), said);
    }
}

}  // namespace

}  // namespace finance::test
