#include "catalogue_calls.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>

namespace finance::test {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Parameter;

namespace {

std::string quoted_list(const std::string& values) {
    std::string list = "['";
    for (const char c : values) list.append(c == ',' ? "', '" : std::string{c});
    return list + "']";
}

}  // namespace

std::string sql_name(const Calculation& calculation) {
    std::string name = "fin_";
    for (const char c : calculation.name) name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

std::string sql_type(const Parameter& parameter) {
    if (parameter.kind == Kind::basis) return "VARCHAR";
    return std::string{is_dated(parameter.kind) ? "DATE" : "DOUBLE"} + (is_list(parameter.kind) ? "[]" : "");
}

std::vector<std::string> sql_arguments(const Calculation& calculation) {
    std::vector<std::string> arguments;
    std::istringstream words{std::string{calculation.example.arguments}};
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        if (equals == word.npos || arguments.size() >= calculation.parameters.size()) {
            ADD_FAILURE() << calculation.name << ": " << word;
            break;
        }
        const Parameter& parameter = calculation.parameters[arguments.size()];
        EXPECT_EQ(word.substr(0, equals), parameter.name) << calculation.name;
        const std::string value = word.substr(equals + 1);
        const std::string written = is_list(parameter.kind) ? quoted_list(value) : "'" + value + "'";
        arguments.push_back("CAST(" + written + " AS " + sql_type(parameter) + ")");
    }
    return arguments;
}

std::string sql_call(const Calculation& calculation, const std::vector<std::string>& arguments) {
    std::string text = sql_name(calculation) + '(';
    for (std::size_t i = 0; i < arguments.size(); ++i) text.append(i > 0 ? ", " : "").append(arguments[i]);
    return text + ')';
}

}  // namespace finance::test
