#include "database.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string_view>

namespace finance::test {

namespace {

class Result {
public:
    Result(duckdb_connection connection, const std::string& sql) {
        if (duckdb_query(connection, sql.c_str(), &result_) == DuckDBError) {
            error_ = sentence_of(duckdb_result_error(&result_));
        }
    }
    ~Result() { duckdb_destroy_result(&result_); }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    [[nodiscard]] duckdb_result& get() { return result_; }
    [[nodiscard]] const std::string& error() const { return error_; }

private:
    duckdb_result result_{};
    std::string error_{};
};

std::optional<std::string> text_of(duckdb_result& result, idx_t column, idx_t row) {
    char* text = duckdb_value_varchar(&result, column, row);
    if (text == nullptr) return {};
    std::string copy{text};
    duckdb_free(text);
    return copy;
}

void append_doubles(std::vector<std::optional<double>>& values, duckdb_data_chunk chunk) {
    duckdb_vector column = duckdb_data_chunk_get_vector(chunk, 0);
    const auto* numbers = static_cast<const double*>(duckdb_vector_get_data(column));
    std::uint64_t* validity = duckdb_vector_get_validity(column);
    for (idx_t row = 0; row < duckdb_data_chunk_get_size(chunk); ++row) {
        const bool valid = validity == nullptr || duckdb_validity_row_is_valid(validity, row);
        values.push_back(valid ? std::optional{numbers[row]} : std::nullopt);
    }
}

}  // namespace

std::string sentence_of(const char* error) {
    constexpr std::string_view kind = "Invalid Input Error: ";
    std::string sentence{error};
    return sentence.starts_with(kind) ? sentence.substr(kind.size()) : sentence;
}

Database::Database(const char* extension) {
    duckdb_config config = nullptr;
    duckdb_create_config(&config);
    duckdb_set_config(config, "allow_unsigned_extensions", "true");
    const bool opened = duckdb_open_ext(nullptr, &database_, config, nullptr) == DuckDBSuccess &&
                        duckdb_connect(database_, &connection_) == DuckDBSuccess;
    duckdb_destroy_config(&config);
    if (!opened) throw std::runtime_error{"DuckDB opens no database"};
    if (extension != nullptr) run("LOAD '" + std::string{extension} + "'");
}

Database::~Database() {
    duckdb_disconnect(&connection_);
    duckdb_close(&database_);
}

Table Database::query(const std::string& sql) const {
    Result result{connection_, sql};
    Table table{.error = result.error()};
    if (!table.error.empty()) return table;
    const idx_t columns = duckdb_column_count(&result.get());
    for (idx_t row = 0; row < duckdb_row_count(&result.get()); ++row) {
        auto& texts = table.rows.emplace_back();
        for (idx_t column = 0; column < columns; ++column) texts.push_back(text_of(result.get(), column, row));
    }
    return table;
}

std::string Database::value(const std::string& sql) const {
    const Table table = query(sql);
    if (!table.error.empty()) return table.error;
    if (table.rows.size() != 1 || table.rows[0].size() != 1) return "not one value";
    return table.rows[0][0].value_or("NULL");
}

std::vector<std::optional<double>> Database::doubles(const std::string& sql) const {
    Result result{connection_, sql};
    std::vector<std::optional<double>> values;
    if (!result.error().empty()) {
        ADD_FAILURE() << sql << ": " << result.error();
        return values;
    }
    EXPECT_EQ(duckdb_column_type(&result.get(), 0), DUCKDB_TYPE_DOUBLE) << sql;
    while (duckdb_data_chunk chunk = duckdb_fetch_chunk(result.get())) {
        append_doubles(values, chunk);
        duckdb_destroy_data_chunk(&chunk);
    }
    return values;
}

void Database::run(const std::string& sql) const {
    const Result result{connection_, sql};
    if (!result.error().empty()) ADD_FAILURE() << sql << ": " << result.error();
}

}  // namespace finance::test
