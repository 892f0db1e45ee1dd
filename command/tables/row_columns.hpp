// Rows of a table read into columns: one for each of the plan's inputs, one place in it a row.
//
//  (1) A row has as many fields as the table has columns; one that has not is read no further, since nobody knows which
//      field is missing.
//  (2) An empty line is no row, but keeps its place among them.
//  (3) Where there is no value, or none that can be read, a missing value stands in its place, so that each place can
//      be called.
//  (4) A column is read at a time, and only those that a call names: all others are bytes of their record.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/meant.hpp"
#include "catalogue/wording.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/record_index.hpp"
#include "command/tables/table_record.hpp"
#include "host/batch.hpp"
#include "reading/field_form.hpp"

namespace finance::command {

// What a basis is that a call leaves out.
inline constexpr host::Argument default_basis{catalogue::basis_keywords.front()};

// A field as a value; an empty one is a missing value, or the basis of a call that leaves it out. Nothing where it
// cannot be read, or is not meant.
inline std::optional<host::Argument> read_field(const reading::FieldForm& form, std::string_view raw,
                                                catalogue::Kind kind, std::string& scratch) {
    const std::string_view text = trimmed(field_text(raw, scratch));
    if (text.empty()) return kind == catalogue::Kind::basis ? default_basis : host::Argument::missing();
    return reading::read_meant(form, kind, text);
}

std::string field_count_words(std::size_t fields, std::size_t columns);

struct TableRow {
    Record record{};
    std::uint64_t line = 0;
    std::size_t fields = 0;  // 0: an empty line that is no row
    bool fits = false;       // has as many fields as the table has columns, and is not refused as a whole
    bool readable = false;   // so have all its inputs
    std::size_t place = 0;   // in the index of records
};

class RowColumns {
public:
    static constexpr std::size_t most_rows = Formula::block_rows;  // their text and values stay in a core's own cache

    RowColumns(const CallPlan& plan, char delimiter);

    [[nodiscard]] std::size_t size() const { return rows_.size(); }
    [[nodiscard]] bool full() const { return size() == most_rows; }
    [[nodiscard]] const TableRow& row(std::size_t row) const { return rows_[row]; }

    // Rows are added first; read takes what all that were added since the last time say, while they are in the index.
    // The bytes of their records must live until the columns are cleared.
    void add(const RecordIndex& index, std::size_t place) {
        const RecordIndex::Entry& entry = index[place];
        const bool fits = entry.fields == plan_.columns;
        rows_.push_back({entry.record, entry.line, entry.fields, fits, fits, place});
    }
    // A row of which nobody knows whether it is wanted.
    void add_refused(const Record& record, std::uint64_t line, const std::string& fault) {
        rows_.push_back({.record = record, .line = line, .fields = plan_.columns});
        faults_.emplace_back(rows_.size() - 1, fault);
    }
    void add_empty_line(const Record& record, std::uint64_t line) { rows_.push_back({.record = record, .line = line}); }
    void read(const RecordIndex& index);
    void clear() {
        rows_.clear();
        unread_ = 0;
        texts_.clear();
        faults_.clear();
    }

    // Why a row that does not fit is refused.
    [[nodiscard]] std::string misfit(std::size_t row) const {
        const auto fault = std::ranges::find(faults_, row, &std::pair<std::size_t, std::string>::first);
        return fault != faults_.end() ? fault->second : field_count_words(rows_[row].fields, plan_.columns);
    }

    // Numbers, most_rows of them; not of a basis.
    [[nodiscard]] const double* numbers(std::size_t input) const { return columns_[input].numbers.data(); }
    [[nodiscard]] host::Column column(std::size_t input) const {
        return mixed(input) ? host::Column::arguments(columns_[input].arguments.data())
                            : host::Column::numbers(columns_[input].numbers.data());
    }
    [[nodiscard]] host::Argument value(std::size_t input, std::size_t row) const {
        const Values& values = columns_[input];
        return mixed(input) ? values.arguments[row] : host::Argument{values.numbers[row]};
    }
    [[nodiscard]] bool readable(std::size_t input, std::size_t row) const { return columns_[input].readable[row] != 0; }

    // What a field of a row that fits says.
    std::string text(std::size_t column, std::size_t row) {
        split_record(rows_[row].record, delimiter_, fields_);
        return std::string{trimmed(field_text(fields_[column], scratch_))};
    }

private:
    struct Values {
        std::vector<double> numbers{};            // or, where kinds are mixed,
        std::vector<host::Argument> arguments{};  // these
        std::vector<char> readable{};
        bool quick = false;  // whether plain fields can be read in the quick way
    };

    // Bases are numbers in one row and keywords in another.
    [[nodiscard]] bool mixed(std::size_t input) const { return plan_.inputs[input].kind == catalogue::Kind::basis; }

    void read_input(std::size_t input, const RecordIndex& index);
    // false: of a field that is not plain.
    bool put_quickly(std::size_t input, std::size_t row, std::string_view field);
    // false where the field cannot be read.
    bool put(std::size_t input, std::size_t row, std::string_view field);
    void put_missing(std::size_t input, std::size_t row);

    // Where the next row leaves it.
    host::Argument kept(std::string_view text) { return host::Argument{texts_.emplace_back(text)}; }

    const CallPlan& plan_;
    char delimiter_;
    std::vector<std::string_view> fields_;  // of one row
    std::vector<TableRow> rows_;
    std::size_t unread_ = 0;                                   // the first row that has been added and not read
    std::vector<Values> columns_;                              // by input
    std::string scratch_;                                      // of one field
    std::vector<std::pair<std::size_t, std::string>> faults_;  // by row
    std::deque<std::string> texts_;  // that arguments are views of, where the table's bytes are not
};

}  // namespace finance::command
