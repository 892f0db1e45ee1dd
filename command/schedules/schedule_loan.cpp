// The payment table of a loan (calls/loan_schedule.hpp). The last row's interest alone is a row of its own where payments
// fall at the start and there is a future value. In whole cents, or with extra payments, rows are those of
// command/schedules/loan_ledger.hpp.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "calls/loan_schedule.hpp"
#include "catalogue/annuities.hpp"
#include "catalogue/text.hpp"
#include "command/number_form.hpp"
#include "command/pictures/schedule_picture.hpp"
#include "command/schedules/loan_ledger.hpp"
#include "command/schedules/payment_dates.hpp"
#include "command/schedules/schedule.hpp"

namespace finance::command {

namespace {

using enum calls::LoanArgument;
namespace rules = catalogue::annuity_parameters;

constexpr std::string_view name = "schedule loan";
constexpr std::size_t of_pmt = rules::payment.size();
enum OwnArgument : std::size_t { start = of_pmt, months, extra };

constexpr std::array columns{Column{"period", "period", "", false}, Column{"payment", "payment", "", true, true},
                             Column{"interest", "interest", "", true, true},
                             Column{"principal", "principal", "", true, true}, Column{"balance", "balance"}};

constexpr std::array dated_columns{columns[0], Column{.name = "date", .heading = "date", .amount = false, .date = true},
                                   columns[1], columns[2],
                                   columns[3], columns[4]};

}  // namespace

constexpr std::array<catalogue::Parameter, 8> loan_parameters{
    rules::payment[0],
    rules::payment[1],
    rules::payment[2],
    rules::payment[3],
    rules::payment[4],
    catalogue::Parameter{.name = "start", .kind = catalogue::Kind::date, .meaning = "the day the first period begins"}
        .optional("no dates"),
    catalogue::Parameter{.name = "months", .kind = catalogue::Kind::whole, .meaning = "months of a period"}
        .optional("1")
        .bounded(catalogue::at_least_1),
    catalogue::Parameter{.name = "extra", .meaning = "paid with each payment beside it"}.optional("0").bounded(
        catalogue::above_0),
};

namespace {

std::vector<host::Argument> read(Words words, const Settings& settings) {
    catalogue::Calculation calculation = *catalogue::find("PMT");
    calculation.name = name;
    calculation.parameters = loan_parameters;
    return schedule_arguments(calculation, words, settings);
}

std::vector<host::Argument> pmt_arguments(const std::vector<host::Argument>& all) {
    return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), of_pmt))};
}

[[noreturn]] void refuse(std::size_t argument, const std::string& reason) {
    throw calls::CallRefused{std::string{name} + ": argument " + std::to_string(argument + 1) + " (" +
                             std::string{loan_parameters[argument].name} + "): " + reason};
}

// ---- What it has beside PMT's arguments

struct OwnTerms {
    std::optional<double> first_day{};
    std::int64_t months = 1;
    double extra = 0.0;
};

OwnTerms read_own(const std::vector<host::Argument>& all) {
    const auto value = [&](OwnArgument argument) -> std::optional<double> {
        const bool given = argument < all.size() && calls::has_value(all[argument]);
        return given ? std::optional{all[argument].number()} : std::nullopt;
    };
    OwnTerms terms{.first_day = value(start), .extra = value(extra).value_or(0.0)};
    if (terms.first_day && !catalogue::iso_date(*terms.first_day)) refuse(start, "it is no day of the years 1 to 9999");
    if (value(extra) && !(terms.extra > 0.0 && std::isfinite(terms.extra))) {
        refuse(extra, catalogue::plain_text(terms.extra) + " is not above 0");
    }
    constexpr double most_months = 120'000.0;
    const double count = value(months).value_or(1.0);
    if (!(count >= 1.0 && count <= most_months && count == std::floor(count))) {
        refuse(months, catalogue::plain_text(count) + " is no number of months (1 to 120000)");
    }
    if (value(months) && !terms.first_day) refuse(months, "it says how far dates are apart, and there is no start");
    terms.months = static_cast<std::int64_t>(count);
    return terms;
}

class Loan {
public:
    Loan(const std::vector<host::Argument>& arguments, const host::EmbeddedHost& host,
         const std::optional<int>& decimals)
        : schedule_{host, name, pmt_arguments(arguments)},
          own_{read_own(arguments)},
          periods_{period_count(name, schedule_.given(nper))} {
        check_dates();
        if (own_.extra > 0.0 && schedule_.given(fv) != 0.0)
            refuse(extra, "it ends a loan early, and this one has an fv");
        if (!decimals && own_.extra == 0.0) return;
        const LoanAmounts amounts = amounts_of();
        if (decimals) check_decimals(amounts, *decimals);
        ledger_ = LoanLedger{amounts, decimals};
    }

