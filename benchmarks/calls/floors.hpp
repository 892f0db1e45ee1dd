// What a call costs at least: one look-up of the name, exponentials, logarithms and powers, and the chains of operations
// that wait for each other, written out. Each floor gives the very bits of the call that it belongs to.
//
//  (1) Dates are split and counted the shortest way that the example allows (date_floors.hpp).
//  (2) A division by a frequency of 1, 2 or 4 is a multiplication with its inverse, which is exact.
//  (3) A name is found as calls find it: by its letters and length, where the host's table has the letters in order.
//  (4) A basis given as a word is compared with each keyword, without blanks to take out.
//  (5) The powers of a list of flows are formed side by side and added up in order, by the routine of the call.
//  (6) Nothing is checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cashflow/discounting.hpp"

namespace finance::benchmarks {

struct FloorInput {
    const double* a;    // the arguments of the call, 1 the first after the name
    std::size_t flows;  // where there are any
};

// Amounts from an argument on, and as many dates after them.
inline DatedFlows<double> flows_from(const FloorInput& in, std::size_t first) {
    const double* amounts = in.a + first;
    return {amounts, amounts + in.flows, static_cast<std::int64_t>(in.flows)};
}

using Floor = double (*)(const FloorInput& in);

// The row of a name in FinancialList, or how many rows there are.
std::size_t find_name(std::string_view name);

// The code of a basis, by its keyword in any case; -1 for none.
int find_basis(std::string_view keyword);

// ---- Closed forms
double floor_of_PMT(const FloorInput& in);
double floor_of_SLN(const FloorInput& in);
double floor_of_TBILLEQ(const FloorInput& in);
double floor_of_YEARFRAC(const FloorInput& in);  // of actual days
double floor_of_PRICEMAT(const FloorInput& in);

// ---- Sums
double floor_of_PRICE(const FloorInput& in);
double floor_of_DURATION(const FloorInput& in);
double floor_of_XNPV(const FloorInput& in);

// ---- Searches, with as many steps as the calls take
double floor_of_YIELD(const FloorInput& in);
double floor_of_ODDFYIELD(const FloorInput& in);
double floor_of_XIRR(const FloorInput& in);
double floor_of_IRR(const FloorInput& in);  // the first flow alone is negative

}  // namespace finance::benchmarks
