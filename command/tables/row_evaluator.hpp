// Evaluates the calls of many rows at once. One object a thread: it keeps what rows need again.
//
//  (1) Rows are read into columns; each call is made for all of them; then they are written in order.
//  (2) A row that does not fit the table is refused, all calls of it. A field that cannot be read refuses the calls
//      that want it. What such calls answer is not looked at.
//  (3) A call that is not answered leaves its result empty. Where its reason is wanted, it is made again, alone.
//  (4) For machines a result is an object on a line of its own (command/json_report.hpp) that begins with the number of
//      the row's line and the result's name; the row itself is not repeated. An object wants everything that the call
//      said: each is made alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/json_text.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/row_columns.hpp"
#include "command/tables/run_summary.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

std::string field_count_words(std::size_t fields, std::size_t columns);

// How rows are written.
struct RowForm {
    char delimiter = ',';
    std::string_view line_end = "\n";  // of a last row that has none
    bool status = false;               // whether a column after each result says why there is none
    bool objects = false;
    bool strict = false;  // whether the first row that is refused, and all after it, are left out
};

class RowEvaluator {
public:
    RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const RowForm& form);

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
    struct Result {
        Verdict verdict = Verdict::refused;
        std::size_t unread = 0;  // the position of an argument that cannot be read; 0: all can, or the row does not fit
        std::optional<host::Evaluation> evaluation{};
    };
    struct Place {
        std::size_t call;
        std::size_t row;
    };

    void call_rows(std::size_t call);
    void take_arguments(Place at);
    [[nodiscard]] host::Evaluation evaluation_alone(std::size_t call) const;
    host::Evaluation evaluation(Place at);
    [[nodiscard]] std::size_t unread_argument(Place at) const;
    Result result(Place at);
    std::string unread_text(Place at, const PlannedArgument& argument);
    std::string reason(Place at, const Result& result);
    void append_columns(Place at, const Result& result, std::string& output);
    void append_object(Place at, const Result& result, std::string& output);
    Verdict append_row(std::size_t row, std::string& output, RunSummary& summary);
    Verdict append_results(std::size_t row, std::string& output, RunSummary& summary);
    [[nodiscard]] std::string_view line_end(const Record& record) const {
        return record.line_end.empty() ? form_.line_end : record.line_end;
    }

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    RowForm form_;
    RowColumns rows_;
    std::string misfit_;                                  // why the row that is written does not fit; else empty
    std::vector<Answers> answers_;                        // by call
    std::vector<host::Column> columns_;                   // of one call
    std::vector<std::vector<host::Argument>> arguments_;  // by call, of the row that wants them; constants in place
    JsonText json_;
};

}  // namespace finance::command
