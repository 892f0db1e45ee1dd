// What a parameter's values are to the draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "hostile/call.hpp"

namespace finance::hostile {

enum class Role : std::uint8_t { day, days, rate, rates, amount, flows, factor, count, frequency, basis, flag };

constexpr Role role_of(const catalogue::Parameter& parameter) {
    using catalogue::Kind;
    const bool fraction = parameter.unit.starts_with("fraction");
    switch (parameter.kind) {
        case Kind::date:
        case Kind::date_time:
            return Role::day;
        case Kind::dates:
            return Role::days;
        case Kind::numbers:
            return fraction ? Role::rates : Role::flows;
        case Kind::whole:
            return parameter.name == "frequency" ? Role::frequency : Role::count;
        case Kind::basis:
            return Role::basis;
        case Kind::flag:
            return Role::flag;
        case Kind::number:
            break;
    }
    if (fraction) return Role::rate;
    return parameter.name == "factor" ? Role::factor : Role::amount;
}

// The parameters of that role whose values are given.
inline std::vector<std::size_t> given_of(const Call& call, Role role) {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < call.given.size(); ++i) {
        if (!call.given[i].empty() && role_of(call.calculation->parameters[i]) == role) indices.push_back(i);
    }
    return indices;
}

}  // namespace finance::hostile
