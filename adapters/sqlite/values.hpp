// SQL values as arguments of a calculation, and answers as SQLite takes them.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters::sqlite {

// ---- Dates as SQLite has them: ISO text, or a number of days.
//
//  (1) Text is year-month-day, alone or with a time of day after a blank or a T: hh:mm, hh:mm:ss or hh:mm:ss.sss, on the
//      same clock as everything else; no time zone is read.
//  (2) A number below 2,000,000 counts days since 1960-01-01, which it does until the year 7435; any other is a Julian
//      day, which it is from the year 763 on.
//  (3) A date that has no text is answered as the number that (2) reads back as that date.

// Host days: days since 1960-01-01, a time of day as a fraction.
std::optional<double> host_days_of_text(std::string_view text);
double host_days_of_number(double number);

double number_of_host_days(double host_days);

// ---- SQL values as arguments of a calculation
//
//  (1) A number is an INTEGER, a REAL, or text that SQLite reads fully as a number.
//  (2) A date is as above; where whole days are wanted, a text with a time of day is refused.
//  (3) A basis is its keyword, or its code as a number or as text.
//  (4) Nothing is read from a blob.

inline bool is_null(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; }

// False where the value, of that type and not null, cannot be read as that parameter. Texts stay SQLite's.
bool read_argument(const catalogue::Parameter& parameter, sqlite3_value* value, int type, host::Argument& argument);
inline bool read_argument(const catalogue::Parameter& parameter, sqlite3_value* value, host::Argument& argument) {
    return read_argument(parameter, value, sqlite3_value_type(value), argument);
}

// Why read_argument refused it: "PRICE: argument 4 (yield): 'abc' is not a number".
std::string unreadable(const catalogue::Calculation& calculation, std::size_t parameter, sqlite3_value* value);

// ---- Answers, as SQLite takes them

void give_text(sqlite3_context* context, std::string_view text);
void give_error(sqlite3_context* context, std::string_view sentence);
void give_sentence(sqlite3_context* context, std::string_view sentence);  // null where it is empty

// The value, or null; a date is ISO text where it has one.
void give_answer(sqlite3_context* context, const catalogue::Calculation& calculation, std::optional<double> value);

// Does the work that SQLite asked for; what it throws becomes the statement's error.
template <typename Work>
void or_error(sqlite3_context* context, Work work) noexcept {
    try {
        work();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& fault) {
        sqlite3_result_error(context, fault.what(), -1);
    }
}

}  // namespace finance::adapters::sqlite
