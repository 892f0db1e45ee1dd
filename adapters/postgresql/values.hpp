// SQL values and the host's.
//
//  (1) NULL never comes here: functions are strict. A float8 NaN is a missing value as NULL is, and so is a list with one
//      among its values.
//  (2) A date is whole days since 1960-01-01; infinity is no day and is refused.
//  (3) A list is the values of an array in their order, whatever its dimensions; no longer than longest_list.
#pragma once

#include <cstddef>
#include <span>

#include "adapters/postgresql/server.hpp"

namespace finance::adapters::postgresql {

// All lists of a call together: it then ends within about half a second, and needs no more than a few hundred megabytes.
inline constexpr std::size_t longest_list = std::size_t{1} << 22U;

inline constexpr double server_day_0 = 14610.0;  // 2000-01-01 since 1960-01-01: 40 years, 10 leap days

// Of a finite date.
inline double host_day(DateADT date) { return static_cast<double>(date) + server_day_0; }

// The arguments of a call, as Row has them.
class GivenArguments {
public:
    // The letters are kind_letters of signatures.hpp.
    GivenArguments(FunctionCallInfo call, std::string_view letters, bool coded_basis);

    [[nodiscard]] bool missing() const { return missing_; }
    [[nodiscard]] std::size_t infinite_date() const { return infinite_date_; }  // its position, 1 the first; 0: none
    [[nodiscard]] bool too_long() const { return values_in_lists_ > longest_list; }  // more were not read
    [[nodiscard]] const Row& row() const { return row_; }

private:
    void read_number(std::size_t i, double number) {
        missing_ = missing_ || std::isnan(number);
        row_.numbers[i] = number;
    }
    void read_date(std::size_t i, DateADT date) {
        if (DATE_NOT_FINITE(date) && infinite_date_ == 0) infinite_date_ = i + 1;
        row_.numbers[i] = host_day(date);
    }
    void read_basis(std::size_t i, Datum value);
    void read_list(std::size_t i, char letter, Datum value);
    std::span<const double> list_of_dates(std::size_t i, const ArrayType* array);

    Row row_;
    std::size_t infinite_date_ = 0;
    std::size_t values_in_lists_ = 0;
    bool missing_ = false;
};

static_assert(std::is_trivially_destructible_v<GivenArguments>);

// A calculation's answer in SQL: NULL, a number, a date, or in the way of a reason text; every other outcome is
// reported. CALL is for NULL.
Datum answer_of(const catalogue::Calculation& calculation, const Outcome& outcome, FunctionCallInfo call,
                Way way = Way::answer);
Datum null_of(FunctionCallInfo call);
Datum text_of(const char* words);

// Their words are in the server's memory.
char* infinite_date_words(const catalogue::Calculation& calculation, std::size_t position);
[[noreturn]] void report_infinite_date(const catalogue::Calculation& calculation, std::size_t position);
char* long_list_words();
[[noreturn]] void report_long_list();

}  // namespace finance::adapters::postgresql
