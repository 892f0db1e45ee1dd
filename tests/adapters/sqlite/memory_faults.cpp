#include "tests/adapters/sqlite/memory_faults.hpp"

#include <sqlite3.h>

namespace finance::test {

namespace {

sqlite3_mem_methods& plain() {
    static sqlite3_mem_methods methods{};
    return methods;
}

thread_local int until_failure = 0;

bool fails() { return until_failure > 0 && --until_failure == 0; }

void* allocate(int bytes) { return fails() ? nullptr : plain().xMalloc(bytes); }

void* reallocate(void* block, int bytes) { return fails() ? nullptr : plain().xRealloc(block, bytes); }

// Before main, since SQLite takes no configuration once it is in use.
const bool installed = [] {
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &plain());
    static sqlite3_mem_methods methods = plain();
    methods.xMalloc = allocate;
    methods.xRealloc = reallocate;
    return sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
}();

}  // namespace

void fail_sqlite_request(int n) { until_failure = installed ? n : 0; }

}  // namespace finance::test
