#include <array>
#include <span>
#include <stdexcept>

#include "adapters/common/engine_call.hpp"
#include "adapters/postgresql/signatures.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;

namespace {

// In units of a trivial function, which takes about 10 ns: what docs/performance.md measures, roughly. A search takes a
// microsecond or two, what splits dates 100 to 300 ns, the rest 20 to 70 ns.
int sql_cost(const Calculation& calculation) {
    constexpr std::array costs{5, 20, 100};
    return catalogue::item_of<catalogue::Cost::search>(costs, catalogue::cost_of(calculation));
}

std::string in_marks(std::string_view text, char mark) {
    std::string result{mark};
    for (const char c : text) result.append(c == mark ? 2 : 1, c);
    return result += mark;
}

// Names are quoted, since some are words of SQL.
std::string declared(std::span<const SqlArgument> arguments) {
    std::string text;
    for (const SqlArgument& argument : arguments) {
        text.append(text.empty() ? "" : ", ").append(in_marks(argument.name, '"')).append(" ").append(argument.type);
        if (!argument.default_value.empty()) text.append(" DEFAULT ").append(argument.default_value);
    }
    return text;
}

std::string types(std::span<const SqlArgument> arguments) {
    std::string text;
    for (const SqlArgument& argument : arguments) text.append(text.empty() ? "" : ", ").append(argument.type);
    return text;
}

std::string result_type(const Calculation& calculation) {
    return calculation.result == catalogue::ResultKind::date ? "date" : "float8";
}

std::string comment(const Calculation& calculation, Way way = Way::answer) {
    const std::string remark = way_remark(calculation, way);
    return in_marks(std::string{calculation.answers} + ".\n" + (remark.empty() ? "" : remark + '\n') +
                        std::string{calculation.formula},
                    '\'');
}

std::string in_c(const std::string& entry) { return "    AS 'MODULE_PATHNAME', '" + entry + "' LANGUAGE C "; }

std::string described(const std::string& what, const std::string& text) {
    return "COMMENT ON " + what + " IS " + text + ";\n\n";
}

std::string overload_script(const Calculation& calculation, const Signature& signature, Way way) {
    const std::string name = way_name(calculation, way);
    const std::string entry = entry_name(calculation, way) + (signature.coded_basis ? "_coded" : "");
    const std::string result = way == Way::reason ? "text" : result_type(calculation);
    return "CREATE FUNCTION " + name + '(' + declared(signature.arguments) + ") RETURNS " + result + '\n' +
           in_c(entry) + "IMMUTABLE STRICT PARALLEL SAFE COST " + std::to_string(sql_cost(calculation)) + ";\n" +
           described("FUNCTION " + name + '(' + types(signature.arguments) + ')', comment(calculation, way));
}

// ---- Aggregates

std::string_view step_suffix(Order order) {
    constexpr std::array<std::string_view, 4> suffixes{"_step_by_dates", "_step_by_number", "_step_by_date",
                                                       "_step_of_rows"};
    return catalogue::item_of<Order::of_rows>(suffixes, order);
}

std::string step_script(const Calculation& calculation, const AggregateSignature& signature) {
    const std::string name = function_name(calculation) + std::string{step_suffix(signature.order)};
    const std::string step_types = "internal, " + types(signature.arguments);
    return "CREATE FUNCTION " + name + '(' + step_types + ") RETURNS internal\n" + in_c("zelkovan_" + name) +
           "IMMUTABLE PARALLEL SAFE;\n" +
           described("FUNCTION " + name + '(' + step_types + ')',
                     "'a row of the aggregate " + function_name(calculation) + "'");
}

constexpr std::string_view parallel_parts =
    ",\n    COMBINEFUNC = fin_flows_combine, SERIALFUNC = fin_flows_serialize, DESERIALFUNC = fin_flows_deserialize";

std::string one_aggregate(const Calculation& calculation, const AggregateSignature& signature) {
    const std::string name = function_name(calculation);
    std::string text = step_script(calculation, signature);
    text += "CREATE AGGREGATE " + name + '(' + declared(signature.arguments) + ") (\n    SFUNC = " + name;
    text.append(step_suffix(signature.order)).append(", STYPE = internal, SSPACE = 512, FINALFUNC = ").append(name);
    text += "_result";
    if (signature.order != Order::of_rows) text += parallel_parts;  // the order of rows is lost between workers
    text += ",\n    PARALLEL = SAFE);\n";
    return text + described("AGGREGATE " + name + '(' + types(signature.arguments) + ')', comment(calculation));
}

constexpr std::string_view head =
    "\\echo Use \"CREATE EXTENSION zelkovan\" to load this file. \\quit\n\n"
    "CREATE FUNCTION fin_flows_combine(internal, internal) RETURNS internal\n"
    "    AS 'MODULE_PATHNAME', 'zelkovan_fin_flows_combine' LANGUAGE C IMMUTABLE PARALLEL SAFE;\n"
    "COMMENT ON FUNCTION fin_flows_combine(internal, internal) IS 'flows of two parallel workers';\n\n"
    "CREATE FUNCTION fin_flows_serialize(internal) RETURNS bytea\n"
    "    AS 'MODULE_PATHNAME', 'zelkovan_fin_flows_serialize' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;\n"
    "COMMENT ON FUNCTION fin_flows_serialize(internal) IS 'flows of a parallel worker, to be sent';\n\n"
    "CREATE FUNCTION fin_flows_deserialize(bytea, internal) RETURNS internal\n"
    "    AS 'MODULE_PATHNAME', 'zelkovan_fin_flows_deserialize' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;\n"
    "COMMENT ON FUNCTION fin_flows_deserialize(bytea, internal) IS 'flows that a parallel worker has sent';\n\n";

std::string function_entry(const Calculation& calculation, const std::string& indexed, Way way) {
    constexpr std::array<std::string_view, 3> words{"answer", "attempt", "reason"};
    std::string line = "ZELKOVAN_FUNCTION(" + entry_name(calculation, way) + indexed;
    line.append(", \"").append(kind_letters(calculation)).append("\", ");
    return line.append(catalogue::item_of<Way::reason>(words, way)).append(")\n");
}

}  // namespace

