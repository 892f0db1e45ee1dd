// fin_schedule_loan(rate, nper, pv): the payments of a loan, one a row.
//
//  (1) Payment, interest and principal are PMT, IPMT and PPMT of the period; the balance is pv plus the principal so far.
//  (2) Rows are calculated as they are read.
//  (3) A null argument gives no rows.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "adapters/sqlite/sqlite_api.hpp"

namespace finance::sqlite {

class LoanRows {
public:
    static constexpr const char* name = "fin_schedule_loan";
    static constexpr const char* declaration =
        "CREATE TABLE x(period INTEGER, payment REAL, interest REAL, principal REAL, balance REAL, rate REAL HIDDEN, "
        "nper REAL HIDDEN, pv REAL HIDDEN)";

    static int plan(sqlite3_vtab& table, sqlite3_index_info& info);
    void begin(std::span<sqlite3_value*> arguments);
    [[nodiscard]] bool at_end() const { return period_ > periods_; }
    void next();
    void column(sqlite3_context* context, int i) const;
    [[nodiscard]] sqlite3_int64 number() const { return period_; }

private:
    void calculate();

    std::array<double, 3> arguments_{};  // rate, nper, pv
    std::int64_t periods_ = 0;
    std::int64_t period_ = 1;
    double payment_ = 0.0;
    double interest_ = 0.0;
    double principal_ = 0.0;
    double balance_ = 0.0;
};

}  // namespace finance::sqlite
