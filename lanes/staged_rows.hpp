// Rows of a block on their way through a sum or a search: what it takes of each row is formed in the lanes of the row's
// neighbours and laid down; then rows with as many terms to come go side by side, whatever rows they are.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "lanes/lanes.hpp"
#include "lanes/rows.hpp"

namespace finance {

// In which order rows go through: those of one kind, with fewer terms first, to within a few terms.
struct RowOrder {
    static constexpr std::size_t most_lanes = 16;
    using Figure = std::array<double, RowBlock::most_rows>;

    // Those of `among` that are of the kind of its first one.
    RowOrder(std::uint64_t among, const Figure& kinds, const Figure& terms);

    std::array<std::uint8_t, RowBlock::most_rows + most_lanes> at;  // behind the last row it stands again
    std::uint64_t rows = 0;
    std::size_t size = 0;
    bool is_as_they_stand;  // all rows of the block, one after the other

private:
    void sort(std::uint64_t among, const Figure& kinds, const Figure& terms);
};

template <std::size_t figures>
class StagedRows {
public:
    template <typename N>
    using FiguresOf = std::array<N, figures>;

    // Of the lanes of `good`, which begin with row `first`.
    template <typename Set>
    void lay_down(std::size_t first, LaneTruth<Set> good, const FiguresOf<Lanes<Set>>& of_lanes) {
        for (std::size_t i = 0; i < figures; ++i) {
            double* to = rows_[i].data() + first;
            select(good, of_lanes[i], Lanes<Set>::load(to)).store(to);
        }
        laid_down_ |= std::uint64_t{good.lanes()} << first;
    }

    // Of a row by itself.
    [[gnu::always_inline]] void lay_down(std::size_t row, const FiguresOf<double>& of_row) {
        for (std::size_t i = 0; i < figures; ++i) rows_[i][row] = of_row[i];
        laid_down_ |= std::uint64_t{1} << row;
    }

    // solve(figures, wanted, result) for all rows laid down, those of one `kind` (a figure) at a time, by ascending `terms`
    // (another); it says which have a result. Bit r of the answer: row r has its own in results[r].
    template <typename Set, typename Solve>
    std::uint64_t solve_in_order(std::size_t kind, std::size_t terms, double* results, Solve solve) const {
        std::uint64_t answered = 0;
        for (std::uint64_t left = laid_down_; left != 0;) {
            const RowOrder order{left, rows_[kind], rows_[terms]};
            left &= ~order.rows;
            for (std::size_t next = 0; next < order.size; next += Set::width) {
                answered |= solve_group<Set>(order, next, results, solve);
            }
        }
        return answered;
    }

private:
    template <typename Set, typename Solve>
    std::uint64_t solve_group(const RowOrder& order, std::size_t next, double* results, Solve solve) const {
        using N = Lanes<Set>;
        static_assert(Set::width <= RowOrder::most_lanes);
        FiguresOf<N> of_lanes;
        std::array<double, std::size_t{Set::width}> figure;
        for (std::size_t i = 0; i < figures; ++i) {
            if (order.is_as_they_stand) {
                of_lanes[i] = N::load(&rows_[i][next]);
                continue;
            }
            for (std::size_t lane = 0; lane < figure.size(); ++lane) figure[lane] = rows_[i][order.at[next + lane]];
            of_lanes[i] = N::load(figure.data());
        }
        const std::size_t count = std::min(order.size - next, figure.size());
        N result;
        unsigned good = solve(of_lanes, LaneTruth<Set>::of_lanes((1U << count) - 1U), result).lanes();
        result.store(figure.data());
        std::uint64_t answered = 0;
        for (; good != 0; good &= good - 1) {
            const auto lane = static_cast<std::size_t>(std::countr_zero(good));
            const std::size_t row = order.at[next + lane];
            results[row] = figure[lane];
            answered |= std::uint64_t{1} << row;
        }
        return answered;
    }

    std::array<RowOrder::Figure, figures> rows_;
    std::uint64_t laid_down_ = 0;
};

}  // namespace finance
