// What every adapter needs: the module, linked in, under one embedded host; functions and their texts from the catalogue;
// and one call with its refusal in words.
//
//  (1) A function is called fin_ and the calculation's name, in lower case; its arguments are the catalogue's, in order.
//  (2) An adapter never hands over a missing value: what is missing in the engine makes the result missing there, and no
//      call is made.
//  (3) An answer that is itself missing (a search without a rate), that does not solve its equation or is infinite is
//      missing in the engine too.
//  (4) So is one that is not there, although no argument is at fault, where a calculation searches or has lists: one group
//      of flows without a rate must not end a query of many, nor one price that no yield has.
//  (5) Everything else without an answer is a refusal: one sentence that names the argument and its rule.
#pragma once

#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "adapters/common/kinds_of_values.hpp"
#include "adapters/common/ways.hpp"
#include "calls/answer.hpp"
#include "catalogue/catalogue.hpp"
#include "host/batch.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters {

// Made at the first use; one a process and adapter.
const host::EmbeddedHost& shared_host();

// ---- Functions

std::string function_name(const catalogue::Calculation& calculation);        // "fin_price"
std::string way_name(const catalogue::Calculation& calculation, Way way);    // "fin_try_price"
std::string way_remark(const catalogue::Calculation& calculation, Way way);  // "", or what it gives beside fin_price

inline bool is_scalar(const catalogue::Calculation& calculation) { return catalogue::list_count(calculation) == 0; }

// Parameters that must be given; a list counts as one.
std::size_t fewest_parameters(const catalogue::Calculation& calculation);

// "fin_price(settlement, maturity, rate, yield, redemption, frequency [, basis])"
std::string usage(const catalogue::Calculation& calculation);
// Usage, answer, parameters with units, rules and defaults, formula, remarks, failure: lines, for a person to read.
std::string documentation(const catalogue::Calculation& calculation);

// ---- Arguments

// A basis as engines have it: the code where the text is a number, else the keyword. The text must live on.
host::Argument basis_argument(std::string_view text);

// ---- Calls

// Whether an answer, or all of them, stands without a look at its call.
inline bool speaks_for_itself(const catalogue::Calculation& calculation, double value) {
    return !calculation.searches && std::isfinite(value);
}
inline bool all_speak_for_themselves(const catalogue::Calculation& calculation, std::span<const double> values) {
    return !calculation.searches && all_finite(values);
}

// Whether a call without an answer is a refusal, by (4) and (5).
bool is_refusal(const calls::Answer& answer);

// The value of an answer, nothing where it is missing or none that holds. In the way of an answer CallRefused, the
// sentence naming the calculation.
std::optional<double> value_of(const calls::Answer& answer, Way way = Way::answer);
std::optional<double> call(const catalogue::Calculation& calculation, calls::Arguments arguments,
                           Way way = Way::answer);

// The sentence of a call, naming the calculation, where it has no value; "" where it has one.
std::string why_no_value(const calls::Answer& answer);
std::string why_no_value(const catalogue::Calculation& calculation, calls::Arguments arguments);

}  // namespace finance::adapters
