// QuantLib over the columns that peers.py writes:
//
//     quantlib_columns DATA
//
// For each line of input, CASE ROWS LENGTH, it calculates the first rows, writes the answers to DATA/answers.f64 and
// prints the seconds that they took, or "none" where the library has no such function. As it is used: dates, schedule and
// bond, or the leg of flows, are made for each row. Yields are searched with the solver that takes the fewest steps there.
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <map>
#include <ql/cashflows/cashflows.hpp>
#include <ql/cashflows/simplecashflow.hpp>
#include <ql/instruments/bonds/fixedratebond.hpp>
#include <ql/math/solvers1d/brent.hpp>
#include <ql/pricingengines/bond/bondfunctions.hpp>
#include <ql/time/calendars/nullcalendar.hpp>
#include <ql/time/daycounters/actual365fixed.hpp>
#include <ql/time/daycounters/thirty360.hpp>
#include <ql/time/schedule.hpp>
#include <string>
#include <vector>

namespace {

namespace ql = QuantLib;

struct Table {
    std::vector<std::vector<double>> columns;
    std::size_t length;  // of a list

    double number(std::size_t column, std::size_t row) const { return columns[column][row]; }
    const double* list(std::size_t column, std::size_t row) const { return columns[column].data() + row * length; }
};

// 1960-01-01 is day 21,916 of the library.
ql::Date date_of(double host_day) { return ql::Date(static_cast<ql::Date::serial_type>(host_day) + 21916); }

// ---- Bonds of two coupons a year: settlement, maturity, rate, yield or price

const ql::Thirty360 bond_days{ql::Thirty360::USA};

ql::FixedRateBond bond_of(const Table& table, std::size_t row) {
    const ql::Date settlement = date_of(table.number(0, row));
    const ql::Date maturity = date_of(table.number(1, row));
    constexpr int months_a_coupon = 6;
    ql::Date start = maturity;
    for (int coupons = 1; start > settlement; ++coupons) {
        start = maturity - ql::Period(months_a_coupon * coupons, ql::Months);
    }
    const ql::Schedule schedule(start, maturity, ql::Period(ql::Semiannual), ql::NullCalendar(), ql::Unadjusted,
                                ql::Unadjusted, ql::DateGeneration::Backward, false);
    return {0, 100.0, schedule, {table.number(2, row)}, bond_days};
}

double price(const Table& table, std::size_t row) {
    return ql::BondFunctions::cleanPrice(bond_of(table, row), table.number(3, row), bond_days, ql::Compounded,
                                         ql::Semiannual, date_of(table.number(0, row)));
}

double yield(const Table& table, std::size_t row) {
    return ql::BondFunctions::yield(ql::Brent(), bond_of(table, row), table.number(3, row), bond_days, ql::Compounded,
                                    ql::Semiannual, date_of(table.number(0, row)));
}

// ---- Flows

// One a year, after a day that is given.
ql::Leg yearly(const double* flows, std::size_t first, std::size_t end, const ql::Date& today) {
    ql::Leg leg;
    for (std::size_t i = first; i < end; ++i) {
        const auto years = static_cast<ql::Integer>(first == 0 ? i + 1 : i);
        leg.push_back(ql::ext::make_shared<ql::SimpleCashFlow>(flows[i], today + ql::Period(years, ql::Years)));
    }
    return leg;
}

const ql::Date today{15, ql::January, 2025};

double npv(const Table& table, std::size_t row) {
    return ql::CashFlows::npv(yearly(table.list(1, row), 0, table.length, today), table.number(0, row), bond_days,
                              ql::Compounded, ql::Annual, false, today, today);
}

double irr(const Table& table, std::size_t row) {
    const double* flows = table.list(0, row);
    return ql::CashFlows::yield(yearly(flows, 1, table.length, today), -flows[0], bond_days, ql::Compounded, ql::Annual,
                                false, today, today);
}

// All flows but the first; days ascend, and some may be the first one's.
ql::Leg dated(const double* flows, const double* days, std::size_t length) {
    ql::Leg leg;
    for (std::size_t i = 1; i < length; ++i) {
        leg.push_back(ql::ext::make_shared<ql::SimpleCashFlow>(flows[i], date_of(days[i])));
    }
    return leg;
}

double xnpv(const Table& table, std::size_t row) {
    const double* flows = table.list(1, row);
    const double* days = table.list(2, row);
    return flows[0] + ql::CashFlows::npv(dated(flows, days, table.length), table.number(0, row), ql::Actual365Fixed(),
                                         ql::Compounded, ql::Annual, true, date_of(days[0]), date_of(days[0]));
}

double xirr(const Table& table, std::size_t row) {
    const double* flows = table.list(0, row);
    const double* days = table.list(1, row);
    return ql::CashFlows::yield(dated(flows, days, table.length), -flows[0], ql::Actual365Fixed(), ql::Compounded,
                                ql::Annual, true, date_of(days[0]), date_of(days[0]));
}

// ---- The program

struct Case {
    std::size_t columns;
    double (*answer)(const Table& table, std::size_t row);
};

const std::map<std::string, Case> cases{{"PRICE", {4, price}}, {"YIELD", {4, yield}}, {"NPV", {2, npv}},
                                        {"IRR", {1, irr}},     {"XNPV", {3, xnpv}},   {"XIRR", {2, xirr}}};

std::vector<double> read_column(const std::string& path) {
    std::ifstream file{path, std::ios::binary | std::ios::ate};
    std::vector<double> values(static_cast<std::size_t>(file.tellg()) / sizeof(double));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(values.size() * sizeof(double)));
    return values;
}

double answer_or_nan(const Case& of, const Table& table, std::size_t row) {
    try {
        return of.answer(table, row);
    } catch (const std::exception&) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string data = argv[1];
    std::map<std::string, Table> tables;
    std::string name;
    for (std::size_t rows = 0, length = 0; std::cin >> name >> rows >> length;) {
        const auto found = cases.find(name);
        if (found == cases.end()) {
            std::cout << "none" << std::endl;
            continue;
        }
        Table& table = tables[name];
        table.length = length;
        for (std::size_t i = table.columns.size(); i < found->second.columns; ++i) {
            table.columns.push_back(read_column(data + '/' + name + '.' + std::to_string(i) + ".f64"));
        }
        std::vector<double> answers(rows);
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t row = 0; row < rows; ++row) answers[row] = answer_or_nan(found->second, table, row);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        std::ofstream file{data + "/answers.f64", std::ios::binary};
        file.write(reinterpret_cast<const char*>(answers.data()), static_cast<std::streamsize>(rows * sizeof(double)));
        file.close();
        std::cout << taken.count() << std::endl;
    }
}
