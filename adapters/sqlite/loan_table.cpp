#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/sqlite/table_function.hpp"
#include "adapters/sqlite/tables.hpp"
#include "adapters/sqlite/values.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::sqlite {

using catalogue::Calculation;

namespace {

enum Column : std::uint8_t { period, payment, interest, principal, balance, first_argument };
constexpr std::size_t argument_count = 3;

// PMT under the table's name, for the sentences about its arguments.
const Calculation& loan_calculation() {
    static const Calculation calculation = [] {
        Calculation loan = *catalogue::find("PMT");
        loan.name = LoanRows::name;
        return loan;
    }();
    return calculation;
}

double number_of(std::size_t i, sqlite3_value* value) {
    host::Argument argument = 0.0;
    if (read_argument(loan_calculation().parameters[i], value, argument)) return argument.number();
    throw std::invalid_argument{unreadable(loan_calculation(), i, value)};
}

// PMT takes an nper of 2^32 + 1 for 1.
std::int64_t period_count(double nper) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    if (nper <= most) return static_cast<std::int64_t>(nper);
    throw std::invalid_argument{std::string{LoanRows::name} + ": argument 2 (nper): " + catalogue::plain_text(nper) +
                                " is above " + std::to_string(most)};
}

// The constraint that gives an argument its value; nothing where no constraint does. Among several the first that can
// be used.
struct Given {
    std::optional<int> constraint{};
    bool unusable = false;
};

Given given(const sqlite3_index_info& info, std::size_t argument) {
    Given found;
    for (int i = 0; i < info.nConstraint; ++i) {
        const auto& constraint = info.aConstraint[i];
        const bool gives = constraint.iColumn == static_cast<int>(first_argument + argument) &&
                           constraint.op == SQLITE_INDEX_CONSTRAINT_EQ;
        if (!gives) continue;
        if (constraint.usable != 0 && !found.constraint) found.constraint = i;
        if (constraint.usable == 0) found.unusable = true;
    }
    return found;
}

}  // namespace

int LoanRows::plan(sqlite3_vtab& table, sqlite3_index_info& info) {
    for (std::size_t i = 0; i < argument_count; ++i) {
        const Given value = given(info, i);
        if (!value.constraint && value.unusable) return SQLITE_CONSTRAINT;
        if (!value.constraint) return fail(table, "fin_schedule_loan(rate, nper, pv): an argument is not given");
        info.aConstraintUsage[*value.constraint].argvIndex = static_cast<int>(i) + 1;
        info.aConstraintUsage[*value.constraint].omit = 1;
    }
    info.orderByConsumed = info.nOrderBy == 1 && info.aOrderBy[0].iColumn == period && info.aOrderBy[0].desc == 0;
    info.estimatedRows = 360;
    info.estimatedCost = 360.0;
    return SQLITE_OK;
}

void LoanRows::begin(std::span<sqlite3_value*> arguments) {
    row_ = {.period = 1};
    periods_ = 0;
    if (std::ranges::any_of(arguments, is_null)) return;
    for (std::size_t i = 0; i < argument_count; ++i) arguments_[i] = number_of(i, arguments[i]);
    const auto [rate, nper, pv] = arguments_;
    loan_.emplace(shared_host(), name, std::vector<host::Argument>{rate, nper, pv});
    periods_ = period_count(nper);
    if (!at_end()) row_ = loan_->next_payment();
}

void LoanRows::next() {
    if (row_.period < periods_) {
        row_ = loan_->next_payment();
    } else {
        ++row_.period;
    }
}

void LoanRows::column(sqlite3_context* context, int i) const {
    switch (i) {
        case period:
            return sqlite3_result_int64(context, row_.period);
        case payment:
            return sqlite3_result_double(context, row_.payment);
        case interest:
            return sqlite3_result_double(context, row_.interest);
        case principal:
            return sqlite3_result_double(context, row_.principal);
        case balance:
            return sqlite3_result_double(context, row_.balance);
        default:
            return sqlite3_result_double(context, arguments_.at(static_cast<std::size_t>(i) - first_argument));
    }
}

}  // namespace finance::adapters::sqlite
