#include "adapters/duckdb/chunk_columns.hpp"

#include <algorithm>
#include <cstring>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/date_values.hpp"

namespace finance::adapters::duckdb {

using host::Argument;
using host::Column;

namespace {

constexpr std::uint32_t longest_inlined = 12;

template <typename T>
std::span<const T> values_of(duckdb_vector vector, std::size_t count) {
    return {static_cast<const T*>(duckdb_vector_get_data(vector)), count};
}

bool same(const duckdb_string_t& a, const duckdb_string_t& b) {
    return a.value.inlined.length <= longest_inlined && std::memcmp(&a, &b, sizeof a) == 0;
}

Column moved(const Column& column, std::size_t row) {
    switch (column.kind()) {
        case Column::Kind::numbers:
            return Column::numbers(static_cast<const double*>(column.at(row)));
        case Column::Kind::arguments:
            return Column::arguments(static_cast<const Argument*>(column.at(row)));
        default:
            return column;
    }
}

}  // namespace

std::string_view view(const duckdb_string_t& text) {
    const std::uint32_t length = text.value.inlined.length;
    return {length <= longest_inlined ? text.value.inlined.inlined : text.value.pointer.ptr, length};
}

std::span<const double> numbers_of(duckdb_vector vector, Type type, std::size_t count, std::vector<double>& buffer) {
    if (type == Type::number) return values_of<double>(vector, count);
    buffer.resize(count);
    if (type == Type::date) {
        std::ranges::transform(values_of<std::int32_t>(vector, count), buffer.begin(), host_days_of_date);
    } else {
        std::ranges::transform(values_of<std::int64_t>(vector, count), buffer.begin(), host_days_of_timestamp);
    }
    return buffer;
}

void ChunkColumns::read(Type type) {
    duckdb_vector vector = next_vector();
    rows_.drop_nulls(vector);
    if (type == Type::text) {
        columns_.push_back(texts_of(vector));
        return;
    }
    const auto numbers = numbers_of(vector, type, rows_.rows(), days_.emplace_back());
    if (type == Type::number) rows_.drop_missing(numbers);
    columns_.push_back(Column::numbers(numbers.data()));
}

duckdb_vector ChunkColumns::pass_over() {
    duckdb_vector vector = next_vector();
    rows_.drop_nulls(vector);
    columns_.emplace_back(Argument::absent());
    return vector;
}

// The first row from that one on that is left and holds another text.
std::size_t ChunkColumns::first_other(std::span<const duckdb_string_t> texts, std::size_t than) const {
    for (Run run = rows_.next_run(than); !run.empty(); run = rows_.next_run(run.last)) {
        for (std::size_t row = run.first; row < run.last; ++row) {
            if (!same(texts[than], texts[row])) return row;
        }
    }
    return texts.size();
}

// Rows that have been dropped may hold no text at all, and are not touched.
Column ChunkColumns::texts_of(duckdb_vector vector) {
    const auto texts = values_of<duckdb_string_t>(vector, rows_.rows());
    const std::size_t first = rows_.next(0);
    if (first == texts.size()) return Argument::absent_text();
    const Argument basis = basis_argument(view(texts[first]));
    std::size_t row = first_other(texts, first);
    if (row == texts.size()) return basis;

    std::vector<Argument>& bases = bases_.emplace_back(texts.size(), basis);
    for (std::size_t before = first; row < texts.size(); row = rows_.next(row + 1)) {
        bases[row] = same(texts[before], texts[row]) ? bases[before] : basis_argument(view(texts[row]));
        before = row;
    }
    return Column::arguments(bases.data());
}

std::vector<Column> ChunkColumns::columns_from(std::size_t row) const {
    std::vector<Column> columns;
    columns.reserve(columns_.size());
    for (const Column& column : columns_) columns.push_back(moved(column, row));
    return columns;
}

void ChunkColumns::fill(std::vector<Argument>& arguments, std::size_t row) const {
    for (std::size_t i = 0; i < columns_.size(); ++i) arguments[i] = columns_[i].argument(row);
}

}  // namespace finance::adapters::duckdb
