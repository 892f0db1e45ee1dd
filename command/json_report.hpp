// Outcomes for machines: one JSON object a line, on standard output.
//
//     {"calculation":"PMT","status":"answered","value":-200,"argument":null,"rule":null,"message":null,"notes":[]}
//
//  status      answered; missing: the answer is a missing value; does not solve: the search ended with a value that does
//              not solve its equation; too large: the answer is infinite; refused: an argument or the calculation itself;
//              usage: there was nothing to evaluate; failed: there is no module, or it cannot be loaded
//  value       a finite number where the call was answered or does not solve, else null
//  value_text  there where the value is null although there is an answer: inf, -inf, or . for a missing value
//  date        there where a date is answered: "2008-05-15", or null for one whose year has no four digits
//  argument    the one at fault: {"position":3,"name":"frequency"}, as help counts; "element" its place in a list
//  rule        what that argument must be
//  message     one sentence: why there is no value
//  row         of a table: what the fields of the row say, by the names of their columns
//  line        of a table: the number of the row's line; group: of a table's groups, {"deal":"A"}; result: its name.
//              There a call that wants a value that is missing has the status missing, as in the summary
//  line        of a script: the number of the line, in front
//  hint        what to type to get further: in usage errors, and of a call alone where another one is known to have the
//              answer
//  notes       messages that the module asked its host for: {"set":744,"number":321}
#pragma once

#include <cstddef>
#include <string_view>

#include "calls/answer.hpp"
#include "command/json_text.hpp"
#include "command/outcome.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

// The members above, into an object that the caller has opened.
void add_result(JsonText& json, const calls::Answer& answer, std::string_view status, std::string_view hint = {});

// An argument of a call as it was written.
struct WrittenArgument {
    std::size_t parameter = 0;  // index
    std::size_t position = 0;   // 1 the first; 0: no argument
};

// The same members of a call that was not evaluated: an argument of it could not be read, or all of it.
void add_refusal(JsonText& json, const catalogue::Calculation& calculation, std::string_view message,
                 WrittenArgument argument = {});

// Of a call alone: answered where there is a value that holds, or a missing one.
int exit_status_of(const calls::Answer& answer);

// What `report` says, as an object.
Outcome json_report(const calls::Answer& answer);

Outcome json_usage(const UsageError& error);
Outcome json_failure(std::string_view message);

}  // namespace finance::command
