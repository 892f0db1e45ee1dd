// A DuckDB in memory that has loaded the extension, and what a query says.
#pragma once

#include <duckdb.h>

#include <optional>
#include <string>
#include <vector>

namespace finance::test {

struct Table {
    std::string error{};  // without the kind of error that DuckDB puts before it
    std::vector<std::vector<std::optional<std::string>>> rows{};
};

class Database {
public:
    // extension: a file that is loaded; nullptr: none is.
    explicit Database(const char* extension = ZELKOVAN_DUCKDB_EXTENSION);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    [[nodiscard]] duckdb_connection connection() const { return connection_; }

    // As texts.
    [[nodiscard]] Table query(const std::string& sql) const;
    // The only value of the only row: its text, "NULL", or the sentence of an error.
    [[nodiscard]] std::string value(const std::string& sql) const;
    // A column of DOUBLE, bit for bit. An error fails the test.
    [[nodiscard]] std::vector<std::optional<double>> doubles(const std::string& sql) const;
    // Nothing but an effect. An error fails the test.
    void run(const std::string& sql) const;

private:
    duckdb_database database_ = nullptr;
    duckdb_connection connection_ = nullptr;
};

// "PRICE: ..." of "Invalid Input Error: PRICE: ...".
std::string sentence_of(const char* error);

}  // namespace finance::test
