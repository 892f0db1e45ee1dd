// The two table functions: what each row is made of; table_function.hpp makes virtual tables of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "adapters/sqlite/sqlite_api.hpp"
#include "calls/loan_schedule.hpp"

namespace finance::adapters::sqlite {

// fin_functions: what the catalogue says of each function, one a row.
class CatalogueRows {
public:
    static constexpr const char* name = "fin_functions";
    static const char* const declaration;

    static int plan(sqlite3_vtab& table, sqlite3_index_info& info);
    void begin(std::span<sqlite3_value*> arguments);
    [[nodiscard]] bool at_end() const;
    void next() { ++row_; }
    void column(sqlite3_context* context, int i) const;
    [[nodiscard]] sqlite3_int64 number() const { return static_cast<sqlite3_int64>(row_) + 1; }

private:
    std::size_t row_ = 0;
};

// fin_schedule_loan(rate, nper, pv): the payments of a loan, one a row.
//
//  (1) Rows are those of calls/loan_schedule.hpp, calculated as they are read.
//  (2) A null argument gives no rows.
class LoanRows {
public:
    static constexpr const char* name = "fin_schedule_loan";
    static constexpr const char* declaration =
        "CREATE TABLE x(period INTEGER, payment REAL, interest REAL, principal REAL, balance REAL, rate REAL HIDDEN, "
        "nper REAL HIDDEN, pv REAL HIDDEN)";

    static int plan(sqlite3_vtab& table, sqlite3_index_info& info);
    void begin(std::span<sqlite3_value*> arguments);
    [[nodiscard]] bool at_end() const { return row_.period > periods_; }
    void next();
    void column(sqlite3_context* context, int i) const;
    [[nodiscard]] sqlite3_int64 number() const { return row_.period; }

private:
    std::array<double, 3> arguments_{};  // rate, nper, pv
    std::optional<calls::LoanSchedule> loan_{};
    calls::LoanRow row_;
    std::int64_t periods_ = 0;
};

}  // namespace finance::adapters::sqlite
