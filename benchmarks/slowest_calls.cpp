// The slowest call of each calculation that a search finds: from its usual call on, arguments are replaced by extreme or
// random values, and what took longer is kept and changed further. Prints the calls as they are typed, slowest first;
// exit status 1 where one takes a second or more.
//
//     slowest_calls [SECONDS a calculation] [SEED]
#include <time.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "catalogue/number_text.hpp"
#include "command/argument_list.hpp"
#include "command/call_answer.hpp"
#include "host/embedded_host.hpp"

namespace {

using namespace finance;
using catalogue::Calculation;
using catalogue::Kind;

using Arguments = std::vector<host::Argument>;

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// ---- Values

constexpr std::array numbers{0.0, 5e-324, 1e-300, 1e-17, 1e-9, 1e-4, 0.01, 0.05,   0.1,  0.5,  1.0,   2.0,     3.9,
                             4.0, 12.0,   99.0,   100.,  101., 1e3,  1e5,  0x1p31, 1e10, 1e17, 1e300, HUGE_VAL};
constexpr std::array wholes{0.0,         1.0, 2.0,          4.0, 12.0,         60.0,         360.0,  1e4,    1e5,   1e6,
                            9'999'999.0, 1e7, 10'000'001.0, 1e9, 0x1p31 - 2.0, 0x1p31 - 1.0, 0x1p31, 0x1p53, 0x1p62};
constexpr std::array dates{0.0,          1.0,    59.0,    17'577.0,   21'138.0, 32'142.0, 60'000.0,
                           -800'000.0,   -2.4e6, 2.9e6,   3.6e6,      3.0e8,    1.8e9,    0x1p31 - 400.0,
                           0x1p31 - 1.0, 0x1p31, -0x1p31, -0x1p31 + 1};

class Draws {
public:
    explicit Draws(std::uint64_t seed) : random_{seed} {}

    std::size_t below(std::size_t n) { return static_cast<std::size_t>(random_() % n); }
    bool chance(double p) { return uniform() < p; }
    double uniform() { return static_cast<double>(random_() >> 11U) * 0x1p-53; }

    double value(Kind kind) {
        switch (kind) {
            case Kind::whole:
                return pick(wholes) * (chance(0.1) ? -1.0 : 1.0);
            case Kind::date:
            case Kind::date_time:
            case Kind::dates:
                return pick(dates) + std::floor(chance(0.5) ? 0.0 : uniform() * 400.0);
            case Kind::basis:
                return static_cast<double>(below(5));
            case Kind::flag:
                return static_cast<double>(below(2));
            default:
                return pick(numbers) * (chance(0.3) ? -1.0 : 1.0) * (chance(0.5) ? 1.0 : uniform());
        }
    }

    // Near the value: scaled, moved, or with another last digit.
    double near(double x, Kind kind) {
        const double step = kind == Kind::number || kind == Kind::numbers ? x * 0.01 : 1.0;
        switch (below(4)) {
            case 0:
                return chance(0.5) ? x * 2.0 : kind == Kind::number ? x / 2.0 : std::trunc(x / 2.0);
            case 1:
                return x + step * static_cast<double>(below(40));
            case 2:
                return x - step * static_cast<double>(below(40));
            default:
                return x + (chance(0.5) ? step : 0.0 - step);
        }
    }

private:
    template <std::size_t n>
    double pick(const std::array<double, n>& values) {
        return values[below(n)];
    }

    std::mt19937_64 random_;
};

// ---- The search

std::vector<std::string> words_of(std::string_view text) {
    std::istringstream stream{std::string{text}};
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

// The kinds of a call's arguments: the last parameter that is a list takes all that are left.
Kind kind_at(const Calculation& calculation, std::size_t i) {
    const std::size_t last = calculation.parameters.size() - 1;
    return calculation.parameters[std::min(i, last)].kind;
}

class Search {
public:
    Search(const host::EmbeddedHost& host, const Calculation& calculation, std::uint64_t seed)
        : host_{host}, calculation_{calculation}, draws_{seed} {
        const std::vector<std::string> words = words_of(calculation.example.arguments);
        const std::vector<std::string_view> views{words.begin(), words.end()};
        for (const auto& given : command::read_arguments(calculation, views)) {
            usual_.push_back(command::as_argument(given));
        }
    }

    void run(double seconds) {
        const double end = processor_seconds() + seconds;
        best_ = usual_;
        best_time_ = time_of(best_);
        while (processor_seconds() < end) {
            const Arguments candidate = changed(draws_.chance(0.2) ? usual_ : best_);
            double time = time_of(candidate);
            if (time > best_time_) time = std::min(time, time_of(candidate));  // not only an interrupt
            if (time <= best_time_) continue;
            best_time_ = time;
            best_ = candidate;
        }
    }

    [[nodiscard]] double time() const { return best_time_; }
    [[nodiscard]] std::string call() const {
        std::string text = "finance " + std::string{calculation_.name};
        for (const host::Argument& argument : best_) {
            text += ' ';
            text += argument.kind() == host::Argument::Kind::text ? std::string{argument.text()}
                                                                  : catalogue::plain_text(argument.number());
        }
        return text;
    }

private:
    double time_of(const Arguments& arguments) const {
        const double begin = processor_seconds();
        (void)host_.evaluate(calculation_.name, arguments);
        return processor_seconds() - begin;
    }

    Arguments changed(Arguments arguments) {
        do {
            const std::size_t i = draws_.below(arguments.size());
            const Kind kind = kind_at(calculation_, i);
            const bool close = arguments[i].kind() == host::Argument::Kind::number && draws_.chance(0.5);
            arguments[i] = close ? draws_.near(arguments[i].number(), kind) : draws_.value(kind);
        } while (draws_.chance(0.6));
        return arguments;
    }

    const host::EmbeddedHost& host_;
    const Calculation& calculation_;
    Draws draws_;
    Arguments usual_;
    Arguments best_;
    double best_time_ = 0.0;
};

}  // namespace

int main(int argc, char** argv) {
    constexpr double limit = 1.0;
    const double seconds = argc > 1 ? std::atof(argv[1]) : 1.0;
    const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const host::EmbeddedHost host{ZELKOVAN_MODULE};
    std::vector<std::pair<double, std::string>> found;
    for (const Calculation& calculation : catalogue::calculations()) {
        Search search{host, calculation, seed};
        search.run(seconds);
        found.emplace_back(search.time(), search.call());
    }
    std::ranges::sort(found, std::greater{});
    for (const auto& [time, call] : found) std::printf("%10.6f s  %s\n", time, call.c_str());
    return found.front().first < limit ? 0 : 1;
}
