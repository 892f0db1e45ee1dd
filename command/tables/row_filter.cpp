#include "command/tables/row_filter.hpp"

#include <algorithm>

#include "command/tables/row_columns.hpp"

namespace finance::command {

RowFilter::RowFilter(const CallPlan& plan, const std::vector<std::string>& names, char delimiter)
    : plan_{plan}, names_{names}, delimiter_{delimiter}, fields_(plan.where.empty() ? 0 : plan.columns) {
    std::size_t texts = 1;
    for (const TableFormula& condition : plan.where) {
        texts = std::max(texts, condition.texts.size());
        for (const FormulaSource& source : condition.numbers) read_.push_back(source.index);
        read_.insert(read_.end(), condition.texts.begin(), condition.texts.end());
    }
    scratches_.resize(texts);
}

std::optional<double> RowFilter::truth(const TableFormula& condition) {
    numbers_.clear();
    texts_.clear();
    for (const FormulaSource& source : condition.numbers) {
        const Input input{.column = source.index, .kind = catalogue::Kind::date_time, .in_formula = true};
        const auto value = read_field(plan_.fields, fields_[input.column], input.kind, scratches_.front());
        if (!value) {
            const std::string_view text = trimmed(field_text(fields_[input.column], scratches_.front()));
            fault_ =
                "--where: " + catalogue::shown(names_[input.column]) + ": " + unreadable(plan_.fields, input, text);
            return {};
        }
        numbers_.push_back(value->number());
    }
    for (const std::size_t column : condition.texts) {
        texts_.push_back(trimmed(field_text(fields_[column], scratches_[texts_.size()])));
    }
    return condition.formula.value(numbers_, texts_, stack_);
}

RowFilter::Verdict RowFilter::of(const Record& record) {
    if (plan_.where.empty() || split_record(record, delimiter_, fields_) != plan_.columns) return Verdict::taken;
    return of_fields();
}

RowFilter::Verdict RowFilter::of(const RecordIndex& index, std::size_t place) {
    if (plan_.where.empty() || index[place].fields != plan_.columns) return Verdict::taken;
    for (const std::size_t column : read_) fields_[column] = index.field(place, column);
    return of_fields();
}

// What surely does not hold of a row leaves it out, whatever else is unknown of it.
RowFilter::Verdict RowFilter::of_fields() {
    Verdict verdict = Verdict::taken;
    for (const TableFormula& condition : plan_.where) {
        const auto holds = truth(condition);
        if (holds && *holds != 1.0) return Verdict::left_out;
        if (!holds) verdict = Verdict::unknown;
    }
    return verdict;
}

}  // namespace finance::command
