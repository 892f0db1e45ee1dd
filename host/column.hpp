// An argument of many calls: the same in each, or one of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/evaluator.hpp"

namespace finance::host {

class Column {
public:
    enum class Kind : std::uint8_t { constant, numbers, arguments, lists };

    // The same argument in every row.
    constexpr Column(const Argument& constant) : constant_{constant} {}
    // One value a row, `stride` bytes after the row before; a NaN is missing. Read in place, never copied.
    static Column numbers(const double* first, std::ptrdiff_t stride = sizeof(double)) {
        return {Kind::numbers, Argument{0.0}, first, stride};
    }
    // An argument of any kind in each row. Each row's slot is laid out anew.
    static Column arguments(const Argument* first, std::ptrdiff_t stride = sizeof(Argument)) {
        return {Kind::arguments, Argument::absent(), first, stride};
    }
    // As many arguments in row r as there are values from values + starts[r] up to values + starts[r + 1], a NaN missing:
    // rows + 1 starts that never descend. Read in place, never copied.
    static Column lists(const double* values, const std::int64_t* starts) {
        Column column{Kind::lists, Argument{0.0}, values, sizeof(double)};
        column.starts_ = starts;
        return column;
    }

    // What lays out the slot: the constant, or some argument of the column's kind.
    [[nodiscard]] const Argument& sample() const { return constant_; }
    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] std::ptrdiff_t stride() const { return stride_; }  // bytes
    [[nodiscard]] bool varies() const { return kind_ != Kind::constant; }
    [[nodiscard]] const std::int64_t* starts() const { return starts_; }  // of lists
    // Of a column that varies; of lists a value's place among all.
    [[nodiscard]] const void* at(std::size_t row) const {
        return static_cast<const std::byte*>(first_) + static_cast<std::ptrdiff_t>(row) * stride_;
    }

    // Of a column without lists.
    [[nodiscard]] Argument argument(std::size_t row) const {
        switch (kind_) {
            case Kind::numbers:
                return *static_cast<const double*>(at(row));
            case Kind::arguments:
                return *static_cast<const Argument*>(at(row));
            default:
                return constant_;
        }
    }
    // A row's argument, or the values of its list, behind those that are there.
    void append_to(std::vector<Argument>& arguments, std::size_t row) const {
        if (kind_ != Kind::lists) return arguments.push_back(argument(row));
        const auto* values = static_cast<const double*>(first_);
        arguments.insert(arguments.end(), values + starts_[row], values + starts_[row + 1]);
    }

private:
    Column(Kind kind, const Argument& sample, const void* first, std::ptrdiff_t stride)
        : constant_{sample}, first_{first}, stride_{stride}, kind_{kind} {}

    Argument constant_;
    const void* first_ = nullptr;
    std::ptrdiff_t stride_ = 0;
    const std::int64_t* starts_ = nullptr;
    Kind kind_ = Kind::constant;
};

}  // namespace finance::host
