#include "tests/adapters/sqlite/database.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <stdexcept>

namespace finance::test {

namespace {

sqlite3* opened() {
    sqlite3* database = nullptr;
    if (sqlite3_open(":memory:", &database) != SQLITE_OK) {
        sqlite3_close(database);
        throw std::bad_alloc{};
    }
    return database;
}

SqlValue column(sqlite3_stmt* statement, int i) {
    switch (sqlite3_column_type(statement, i)) {
        case SQLITE_NULL:
            return Null{};
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_column_int64(statement, i)};
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, i);
        default: {
            const void* text = sqlite3_column_text(statement, i);
            return text == nullptr ? std::string{} : std::string{static_cast<const char*>(text)};
        }
    }
}

}  // namespace

std::string told(const SqlValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* text = std::get_if<std::string>(&value)) return '\'' + *text + '\'';
    if (std::holds_alternative<Null>(value)) return "NULL";
    std::array<char, 40> digits{};
    std::snprintf(digits.data(), digits.size(), "%.17g", std::get<double>(value));
    return digits.data();
}

// ---- Statements

Statement::Statement(sqlite3* database, const std::string& sql) : statement_{nullptr, sqlite3_finalize} {
    sqlite3_stmt* prepared = nullptr;
    const int status = sqlite3_prepare_v2(database, sql.c_str(), -1, &prepared, nullptr);
    statement_.reset(prepared);
    if (status != SQLITE_OK) throw std::runtime_error{sqlite3_errmsg(database)};
}

void Statement::bind(int position, const SqlValue& value) {
    sqlite3_stmt* const statement = statement_.get();
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        sqlite3_bind_int64(statement, position, *whole);
    } else if (const auto* number = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement, position, *number);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        sqlite3_bind_text(statement, position, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
    } else {
        sqlite3_bind_null(statement, position);
    }
}

Outcome Statement::run() {
    Outcome outcome;
    int status = SQLITE_ROW;
    while ((status = sqlite3_step(statement_.get())) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(statement_.get()); ++i) {
            outcome.values.push_back(column(statement_.get(), i));
        }
    }
    if (status != SQLITE_DONE) outcome.error = sqlite3_errmsg(sqlite3_db_handle(statement_.get()));
    sqlite3_reset(statement_.get());
    return outcome;
}

// ---- Databases

Database::Database() : database_{opened(), sqlite3_close} {
    sqlite3_db_config(get(), SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
    char* sentence = nullptr;
    const int status = sqlite3_load_extension(get(), SQLITE_EXTENSION, nullptr, &sentence);
    const std::string reason = sentence == nullptr ? "no memory" : sentence;
    sqlite3_free(sentence);
    if (status != SQLITE_OK) throw std::runtime_error{reason};
}

Outcome Database::run(const std::string& sql) const {
    try {
        return Statement{get(), sql}.run();
    } catch (const std::runtime_error& fault) {
        return {.error = fault.what()};
    }
}

SqlValue Database::value(const std::string& sql) const {
    const Outcome outcome = run(sql);
    EXPECT_EQ(outcome.error, "") << sql;
    EXPECT_EQ(outcome.values.size(), 1U) << sql;
    return outcome.values.empty() ? SqlValue{} : outcome.values.front();
}

double Database::number(const std::string& sql) const {
    const SqlValue answer = value(sql);
    const auto* number = std::get_if<double>(&answer);
    EXPECT_NE(number, nullptr) << sql << " gives " << told(answer);
    return number == nullptr ? 0.0 : *number;
}

std::string Database::text(const std::string& sql) const {
    const SqlValue answer = value(sql);
    const auto* text = std::get_if<std::string>(&answer);
    EXPECT_NE(text, nullptr) << sql << " gives " << told(answer);
    return text == nullptr ? "" : *text;
}

std::string Database::error(const std::string& sql) const {
    const Outcome outcome = run(sql);
    EXPECT_NE(outcome.error, "") << sql;
    return outcome.error;
}

void Database::execute(const std::string& sql) const {
    char* sentence = nullptr;
    sqlite3_exec(get(), sql.c_str(), nullptr, nullptr, &sentence);
    EXPECT_EQ(sentence, nullptr) << sql << ": " << sentence;
    sqlite3_free(sentence);
}

}  // namespace finance::test
