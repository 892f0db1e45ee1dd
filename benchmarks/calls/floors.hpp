// What a call costs at least: one search of the name, the library calls, and the chains of operations that wait for
// each other, written out. Each floor gives the very bits of the call that it belongs to.
//
//  (1) Dates are split and counted the shortest way that the example allows (date_floors.hpp).
//  (2) A division by a frequency of 1, 2 or 4 is a multiplication with its inverse, which is exact.
//  (3) A basis given as a word is looked for like the name, without blanks to take out.
//  (4) Nothing is checked.
#pragma once

#include <cstddef>
#include <string_view>

namespace finance::benchmarks {

struct FloorInput {
    const double* a;    // the arguments of the call, 1 the first after the name
    std::size_t flows;  // where there are any
};

using Floor = double (*)(const FloorInput& in);

// Binary search over the names of all calculations, each byte through a table of 256. The index, or how many there are.
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
