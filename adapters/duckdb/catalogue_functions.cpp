#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/chunk_columns.hpp"
#include "adapters/duckdb/functions.hpp"
#include "adapters/duckdb/signature.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;

namespace {

// What a group's rows are put in order by: "dates, values", or "day, flows" where the day is a column of the user's own.
// Flows of one day go by their values, so that two lists stay in step however many threads there are.
std::string order_words(const Calculation& calculation) {
    std::string days = "day";
    std::string numbers;
    for (const catalogue::Parameter& parameter : calculation.parameters) {
        if (parameter.kind == catalogue::Kind::dates) days = parameter.name;
        if (parameter.kind == catalogue::Kind::numbers) numbers.append(", ").append(parameter.name);
    }
    return days + numbers;
}

// "fin_npv(rate, list(flows ORDER BY day, flows))"; empty where the calculation has no lists.
std::string usage_over_rows(const Calculation& calculation) {
    if (is_scalar(calculation)) return {};
    std::string text;
    for (const catalogue::Parameter& parameter : calculation.parameters) {
        const bool list = is_list(parameter.kind);
        if (!list && parameter.need == catalogue::Need::optional) continue;
        text.append(text.empty() ? "" : ", ").append(list ? "list(" : "").append(parameter.name);
        if (list) text.append(" ORDER BY ").append(order_words(calculation)).append(")");
    }
    return function_name(calculation).append("(").append(text).append(")");
}

// ---- fin_help('price'), fin_help('fin_price')

std::string help(std::string_view name) {
    constexpr std::string_view prefix = "fin_";
    const Calculation* calculation = catalogue::find(name);
    if (calculation == nullptr && catalogue::lower_case(name).starts_with(prefix)) {
        calculation = catalogue::find(name.substr(prefix.size()));
    }
    if (calculation == nullptr)
        throw std::invalid_argument{"fin_help: there is no calculation " +
                                    catalogue::shown(name, catalogue::most_quoted)};
    std::string text = documentation(*calculation);
    if (is_scalar(*calculation)) return text;
    return text + "\nOver the rows of a group: " + usage_over_rows(*calculation) + '\n';
}

void answer_help(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_vector result) {
    or_tell(
        [&] {
            duckdb_vector names = duckdb_data_chunk_get_vector(chunk, 0);
            RowMask rows{duckdb_data_chunk_get_size(chunk)};
            rows.drop_nulls(names);
            const auto* texts = static_cast<const duckdb_string_t*>(duckdb_vector_get_data(names));
            for (std::size_t row = rows.next(0); row < rows.rows(); row = rows.next(row + 1)) {
                put_text(result, row, help(view(texts[row])));
            }
            rows.write_nulls(result);
        },
        [&](const char* sentence) { duckdb_scalar_function_set_error(info, sentence); });
}

void register_help(duckdb_connection connection) {
    const Owned<duckdb_scalar_function> function{duckdb_create_scalar_function()};
    duckdb_scalar_function_set_name(function.get(), "fin_help");
    duckdb_scalar_function_add_parameter(function.get(), logical_type(Type::text).get());
    duckdb_scalar_function_set_return_type(function.get(), logical_type(Type::text).get());
    duckdb_scalar_function_set_function(function.get(), answer_help);
    if (duckdb_register_scalar_function(connection, function.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB registers no function fin_help"};
    }
}

// ---- fin_functions()

struct TextColumn {
    const char* name;
    std::string (*of)(const Calculation&);
};

constexpr std::array text_columns{
    TextColumn{"name", function_name},
    TextColumn{"usage", usage},
    TextColumn{"over_rows", usage_over_rows},
    TextColumn{"answers", [](const Calculation& c) { return std::string{c.answers}; }},
    TextColumn{"family", [](const Calculation& c) { return std::string{family_of(c).title}; }},
};

void bind_table(duckdb_bind_info info) {
    for (const TextColumn& column : text_columns) {
        duckdb_bind_add_result_column(info, column.name, logical_type(Type::text).get());
    }
}

using Position = std::atomic<std::size_t>;  // of the next calculation

void begin_table(duckdb_init_info info) {
    or_tell([&] { duckdb_init_set_init_data(info, std::make_unique<Position>(0).release(), delete_kept<Position>); },
            [&](const char* sentence) { duckdb_init_set_error(info, sentence); });
}

void fill_table(duckdb_function_info info, duckdb_data_chunk chunk) {
    or_tell(
        [&] {
            auto& position = *static_cast<Position*>(duckdb_function_get_init_data(info));
            const auto all = catalogue::calculations();
            const std::size_t most = duckdb_vector_size();
            const std::size_t first = std::min(all.size(), position.fetch_add(most));
            const auto rows = all.subspan(first, std::min(most, all.size() - first));
            for (std::size_t i = 0; i < text_columns.size(); ++i) {
                duckdb_vector column = duckdb_data_chunk_get_vector(chunk, i);
                for (std::size_t row = 0; row < rows.size(); ++row)
                    put_text(column, row, text_columns[i].of(rows[row]));
            }
            duckdb_data_chunk_set_size(chunk, rows.size());
        },
        [&](const char* sentence) { duckdb_function_set_error(info, sentence); });
}

void register_table(duckdb_connection connection) {
    const Owned<duckdb_table_function> function{duckdb_create_table_function()};
    duckdb_table_function_set_name(function.get(), "fin_functions");
    duckdb_table_function_set_bind(function.get(), bind_table);
    duckdb_table_function_set_init(function.get(), begin_table);
    duckdb_table_function_set_function(function.get(), fill_table);
    if (duckdb_register_table_function(connection, function.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB registers no function fin_functions"};
    }
}

}  // namespace

void register_catalogue(duckdb_connection connection) {
    register_help(connection);
    register_table(connection);
}

}  // namespace finance::adapters::duckdb
