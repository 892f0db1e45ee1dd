// The random calls of engine_calls.tsv: each with the embedded host's verdict.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"

namespace finance::test {

struct Entry {
    bool is_text = false;
    std::string text{};
    std::vector<double> numbers{};  // one; a list's may be any number
};

struct EngineCall {
    const catalogue::Calculation* calculation = nullptr;
    std::vector<Entry> entries{};  // one for each parameter given
    std::string verdict{};         // answered, missing, refused
    double value = 0.0;            // answered
    std::string sentence{};        // refused
};

std::vector<EngineCall> engine_calls();

// Calls with the same SQL function: "PRICE 7 t", whose basis is a text.
std::map<std::string, std::vector<EngineCall>> by_function(std::vector<EngineCall> calls);

// The types of a call's arguments: "DOUBLE", "VARCHAR", "DOUBLE[]".
std::vector<std::string> sql_types(const EngineCall& call);

}  // namespace finance::test
