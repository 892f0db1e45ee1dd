// DuckDB's dates and times, from and to the days that calculations count.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace finance::adapters::duckdb {

inline constexpr double host_day_of_1970 = 3653.0;  // 10 years, 1960, 1964 and 1968 leap years
inline constexpr std::int64_t microseconds_a_day = 86'400'000'000;

// What DuckDB calls 'infinity' and '-infinity' are the two ends of the range that have an opposite.
template <typename Count>
constexpr bool is_infinite(Count count) {
    constexpr Count infinity = std::numeric_limits<Count>::max();
    return count == infinity || count == -infinity;
}

template <typename Count>
constexpr double infinite(Count count) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return count > 0 ? infinity : -infinity;
}

// Of days since 1970-01-01.
constexpr double host_days_of_date(std::int32_t days) {
    return is_infinite(days) ? infinite(days) : static_cast<double>(days) + host_day_of_1970;
}

// Of microseconds since 1970-01-01. Days and what is left of the day are taken apart, so that whole days stay whole.
constexpr double host_days_of_timestamp(std::int64_t microseconds) {
    if (is_infinite(microseconds)) return infinite(microseconds);
    std::int64_t days = microseconds / microseconds_a_day;
    std::int64_t rest = microseconds % microseconds_a_day;
    if (rest < 0) {
        rest += microseconds_a_day;
        --days;
    }
    const double part = static_cast<double>(rest) / static_cast<double>(microseconds_a_day);
    return static_cast<double>(days) + host_day_of_1970 + part;
}

// Days since 1970-01-01; nothing where DuckDB has no such date.
inline std::optional<std::int32_t> date_of_host_days(double host_days) {
    const double days = host_days - host_day_of_1970;
    constexpr double limit = std::numeric_limits<std::int32_t>::max();  // itself infinite
    if (!(std::abs(days) < limit) || days != std::trunc(days)) return {};
    return static_cast<std::int32_t>(days);
}

}  // namespace finance::adapters::duckdb
