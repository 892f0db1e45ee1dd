// The catalogue's example of each calculation, said in SQL, against its printed result.
#include <gtest/gtest.h>

#include <charconv>
#include <sstream>

#include "adapters/common/engine_call.hpp"
#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

namespace {

using catalogue::Calculation;
using catalogue::Kind;

std::string literal(Kind kind, const std::string& text) {
    const bool dashed = text.size() == 10 && text[4] == '-';
    return (is_dated(kind) && dashed) || kind == Kind::basis ? '\'' + text + '\'' : text;
}

// "values" is a keyword.
std::string quoted(const catalogue::Parameter& parameter) { return '"' + std::string{parameter.name} + '"'; }

struct Said {
    std::string arguments{};  // of the call
    std::string columns{};    // of the rows
    std::vector<std::string> rows{};
};

// A list becomes a column: "-1000,300" the first entry of the first and of the second row.
void add_list(Said& said, const catalogue::Parameter& parameter, const std::string& text) {
    std::istringstream stream{text};
    std::size_t row = 0;
    for (std::string value; std::getline(stream, value, ','); ++row) {
        if (row == said.rows.size()) said.rows.emplace_back();
        said.rows[row].append(said.rows[row].empty() ? "" : ", ").append(literal(parameter.kind, value));
    }
    said.columns.append(said.columns.empty() ? "" : ", ").append(quoted(parameter));
}

Said said_in_sql(const Calculation& calculation) {
    Said said;
    std::istringstream stream{std::string{calculation.example.arguments}};
    std::size_t next = 0;
    for (std::string word; stream >> word; ++next) {
        const std::size_t equals = word.find('=');
        const auto& parameter = calculation.parameters[next];
        const std::string text = equals == word.npos ? word : word.substr(equals + 1);
        if (equals != word.npos) {
            EXPECT_EQ(word.substr(0, equals), parameter.name) << calculation.name;
        }
        if (is_list(parameter.kind)) add_list(said, parameter, text);
        said.arguments.append(next > 0 ? ", " : "");
        said.arguments += is_list(parameter.kind) ? quoted(parameter) : literal(parameter.kind, text);
    }
    return said;
}

std::string sql(const Calculation& calculation) {
    const Said said = said_in_sql(calculation);
    std::string text = "SELECT " + adapters::function_name(calculation) + '(' + said.arguments + ')';
    if (said.rows.empty()) return text;
    std::string rows;
    for (const std::string& row : said.rows) rows.append(rows.empty() ? "(" : "), (").append(row);
    return "WITH flow(" + said.columns + ") AS (VALUES " + rows + ")) " + text + " FROM flow";
}

TEST(SqliteExamples, GiveTheirPrintedResults) {
    const Database database;
    for (const Calculation& calculation : catalogue::calculations()) {
        const SqlValue answer = database.value(sql(calculation));
        const std::string_view printed = calculation.example.result;
        if (const auto* text = std::get_if<std::string>(&answer)) {
            EXPECT_EQ(*text, printed) << sql(calculation);
        } else {
            double expected = 0.0;
            EXPECT_EQ(std::from_chars(printed.data(), printed.data() + printed.size(), expected).ptr,
                      printed.data() + printed.size());
            EXPECT_EQ(answer, SqlValue{expected}) << sql(calculation);
        }
    }
}

}  // namespace

}  // namespace finance::test
