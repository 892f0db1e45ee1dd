// Our exp, log and pow beside the C library's, as ratios of processor time in one run: one after the other, each waiting
// for the one before (as in a discount factor), and side by side. The middle of 31 pairs.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

#include "elementary/functions.hpp"

namespace {

namespace elementary = finance::elementary;

using Numbers = std::vector<double>;

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

volatile double kept = 0.0;

template <typename Function>
double side_by_side(const Numbers& numbers, Function f) {
    const double begin = processor_seconds();
    double sum = 0.0;
    for (int round = 0; round < 20; ++round) {
        for (const double x : numbers) sum += f(x);
    }
    kept = sum;
    return processor_seconds() - begin;
}

template <typename Function>
double one_after_the_other(const Numbers& numbers, Function f) {
    const double begin = processor_seconds();
    double last = 0.0;
    for (int round = 0; round < 20; ++round) {
        for (const double x : numbers) last = f(x + last * 0x1p-1000);
    }
    kept = last;
    return processor_seconds() - begin;
}

template <typename Pair>
double middle_ratio(Pair pair) {
    std::array<double, 31> ratios{};
    for (double& ratio : ratios) ratio = pair();
    std::ranges::sort(ratios);
    return ratios[ratios.size() / 2];
}

template <typename Ours, typename Theirs>
void row(const char* name, const Numbers& numbers, Ours ours, Theirs theirs) {
    const double each = middle_ratio([&] { return side_by_side(numbers, ours) / side_by_side(numbers, theirs); });
    const double chain =
        middle_ratio([&] { return one_after_the_other(numbers, ours) / one_after_the_other(numbers, theirs); });
    std::printf("| %s | %.2f | %.2f |\n", name, chain, each);
}

Numbers draws(double low, double high) {
    std::mt19937_64 engine{1};
    std::uniform_real_distribution<> of{low, high};
    Numbers numbers(20'000);
    for (double& x : numbers) x = of(engine);
    return numbers;
}

}  // namespace

int main() {
    std::puts("| of the C library's time | one after the other | side by side |\n|---|---:|---:|");
    row(
        "exp(x), -20 to 20", draws(-20.0, 20.0), [](double x) { return elementary::exp(x); },
        [](double x) { return std::exp(x); });
    row(
        "log(x), 0 to 100", draws(0.0, 100.0), [](double x) { return elementary::log(x); },
        [](double x) { return std::log(x); });
    row(
        "log(x), 0.95 to 1.05", draws(0.95, 1.05), [](double x) { return elementary::log(x); },
        [](double x) { return std::log(x); });
    row(
        "pow(x, 7.3), 0.9 to 1.15", draws(0.9, 1.15), [](double x) { return elementary::pow(x, 7.3); },
        [](double x) { return std::pow(x, 7.3); });
}
