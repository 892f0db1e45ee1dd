// Formulas that read a table: its columns, and results of the calls before.
//
//  (1) A name is a column as it stands, an earlier result as it stands, then either whatever the case, then a variable
//      of the session. $1 is the first column.
//  (2) A column's field is a number or a date, which is its number of days.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "command/formulas/variables.hpp"
#include "command/tables/table_format.hpp"

namespace finance::command {

// What a number that a formula reads is of.
struct FormulaSource {
    bool result = false;    // of an earlier call, or else a column
    std::size_t index = 0;  // of the plan's calls, or of the table's columns
};

struct TableFormula {
    Formula formula{};
    std::vector<FormulaSource> numbers{};
    std::vector<std::size_t> texts{};  // columns
};

class TableNames : public FormulaNames {
public:
    // results: of the calls so far. variables: may be null.
    TableNames(const Header& header, const IndexedNames& results, const Variables* variables)
        : header_{header}, results_{results}, variables_{variables} {}

    [[nodiscard]] std::optional<NameMeaning> find(std::string_view name, NameForm form) const override;
    [[nodiscard]] std::string unknown(std::string_view name) const override;

    // FormulaError, UsageError.
    [[nodiscard]] TableFormula formula(std::string_view text) const { return with_sources(read_formula(text, *this)); }
    [[nodiscard]] TableFormula condition(std::string_view text) const {
        return with_sources(read_condition(text, *this));
    }

private:
    static TableFormula with_sources(Formula formula);

    const Header& header_;
    const IndexedNames& results_;
    VariableNames variables_;
};

}  // namespace finance::command
