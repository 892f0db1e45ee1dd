// Names that a session gave values to. Their case is of no matter.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/formulas/formula_text.hpp"
#include "command/indexed_names.hpp"

namespace finance::command {

struct Variable {
    std::string name{};
    double value = 0.0;
    bool dated = false;
};

// Letters, digits and _, no digit first.
bool is_variable_name(std::string_view text);

class Variables {
public:
    [[nodiscard]] const Variable* find(std::string_view name) const;
    // In the order in which they were first named.
    [[nodiscard]] const std::vector<Variable>& all() const { return all_; }
    void set(const Variable& variable);

private:
    std::vector<Variable> all_{};
    IndexedNames names_{};  // theirs
};

// What formulas may name where there is no table.
class VariableNames : public FormulaNames {
public:
    // Null: there are none.
    explicit VariableNames(const Variables* variables) : variables_{variables} {}
    [[nodiscard]] std::optional<NameMeaning> find(std::string_view name, NameForm form) const override;
    [[nodiscard]] std::string unknown(std::string_view name) const override;
    // The suggestion of a variable that may have been meant, or "".
    [[nodiscard]] std::string near(std::string_view name) const;

private:
    const Variables* variables_;
};

}  // namespace finance::command
