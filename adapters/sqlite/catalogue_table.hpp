// fin_functions: what the catalogue says of each function, one a row.
#pragma once

#include <cstddef>
#include <span>

#include "adapters/sqlite/sqlite_api.hpp"

namespace finance::adapters::sqlite {

class CatalogueRows {
public:
    static constexpr const char* name = "fin_functions";
    static const char* const declaration;

    static int plan(sqlite3_vtab& table, sqlite3_index_info& info);
    void begin(std::span<sqlite3_value*> arguments);
    [[nodiscard]] bool at_end() const;
    void next() { ++row_; }
    void column(sqlite3_context* context, int i) const;
    [[nodiscard]] sqlite3_int64 number() const { return static_cast<sqlite3_int64>(row_) + 1; }

private:
    std::size_t row_ = 0;
};

}  // namespace finance::adapters::sqlite
