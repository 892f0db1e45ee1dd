// Calls of every calculation, a usual one and one in full, and calls that end in every other way: log lines, notes, refusals.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "host/embedded_host.hpp"

namespace finance::test {

struct SampleCall {
    std::string name;
    std::vector<host::Argument> arguments;
};

[[nodiscard]] const std::vector<SampleCall>& answered_calls();  // all have a value
[[nodiscard]] const std::vector<SampleCall>& other_calls();     // no value

// Days from 1 January 1960, by the standard library's calendar.
constexpr double host_day(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    const sys_days date{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day}};
    return static_cast<double>((date - sys_days{std::chrono::year{1960} / January / 1}).count());
}

}  // namespace finance::test
