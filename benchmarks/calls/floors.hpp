// What a call costs at least: one search of the name, the library calls, and the chains of operations that wait for
// each other, written out. Each floor gives the very bits of the call that it belongs to.
//
//  (1) Dates are not counted: what they come to (periods, fractions of one, days) is handed over.
//  (2) A division by a frequency of 1, 2 or 4 is a multiplication with its inverse, which is exact.
//  (3) Nothing is checked.
#pragma once

#include <cstddef>
#include <string_view>

namespace finance::benchmarks {

struct FloorInput {
    const double* a;  // the arguments of the call, 1 the first after the name
    const double* q;  // what the dates come to; each floor says what
};

using Floor = double (*)(const FloorInput& in);

// Binary search over the names of all calculations, each byte through a table of 256. The index, or how many there are.
std::size_t find_name(std::string_view name);

// ---- Closed forms
double floor_of_PMT(const FloorInput& in);
double floor_of_SLN(const FloorInput& in);
double floor_of_TBILLEQ(const FloorInput& in);
double floor_of_YEARFRAC(const FloorInput& in);  // q: days, common years, leap years
double floor_of_PRICEMAT(const FloorInput& in);  // q: days from issue to maturity, to it from settlement, between them

// ---- Sums. q: coupons, fraction of the period remaining, fraction accrued
double floor_of_PRICE(const FloorInput& in);
double floor_of_DURATION(const FloorInput& in);
double floor_of_XNPV(const FloorInput& in);  // q: flows

// ---- Searches, with as many steps as the calls take
double floor_of_YIELD(const FloorInput& in);      // q: as of PRICE
double floor_of_ODDFYIELD(const FloorInput& in);  // q: coupons after the first, periods to it, accrued, first period's
double floor_of_XIRR(const FloorInput& in);       // q: flows
double floor_of_IRR(const FloorInput& in);        // q: flows; the first alone is negative

}  // namespace finance::benchmarks
