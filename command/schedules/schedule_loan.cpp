// The payment table of a loan (calls/loan_schedule.hpp). The last row's interest alone is a row of its own where payments
// fall at the start and there is a future value.
#include <array>
#include <utility>
#include <vector>

#include "calls/loan_schedule.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "command/pictures/schedule_picture.hpp"
#include "command/schedules/schedule.hpp"

namespace finance::command {

namespace {

using enum calls::LoanArgument;

constexpr std::string_view name = "schedule loan";

constexpr std::array columns{Column{"period", "period", "", false}, Column{"payment", "payment", "", true, true},
                             Column{"interest", "interest", "", true, true},
                             Column{"principal", "principal", "", true, true}, Column{"balance", "balance"}};

std::vector<host::Argument> read(Words words, const Settings& settings) {
    catalogue::Calculation calculation = *catalogue::find("PMT");
    calculation.name = name;
    return schedule_arguments(calculation, words, settings);
}

class Loan {
public:
    Loan(Words words, const Settings& settings)
        : schedule_{settings.host.get(), name, read(words, settings)},
          periods_{period_count(name, schedule_.given(nper))} {}

    [[nodiscard]] bool at_start() const { return schedule_.given(type) == 1.0; }
    [[nodiscard]] std::int64_t rows() const { return periods_ + (at_start() && schedule_.given(fv) != 0.0 ? 1 : 0); }
    Row next() {
        const calls::LoanRow row = ++period_ <= periods_ ? schedule_.next_payment() : schedule_.last_interest();
        return {static_cast<double>(row.period), row.payment, row.interest, row.principal, row.balance};
    }
    [[nodiscard]] double opening_balance() const { return schedule_.given(pv); }
    [[nodiscard]] std::string title() const {
        const auto text = [&](calls::LoanArgument argument) {
            return catalogue::plain_text(schedule_.given(argument));
        };
        std::string title = "Loan: rate " + text(rate) + " per period, " + text(nper) + " periods, pv " + text(pv);
        if (schedule_.given(fv) != 0.0) title += ", fv " + text(fv);
        return at_start() ? title + ", payments at the start" : title;
    }

private:
    calls::LoanSchedule schedule_;
    std::int64_t periods_;
    std::int64_t period_ = 0;
};

}  // namespace

Schedule loan_schedule(Words words, const Settings& settings) {
    Loan loan{words, settings};
    const LoanPicture picture{.title = loan.title(), .opening_balance = loan.opening_balance()};
    const std::int64_t rows = loan.rows();
    return {.titles = {picture.title, "principal", "interest", "balance after the payment"},
            .columns = columns,
            .rows = rows,
            .next_row = [loan = std::move(loan)]() mutable { return loan.next(); },
            .picture = [picture](std::span<const Row> all) { return loan_script(picture, all); }};
}

}  // namespace finance::command
