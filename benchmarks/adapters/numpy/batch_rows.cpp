// The embedded host's batch call for price_speed.py: the same rows in the same process, without NumPy around them.
#include <array>
#include <cstddef>
#include <exception>

#include "adapters/common/engine_call.hpp"

using finance::host::Argument;
using finance::host::Column;

// PRICE of bonds that differ in their yield. Gives how many rows were refused, -1 where there was no memory.
extern "C" __attribute__((visibility("default"))) long batch_price(const double* terms, const double* yields,
                                                                   std::size_t rows, double* prices) {
    try {
        const std::array columns{Column{Argument{terms[0]}}, Column{Argument{terms[1]}}, Column{Argument{terms[2]}},
                                 Column::numbers(yields),    Column{Argument{terms[3]}}, Column{Argument{terms[4]}}};
        return static_cast<long>(finance::adapters::shared_host().evaluate_rows(
            {.name = "PRICE", .columns = columns, .rows = rows, .results = prices}));
    } catch (const std::exception&) {
        return -1;
    }
}
