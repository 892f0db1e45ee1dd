#include "calls/loan_schedule.hpp"

#include <array>
#include <utility>

namespace finance::calls {

namespace {

catalogue::Calculation payment_named(std::string_view name) {
    catalogue::Calculation calculation = *catalogue::find("PMT");
    calculation.name = name;
    return calculation;
}

}  // namespace

LoanSchedule::LoanSchedule(const host::Evaluator& host, std::string_view name, std::vector<host::Argument> of_pmt)
    : host_{&host}, calculation_{payment_named(name)}, arguments_{std::move(of_pmt)}, part_arguments_{arguments_} {
    part_arguments_.insert(part_arguments_.begin() + 1, 1.0);
    row_.payment = answer("PMT", arguments_);
    row_.balance = given(LoanArgument::pv);
}

double LoanSchedule::given(LoanArgument argument) const {
    const auto i = static_cast<std::size_t>(argument);
    return i < arguments_.size() && has_value(arguments_[i]) ? arguments_[i].number() : 0.0;
}

double LoanSchedule::answer(std::string_view name, Arguments arguments) const {
    const host::Evaluation evaluation = host_->evaluate(name, arguments);
    if (evaluation.answered()) return evaluation.value;
    throw CallRefused{answer_of(calculation_, arguments_, evaluation).named_sentence()};
}

LoanRow LoanSchedule::next_payment() {
    part_arguments_[1] = ++row_.period;
    row_.interest = answer("IPMT", part_arguments_);
    row_.principal = answer("PPMT", part_arguments_);
    row_.balance += row_.principal;
    return row_;
}

LoanRow LoanSchedule::last_interest() {
    const double rate = given(LoanArgument::rate);
    row_.interest = answer("IPMT", std::array<host::Argument, 4>{rate, 1.0, 1.0, row_.balance});
    row_.principal = -row_.interest;
    row_.balance -= row_.interest;
    return {row_.period + 1, 0.0, row_.interest, row_.principal, row_.balance};
}

}  // namespace finance::calls
