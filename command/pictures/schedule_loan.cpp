// The payment table of a loan.
//
//  (1) Payment, interest and principal of each period are PMT, IPMT and PPMT; the balance is pv plus the principal so
//      far.
//  (2) Payments at the end leave a balance of -fv. Payments at the start leave what the last period's interest is still
//      to be added to: where there is a future value, a line without payment, at the start of period nper + 1, does so.
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "catalogue/number_text.hpp"
#include "command/argument_list.hpp"
#include "command/call_answer.hpp"
#include "command/pictures/schedule.hpp"
#include "command/pictures/schedule_picture.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Given;

constexpr std::array columns{Column{"period", "period", "", false}, Column{"payment", "payment", "", true, true},
                             Column{"interest", "interest", "", true, true},
                             Column{"principal", "principal", "", true, true}, Column{"balance", "balance"}};

enum Argument : std::uint8_t { rate, nper, pv, fv, type };

catalogue::Calculation loan_calculation() {
    catalogue::Calculation calculation = *catalogue::find("PMT");
    calculation.name = "schedule loan";
    return calculation;
}

std::vector<host::Argument> read(const catalogue::Calculation& calculation, Words words) {
    std::vector<host::Argument> arguments;
    try {
        for (const Given& given : read_arguments(calculation, words)) arguments.push_back(as_argument(given));
    } catch (const UsageError& error) {
        throw UsageError{error.what(), "finance help schedule"};
    }
    return arguments;
}

class Loan {
public:
    Loan(std::vector<host::Argument> arguments, const host::EmbeddedHost& host)
        : arguments_{std::move(arguments)}, part_arguments_{arguments_}, host_{&host} {
        payment_ = answer("PMT", arguments_);
        periods_ = period_count("schedule loan", number(nper));
        part_arguments_.insert(part_arguments_.begin() + 1, 1.0);
        balance_ = number(pv);
    }

    [[nodiscard]] std::int64_t rows() const { return periods_ + (number(type) == 1.0 && number(fv) != 0.0 ? 1 : 0); }
    Row next() {
        ++period_;
        return period_ <= periods_ ? payment_row() : last_interest_row();
    }
    [[nodiscard]] double opening_balance() const { return number(pv); }
    [[nodiscard]] std::string title() const {
        const auto text = [&](Argument i) { return catalogue::plain_text(number(i)); };
        std::string title = "Loan: rate " + text(rate) + " per period, " + text(nper) + " periods, pv " + text(pv);
        if (number(fv) != 0.0) title += ", fv " + text(fv);
        return number(type) == 1.0 ? title + ", payments at the start" : title;
    }

private:
    // What is left out or missing counts as 0.
    [[nodiscard]] double number(Argument i) const {
        const bool given = i < arguments_.size() && arguments_[i].kind() == host::Argument::Kind::number;
        return given && !std::isnan(arguments_[i].number()) ? arguments_[i].number() : 0.0;
    }
    [[nodiscard]] double answer(std::string_view name, std::span<const host::Argument> arguments) const {
        const host::Evaluation evaluation = host_->evaluate(name, arguments);
        if (evaluation.answered()) return evaluation.value;
        const catalogue::Calculation calculation = loan_calculation();
        throw ScheduleRefused{std::string{calculation.name} + ": " + why(calculation, arguments_, evaluation)};
    }
    Row payment_row() {
        part_arguments_[1] = period_;
        const double interest = answer("IPMT", part_arguments_);
        const double principal = answer("PPMT", part_arguments_);
        balance_ += principal;
        return {static_cast<double>(period_), payment_, interest, principal, balance_};
    }
    Row last_interest_row() {
        const double interest = answer("IPMT", std::array<host::Argument, 4>{number(rate), 1.0, 1.0, balance_});
        balance_ -= interest;
        return {static_cast<double>(period_), 0.0, interest, -interest, balance_};
    }

    std::vector<host::Argument> arguments_;       // of PMT
    std::vector<host::Argument> part_arguments_;  // of IPMT and PPMT: the period is the second
    const host::EmbeddedHost* host_;
    double payment_ = 0.0;
    double balance_ = 0.0;
    std::int64_t periods_ = 0;
    std::int64_t period_ = 0;
};

}  // namespace

Schedule loan_schedule(Words words, const host::EmbeddedHost& host) {
    Loan loan{read(loan_calculation(), words), host};
    const LoanPicture picture{.title = loan.title(), .opening_balance = loan.opening_balance()};
    const std::int64_t rows = loan.rows();
    return {.columns = columns,
            .rows = rows,
            .next_row = [loan = std::move(loan)]() mutable { return loan.next(); },
            .picture = [picture](std::span<const Row> all) { return loan_script(picture, all); }};
}

}  // namespace finance::command
