// Answers, as SQLite takes them.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string_view>

#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::sqlite {

void give_text(sqlite3_context* context, std::string_view text);
void give_error(sqlite3_context* context, std::string_view sentence);

// The value, or null; a date is ISO text where it has one.
void give_answer(sqlite3_context* context, const catalogue::Calculation& calculation, std::optional<double> value);

// Does the work that SQLite asked for; what it throws becomes the statement's error.
template <typename Work>
void or_error(sqlite3_context* context, Work work) noexcept {
    try {
        work();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& fault) {
        sqlite3_result_error(context, fault.what(), -1);
    }
}

}  // namespace finance::adapters::sqlite
