#include "command/tables/row_columns.hpp"

#include "catalogue/text.hpp"
#include "command/plain_decimal.hpp"

namespace finance::command {

namespace {

using catalogue::Kind;

// What read_field makes of fields that are empty, or no more than a plain number or a year-month-day; false: of any
// other, or one that is not meant.
bool read_quickly(Kind kind, std::string_view field, double& value) {
    if (field.empty()) {
        value = host::Argument::missing().number();
        return true;
    }
    if (!catalogue::is_dated(kind)) return read_plain_decimal(field, value);
    if (const auto day = catalogue::host_date(field)) {
        value = *day;
        return true;
    }
    return read_plain_decimal(field, value) && calls::is_meant(kind, value);
}

// Whether options leave plain fields what they are. A text that is missing by them may be one.
bool reads_quickly(const FieldForm& form, Kind kind) {
    if (kind == Kind::basis || form.decimal_comma || form.loose) return false;
    if (form.dates && catalogue::is_dated(kind)) return false;
    double value = 0.0;
    return std::ranges::none_of(form.missing, [&](std::string_view text) { return read_quickly(kind, text, value); });
}

}  // namespace

RowColumns::RowColumns(const CallPlan& plan, char delimiter)
    : plan_{plan}, delimiter_{delimiter}, fields_(plan.used_columns), columns_(plan.inputs.size()) {
    rows_.reserve(most_rows);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].readable.resize(most_rows);
        columns_[i].quick = reads_quickly(plan.fields, plan.inputs[i].kind);
        if (mixed(i)) columns_[i].arguments.resize(most_rows, host::Argument::absent());
        if (!mixed(i)) columns_[i].numbers.resize(most_rows);
    }
}

void RowColumns::put_missing(std::size_t input, std::size_t row) {
    const host::Argument missing = host::Argument::missing();
    if (mixed(input)) {
        columns_[input].arguments[row] = missing;
    } else {
        columns_[input].numbers[row] = missing.number();
    }
    columns_[input].readable[row] = 0;
}

bool RowColumns::put(std::size_t input, std::size_t row, std::string_view field) {
    const auto value = read_field(plan_.fields, field, plan_.inputs[input].kind, scratch_);
    if (!value) return false;
    if (mixed(input)) {
        const bool in_scratch = value->kind() == host::Argument::Kind::text && field.starts_with(quotation_mark);
        columns_[input].arguments[row] = in_scratch ? kept(value->text()) : *value;
    } else {
        columns_[input].numbers[row] = value->number();
    }
    columns_[input].readable[row] = 1;
    return true;
}

void RowColumns::read_input(std::size_t input, const RecordIndex& index) {
    const auto [column, kind, in_formula] = plan_.inputs[input];
    Values& values = columns_[input];
    for (std::size_t row = unread_; row < rows_.size(); ++row) {
        TableRow& read = rows_[row];
        if (!read.fits) {
            put_missing(input, row);
            continue;
        }
        const std::string_view field = index.field(read.place, column);
        if (values.quick && read_quickly(kind, field, values.numbers[row])) {
            values.readable[row] = 1;
        } else if (!put(input, row, field)) {
            put_missing(input, row);
            read.readable = false;
        }
    }
}

void RowColumns::read(const RecordIndex& index) {
    for (std::size_t input = 0; input < columns_.size(); ++input) read_input(input, index);
    unread_ = rows_.size();
}

}  // namespace finance::command
