// Doubles from their texts, as std::from_chars reads them in its general format: the nearest one, to even where two are
// equally near.
//
//  (1) -? digits with a point among, before or behind them, and an exponent where wanted: -5, .5, 5., 1e-3. No plus but in
//      the exponent, no blanks, nothing hexadecimal.
//  (2) inf, infinity, nan and nan(...), letters, digits and _ within the brackets, whatever the case.
//  (3) Out of range is what rounds to an infinity, and what is not 0 and rounds to it.
//  (4) What is out of range is such whatever follows it; anything else must be all of the text.
#pragma once

#include <string_view>
#include <system_error>

namespace finance::reading {

struct ReadDouble {
    double value = 0.0;
    std::errc fault{};  // invalid_argument, result_out_of_range
    [[nodiscard]] bool good() const { return fault == std::errc{}; }
};

ReadDouble double_from(std::string_view text);

}  // namespace finance::reading
