// The rows of a list calculation that are in an aggregate's group, or in the frame of its window.
//
//  (1) Rows leave in the order in which they came; the lists of a call have that order.
//  (2) A row with a null makes the answer null as long as it is there; so does having no rows.
//  (3) What is no list must be the same in all rows that are there together. It is compared when the answer is wanted:
//      a frame that moves on may take its new row before it lets the old one go.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "adapters/sqlite/sqlite_api.hpp"
#include "adapters/sqlite/sqlite_memory.hpp"
#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters::sqlite {

// The values of one list, first in, first out, side by side in memory.
class Flows {
public:
    void push(double value) { values_.push_back(value); }
    void pop();
    [[nodiscard]] std::span<const double> values() const { return std::span{values_}.subspan(gone_); }

private:
    Vector<double> values_;
    std::size_t gone_ = 0;  // at the front
};

class FlowWindow {
public:
    // Rows have that many arguments, of the calculation's first parameters.
    FlowWindow(const catalogue::Calculation& calculation, std::size_t arguments)
        : calculation_{calculation}, row_(arguments, host::Argument::absent()), lists_(arguments) {}

    // Throws where the row cannot be read; then there is no answer any more.
    void enter(std::span<sqlite3_value*> row);
    // With the values that the row had when it came.
    void leave(std::span<sqlite3_value*> row);

    // Nothing where it is missing. Calculated once for the same rows, since a frame of the whole partition is asked for in each of its rows.
    [[nodiscard]] std::optional<double> answer();

private:
    struct Scalar {
        double number = 0.0;
        std::optional<String> text{};
        friend bool operator==(const Scalar&, const Scalar&) = default;
        [[nodiscard]] bool is(const host::Argument& argument) const;
        [[nodiscard]] host::Argument argument() const;
    };
    // Rows, one after the other, that have the same scalars.
    struct Run {
        Vector<Scalar> scalars;  // one an argument; nothing is kept for lists
        std::size_t rows = 0;
    };

    [[nodiscard]] bool is_list(std::size_t i) const { return catalogue::is_list(calculation_.parameters[i].kind); }
    void read(std::span<sqlite3_value*> row);
    [[nodiscard]] bool belongs_to(const Run& run) const;
    void count_in_run();
    [[nodiscard]] std::string changed_scalar() const;
    [[nodiscard]] std::optional<double> calculated() const;

    const catalogue::Calculation& calculation_;
    Vector<host::Argument> row_;  // the row that is entering
    Vector<Flows> lists_;         // one an argument; empty for scalars
    Deque<Run> runs_;
    std::size_t rows_with_null_ = 0;
    std::optional<std::optional<double>> answer_{};  // of the rows that are there, once it was wanted
    bool whole_ = true;                              // every row could be read
};

}  // namespace finance::adapters::sqlite
