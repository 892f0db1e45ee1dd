#include "command/tables/result_writer.hpp"

#include "command/argument_text.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

void ResultWriter::append_columns(const PlannedCall& call, const CallResult& result, std::string& output) const {
    output += form_.delimiter;
    if (result.verdict() == Verdict::answered && form_.numbers.plain()) {
        append_value(output, *call.calculation, result.answer->value());
    } else if (result.verdict() == Verdict::answered) {
        append_field(output, value_text(form_.numbers, *call.calculation, result.answer->value()), form_.delimiter);
    }
    if (form_.status) append_field(output += form_.delimiter, result.sentence(), form_.delimiter);
}

void ResultWriter::append_object(const PlannedCall& call, const CallResult& result, std::string& output) {
    json_.member("result", call.result);
    if (result.answer) {
        add_result(json_, *result.answer, word_of(result.verdict()));
    } else {
        add_refusal(json_, *call.calculation, std::string_view{result.fault}.substr(result.label), result.at);
    }
    output.append(json_.end_object().str()).push_back('\n');
}

}  // namespace finance::command
