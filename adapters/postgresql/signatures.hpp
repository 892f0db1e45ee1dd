// How a calculation looks in SQL.
//
//  (1) A function is called fin_ and the calculation's name; its arguments are the catalogue's, in snake case.
//  (2) Dates are date, a basis is text, lists are arrays; every other argument is float8, a whole number too, so that 2.5
//      is refused by the calculation's own rule instead of being rounded by a cast.
//  (3) An optional argument whose default is a number has it as its SQL default. A basis has none: postgres_fdw sends no
//      call with a text constant to a shard, so that a basis left out must be one argument less.
//  (4) A basis may be float8 too, its code, for the same reason.
//  (5) A calculation of a list is also an aggregate, a row a flow: where no list of dates puts the flows in order, by one
//      more argument, `at`, or by ORDER BY.
//  (6) fin_try_ and fin_why_ of a function have its arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "adapters/common/ways.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::postgresql {

using adapters::Way;

// No calculation may have more parameters: calls are laid out on the stack.
inline constexpr std::size_t most_parameters = 16;

std::string snake_case(std::string_view name);  // "financeRate" -> "finance_rate"
// Of the C function: "zelkovan_fin_price", "zelkovan_fin_try_price".
std::string entry_name(const catalogue::Calculation& calculation, Way way = Way::answer);
std::string sql_usage(const catalogue::Calculation&);  // "fin_mirr(flows, finance_rate, reinvest_rate)"

// What an entry reads, a letter a parameter: n a number, d a date, b a basis, N a list of numbers, D a list of dates. One
// word beside the call itself, where the catalogue has its parameters far apart.
std::string kind_letters(const catalogue::Calculation& calculation);

struct SqlArgument {
    std::string name{};
    std::string type{};
    std::string default_value{};  // empty: none
};

struct Signature {
    std::vector<SqlArgument> arguments{};
    bool coded_basis = false;  // its basis is float8
};

// The function's overloads.
std::vector<Signature> signatures(const catalogue::Calculation& calculation);

// ---- Aggregates

enum class Order : std::uint8_t {
    by_dates,   // the calculation's own list of dates
    by_number,  // at bigint
    by_date,    // at date
    of_rows,    // as they come: for ORDER BY
};

struct AggregateSignature {
    std::vector<SqlArgument> arguments{};
    Order order = Order::by_dates;
};

// One list of numbers, at most one of dates, and nothing else but numbers.
bool has_aggregate(const catalogue::Calculation& calculation);
std::vector<AggregateSignature> aggregate_signatures(const catalogue::Calculation& calculation);

// ---- The extension's script and the list of its C functions, from the catalogue

std::string function_script(const catalogue::Calculation& calculation, Way way = Way::answer);
std::string aggregate_script(const catalogue::Calculation& calculation);  // empty where there is none
std::string whole_script();

// A line for each function and each aggregate, in C++.
std::string entry_list();

}  // namespace finance::adapters::postgresql
