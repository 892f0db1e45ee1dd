// Columns: blocks of rows are brought into the form that lanes read, and calculated.
//
//  (1) Columns of numbers that lie one behind the other are read where they are; others are copied, and so are the rows of
//      the last block, behind which its last row stands again.
//  (2) Slots are read as in a call. One that has no value, or is of another kind than its argument, leaves its row to a
//      single call. A word of a basis is looked up once for a run of rows with the same one.
//  (3) Lanes that are idle or take both sides of a choice raise flags of exceptions that no row raised: the caller's are
//      put back.
#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "abi/arguments.hpp"
#include "abi/basis.hpp"
#include "abi/floating_point_mode.hpp"
#include "abi/zelkovan.h"
#include "elementary/functions.hpp"
#include "module/column_list.hpp"
#include "module/column_values.hpp"
#include "module/find_calculation.hpp"
#include "module/list_columns.hpp"

namespace finance {

namespace {

constexpr double no_basis = -1.0;

// ---- A column of the request, as a block has it

class BlockColumn {
public:
    BlockColumn() = default;
    BlockColumn(const ZelkovanColumn& column, bool is_basis) : column_{&column}, is_basis_{is_basis} {}

    // The values of the rows from `first` on; takes those that are left to single calls out of `wanted`.
    const double* values(std::int64_t first, std::size_t rows, std::uint64_t& wanted) {
        const bool as_they_are = column_->kind == ZELKOVAN_COLUMN_NUMBERS && !is_basis_ &&
                                 column_->stride == sizeof(double) && rows == RowBlock::most_rows;
        if (as_they_are && is_aligned(at(first))) return static_cast<const double*>(at(first));
        if (column_->stride != 0 || !is_filled_) copy(first, rows);
        wanted &= present_;
        return copies_;
    }

private:
    [[nodiscard]] const void* at(std::int64_t row) const { return place_of(*column_, row); }

    void copy(std::int64_t first, std::size_t rows) {
        const std::size_t different = column_->stride == 0 ? 1 : rows;
        present_ = ~std::uint64_t{0};
        for (std::size_t r = 0; r < different; ++r) {
            const ColumnNumber value = value_at(at(first + static_cast<std::int64_t>(r)));
            copies_[r] = value.number;
            if (!value.present) present_ &= column_->stride == 0 ? 0 : ~(std::uint64_t{1} << r);
        }
        std::fill(copies_ + different, copies_ + RowBlock::most_rows, copies_[different - 1]);
        is_filled_ = true;
    }

    ColumnNumber value_at(const void* place) {
        if (!is_basis_) return number_in(*column_, place);
        if (column_->kind == ZELKOVAN_COLUMN_SLOTS) return {basis_of(slot_at(place)), true};
        double code = double_at(place);
        return {basis_of(number_slot(code)), true};
    }

    static ArgSlot number_slot(double& number) {
        ArgSlot slot{};
        slot.type = ZELKOVAN_TYPE_NUMERIC;
        slot.value = &number;
        return slot;
    }

    double basis_of(const ArgSlot& slot) {
        if (slot_type(slot) == ZELKOVAN_TYPE_CHARACTER) return basis_of_word(slot);
        std::int32_t basis = 0;
        return read_basis(slot, basis) ? basis : no_basis;
    }

    double basis_of_word(const ArgSlot& slot) {
        const CharacterValue word = character_value(slot);
        const bool same = word.text != nullptr && word.length > 0 && word.length == word_.length &&
                          std::memcmp(word.text, word_.text, static_cast<std::size_t>(word.length)) == 0;
        if (!same) {
            word_ = word;
            std::int32_t basis = 0;
            word_basis_ = read_basis(slot, basis) ? basis : no_basis;
        }
        return word_basis_;
    }

