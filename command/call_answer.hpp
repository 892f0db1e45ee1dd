// What a call of a row came to.
//
//  (1) answered: there is a value. missing: the answer is a missing value, or a value that it needs is missing.
//      refused: everything else.
//  (2) Only what is answered is written; the reason of the rest is worked out where somebody wants to read it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/diagnosis.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

enum class Verdict : std::uint8_t { answered, missing, refused };  // from good to bad

constexpr std::string_view word_of(Verdict verdict) {
    constexpr std::array<std::string_view, 3> words{"answered", "missing", "refused"};
    return words[static_cast<std::size_t>(verdict)];
}

host::Argument as_argument(const catalogue::Given& given);
std::vector<catalogue::Given> as_given(std::span<const host::Argument> arguments);

Verdict verdict_of(const catalogue::Calculation& calculation, std::span<const host::Argument> arguments,
                   const host::Evaluation& evaluation);

// Why there is no value; empty where there is one.
std::string why(const catalogue::Calculation& calculation, std::span<const host::Argument> arguments,
                const host::Evaluation& evaluation);

// A value as the command prints it.
void append_value(std::string& output, const catalogue::Calculation& calculation, double value);

}  // namespace finance::command
