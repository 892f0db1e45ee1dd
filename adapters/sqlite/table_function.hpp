// Table-valued functions: eponymous virtual tables that are only read. Rows says what differs:
//
//     static constexpr const char* declaration;                       // CREATE TABLE x(...), arguments HIDDEN
//     static int plan(sqlite3_vtab&, sqlite3_index_info&);            // xBestIndex
//     void begin(std::span<sqlite3_value*> arguments);                // those that the plan asked for, in its order
//     bool at_end() const;
//     void next();
//     void column(sqlite3_context*, int) const;
//     sqlite3_int64 number() const;                                   // of the row
//
// What begin, next and column throw becomes the statement's error.
#pragma once

#include <exception>
#include <new>
#include <span>

#include "adapters/sqlite/sqlite_api.hpp"
#include "adapters/sqlite/sqlite_memory.hpp"
#include "adapters/sqlite/values.hpp"

namespace finance::adapters::sqlite {

inline int fail(sqlite3_vtab& table, const char* sentence) {
    sqlite3_free(table.zErrMsg);
    table.zErrMsg = sqlite3_mprintf("%s", sentence);
    return SQLITE_ERROR;
}

template <typename Rows>
class TableFunction {
public:
    static int add_to(sqlite3* database, const char* name) {
        static const sqlite3_module module = described();
        return sqlite3_create_module_v2(database, name, &module, nullptr, nullptr);
    }

private:
    struct Cursor {
        sqlite3_vtab_cursor base{};  // first: SQLite knows no more of a cursor
        Rows rows{};
    };

    static Rows& rows_of(sqlite3_vtab_cursor* cursor) { return static_cast<Cursor*>(static_cast<void*>(cursor))->rows; }

    template <typename Work>
    static int done(sqlite3_vtab_cursor* cursor, Work work) noexcept {
        try {
            work(rows_of(cursor));
            return SQLITE_OK;
        } catch (const std::bad_alloc&) {
            return SQLITE_NOMEM;
        } catch (const std::exception& fault) {
            return fail(*cursor->pVtab, fault.what());
        }
    }

    static int connect(sqlite3* database, void*, int, const char* const*, sqlite3_vtab** table, char**) {
        if (const int status = sqlite3_declare_vtab(database, Rows::declaration); status != SQLITE_OK) return status;
        sqlite3_vtab_config(database, SQLITE_VTAB_INNOCUOUS);
        *table = static_cast<sqlite3_vtab*>(sqlite3_malloc64(sizeof(sqlite3_vtab)));
        if (*table == nullptr) return SQLITE_NOMEM;
        **table = sqlite3_vtab{};
        return SQLITE_OK;
    }
    static int disconnect(sqlite3_vtab* table) {
        sqlite3_free(table);
        return SQLITE_OK;
    }
    static int plan(sqlite3_vtab* table, sqlite3_index_info* info) { return Rows::plan(*table, *info); }

    static int open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
        void* const block = sqlite3_malloc64(sizeof(Cursor));
        if (block == nullptr) return SQLITE_NOMEM;
        *cursor = &(new (block) Cursor)->base;
        return SQLITE_OK;
    }
    static int close(sqlite3_vtab_cursor* cursor) {
        static_cast<Cursor*>(static_cast<void*>(cursor))->~Cursor();
        sqlite3_free(cursor);
        return SQLITE_OK;
    }
    static int filter(sqlite3_vtab_cursor* cursor, int, const char*, int count, sqlite3_value** values) {
        const std::span arguments{values, static_cast<std::size_t>(count)};
        return done(cursor, [&](Rows& rows) { rows.begin(arguments); });
    }
    static int next(sqlite3_vtab_cursor* cursor) {
        return done(cursor, [](Rows& rows) { rows.next(); });
    }
    static int at_end(sqlite3_vtab_cursor* cursor) { return rows_of(cursor).at_end() ? 1 : 0; }
    static int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int i) {
        or_error(context, [&] { rows_of(cursor).column(context, i); });
        return SQLITE_OK;
    }
    static int number(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
        *number = rows_of(cursor).number();
        return SQLITE_OK;
    }

    // Without xCreate: the table is there by its name, and no other can be made of it.
    static sqlite3_module described() {
        sqlite3_module module{};
        module.xConnect = connect;
        module.xBestIndex = plan;
        module.xDisconnect = disconnect;
        module.xOpen = open;
        module.xClose = close;
        module.xFilter = filter;
        module.xNext = next;
        module.xEof = at_end;
        module.xColumn = column;
        module.xRowid = number;
        return module;
    }
};

}  // namespace finance::adapters::sqlite
