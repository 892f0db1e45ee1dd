// Whether a row is taken: what --where says of its fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/tables/call_plan.hpp"
#include "command/tables/record_index.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

class RowFilter {
public:
    enum class Verdict : std::uint8_t { taken, left_out, unknown };

    // The plan must outlive it.
    RowFilter(const CallPlan& plan, const std::vector<std::string>& names, char delimiter);

    // A row without as many fields as the table has columns is taken: others refuse it.
    Verdict of(const Record& record);
    Verdict of(const RecordIndex& index, std::size_t place);
    // Why nobody knows.
    [[nodiscard]] const std::string& fault() const { return fault_; }

private:
    Verdict of_fields();
    // 1, 0, or missing; nothing where a field is no number.
    std::optional<double> truth(const TableFormula& condition);

    const CallPlan& plan_;
    const std::vector<std::string>& names_;
    char delimiter_;
    std::vector<std::string_view> fields_;
    std::vector<std::size_t> read_{};  // columns
    std::vector<double> numbers_{};
    std::vector<std::string_view> texts_{};
    std::vector<std::string> scratches_{};  // of fields with marks: a text each
    FormulaStack stack_{};
    std::string fault_{};
};

}  // namespace finance::command
