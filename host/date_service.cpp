#include <bit>

#include "abi/zelkovan.h"
#include "host/service_work.hpp"

namespace finance::host {
namespace {

// False for NaN. The fraction is dropped before the test: 2147483647.5 fits.
bool fits_32_bits(double x) noexcept { return x > -2147483649.0 && x < 2147483648.0; }

}  // namespace

// Julian day number by Fliegel and Van Flandern, all divisions truncating; a moves January and February to the end of
// the year before. Years of 32 bits stay below 2^43.
std::int64_t days_since_1960(std::int32_t month, std::int32_t day, std::int32_t year) noexcept {
    const std::int64_t m = month;
    const std::int64_t y = year < 0 ? std::int64_t{year} + 1 : std::int64_t{year};
    const std::int64_t a = (m - 14) / 12;
    const std::int64_t julian_day =
        (1461 * (y + 4800 + a)) / 4 + (367 * (m - 2 - 12 * a)) / 12 - (3 * ((y + 4900 + a) / 100)) / 4 + day - 32075;
    return julian_day - ZELKOVAN_EPOCH_JULIAN_DAY;
}

double date_value(double month, double day, double year) noexcept {
    if (!fits_32_bits(month) || !fits_32_bits(day) || !fits_32_bits(year)) {
        return std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
    }
    return static_cast<double>(days_since_1960(static_cast<std::int32_t>(month), static_cast<std::int32_t>(day),
                                               static_cast<std::int32_t>(year)));
}

}  // namespace finance::host
