#include "calls/equations.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

#include "calls/causes.hpp"

namespace finance::calls {

using catalogue::Calculation;
using host::Argument;
using host::Evaluator;

bool Equation::is_rule(double /*answer*/) const { return false; }

namespace {

constexpr double no_number = std::numeric_limits<double>::quiet_NaN();

double answer(const Evaluator& host, std::string_view name, Arguments arguments) {
    const host::Evaluation evaluation = host.evaluate(name, arguments);
    return evaluation.answered() ? evaluation.value : no_number;
}

// The power of 2, as its exponent, that brings the largest amount to 2^exponent.
int scale_of(std::span<const double> amounts, int exponent) {
    double largest = 0.0;
    for (const double amount : amounts) largest = std::max(largest, std::abs(amount));
    return largest > 0.0 && std::isfinite(largest) ? exponent - std::ilogb(largest) : 0;
}

// ---- RATE

class Annuity : public Equation {
public:
    // of_rate: nper, pmt, pv, fv, type
    Annuity(const Evaluator& host, Arguments of_rate)
        : host_{host}, nper_{of_rate[0].number()}, type_{number_or_0(of_rate, 4)} {
        const std::array given{of_rate[1].number(), of_rate[2].number(), number_or_0(of_rate, 3)};
        scale_ = scale_of(given, 0);
        pmt_ = std::scalbn(given[0], scale_);
        pv_ = std::scalbn(given[1], scale_);
        fv_ = std::scalbn(given[0] == 0.0 ? 0.0 - given[2] : given[2], scale_);
    }

    [[nodiscard]] Trial at(double rate) const override {
        const Trial later{carried("FV", rate, pmt_, pv_), fv_, fv_words};
        if (rate > 0.0 && !std::isnan(later.value)) return later;
        return {carried("PV", rate, pmt_, fv_), pv_, "PV at this rate"};
    }

    // With FV both amounts are carried forward, and neither shrinks.
    [[nodiscard]] double known_terms(const Trial& trial) const override {
        return trial.name == fv_words ? std::max(std::abs(pv_), std::abs(fv_)) : std::abs(trial.target);
    }

    // Amounts of one sign take nothing from each other.
    [[nodiscard]] double all_terms(double rate) const override {
        const double later = carried("FV", rate, -std::abs(pmt_), -std::abs(pv_));
        if (rate > 0.0 && !std::isnan(later)) return later + std::abs(fv_);
        return carried("PV", rate, -std::abs(pmt_), -std::abs(fv_)) + std::abs(pv_);
    }

    [[nodiscard]] double amount(double counted) const override { return std::scalbn(counted, -scale_); }

private:
    static constexpr std::string_view fv_words = "FV at this rate";

    [[nodiscard]] double carried(std::string_view name, double rate, double pmt, double amount) const {
        return answer(host_, name, std::array<Argument, 5>{rate, nper_, pmt, amount, type_});
    }

    const Evaluator& host_;
    double nper_;
    double type_;
    int scale_ = 0;
    double pmt_ = 0.0;
    double pv_ = 0.0;
    double fv_ = 0.0;
};

// ---- YIELD, ODDFYIELD

class Bond : public Equation {
public:
    // The price stands where the direct calculation has the yield.
    Bond(const Evaluator& host, std::string_view direct, Arguments arguments, std::size_t price)
        : host_{host},
          direct_{direct},
          price_{price},
          target_{arguments[price].number()},
          arguments_{arguments.begin(), arguments.end()} {}

    [[nodiscard]] Trial at(double yield) const override {
        std::vector<Argument> arguments = arguments_;
        arguments[price_] = yield;
        return {answer(host_, direct_, arguments), target_,
                direct_ == "PRICE" ? "PRICE at this yield" : "ODDFPRICE at this yield"};
    }
    [[nodiscard]] double all_terms(double /*yield*/) const override { return std::abs(target_); }

    // Equal dates answer 0, price and yield alike; at a yield of 0 no other bond is worth exactly that. With one coupon
    // left the yield is a closed form, also where PRICE takes no yield as low or high.
    [[nodiscard]] bool is_rule(double yield) const override {
        const double price = at(yield).value;
        if (yield == 0.0 && price == 0.0) return true;
        return std::isnan(price) && direct_ == "PRICE" && coupons_left() == 1.0;
    }

private:
    [[nodiscard]] double coupons_left() const {
        constexpr std::size_t frequency = 5;
        std::vector<Argument> arguments{arguments_[0], arguments_[1]};
        arguments.insert(arguments.end(), arguments_.begin() + frequency, arguments_.end());
        return answer(host_, "COUPNUM", arguments);
    }

