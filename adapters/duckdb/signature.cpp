#include "adapters/duckdb/signature.hpp"

#include <algorithm>
#include <span>

#include "adapters/common/engine_call.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Parameter;
using catalogue::ResultKind;

namespace {

bool any_of_kind(std::span<const Parameter> parameters, Kind kind) {
    return std::ranges::find(parameters, kind, &Parameter::kind) != parameters.end();
}

std::vector<Type> ways_of_dates(std::span<const Parameter> parameters) {
    if (std::ranges::none_of(parameters, catalogue::is_dated, &Parameter::kind)) return {Type::number};
    if (!any_of_kind(parameters, Kind::date_time)) return {Type::date, Type::number};
    return {Type::date, Type::number, Type::timestamp};
}

std::vector<Type> ways_of_bases(std::span<const Parameter> parameters) {
    if (!any_of_kind(parameters, Kind::basis)) return {Type::number};
    return {Type::text, Type::number};
}

Type type_of(Kind kind, Type dates, Type basis) {
    if (catalogue::is_dated(kind)) return dates;
    return kind == Kind::basis ? basis : Type::number;
}

duckdb_type code(Type type) {
    switch (type) {
        case Type::date:
            return DUCKDB_TYPE_DATE;
        case Type::timestamp:
            return DUCKDB_TYPE_TIMESTAMP;
        case Type::text:
            return DUCKDB_TYPE_VARCHAR;
        default:
            return DUCKDB_TYPE_DOUBLE;
    }
}

}  // namespace

std::vector<Signature> signatures(const Calculation& calculation) {
    std::vector<Signature> all;
    for (std::size_t count = fewest_parameters(calculation); count <= calculation.parameters.size(); ++count) {
        const auto given = calculation.parameters.first(count);
        for (const Type dates : ways_of_dates(given)) {
            for (const Type basis : ways_of_bases(given)) {
                Signature& signature = all.emplace_back(Signature{.calculation = &calculation});
                for (const Parameter& parameter : given) {
                    signature.types.push_back(type_of(parameter.kind, dates, basis));
                }
            }
        }
    }
    return all;
}

Owned<duckdb_logical_type> logical_type(Type type) {
    return Owned<duckdb_logical_type>{duckdb_create_logical_type(code(type))};
}

Owned<duckdb_logical_type> list_type(Type type) {
    return Owned<duckdb_logical_type>{duckdb_create_list_type(logical_type(type).get())};
}

Owned<duckdb_logical_type> result_type(const Calculation& calculation) {
    return logical_type(calculation.result == ResultKind::date ? Type::date : Type::number);
}

}  // namespace finance::adapters::duckdb
