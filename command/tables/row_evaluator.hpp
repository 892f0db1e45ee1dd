// Evaluates the calls of one row after the other. One object a thread: it keeps what rows need again.
//
//  (1) A row has as many fields as the table has columns; one that has not is refused, all calls of it, since nobody
//      knows which field is missing.
//  (2) A field that cannot be read refuses the calls that want it.
//  (3) A call that is not answered leaves its result empty.
//  (4) For machines a result is an object on a line of its own (command/json_report.hpp) that begins with the number of
//      the row's line and the result's name; the row itself is not repeated.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/json_text.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/run_summary.hpp"
#include "command/tables/table_record.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

// A field as a value; an empty one is a missing value. false where it cannot be read.
bool read_field(std::string_view raw, catalogue::Kind kind, std::string& scratch, host::Argument& value);

std::string field_count_words(std::size_t fields, std::size_t columns);

// How rows are written.
struct RowForm {
    char delimiter = ',';
    std::string_view line_end = "\n";  // of a last row that has none
    bool status = false;               // whether a column after each result says why there is none
    bool objects = false;
};

class RowEvaluator {
public:
    RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const RowForm& form);

    // Appends the row with its results, or their objects; the summary gets the row's verdict.
    Verdict evaluate(const Record& record, std::uint64_t line, std::string& output, RunSummary& summary);
    // An empty line is no row: it stays what it is.
    void keep(const Record& record, std::string& output) const;

private:
    struct Result {
        Verdict verdict = Verdict::refused;
        std::size_t unread = 0;  // the position of an argument that cannot be read; 0: all can, or the row does not fit
        std::optional<host::Evaluation> evaluation{};
    };

    void read_inputs();
    Result call(std::size_t i);
    std::string unread_text(const PlannedArgument& argument);
    std::string reason(std::size_t i, const Result& result);
    void append_columns(std::size_t i, const Result& result, std::string& output);
    void append_object(std::size_t i, const Result& result, std::uint64_t line, std::string& output);
    [[nodiscard]] std::string_view line_end(const Record& record) const {
        return record.line_end.empty() ? form_.line_end : record.line_end;
    }

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    RowForm form_;
    std::vector<std::string_view> fields_;
    std::string misfit_;  // why the row does not fit the table; empty where it does
    std::vector<host::Argument> inputs_;
    std::vector<std::string> scratch_;                    // by input: what its value may be a view into
    std::vector<char> readable_;                          // by input
    std::vector<std::vector<host::Argument>> arguments_;  // by call, constants in place
    JsonText json_;
};

}  // namespace finance::command
