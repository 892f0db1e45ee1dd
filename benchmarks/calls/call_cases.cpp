#include "benchmarks/calls/call_cases.hpp"

#include <chrono>
#include <cmath>
#include <map>
#include <sstream>

#include "catalogue/catalogue.hpp"
#include "command/argument_list.hpp"

namespace finance::benchmarks {

double day_number(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    constexpr sys_days first{1960y / January / 1};
    const sys_days at{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day}};
    return static_cast<double>((at - first).count());
}

// ---- Usual calls

namespace {

const std::map<std::string_view, Floor> floors_of_usual{{"PMT", floor_of_PMT},
                                                        {"SLN", floor_of_SLN},
                                                        {"TBILLEQ", floor_of_TBILLEQ},
                                                        {"YEARFRAC", floor_of_YEARFRAC},
                                                        {"PRICEMAT", floor_of_PRICEMAT}};

// The first argument that is a plain number; 0 for none.
std::size_t first_number(const catalogue::Calculation& calculation) {
    for (std::size_t i = 0; i < calculation.parameters.size(); ++i) {
        const catalogue::Kind kind = calculation.parameters[i].kind;
        if (kind == catalogue::Kind::number || kind == catalogue::Kind::numbers) return i + 1;
    }
    return 0;
}

std::vector<host::Argument> example_arguments(const catalogue::Calculation& calculation) {
    std::istringstream stream{std::string{calculation.example.arguments}};
    static std::deque<std::string> kept;  // texts of a call are views into its words
    std::vector<std::string_view> words;
    for (std::string word; stream >> word;) words.emplace_back(kept.emplace_back(word));
    return command::read_arguments(calculation, words);
}

}  // namespace

std::deque<CallCase> usual_calls() {
    std::deque<CallCase> cases;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        CallCase& usual = cases.emplace_back();
        usual.label = calculation.name;
        usual.name = calculation.name;
        usual.arguments = example_arguments(calculation);
        usual.varied = first_number(calculation);
        if (const auto found = floors_of_usual.find(calculation.name); found != floors_of_usual.end()) {
            usual.floor = found->second;
        }
    }
    return cases;
}

// ---- Large calls

double flow_amount(int i) { return i == 0 ? -10000.0 : 50.0 + static_cast<double>(i * 7 % 31); }
double dated_flow_day(int i) { return day_number(2020, 1, 15) + std::floor(30.4375 * i); }
double monthly_flow_amount(int i) { return i == 0 ? -200000.0 : 1150.0 + static_cast<double>(i * 7 % 31); }

namespace {

std::vector<host::Argument> dated(std::vector<host::Argument> arguments) {
    for (int i = 0; i < dated_flows; ++i) arguments.emplace_back(flow_amount(i));
    for (int i = 0; i < dated_flows; ++i) arguments.emplace_back(dated_flow_day(i));
    return arguments;
}

}  // namespace

// 30/360 of coupons on the 15th. The odd first period runs from 10 March to 15 August, within a period.
std::deque<CallCase> large_calls() {
    const double settled = day_number(2025, 2, 20);
    const double maturity = day_number(2055, 2, 15);
    const double settled_odd = day_number(2025, 3, 20);
    const double issue = day_number(2025, 3, 10);
    const double first_coupon = day_number(2025, 8, 15);
    std::vector<host::Argument> monthly;
    for (int i = 0; i < monthly_flows; ++i) monthly.emplace_back(monthly_flow_amount(i));
    return {
        {"PRICE, 60 coupons", "PRICE", {settled, maturity, 0.05, 0.053, 100, 2, 0}, 3, floor_of_PRICE},
        {"DURATION, 60 coupons", "DURATION", {settled, maturity, 0.05, 0.053, 2, 0}, 3, floor_of_DURATION},
        {"YIELD, 60 coupons", "YIELD", {settled, maturity, 0.05, 95.5, 100, 2, 0}, 3, floor_of_YIELD},
        {"ODDFYIELD, 60 coupons",
         "ODDFYIELD",
         {settled_odd, maturity, issue, first_coupon, 0.05, 95.5, 100, 2, 0},
         5,
         floor_of_ODDFYIELD},
        {"XIRR, 250 flows", "XIRR", dated({}), 1, floor_of_XIRR, dated_flows},
        {"XNPV, 250 flows", "XNPV", dated({0.05}), 1, floor_of_XNPV, dated_flows},
        {"IRR, 360 flows", "IRR", monthly, 1, floor_of_IRR, monthly_flows},
    };
}

// ---- Sizes

std::deque<CallCase> sized_calls() {
    const double settled = day_number(2025, 2, 20);
    std::deque<CallCase> cases;
    for (const int coupons : {10, 60, 240, 960}) {
        const double maturity = day_number(2025 + coupons / 2, 2, 15);
        cases.push_back(
            {"PRICE at " + std::to_string(coupons), "PRICE", {settled, maturity, 0.05, 0.053, 100, 2, 0}, 3});
    }
    for (const int years : {1, 900}) {
        const double end = day_number(2025 + years, 8, 11);
        cases.push_back({"COUPNUM over " + std::to_string(years), "COUPNUM", {settled, end, 2, 0}});
        cases.push_back({"YEARFRAC over " + std::to_string(years), "YEARFRAC", {settled, end, 1}});
    }
    cases.push_back({"YEARFRAC, 30/360", "YEARFRAC", {day_number(2024, 1, 15), day_number(2024, 7, 30), 0}});
    return cases;
}

}  // namespace finance::benchmarks
