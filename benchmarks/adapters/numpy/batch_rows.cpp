// The embedded host's batch call for ufunc_speed.py: the same rows in the same process, without NumPy around them.
#include <cstddef>
#include <exception>
#include <vector>

#include "adapters/common/engine_call.hpp"

using finance::host::Argument;
using finance::host::Column;

// A column of 1 value is the same in all rows. Gives how many rows were refused, -1 where there was no memory.
extern "C" __attribute__((visibility("default"))) long batch_rows(const char* name, const double* const* columns,
                                                                  const std::size_t* lengths, std::size_t count,
                                                                  std::size_t rows, double* results) {
    try {
        std::vector<Column> arguments;
        for (std::size_t i = 0; i < count; ++i) {
            arguments.push_back(lengths[i] == 1 ? Column{Argument{*columns[i]}} : Column::numbers(columns[i]));
        }
        return static_cast<long>(finance::adapters::shared_host().evaluate_rows(
            {.name = name, .columns = arguments, .rows = rows, .results = results}));
    } catch (const std::exception&) {
        return -1;
    }
}
