// The random calls of engine_calls.tsv, which engine_draws.cpp writes, for tests in C++.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"

namespace finance::test {

struct CallLine {
    std::size_t number = 0;  // of the line, from 0
    const catalogue::Calculation* calculation = nullptr;
    std::vector<std::string> parameters{};  // as they stand: n:BITS, t:TEXT, a list with commas, - for an empty one
    std::string verdict{};                  // answered, missing, no answer, refused, ...
    std::string answer{};                   // BITS, -, or the sentence
};

// All of the file; throws where a line is no call, and where a calculation has none.
std::vector<CallLine> read_call_lines();

std::vector<std::string> split(const std::string& text, char mark);
double number_of_bits(const std::string& digits);

}  // namespace finance::test