std::string function_script(const Calculation& calculation, Way way) {
    std::string text;
    for (const Signature& signature : signatures(calculation)) text += overload_script(calculation, signature, way);
    return text;
}

std::string aggregate_script(const Calculation& calculation) {
    if (!has_aggregate(calculation)) return {};
    const std::string result = function_name(calculation) + "_result";
    std::string text = "CREATE FUNCTION " + result + "(internal) RETURNS " + result_type(calculation) + '\n' +
                       in_c("zelkovan_" + result) + "IMMUTABLE PARALLEL SAFE COST 1000;\n" +
                       described("FUNCTION " + result + "(internal)",
                                 "'the answer of the aggregate " + function_name(calculation) + "'");
    for (const AggregateSignature& signature : aggregate_signatures(calculation)) {
        text += one_aggregate(calculation, signature);
    }
    return text;
}

std::string whole_script() {
    std::string text{head};
    for (const Calculation& calculation : catalogue::calculations()) {
        for (const Way way : ways) text += function_script(calculation, way);
        text += aggregate_script(calculation);
    }
    return text;
}

std::string entry_list() {
    std::string text = "#include \"adapters/postgresql/entries.hpp\"\n\n";
    std::size_t index = 0;
    for (const Calculation& calculation : catalogue::calculations()) {
        if (calculation.parameters.size() > most_parameters) throw std::length_error{"too many parameters"};
        const std::string indexed = ", " + std::to_string(index++);
        for (const Way way : ways) text += function_entry(calculation, indexed, way);
        if (has_aggregate(calculation)) text += "ZELKOVAN_AGGREGATE(" + entry_name(calculation) + indexed + ")\n";
    }
    return text;
}

}  // namespace finance::adapters::postgresql
