#include "module/list_columns.hpp"

#include <algorithm>
#include <array>

#include "abi/status.hpp"
#include "cashflow/list_rows.hpp"
#include "module/column_values.hpp"
#include "module/financial_list.hpp"

namespace finance {

namespace {

// clang-format off
#define FINANCE_LISTS(ROW) \
    ROW(XIRR) ROW(XNPV)
// clang-format on

using ListHandlers = std::array<ListHandler*, calculation_count>;

constexpr ListHandlers make_handlers() {
    ListHandlers handlers{};
#define LIST_HANDLER(name) handlers[index_of(#name)] = list_##name;
    FINANCE_LISTS(LIST_HANDLER)
#undef LIST_HANDLER
    return handlers;
}
constexpr ListHandlers list_handlers = make_handlers();

bool is_list(const ZelkovanColumn& column) { return column.kind == ZELKOVAN_COLUMN_LISTS; }

// Rows of a request, one after the other.
class ListRows {
public:
    explicit ListRows(const ZelkovanColumns& request) : request_{request} {
        row_.count = static_cast<int>(request.column_count);
    }

    // False where an argument is not a number, or is missing, or a list is no list.
    bool read(std::int64_t r) {
        for (int i = 0; i < row_.count; ++i) {
            const ZelkovanColumn& column = request_.columns[i];
            if (!(is_list(column) ? read_list(column, r, i) : read_number(column, r, i))) return false;
        }
        return true;
    }
    [[nodiscard]] const ListRow& row() const { return row_; }

private:
    bool read_list(const ZelkovanColumn& column, std::int64_t r, int i) {
        const std::int64_t start = column.starts[r];
        row_.columns[i] = {static_cast<const double*>(column.first) + start, column.starts[r + 1] - start};
        return row_.columns[i].count >= 0;
    }

    bool read_number(const ZelkovanColumn& column, std::int64_t r, int i) {
        const ColumnNumber value = number_in(column, place_of(column, r));
        numbers_[i] = value.number;
        row_.columns[i] = {&numbers_[i], 1};
        return value.present && !is_missing(value.number);
    }

    const ZelkovanColumns& request_;
    ListRow row_{};
    double numbers_[ListRow::most_columns];
};

}  // namespace

bool has_lists(const ZelkovanColumns& request) {
    return std::any_of(request.columns, request.columns + request.column_count, is_list);
}

std::int64_t calculate_lists(const ZelkovanColumns& request, std::int32_t calculation, const Discounting& discounting) {
    constexpr std::int64_t rows_of_word = 64;
    ListHandler* handler = list_handlers[static_cast<std::uint32_t>(calculation)];
    const bool in_place = std::all_of(request.columns, request.columns + request.column_count,
                                      [](const auto& column) { return !is_list(column) || is_aligned(column.first); });
    if (handler == nullptr || !in_place || request.column_count > ListRow::most_columns) return 0;
    ListRows rows{request};
    std::int64_t answered = 0;
    for (std::int64_t r = 0; r < request.rows; ++r) {
        if (!rows.read(r) || !handler(rows.row(), discounting, request.results[r])) continue;
        request.answered[r / rows_of_word] |= std::uint64_t{1} << (r % rows_of_word);
        ++answered;
    }
    return answered;
}

}  // namespace finance
