// What every adapter needs: the module, linked in, under one embedded host; functions and their texts from the catalogue;
// and one call with its refusal in words.
//
//  (1) A function is called fin_ and the calculation's name, in lower case; its arguments are the catalogue's, in order.
//  (2) An adapter never hands over a missing value: what is missing in the engine makes the result missing there, and no
//      call is made.
//  (3) An answer that is itself missing (a search without a rate) is missing in the engine too.
//  (4) Everything else without an answer is a refusal: one sentence that names the argument and its rule.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "catalogue/text_case.hpp"
#include "host/batch.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters {

// Made at the first use; one a process and adapter.
const host::EmbeddedHost& shared_host();

// ---- Functions

std::string function_name(const catalogue::Calculation& calculation);  // "fin_price"
using catalogue::lower_case;

inline bool is_scalar(const catalogue::Calculation& calculation) { return catalogue::list_count(calculation) == 0; }

// Parameters that must be given, and all of them; a list counts as one.
std::size_t fewest_parameters(const catalogue::Calculation& calculation);
inline std::size_t all_parameters(const catalogue::Calculation& calculation) { return calculation.parameters.size(); }

// "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])"
std::string usage(const catalogue::Calculation& calculation);
// Usage, answer, parameters with units, rules and defaults, formula, remarks, failure: lines, for a person to read.
std::string documentation(const catalogue::Calculation& calculation);

// ---- Arguments

// A basis as engines have it: the code where the text is a number, else the keyword. The text must live on.
host::Argument basis_argument(std::string_view text);

// The call's arguments from one entry a parameter: lists unrolled where they stand. scalars and lists have an entry for
// each given parameter, and only the one of its kind is looked at.
std::vector<host::Argument> unrolled(const catalogue::Calculation& calculation, std::span<const host::Argument> scalars,
                                     std::span<const std::span<const double>> lists);

// Two lists belong together value by value, and the call itself cannot tell where the first one ends: "XNPV: 3 values, but
// 2 dates". Empty where they pair up.
std::string pairing_fault(const catalogue::Calculation& calculation, std::span<const std::span<const double>> lists);

// ---- Calls

enum class Verdict : std::uint8_t { answered, missing, refused };

struct Answer {
    Verdict verdict = Verdict::refused;
    double value = 0.0;     // answered
    std::string refusal{};  // refused: "PRICE: argument 6 (frequency): must be ..."
};

Answer call(const catalogue::Calculation& calculation, std::span<const host::Argument> arguments);

// The sentence for a refused row of a batch: its arguments, and what it has flagged.
std::string refusal(const catalogue::Calculation& calculation, std::span<const host::Argument> arguments, int flagged);

}  // namespace finance::adapters