    const ZelkovanColumn* column_ = nullptr;
    bool is_basis_ = false;
    bool is_filled_ = false;
    std::uint64_t present_ = ~std::uint64_t{0};
    CharacterValue word_{nullptr, 0};  // the last one looked up
    double word_basis_ = no_basis;
    double copies_[RowBlock::most_rows];
};

// ---- The calculation

constexpr std::array<int, calculation_count> make_basis_positions() {
    std::array<int, calculation_count> positions{};
#define BASIS_POSITION(name, basis, ...) positions[index_of(#name)] = basis;
    FINANCE_COLUMNS(BASIS_POSITION)
    return positions;
}
constexpr std::array<int, calculation_count> basis_positions = make_basis_positions();

// What there is for a set of instructions; null where all rows are left to single calls.
struct Instructions {
    const ColumnList* columns;
    const Discounting* discounting;
};
constexpr Instructions sse2{&columns_sse2, &discounting_sse2};
constexpr Instructions avx2{&columns_avx2, &discounting_avx2};

const Instructions* instructions_of(const ZelkovanColumns& request) {
    switch (request.instructions) {
        case ZELKOVAN_INSTRUCTIONS_BEST:
            return elementary::has_wide_lanes ? &avx2 : &sse2;
        case ZELKOVAN_INSTRUCTIONS_SSE2:
            return &sse2;
        case ZELKOVAN_INSTRUCTIONS_AVX2:
            return elementary::has_wide_lanes ? &avx2 : nullptr;
        default:
            return nullptr;
    }
}

bool fits(const ZelkovanColumns& request, std::uint32_t calculation) {
    const FinancialRow& row = FinancialList[calculation];
    const std::int64_t count = request.column_count + 1;
    return count >= row.minimum_count && count <= static_cast<std::int64_t>(RowBlock::most_columns) &&
           count <= row.maximum_count;
}

// As many as a word of the answer has bits.
constexpr auto rows_of_block = static_cast<std::int64_t>(RowBlock::most_rows);

std::int64_t calculate_rows(const ZelkovanColumns& request, std::uint32_t calculation, ColumnHandler* handler) {
    const int basis = basis_positions[calculation];
    BlockColumn columns[RowBlock::most_columns];
    RowBlock block{};
    block.calculation = calculation;
    block.count = static_cast<std::size_t>(request.column_count) + 1;
    for (std::size_t i = 1; i < block.count; ++i) {
        columns[i] = {request.columns[i - 1], static_cast<int>(i) == basis};
    }
    double last_results[RowBlock::most_rows]{};
    std::int64_t answered = 0;
    for (std::int64_t first = 0; first < request.rows; first += rows_of_block) {
        block.rows = static_cast<std::size_t>(std::min(request.rows - first, rows_of_block));
        const bool whole = block.rows == RowBlock::most_rows;
        block.wanted = whole ? ~std::uint64_t{0} : (std::uint64_t{1} << block.rows) - 1;
        for (std::size_t i = 1; i < block.count; ++i) {
            block.columns[i] = columns[i].values(first, block.rows, block.wanted);
        }
        block.results = whole ? request.results + first : last_results;
        const std::uint64_t done = handler(block);
        if (!whole) std::copy_n(last_results, block.rows, request.results + first);
        request.answered[first / rows_of_block] = done;
        answered += std::popcount(done);
    }
    return answered;
}

[[gnu::noinline]] std::int64_t answer_columns(const ZelkovanColumns* request) {
    if (request->rows < 1 || request->column_count < 0) return 0;
    std::fill_n(request->answered, (request->rows - 1) / rows_of_block + 1, std::uint64_t{0});
    const Instructions* instructions = instructions_of(*request);
    const std::int32_t found = find_calculation({request->name, request->name_length});
    if (instructions == nullptr || found == unknown_calculation) return 0;
    if (has_lists(*request)) return calculate_lists(*request, found, *instructions->discounting);
    const auto calculation = static_cast<std::uint32_t>(found);
    ColumnHandler* handler = (*instructions->columns)[calculation];
    if (handler == nullptr || !fits(*request, calculation)) return 0;
    return calculate_rows(*request, calculation, handler);
}

}  // namespace

}  // namespace finance

// Puts the flags back (3): in any mode, and those that the question for the mode raises.
std::int64_t fnccols(const ZelkovanColumns* request) {
    const std::uint32_t control = _mm_getcsr();
    const std::int64_t answered = finance::in_usual_mode(finance::answer_columns, request);
    _mm_setcsr(control);
    return answered;
}
