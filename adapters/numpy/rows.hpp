// Calls over the rows of arrays. Knows nothing of Python, and runs without its lock.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// ---- The inner loop of a ufunc: a run of rows through the embedded host's batch call
//
//  (1) A row with a NaN among its arguments is a NaN, and no call is made.
//  (2) An answer that is itself missing is a NaN.
//  (3) A refused row is a NaN of its own bits, so that whoever looks at the results finds the rows again, whatever order
//      and pieces the loop was run in. So is a row whose answer does not solve its equation, or is infinite.
//  (4) A loop leaves no floating-point flags behind: what the arithmetic of a search raised is nobody's warning.

inline constexpr double missing_answer = std::bit_cast<double>(std::uint64_t{0x7FF8000000000000});
inline constexpr double refused_answer = std::bit_cast<double>(std::uint64_t{0x7FF80000005AFE01});

// A calculation with that many arguments: one ufunc.
struct Function {
    const catalogue::Calculation* calculation = nullptr;
    std::size_t arguments = 0;
};

// places and steps have an entry for each argument and one for the result; steps are in bytes, 0 for a constant.
void call_run(const Function& function, char* const* places, std::size_t rows, const std::ptrdiff_t* steps) noexcept;

// What the loops of this thread have met since it was last asked.
struct Outcome {
    std::uint64_t refused = 0;   // rows
    bool out_of_memory = false;  // some rows were not called and are NaN
};
Outcome take_outcome() noexcept;

// ---- Calculations of lists over many rows. A row's list is a stretch of one long array, so that tables, ragged lists and
// groups are called alike

// One given parameter over all rows.
struct RowValues {
    std::span<const double> values{};         // one a row, or what the lists' stretches are of
    std::span<const std::int64_t> starts{};   // of a list: each row's first value
    std::span<const std::int64_t> lengths{};  // of a list: how many they are
};

// Whether spans have an entry a row, and every stretch lies in its values.
bool fits(const catalogue::Calculation& calculation, std::span<const RowValues> parameters, std::size_t rows);

// A place in results for each row: answer, missing or refused as above. Gives how many were refused. A row with
// a NaN in it is missing without a call; one whose two lists are not equally long is refused without one.
std::size_t call_lists(const catalogue::Calculation& calculation, std::span<const RowValues> parameters,
                       std::span<double> results);

}  // namespace finance::adapters::numpy
