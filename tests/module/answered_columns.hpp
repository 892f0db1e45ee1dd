// Columns as the module's entry takes them, and what it leaves.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "elementary/functions.hpp"
#include "tests/support/call.hpp"

namespace finance::test {

// The sets of instructions that the processor has.
inline std::vector<std::uint32_t> instruction_sets() {
    if (!elementary::has_wide_lanes) return {ZELKOVAN_INSTRUCTIONS_SSE2};
    return {ZELKOVAN_INSTRUCTIONS_SSE2, ZELKOVAN_INSTRUCTIONS_AVX2};
}

struct Answered {
    std::int64_t count;
    std::vector<std::uint64_t> rows;  // 64 to a word
    std::vector<double> results;
};

inline ZelkovanColumn numbers(const double* first, std::int64_t stride = sizeof(double)) {
    return {.kind = ZELKOVAN_COLUMN_NUMBERS, .reserved = 0, .first = first, .stride = stride, .starts = nullptr};
}

inline ZelkovanColumn slots(const ArgSlot* first, std::int64_t stride) {
    return {.kind = ZELKOVAN_COLUMN_SLOTS, .reserved = 0, .first = first, .stride = stride, .starts = nullptr};
}

inline Answered answer(std::string_view name, const std::vector<ZelkovanColumn>& columns, std::int64_t rows,
                       std::uint32_t instructions = ZELKOVAN_INSTRUCTIONS_BEST) {
    ensure_host();
    const auto places = static_cast<std::size_t>(rows < 1 ? 1 : rows);
    Answered answered{0, std::vector<std::uint64_t>((places + 63) / 64, ~std::uint64_t{0}),
                      std::vector<double>(places)};
    const ZelkovanColumns request{.name = name.data(),
                                  .name_length = static_cast<std::int64_t>(name.size()),
                                  .columns = columns.data(),
                                  .column_count = static_cast<std::int64_t>(columns.size()),
                                  .rows = rows,
                                  .results = answered.results.data(),
                                  .answered = answered.rows.data(),
                                  .instructions = instructions,
                                  .reserved = 0};
    answered.count = fnccols(&request);
    return answered;
}

}  // namespace finance::test
