#include "command/tables/result_writer.hpp"

#include <array>

#include "command/tables/line_buffer.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

char* ResultWriter::write_answer(char* to, const PlannedCall& call, double value) const {
    *to++ = form_.delimiter;
    if (form_.numbers.plain()) {
        to = catalogue::write_value(to, value, call.calculation->result == catalogue::ResultKind::date);
    } else {
        std::string field;
        append_field(field, value_text(form_.numbers, *call.calculation, value), form_.delimiter);
        to = copy_text(to, field);
    }
    if (form_.status) *to++ = form_.delimiter;
    return to;
}

void ResultWriter::append_columns(const PlannedCall& call, const CallResult& result, std::string& output) const {
    if (result.verdict() == Verdict::answered) {
        std::array<char, answer_room> buffer;
        output.append(buffer.data(), write_answer(buffer.data(), call, result.answer->value()));
        return;
    }
    output += form_.delimiter;
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
