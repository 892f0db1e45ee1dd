// Rows of a block on their way through a sum or a search: what it takes of each row is formed in the lanes of the row's
// neighbours and laid down; then rows with as many terms to come go side by side, whatever rows they are.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "lanes/lanes.hpp"
#include "lanes/rows.hpp"

namespace finance {

// In which order the rows of a block go through: those of one kind, with fewer terms first, to within a few terms.
template <typename Set>
class RowOrder {
public:
    static constexpr std::size_t most_lanes = 16;  // that go at a time
    static_assert(Set::width <= most_lanes);

    // Of the rows `among`, of which there are some, those of the kind of the first.
    [[gnu::noinline]] RowOrder(const double* kinds, const double* terms, std::uint64_t among)
        : is_as_they_stand_{among == all_rows && is_same(kinds) && is_same(terms)} {
        if (is_as_they_stand_) {
            rows_ = all_rows;
            size_ = RowBlock::most_rows;
            std::iota(order_.begin(), order_.end(), std::uint8_t{0});
        } else {
            sort(kinds, terms, among);
        }
    }
    // All rows of the block: they need no order.
    [[nodiscard]] bool is_as_they_stand() const { return is_as_they_stand_; }
    [[nodiscard]] std::uint64_t rows() const { return rows_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    // Behind the last one the last one again.
    [[nodiscard]] std::size_t operator[](std::size_t i) const { return order_[i]; }

private:
    static constexpr std::uint64_t all_rows = ~std::uint64_t{0};
    static constexpr std::size_t classes = 64;
    static constexpr double terms_of_class = 2.0;

    static bool is_same(const double* figure) {
        const Lanes<Set> first{figure[0]};
        auto same = LaneTruth<Set>::of_lanes(Set::all_lanes);
        for (std::size_t row = 0; row < RowBlock::most_rows; row += Set::width) {
            same = same & (Lanes<Set>::load(figure + row) == first);
        }
        return all(same);
    }

    void sort(const double* kinds, const double* terms, std::uint64_t among) {
        const double kind = kinds[std::countr_zero(among)];
        std::array<std::uint8_t, classes + 1> ends{};
        std::array<std::uint8_t, RowBlock::most_rows> class_of;
        for (std::uint64_t left = among; left != 0; left &= left - 1) {
            const auto row = static_cast<std::size_t>(std::countr_zero(left));
            if (kinds[row] != kind) continue;
            rows_ |= std::uint64_t{1} << row;
            const double by_class = terms[row] * (1.0 / terms_of_class);
            class_of[row] = static_cast<std::uint8_t>(by_class < classes - 1 ? by_class : classes - 1);
            ++ends[class_of[row] + 1U];
        }
        for (std::size_t i = 0; i < classes; ++i) ends[i + 1] = static_cast<std::uint8_t>(ends[i + 1] + ends[i]);
        size_ = ends[classes];
        for (std::uint64_t left = rows_; left != 0; left &= left - 1) {
            const auto row = static_cast<std::size_t>(std::countr_zero(left));
            order_[ends[class_of[row]]++] = static_cast<std::uint8_t>(row);
        }
        std::fill_n(order_.begin() + size_, most_lanes, order_[size_ - 1U]);
    }

    bool is_as_they_stand_;
    std::uint64_t rows_ = 0;
    std::size_t size_ = 0;
    std::array<std::uint8_t, RowBlock::most_rows + most_lanes> order_;
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

    // solve(figures, wanted, result) for all rows laid down, those of one `kind` (a figure) at a time, by ascending `terms`
    // (another); it says which have a result. Bit r of the answer: row r has its own in results[r].
    template <typename Set, typename Solve>
    std::uint64_t solve_in_order(std::size_t kind, std::size_t terms, double* results, Solve solve) const {
        std::uint64_t answered = 0;
        for (std::uint64_t left = laid_down_; left != 0;) {
            const RowOrder<Set> order{rows_[kind].data(), rows_[terms].data(), left};
            left &= ~order.rows();
            for (std::size_t next = 0; next < order.size(); next += Set::width) {
                answered |= solve_group<Set>(order, next, results, solve);
            }
        }
        return answered;
    }

private:
    template <typename Set, typename Solve>
    std::uint64_t solve_group(const RowOrder<Set>& order, std::size_t next, double* results, Solve solve) const {
        using N = Lanes<Set>;
        FiguresOf<N> of_lanes;
        std::array<double, std::size_t{Set::width}> figure;
        for (std::size_t i = 0; i < figures; ++i) {
            if (order.is_as_they_stand()) {
                of_lanes[i] = N::load(&rows_[i][next]);
                continue;
            }
            for (std::size_t lane = 0; lane < figure.size(); ++lane) figure[lane] = rows_[i][order[next + lane]];
            of_lanes[i] = N::load(figure.data());
        }
        const std::size_t count = std::min(order.size() - next, figure.size());
        N result;
        unsigned good = solve(of_lanes, LaneTruth<Set>::of_lanes((1U << count) - 1U), result).lanes();
        result.store(figure.data());
        std::uint64_t answered = 0;
        for (; good != 0; good &= good - 1) {
            const auto lane = static_cast<std::size_t>(std::countr_zero(good));
            const std::size_t row = order[next + lane];
            results[row] = figure[lane];
            answered |= std::uint64_t{1} << row;
        }
        return answered;
    }

    std::array<std::array<double, RowBlock::most_rows>, figures> rows_;
    std::uint64_t laid_down_ = 0;
};

}  // namespace finance
