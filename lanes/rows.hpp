// How rows of columns are read: the takers of abi/arguments.hpp for several rows at once.
//
//  (1) A row is plain when every argument is there, keeps its rule at its first reading, and is a usual one: whole numbers
//      exactly so and below 2^31, days of the years 3 to 9999. Rows that are not plain leave, and are made as single calls:
//      what is refused, flagged, logged or rare is decided in one place.
//  (2) What decides how a row is calculated (a basis, a frequency, a payment timing) is one value for all lanes: those that
//      have another wait for a later pass.
//  (3) A lane that has left goes on with figures that do no harm.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "lanes/lanes.hpp"

namespace finance {

// Up to so many rows, by columns of doubles: an argument of FINANCE each, the name's place left empty.
struct RowBlock {
    static constexpr std::size_t most_rows = 64;
    static constexpr std::size_t most_columns = 10;

    std::uint32_t calculation;  // its index, by which the members of a family may tell themselves apart
    const double* columns[most_columns];
    std::size_t count;     // of columns, the name's with them
    std::size_t rows;      // behind them up to most_rows the last one again
    std::uint64_t wanted;  // bit r: row r may be plain
    double* results;       // most_rows
};

template <typename Set>
class Rows {
public:
    using Number = Lanes<Set>;
    using Truth = LaneTruth<Set>;
    using Outcome = Truth;  // the rows that are answered

    // The rows from `first` on that are wanted.
    Rows(const RowBlock& block, std::size_t first, Truth wanted) : block_{block}, first_{first}, live_{wanted} {}

    // -- required
    bool number(int i, Number& value) {
        const Number x = column(i);
        return keep(!is_missing(x), x, value);
    }
    bool above(int i, double bound, Number& value) {
        const Number x = column(i);
        return keep(x > bound, x, value);
    }
    bool positive(int i, Number& value) { return above(i, 0.0, value); }
    bool whole(int i, Number& value) {
        const Number x = column(i);
        return keep(is_whole(x), x, value);
    }
    bool count(int i, Number& value) {
        const Number x = column(i);
        return keep(is_whole(x) & (x >= 1.0), x, value);
    }
    // At least lowest and at most highest, which are below 2^31 in size; 1 is to be one of them.
    bool whole_between(int i, double lowest, double highest, Number& value) {
        const Number x = column(i);
        return keep((x >= lowest) & (x <= highest) & (truncated(x) == x), x, value);
    }
    bool whole_from_1(int i, Number& value) { return count(i, value); }
    bool whole_from_1(int i, std::int32_t& value) {
        Number x;
        return count(i, x) && one_for_all(x, value);
    }

    // -- optional
    void optional_number(int i, Number& value) const {
        if (!given(i)) return;
        const Number x = column(i);
        value = select(is_missing(x), value, x);
    }
    [[nodiscard]] Truth both_missing(int first, int second) const {
        if (!given(second)) return Truth::of_lanes(0);
        const Number x = column(first);
        const Number y = column(second);
        return is_missing(x) & is_missing(y);
    }
    bool optional_exact(int i, std::int32_t& value) {
        if (!given(i)) return true;
        const Number x = column(i);
        const Number k = select(is_missing(x), Number{static_cast<double>(value)}, x);
        Number kept;
        return keep(is_whole(k), k, kept) && one_for_all(kept, value);
    }
    bool payment_timing(int i, std::int32_t& type) { return optional_exact(i, type) && (type <= 1 || refuse_pass()); }
    bool amount_and_timing(int i, Number& amount, std::int32_t& type) {
        optional_number(i, amount);
        return payment_timing(i + 1, type);
    }
    // Columns of bases hold codes.
    bool basis(int i, std::int32_t& value) {
        if (!given(i)) return true;
        const Number x = column(i);
        Number kept;
        return keep(x >= 0.0, x, kept) && one_for_all(kept, value);
    }

    [[nodiscard]] bool given(int i) const { return static_cast<std::size_t>(i) < block_.count; }

    // -- what is found at fault, or settled, after it was read: such rows leave
    bool refuses(int, Truth at_fault) { return !keep(!at_fault); }
    bool settles(Truth settled, double) { return !keep(!settled); }
    // What decides how the rows of the pass are calculated is a rare one: they leave.
    bool leaves(bool is_rare) { return is_rare && !refuse_pass(); }
    bool leaves(Truth is_rare) { return !keep(!is_rare); }

    // -- the end
    [[nodiscard]] Outcome status() const { return Truth::of_lanes(0); }
    Outcome answer(Number value) { return answer_where(Truth::of_lanes(Set::all_lanes), value); }
    Outcome answer_where(Truth answered, const Number& value) {
        double* to = block_.results + first_;
        const Truth good = live_ & answered;
        if (all(good)) [[likely]] {
            value.store(to);
        } else {
            select(good, value, Number::load(to)).store(to);
        }
        return good;
    }
    Outcome answer_or_leave(Truth answered, const Number& value) { return answer_where(answered, value); }
    // For what takes more than one step: the rows that have not left, and where they begin in the block.
    [[nodiscard]] Truth live() const { return live_; }
    [[nodiscard]] std::size_t first() const { return first_; }
    // Rows of another basis, frequency or timing than those of this pass.
    [[nodiscard]] Truth waiting() const { return waiting_; }

private:
    [[nodiscard]] Number column(int i) const { return Number::load(block_.columns[i] + first_); }

    bool keep(Truth good) {
        live_ = live_ & good;
        return any(live_);
    }
    bool keep(Truth good, Number x, Number& value) {
        value = select(good, x, Number{1.0});
        return keep(good);
    }
    bool refuse_pass() {
        live_ = Truth::of_lanes(0);
        return false;
    }

    // The value of the first row that is live.
    bool one_for_all(Number x, std::int32_t& value) {
        const double first = x[std::countr_zero(live_.lanes())];
        const Truth same = x == Number{first};
        waiting_ = waiting_ | (live_ & !same);
        live_ = live_ & same;
        value = static_cast<std::int32_t>(first);
        return true;
    }

    const RowBlock& block_;
    std::size_t first_;
    Truth live_;
    Truth waiting_ = Truth::of_lanes(0);
};

// calculate(Rows) for all rows of a block. Bit r of the answer: row r is answered.
template <typename Set, typename Calculate>
std::uint64_t in_lanes(const RowBlock& block, Calculate calculate) {
    std::uint64_t answered = 0;
    for (std::size_t row = 0; row < block.rows; row += Set::width) {
        unsigned done = 0;
        auto wanted = LaneTruth<Set>::of_lanes(static_cast<unsigned>(block.wanted >> row) & Set::all_lanes);
        while (any(wanted)) {
            Rows<Set> rows{block, row, wanted};
            done |= calculate(rows).lanes();
            wanted = rows.waiting();
        }
        answered |= std::uint64_t{done} << row;
    }
    return answered;
}

}  // namespace finance
