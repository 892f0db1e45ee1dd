// The results of a row's calls, or of a group's.
//
//  (1) As columns: a result, empty where it is not answered, and a status beside it where one is wanted.
//  (2) For machines a result is an object on a line of its own (command/json_report.hpp) that begins with what it is of
//      and the result's name.
#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "calls/answer.hpp"
#include "catalogue/text.hpp"
#include "command/json_report.hpp"
#include "command/json_text.hpp"
#include "command/number_form.hpp"
#include "command/tables/call_plan.hpp"

namespace finance::command {

using calls::Verdict;

// How results are written.
struct ResultForm {
    char delimiter = ',';
    std::string_view line_end = "\n";  // of a last row that has none
    bool status = false;               // whether a column after each result says why there is none
    bool objects = false;
    NumberForm numbers{};
    std::span<const std::string> names{};  // of the table's columns, for objects of rows
    bool strict = false;                   // whether the first row that is refused, and all after it, are left out
};

struct CallResult {
    std::optional<calls::Answer> answer{};  // none: the call was not made,
    std::string fault{};                    // for this reason,
    std::size_t label = 0;                  // that begins with so many bytes of how the argument is called,
    WrittenArgument at{};                   // this one, where it is one's

    [[nodiscard]] Verdict verdict() const { return answer ? answer->verdict() : Verdict::refused; }
    [[nodiscard]] std::string sentence() const { return answer ? answer->sentence() : fault; }
};

class ResultWriter {
public:
    explicit ResultWriter(const ResultForm& form) : form_{form} {}

    [[nodiscard]] const ResultForm& form() const { return form_; }

    // result_of(i): of the plan's call i. begin(json): the first members of an object. reasons: gets why calls are
    // refused, or null. The worst verdict.
    template <typename ResultOf, typename Begin>
    Verdict write(const CallPlan& plan, ResultOf result_of, Begin begin, std::string& output, std::string* reasons) {
        Verdict worst = Verdict::answered;
        for (std::size_t i = 0; i < plan.calls.size(); ++i) {
            const PlannedCall& call = plan.calls[i];
            const CallResult result = result_of(i);
            worst = std::max(worst, result.verdict());
            if (form_.objects) {
                json_.clear();
                begin(json_.object());
                append_object(call, result, output);
            } else {
                append_columns(call, result, output);
            }
            if (!is_failure(result.verdict()) || reasons == nullptr) continue;
            reasons->append(reasons->empty() ? "" : "; ")
                .append(catalogue::shown(call.result) + ": " + result.sentence());
        }
        return worst;
    }

    // The columns of a result that is answered, the delimiter before them included; gives where they end. Within the
    // room more may be written.
    static constexpr std::size_t answer_room = 80;
    char* write_answer(char* to, const PlannedCall& call, double value) const;

private:
    void append_columns(const PlannedCall& call, const CallResult& result, std::string& output) const;
    void append_object(const PlannedCall& call, const CallResult& result, std::string& output);

    ResultForm form_;
    JsonText json_;
};

}  // namespace finance::command
