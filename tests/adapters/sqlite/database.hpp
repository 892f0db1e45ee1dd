// A database in memory with the extension loaded from its file, and statements on it.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace finance::test {

using Null = std::monostate;
using SqlValue = std::variant<Null, std::int64_t, double, std::string>;

struct Outcome {
    std::vector<SqlValue> values{};  // of all columns of all rows, one after the other
    std::string error{};             // SQLite's sentence; empty where there was none
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::string told(const SqlValue& value);

class Statement {
public:
    Statement(sqlite3* database, const std::string& sql);  // throws what SQLite says
    void bind(int position, const SqlValue& value);
    // All rows; then the statement may be bound and run again.
    Outcome run();

private:
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement_;
};

class Database {
public:
    Database();

    // All rows of one statement, or the error that preparing or running it gave.
    Outcome run(const std::string& sql) const;
    // Its only value; a failed expectation where it has none, or an error.
    SqlValue value(const std::string& sql) const;
    double number(const std::string& sql) const;
    std::string text(const std::string& sql) const;
    std::string error(const std::string& sql) const;
    // Statements that must succeed.
    void execute(const std::string& sql) const;

    [[nodiscard]] sqlite3* get() const { return database_.get(); }

private:
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> database_;
};

}  // namespace finance::test
