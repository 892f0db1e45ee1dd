#include "calls/meant.hpp"

#include <algorithm>
#include <vector>

#include "catalogue/layout.hpp"
#include "catalogue/wording.hpp"

namespace finance::calls {

using catalogue::Calculation;
using catalogue::Kind;

namespace {

bool may_be_unmeant(Kind kind) { return is_dated(kind) || kind == Kind::basis; }

// 20240115 as the date that its digits show.
std::string digits_as_date(double x) {
    if (!(x >= 10000101.0 && x < 1e8)) return {};
    std::string digits = catalogue::plain_text(std::trunc(x));
    digits.insert(6, 1, '-').insert(4, 1, '-');
    return catalogue::host_date(digits) ? digits : std::string{};
}

int unmeant_in_lists(const Calculation& calculation, Arguments arguments) {
    std::size_t first = 0;
    const std::vector<std::size_t> shares = catalogue::shares(calculation, arguments.size());
    for (std::size_t i = 0; i < shares.size(); first += shares[i++]) {
        if (!is_dated(calculation.parameters[i].kind)) continue;
        for (std::size_t k = first; k < first + shares[i]; ++k) {
            if (!is_meant(calculation.parameters[i].kind, arguments[k])) return static_cast<int>(k) + 1;
        }
    }
    return 0;
}

}  // namespace

std::string unmeant_words(Kind kind, double x) {
    const std::string shown = catalogue::plain_text(x);
    if (kind == Kind::basis) {
        return shown + " is no code of a day-count basis: " + std::string{catalogue::basis_words};
    }
    const std::string date = digits_as_date(x);
    return shown + " is no day of the years 1 to 9999, counted from 1960-01-01" +
           (date.empty() ? "" : ": it looks like " + date);
}

int unmeant_argument(const Calculation& calculation, Arguments arguments) {
    if (catalogue::list_count(calculation) > 0) return unmeant_in_lists(calculation, arguments);
    const std::size_t count = std::min(arguments.size(), calculation.parameters.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (!is_meant(calculation.parameters[i].kind, arguments[i])) return static_cast<int>(i) + 1;
    }
    return 0;
}

bool all_meant(const Calculation& calculation, std::span<const host::Column> columns, std::size_t rows) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Kind kind = calculation.parameters[i].kind;
        if (!may_be_unmeant(kind)) continue;
        const std::size_t looked_at = columns[i].varies() ? rows : std::min<std::size_t>(rows, 1);
        for (std::size_t row = 0; row < looked_at; ++row) {
            if (!is_meant(kind, columns[i].argument(row))) return false;
        }
    }
    return true;
}

host::Evaluation evaluate(const host::Evaluator& host, const Calculation& calculation, Arguments arguments) {
    const int unmeant = unmeant_argument(calculation, arguments);
    return unmeant == 0 ? host.evaluate(calculation.name, arguments) : refused_at(unmeant);
}

}  // namespace finance::calls
