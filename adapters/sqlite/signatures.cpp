#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/functions.hpp"

namespace finance::adapters::sqlite {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::Parameter;

namespace {

std::string with_lists_required(const Calculation& calculation, std::string (*say)(const Calculation&)) {
    std::vector<Parameter> parameters{calculation.parameters.begin(), calculation.parameters.end()};
    for (Parameter& parameter : parameters) {
        if (!is_list(parameter.kind) || parameter.need == Need::required) continue;
        parameter.need = Need::required;
        parameter.default_text = {};
    }
    Calculation in_sql = calculation;
    in_sql.parameters = parameters;
    return say(in_sql);
}

}  // namespace

std::size_t fewest_arguments(const Calculation& calculation) {
    std::size_t count = 0;
    for (const Parameter& parameter : calculation.parameters) {
        count += is_list(parameter.kind) || parameter.need != Need::optional ? 1U : 0U;
    }
    return count;
}

std::string sql_usage(const Calculation& calculation) { return with_lists_required(calculation, usage); }

std::string sql_documentation(const Calculation& calculation) {
    return with_lists_required(calculation, documentation);
}

}  // namespace finance::adapters::sqlite
