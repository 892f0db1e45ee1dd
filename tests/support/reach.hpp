// Which hard numbers a generator has drawn: a class that it cannot draw is a test that fails, not a hope.
#pragma once

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace finance::test {

class Reach {
public:
    void add(double x) {
        for (Class& one : classes_) one.drawn += one.holds(x) ? 1 : 0;
    }

    // The classes that were drawn less often, by name.
    [[nodiscard]] std::vector<std::string> drawn_less_than(int times) const {
        std::vector<std::string> names;
        for (const Class& one : classes_) {
            if (one.drawn < times) names.push_back(one.name + ": " + std::to_string(one.drawn));
        }
        return names;
    }

    // Days: to 1e16, the ends of what is a date, and within 274 years of where years, months and days pass 32 bits,
    // either sign, on either side.
    static Reach of_days() {
        constexpr double days_a_year = 365.2425;
        constexpr double year_0 = -1960.0 * days_a_year;
        Reach reach;
        for (const double sign : {-1.0, 1.0}) {
            reach.beside("years of 31 bits", sign * 0x1p31 * days_a_year + year_0, 1e5);
            reach.beside("months of 31 bits", sign * 0x1p31 / 12.0 * days_a_year + year_0, 1e5);
            reach.beside("days of 31 bits", sign * 0x1p31, 1e5);
            reach.beside("days of 32 bits", sign * 0x1p32, 1e5);
            reach.between("to 1e10", sign, 0x1p32, 1e10);
            reach.between("to 1e13", sign, 1e10, 1e13);
            reach.between("to 1e16", sign, 1e13, 1e16);
            reach.between("2^53", sign, 0x1p53 - 4.0, 0x1p53 + 4.0);
        }
        reach.add_class("below -2^61", [](double x) { return x < -0x1p61 && x >= -0x1p63; });
        reach.add_class("-2^63 and below", [](double x) { return x <= -0x1p63 && std::isfinite(x); });
        reach.add_infinities();
        return reach;
    }

    // Whole numbers around the widths of their fields.
    static Reach of_counts() {
        Reach reach;
        reach.beside("2^31", 0x1p31, 3.0);
        reach.beside("2^32", 0x1p32, 4.0);
        reach.between("2^53", 1.0, 0x1p53 - 4.0, 0x1p53 + 4.0);
        reach.between("to 2^31", 1.0, 1e9, 0x1p31);
        reach.between("millions", 1.0, 1e6, 1e9);
        reach.add_class("negative", [](double x) { return x < 0.0 && std::isfinite(x); });
        return reach;
    }

    void add_infinities() {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        add_class("infinity", [](double x) { return x == infinity; });
        add_class("-infinity", [](double x) { return x == -infinity; });
    }

private:
    struct Class {
        std::string name;
        std::function<bool(double)> holds;
        int drawn = 0;
    };

    void add_class(std::string name, std::function<bool(double)> holds) {
        classes_.push_back({std::move(name), std::move(holds)});
    }
    void beside(const std::string& name, double centre, double reach) {
        const std::string of = name + (centre < 0.0 ? ", negative" : "");
        add_class(of + ", below", [=](double x) { return x < centre && centre - x < reach; });
        add_class(of + ", from there on", [=](double x) { return x >= centre && x - centre < reach; });
    }
    void between(const std::string& name, double sign, double least, double most) {
        add_class(name + (sign < 0.0 ? ", negative" : ""),
                  [=](double x) { return sign * x > least && sign * x <= most; });
    }

    std::vector<Class> classes_;
};

}  // namespace finance::test
