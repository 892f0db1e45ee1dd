// The shape that all handlers share; see Handler in module/financial_list.hpp.
#pragma once

#include <cstdint>

#include "abi/status.hpp"

// Declares or defines the handler of one calculation.
#define FINANCE_HANDLER(name)                                                                                \
    ::finance::Status fnc_##name([[maybe_unused]] HostCallContext* context, [[maybe_unused]] double* result, \
                                 [[maybe_unused]] std::int64_t count, [[maybe_unused]] std::int32_t row)
