// What DuckDB calls when it loads zelkovan.duckdb_extension.
#include <mutex>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/functions.hpp"

duckdb_ext_api_v1 duckdb_ext_api{};

namespace finance::adapters::duckdb {

namespace {

// The same for every database of the process: kept once, since another thread may be calling.
void keep(const duckdb_ext_api_v1& functions) {
    static std::once_flag kept;
    std::call_once(kept, [&] { duckdb_ext_api = functions; });
}

void register_all(duckdb_connection connection) {
    (void)shared_host();  // a module that does not load is told now, not by the first query
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        for (const Way way : ways) register_scalar(connection, calculation, way);
    }
    register_catalogue(connection);
}

bool load(duckdb_extension_info info, const duckdb_extension_access& access) {
    bool loaded = false;
    or_tell(
        [&] {
            const void* functions = access.get_api(info, "v1.2.0");
            duckdb_database* database = functions != nullptr ? access.get_database(info) : nullptr;
            if (database == nullptr) return;  // DuckDB has kept the reason
            keep(*static_cast<const duckdb_ext_api_v1*>(functions));
            duckdb_connection connection = nullptr;
            if (duckdb_connect(*database, &connection) == DuckDBError) {
                access.set_error(info, "zelkovan: no connection to the database");
                return;
            }
            const Owned<duckdb_connection> closed{connection};
            register_all(connection);
            loaded = true;
        },
        [&](const char* sentence) { access.set_error(info, sentence); });
    return loaded;
}

}  // namespace

}  // namespace finance::adapters::duckdb

extern "C" __attribute__((visibility("default"))) bool zelkovan_init_c_api(duckdb_extension_info info,
                                                                           duckdb_extension_access* access) {
    return finance::adapters::duckdb::load(info, *access);
}
