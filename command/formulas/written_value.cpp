#include "command/formulas/written_value.hpp"

namespace finance::command {

namespace {

using catalogue::Kind;

bool is_keyword(const host::Argument& value) { return value.kind() == host::Argument::Kind::text; }

double calculated(Kind kind, std::string_view text, const VariableNames& names) {
    const Formula formula = read_formula(text, names);
    if (formula.dated() && !is_dated(kind)) {
        throw FormulaError{in_quotes(text) + " is a date, not a number"};
    }
    return *formula.constant();
}

}  // namespace

host::Argument read_written(Kind kind, std::string_view text, const Variables* variables) {
    const auto value = reading::read_value(kind, text);
    if (value && !is_keyword(*value)) return *value;
    const VariableNames names{variables};
    const bool named = names.find(text, NameForm::word).has_value();
    if (named || (!value && looks_like_formula(text))) return calculated(kind, text, names);
    if (value) return *value;
    throw FormulaError{reading::unreadable(kind, text) + names.near(text)};
}

}  // namespace finance::command
