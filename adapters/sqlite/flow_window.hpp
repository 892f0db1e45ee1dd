// The rows of a list calculation that are in an aggregate's group, or in the frame of its window.
//
//  (1) Rows leave in the order in which they came; the lists of a call have that order.
//  (2) A row with a null makes the answer null as long as it is there; so does having no rows.
//  (3) What is no list must be the same in all rows that are there together. It is compared when the answer is wanted:
//      a frame that moves on may take its new row before it lets the old one go.
//  (4) A row that cannot be read ends the statement, or in the other ways makes the answer missing as long as it is there.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "adapters/common/ways.hpp"
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

struct FlowAnswer {
    std::optional<double> value{};
    std::string sentence{};  // why there is none, where that is asked for
};

class FlowWindow {
public:
    // Rows have that many arguments, of the calculation's first parameters.
    FlowWindow(const catalogue::Calculation& calculation, std::size_t arguments, Way way)
        : calculation_{calculation}, way_{way}, row_(arguments, host::Argument::absent()), lists_(arguments) {}

    // Throws where there is no memory, or in the way of an answer where the row cannot be read; then there is no answer
    // any more.
    void enter(std::span<sqlite3_value*> row);
    // With the values that the row had when it came.
    void leave(std::span<sqlite3_value*> row);

    // Calculated once for the same rows, since a frame of the whole partition is asked for in each of its rows.
    [[nodiscard]] const FlowAnswer& answer();

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
    // The first argument that cannot be read; as many as there are where all can.
    std::size_t read(std::span<sqlite3_value*> row);
    void count_unreadable(std::size_t argument, sqlite3_value* value);
    [[nodiscard]] bool belongs_to(const Run& run) const;
    void count_in_run();
    [[nodiscard]] std::string changed_scalar() const;
    [[nodiscard]] FlowAnswer refused(std::string sentence) const;
    [[nodiscard]] FlowAnswer calculated() const;

    const catalogue::Calculation& calculation_;
    Way way_;
    Vector<host::Argument> row_;  // the row that is entering
    Vector<Flows> lists_;         // one an argument; empty for scalars
    Deque<Run> runs_;
    std::size_t rows_with_null_ = 0;
    Deque<String> unreadable_{};          // a sentence for each such row, empty where none is asked for
    std::optional<FlowAnswer> answer_{};  // of the rows that are there, once it was wanted
    bool whole_ = true;                   // every row could be kept
};

}  // namespace finance::adapters::sqlite
