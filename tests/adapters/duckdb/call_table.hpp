// Calls as a table of DuckDB: column id, and a column a parameter, c0, c1, ...
#pragma once

#include <string>
#include <vector>

#include "database.hpp"
#include "engine_calls.hpp"

namespace finance::test {

// Calls of one function, at least one.
class CallTable {
public:
    CallTable(const Database& database, std::vector<EngineCall> calls);
    ~CallTable();
    CallTable(const CallTable&) = delete;
    CallTable& operator=(const CallTable&) = delete;

    [[nodiscard]] const std::vector<EngineCall>& calls() const { return calls_; }
    // "fin_price(c0, c1, ...)", dates as numbers or as DATE.
    [[nodiscard]] std::string call(bool dates_as_date = false) const;

private:
    const Database& database_;
    std::vector<EngineCall> calls_;
};

// One entry as a value of DuckDB's own; to be destroyed.
duckdb_value value_of(const EngineCall& call, std::size_t parameter);

}  // namespace finance::test