    [[nodiscard]] bool at_start() const { return schedule_.given(type) == 1.0; }
    [[nodiscard]] bool dated() const { return own_.first_day.has_value(); }
    // At most.
    [[nodiscard]] std::int64_t rows() const { return periods_ + (at_start() && schedule_.given(fv) != 0.0 ? 1 : 0); }
    // Empty after the last one.
    Row next() {
        const std::optional<calls::LoanRow> made = next_row();
        if (!made) return {};
        Row row{static_cast<double>(made->period)};
        if (dated()) row.push_back(date_of(made->period));
        row.insert(row.end(), {made->payment, made->interest, made->principal, made->balance});
        return row;
    }
    [[nodiscard]] double opening_balance() const { return schedule_.given(pv); }
    [[nodiscard]] std::string title() const {
        const auto text = [&](calls::LoanArgument argument) {
            return catalogue::plain_text(schedule_.given(argument));
        };
        std::string title = "Loan: rate " + text(rate) + " per period, " + text(nper) + " periods, pv " + text(pv);
        if (schedule_.given(fv) != 0.0) title += ", fv " + text(fv);
        if (own_.extra > 0.0) title += ", " + catalogue::plain_text(own_.extra) + " extra per period";
        return at_start() ? title + ", payments at the start" : title;
    }

private:
    std::optional<calls::LoanRow> next_row() {
        if (ledger_) return ledger_->next();
        return ++period_ <= periods_ ? schedule_.next_payment() : schedule_.last_interest();
    }

    [[nodiscard]] LoanAmounts amounts_of() const {
        calls::LoanSchedule payments = schedule_;
        return {.rate = schedule_.given(rate),
                .periods = periods_,
                .present = schedule_.given(pv),
                .future = schedule_.given(fv),
                .at_start = at_start(),
                .payment = payments.next_payment().payment,
                .extra = own_.extra};
    }

    // Amounts must have no more decimals than are asked for, and be small enough for each of their sums to be exact.
    void check_decimals(const LoanAmounts& amounts, int decimals) const {
        const auto check = [&](std::size_t argument, double amount) {
            if (rounded(amount, decimals) == amount) return;
            refuse(argument,
                   catalogue::plain_text(amount) + " has more than " + std::to_string(decimals) + " decimals");
        };
        const double largest =
            std::max({std::abs(amounts.present), std::abs(amounts.future), std::abs(amounts.payment)});
        if (!(largest + own_.extra < 1e15 / std::pow(10.0, decimals))) {
            refuse(static_cast<std::size_t>(pv), "amounts are too large for " + std::to_string(decimals) + " decimals");
        }
        check(static_cast<std::size_t>(pv), amounts.present);
        check(static_cast<std::size_t>(fv), amounts.future);
        check(extra, amounts.extra);
    }

    // Payments at the start of a period fall on its first day, others on that of the next.
    [[nodiscard]] double date_of(std::int64_t period) const {
        return months_later(*own_.first_day, (period - (at_start() ? 1 : 0)) * own_.months);
    }
    void check_dates() const {
        constexpr std::int64_t most_months = 120'000;
        if (!dated()) return;
        const bool short_enough = periods_ + 1 <= most_months / own_.months;
        if (short_enough && catalogue::iso_date(date_of(rows()))) return;
        refuse(start, "the last payment would fall after the year 9999");
    }

    calls::LoanSchedule schedule_;
    OwnTerms own_;
    std::int64_t periods_;
    std::int64_t period_ = 0;
    std::optional<LoanLedger> ledger_{};
};

// The picture knows no dates.
std::vector<Row> without_dates(std::span<const Row> rows) {
    std::vector<Row> bare{rows.begin(), rows.end()};
    for (Row& row : bare) row.erase(row.begin() + 1);
    return bare;
}

}  // namespace

Schedule loan_schedule(Words words, const Settings& settings, const std::optional<int>& decimals) {
    Loan loan{read(words, settings), settings.host.get(), decimals};
    const LoanPicture picture{.title = loan.title(), .opening_balance = loan.opening_balance()};
    const std::int64_t rows = loan.rows();
    const bool dated = loan.dated();
    return {.titles = {picture.title, "principal", "interest", "balance after the payment"},
            .columns = dated ? std::span<const Column>{dated_columns} : std::span<const Column>{columns},
            .rows = rows,
            .next_row = [loan = std::move(loan)]() mutable { return loan.next(); },
            .picture =
                [picture, dated](std::span<const Row> all) {
                    return loan_script(picture, dated ? without_dates(all) : std::vector<Row>{all.begin(), all.end()});
                }};
}

}  // namespace finance::command
