#include "command/tables/row_columns.hpp"

#include "catalogue/text.hpp"
#include "reading/plain_decimal.hpp"

namespace finance::command {

namespace {

using catalogue::Kind;
using reading::FieldForm;
using reading::read_plain_decimal;

// What read_field makes of fields that are empty, or no more than a plain number or a year-month-day; false: of any
// other, or one that is not meant. Not of a basis.
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

// The same of a basis: a code, or a keyword as the catalogue writes it.
std::optional<host::Argument> quick_basis(std::string_view field) {
    double code = 0.0;
    if (read_plain_decimal(field, code)) {
        return calls::is_meant(Kind::basis, code) ? std::optional<host::Argument>{code} : std::nullopt;
    }
    const auto keyword = std::ranges::find(catalogue::basis_keywords, field);
    if (keyword == catalogue::basis_keywords.end()) return {};
    return host::Argument{*keyword};
}

// Whether options leave plain fields what they are. A text that is missing by them may be one; keywords are such whatever
// their case.
bool reads_quickly(const FieldForm& form, Kind kind) {
    if (form.decimal_comma || form.loose || (form.dates && catalogue::is_dated(kind))) return false;
    if (kind == Kind::basis) return form.missing.empty();
    return std::ranges::none_of(form.missing, [&](std::string_view text) {
        double value = 0.0;
        return read_quickly(kind, text, value);
    });
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

bool RowColumns::put_quickly(std::size_t input, std::size_t row, std::string_view field) {
    Values& values = columns_[input];
    if (!values.quick) return false;
    if (mixed(input)) {
        const auto basis = quick_basis(field);
        if (!basis) return false;
        values.arguments[row] = *basis;
    } else if (!read_quickly(plan_.inputs[input].kind, field, values.numbers[row])) {
        return false;
    }
    values.readable[row] = 1;
    return true;
}

void RowColumns::read_input(std::size_t input, const RecordIndex& index) {
    const std::size_t column = plan_.inputs[input].column;
    for (std::size_t row = unread_; row < rows_.size(); ++row) {
        TableRow& read = rows_[row];
        if (!read.fits) {
            put_missing(input, row);
            continue;
        }
        const std::string_view field = index.field(read.place, column);
        if (put_quickly(input, row, field) || put(input, row, field)) continue;
        put_missing(input, row);
        read.readable = false;
    }
}

void RowColumns::read(const RecordIndex& index) {
    for (std::size_t input = 0; input < columns_.size(); ++input) read_input(input, index);
    unread_ = rows_.size();
}

}  // namespace finance::command
