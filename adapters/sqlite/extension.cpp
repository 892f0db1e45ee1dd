// The entry point: the functions or aggregates of each row of the catalogue, and the tables.
#include <exception>
#include <mutex>
#include <new>
#include <string>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/functions.hpp"
#include "adapters/sqlite/table_function.hpp"
#include "adapters/sqlite/tables.hpp"

SQLITE_EXTENSION_INIT1

namespace finance::adapters::sqlite {

namespace {

constexpr int oldest_version = 3'031'000;  // functions and tables can be innocuous

// Several connections may load the extension at the same time.
void keep_routines(const sqlite3_api_routines* routines) {
    static std::mutex keeping;
    const std::lock_guard lock{keeping};
    if (sqlite3_api != routines) sqlite3_api = routines;
}

int register_calculation(sqlite3* database, const catalogue::Calculation& calculation) {
    const auto add = is_scalar(calculation) ? register_scalar : register_aggregate;
    for (const Way way : ways) {
        if (const int status = add(database, calculation, way); status != SQLITE_OK) return status;
    }
    return SQLITE_OK;
}

template <typename Rows>
int register_table(sqlite3* database) {
    return TableFunction<Rows>::add_to(database, Rows::name);
}

int register_everything(sqlite3* database) {
    for (const auto& calculation : catalogue::calculations()) {
        if (const int status = register_calculation(database, calculation); status != SQLITE_OK) return status;
    }
    for (const auto table : {register_table<CatalogueRows>, register_table<LoanRows>}) {
        if (const int status = table(database); status != SQLITE_OK) return status;
    }
    return SQLITE_OK;
}

int refuse(char** sentence, const std::string& reason) {
    if (sentence != nullptr) *sentence = sqlite3_mprintf("zelkovan: %s", reason.c_str());
    return SQLITE_ERROR;
}

// The extension stays loaded when its connection closes: threads that have made calls keep their records.
int load(sqlite3* database, char** sentence) {
    if (sqlite3_libversion_number() < oldest_version) {
        return refuse(sentence, "SQLite 3.31 or later is needed, this is " + std::string{sqlite3_libversion()});
    }
    (void)shared_host();
    const int status = register_everything(database);
    if (status != SQLITE_OK) return refuse(sentence, sqlite3_errmsg(database));
    return SQLITE_OK_LOAD_PERMANENTLY;
}

}  // namespace

}  // namespace finance::adapters::sqlite

extern "C" __attribute__((visibility("default"))) int sqlite3_zelkovansqlite_init(
    sqlite3* database, char** sentence, const sqlite3_api_routines* routines) {
    try {
        finance::adapters::sqlite::keep_routines(routines);
        return finance::adapters::sqlite::load(database, sentence);
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    } catch (const std::exception& fault) {
        return finance::adapters::sqlite::refuse(sentence, fault.what());
    }
}

// Under the name that SQLite tries first, so that the file may be renamed.
extern "C" __attribute__((visibility("default"))) int sqlite3_extension_init(sqlite3* database, char** sentence,
                                                                             const sqlite3_api_routines* routines) {
    return sqlite3_zelkovansqlite_init(database, sentence, routines);
}