    const Evaluator& host_;
    std::string_view direct_;
    std::size_t price_;
    double target_;
    std::vector<Argument> arguments_;
};

// ---- IRR, XIRR

// Below a rate of -1 powers change their sign; the sizes of terms are those at the rate on the other side of it.
double rate_of_sizes(double rate) { return rate < -1.0 ? -2.0 - rate : rate; }

std::vector<double> numbers_of(Arguments arguments) {
    std::vector<double> numbers;
    numbers.reserve(arguments.size());
    for (const Argument& argument : arguments) numbers.push_back(argument.number());
    return numbers;
}

std::vector<double> sizes_of(std::vector<double> amounts) {
    for (double& amount : amounts) amount = std::abs(amount);
    return amounts;
}

// NPV, or XNPV with the days.
double worth(const Evaluator& host, std::string_view name, double rate, std::span<const double> amounts,
             std::span<const double> days = {}) {
    std::vector<Argument> arguments;
    arguments.reserve(1 + amounts.size() + days.size());
    arguments.emplace_back(rate);
    arguments.insert(arguments.end(), amounts.begin(), amounts.end());
    arguments.insert(arguments.end(), days.begin(), days.end());
    return answer(host, name, arguments);
}

class DatedFlows : public Equation {
public:
    DatedFlows(const Evaluator& host, const DatedLists& of_xirr)
        : host_{host}, values_{numbers_of(of_xirr.values)}, days_{numbers_of(of_xirr.dates)} {}

    [[nodiscard]] Trial at(double rate) const override {
        return {worth(host_, "XNPV", rate, values_, days_), 0.0, "XNPV at this rate"};
    }
    [[nodiscard]] double known_terms(const Trial& /*trial*/) const override { return std::abs(values_.front()); }
    [[nodiscard]] double all_terms(double rate) const override {
        return worth(host_, "XNPV", rate, sizes_of(values_), days_);
    }

private:
    const Evaluator& host_;
    std::vector<double> values_;
    std::vector<double> days_;
};

class PeriodicFlows : public Equation {
public:
    PeriodicFlows(const Evaluator& host, Arguments flows) : host_{host}, flows_{numbers_of(flows)} {
        constexpr int largest = 900;  // far below the largest double, and the farther above the smallest
        drop_zeros();
        scale_ = scale_of(flows_, largest);
        for (double& flow : flows_) flow = std::scalbn(flow, scale_);
    }

    [[nodiscard]] Trial at(double rate) const override {
        return {worth_of(flows_, rate), 0.0,
                grows(rate) ? "the present value at this rate" : "the worth of the flows at their end, at this rate,"};
    }
    [[nodiscard]] double known_terms(const Trial& /*trial*/) const override {
        return std::min(std::abs(flows_.front()), std::abs(flows_.back()));
    }
    [[nodiscard]] double all_terms(double rate) const override {
        return worth_of(sizes_of(flows_), rate_of_sizes(rate));
    }
    [[nodiscard]] double amount(double counted) const override { return std::scalbn(counted, -scale_); }

private:
    // Those at either end change no rate, but the day that flows are counted to. One flow stays.
    void drop_zeros() {
        const auto counts = [](double flow) { return flow != 0.0; };
        while (flows_.size() > 1 && !counts(flows_.back())) flows_.pop_back();
        flows_.erase(flows_.begin(), std::find_if(flows_.begin(), flows_.end() - 1, counts));
    }

    static bool grows(double rate) { return std::abs(1.0 + rate) > 1.0; }

    [[nodiscard]] double worth_of(std::vector<double> flows, double rate) const {
        if (rate > 0.0) return worth(host_, "NPV", rate, std::span{flows}.subspan(1)) + flows[0];
        const double year = grows(rate) ? 365.0 : -365.0;  // XNPV's
        if (!grows(rate)) std::ranges::reverse(flows);
        std::vector<double> days(flows.size());
        for (std::size_t i = 0; i < days.size(); ++i) days[i] = year * static_cast<double>(i);
        return worth(host_, "XNPV", rate, flows, days);
    }

    const Evaluator& host_;
    std::vector<double> flows_;
    int scale_ = 0;
};

}  // namespace

std::unique_ptr<const Equation> equation_of(const Evaluator& host, const Calculation& calculation,
                                            Arguments arguments) {
    if (!calculation.searches) return nullptr;
    if (calculation.name == "RATE") return std::make_unique<Annuity>(host, arguments);
    if (calculation.name == "YIELD") return std::make_unique<Bond>(host, "PRICE", arguments, 3);
    if (calculation.name == "ODDFYIELD") return std::make_unique<Bond>(host, "ODDFPRICE", arguments, 5);
    if (calculation.name == "XIRR") return std::make_unique<DatedFlows>(host, DatedLists{arguments});
    if (calculation.name == "IRR") return std::make_unique<PeriodicFlows>(host, arguments);
    return nullptr;
}

}  // namespace finance::calls
