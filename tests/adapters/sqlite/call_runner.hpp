// Lines of engine_calls.tsv as SQL: prepared once for each function and number of arguments, values bound.
//
// A value is said in several ways, by the line's number: a date as ISO text or as a number (from 2,000,000 on as a Julian
// day), a whole number as INTEGER or as REAL. What cannot be said is skipped: lists without values or of two lengths, and
// dates that are no whole half-days beyond 2,000,000.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "adapters/common/ways.hpp"
#include "tests/adapters/call_lines.hpp"
#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

class CallRunner {
public:
    explicit CallRunner(const Database& database);

    // What SQLite gives; nothing where the line cannot be said.
    std::optional<Outcome> run(const CallLine& line, adapters::Way way = adapters::Way::answer);
    // What the line says that it should be. Of the reason for a missing answer it says the beginning.
    static Outcome expected(const CallLine& line, adapters::Way way = adapters::Way::answer);

private:
    using Lists = std::vector<std::vector<SqlValue>>;  // one a list
    [[nodiscard]] static bool fill(const CallLine& line, std::vector<SqlValue>& scalars, Lists& lists);
    Statement& statement_for(const CallLine& line, adapters::Way way);
    void put_rows(const Lists& lists);

    const Database& database_;
    Statement clear_, insert_;
    std::map<std::string, Statement> statements_;
};

}  // namespace finance::test
