// The server's headers, after every header of C++: they give printf and its like other names by macros.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string_view>

#include "adapters/postgresql/calls.hpp"
#include "adapters/postgresql/signatures.hpp"

extern "C" {
#include <postgres.h>
// After postgres.h.
#include <catalog/pg_type_d.h>
#include <fmgr.h>
#include <miscadmin.h>
#include <utils/array.h>
#include <utils/builtins.h>
#include <utils/date.h>
#include <utils/memutils.h>
}
