// Evaluates the calls of many rows at once. One object a thread: it keeps what rows need again.
//
//  (1) Rows are read into columns; each call is made for all of them; then they are written in order.
//  (2) A row that does not fit the table is refused, all calls of it. A field that cannot be read refuses the calls
//      that want it. What such calls answer is not looked at.
//  (3) A call that is not answered leaves its result empty. Where its reason is wanted, it is made again, alone.
//  (4) Formulas are calculated for all rows at once, of columns and of what earlier calls came to. Where an earlier call
//      has no answer, the value is missing; where it was refused, so is what wants it.
//  (5) Most rows are answered plainly: every field can be read, every call has a finite answer that was not searched for.
//      They are written without more ado.
//  (6) An object wants everything that the call said: there each is made alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "command/tables/call_plan.hpp"
#include "command/tables/line_buffer.hpp"
#include "command/tables/result_writer.hpp"
#include "command/tables/row_columns.hpp"
#include "command/tables/row_object.hpp"
#include "command/tables/run_summary.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

class RowEvaluator {
public:
    RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const ResultForm& form);

    // Where rows are put. Empty lines stay what they are.
    [[nodiscard]] RowColumns& rows() { return rows_; }
    // Appends the rows with their results, or objects, and leaves no rows; the summary gets their verdicts, that of a
    // row at which a strict form stops included. Whether it went on to the last row.
    bool evaluate(std::string& output, RunSummary& summary);

private:
    // Of one call, by row.
    struct Answers {
        std::vector<double> values = std::vector<double>(RowColumns::most_rows);
        std::vector<std::uint32_t> statuses = std::vector<std::uint32_t>(RowColumns::most_rows);
        std::vector<std::int32_t> flagged = std::vector<std::int32_t>(RowColumns::most_rows);
    };
    struct Place {
        std::size_t call;
        std::size_t row;
    };

    // Of a call whose result later ones want.
    struct Carried {
        std::vector<double> values = std::vector<double>(RowColumns::most_rows);  // missing where there is no answer
        std::vector<char> refused = std::vector<char>(RowColumns::most_rows);
    };

    void call_rows(std::size_t call);
    void calculate(std::size_t formula);
    void carry(std::size_t call);
    void take_arguments(Place at);
    [[nodiscard]] host::Evaluation evaluation_alone(std::size_t call) const;
    void take_evaluation(Place at);
    [[nodiscard]] std::size_t unread_input(const PlannedArgument& argument, std::size_t row) const;
    [[nodiscard]] std::size_t unread_argument(Place at) const;
    CallResult unread_result(Place at, std::size_t position);
    CallResult result(Place at);
    void find_plain_rows();
    bool write_plain_row(std::size_t row, std::string& output);
    Verdict append_row(std::size_t row, std::string& output, RunSummary& summary);
    Verdict append_results(std::size_t row, std::string& output, RunSummary& summary);
    [[nodiscard]] std::string_view line_end(const Record& record) const {
        return record.line_end.empty() ? writer_.form().line_end : record.line_end;
    }

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    RowColumns rows_;
    ResultWriter writer_;
    RowObject row_object_;
    std::vector<Answers> answers_;               // by call
    std::vector<Carried> carried_;               // by call
    std::vector<std::vector<double>> formulas_;  // by formula, what the rows come to
    std::vector<const double*> sources_;         // of one formula
    FormulaStack stack_;
    std::vector<host::Column> columns_;                   // of one call
    std::vector<std::vector<host::Argument>> arguments_;  // by call, of the row that wants them; constants in place
    host::Evaluation evaluation_;                         // of the result that is written
    std::vector<char> plain_ = std::vector<char>(RowColumns::most_rows);  // by row: whether it is answered plainly
    LineBuffer lines_;                                                    // of rows that are
};

}  // namespace finance::command
