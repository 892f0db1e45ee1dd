// The slowest calls that a search finds. For each calculation it starts from many hostile calls at once, changes what took
// longest further, and gives up a climb that has come to a stop for a new one. Prints the slowest call of each, slowest
// first, as typed, with its processor time; while it searches, one line a calculation on the error stream.
//
//     slowest_calls [SECONDS a calculation [SEED [NAME...]]]
//
// All calculations, for a second each, unless said otherwise: `slowest_calls 34` takes half an hour. Exit status 1 where
// a call takes longer than a second (a list: than a second for each 100,000 values). One that goes on for ten seconds is
// ended, with the process that made it, and listed with those; its calculation is searched on, up to three such calls.
// Calls too long to print are written whole to slowest_call_NAME.txt where they are above their bound.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "hostile/call_draws.hpp"
#include "hostile/watched_calls.hpp"

namespace {

using namespace finance;
using namespace finance::hostile;
using catalogue::Calculation;

constexpr double alarm_seconds = 10.0;
constexpr double endless_seconds = std::numeric_limits<double>::infinity();
constexpr std::size_t most_faults = 3;  // of a calculation

// ---- The search, in a process of its own

struct Found {
    double seconds;
    KeptCall call;
};

// What the process leaves behind.
struct Findings {
    double spent;  // processor seconds
    std::size_t calls;
    Found slowest;
    KeptCall current;
};

class Search {
public:
    Search(const host::EmbeddedHost& host, const Calculation& calculation, std::uint64_t seed, Findings& findings)
        : calculation_{calculation},
          random_{seed},
          calls_{evaluate_by(host), alarm_seconds, findings.current},
          findings_{findings} {}

    void run(double seconds) {
        const double begun = findings_.spent - processor_seconds();
        while (findings_.spent < seconds) {
            climb(climbs_[random_.below(climbs_.size())]);
            findings_.spent = begun + processor_seconds();
        }
    }

private:
    struct Climb {
        Call call{};
        double seconds = 0.0;
        std::size_t in_vain = 0;  // changes since the last that took longer
    };

    void climb(Climb& from) {
        constexpr std::size_t patience = 400;
        if (from.call.calculation == nullptr || from.in_vain > patience) from = {};
        const bool restart = from.call.calculation == nullptr || random_.chance(0.25);
        Climb& at = restart ? *std::ranges::min_element(climbs_, {}, &Climb::seconds) : from;
        Call candidate = restart ? drawn(calculation_, draw()) : changed(from.call, draw());
        const double seconds = time_of(candidate, at.seconds);
        from.in_vain += restart ? 0U : 1U;
        if (seconds <= at.seconds) return;
        at = {std::move(candidate), seconds, 0};
        if (seconds > findings_.slowest.seconds) publish(at);
    }

    // Twice where it is more than the other time and so little that it may be an interrupt's.
    double time_of(const Call& call, double other) {
        constexpr double certain = 0.01;
        const double seconds = calls_.make(call).seconds;
        ++findings_.calls;
        return seconds <= other || seconds > certain ? seconds : std::min(seconds, calls_.make(call).seconds);
    }

    // Loops of any length, so that what is slow for another reason comes up too.
    Draw draw() {
        Reach reach;
        if (random_.chance(0.7)) reach.periods = random_.log_uniform(1e3, reach.periods);
        reach.list = static_cast<std::size_t>(random_.log_uniform(10.0, 1.0 + static_cast<double>(reach.list)));
        return {
            .random = random_, .reach = reach, .answer = [this](const Call& call) { return calls_.make(call).value; }};
    }

    void publish(const Climb& climb) {
        findings_.slowest.seconds = climb.seconds;
        findings_.slowest.call.keep(climb.call);
    }

    const Calculation& calculation_;
    Random random_;
    WatchedCalls calls_;
    Findings& findings_;
    std::array<Climb, 8> climbs_{};
};

// ---- What is told of it

struct Line {
    double seconds;
    bool within_bound;
    std::string call;
};

Line line_of(const Call& call, double seconds) {
    const bool within_bound = seconds <= call.bound();
    const std::string text = call.text(false);
    const std::string whole = call.text(true);
    if (!within_bound && text != whole) {
        std::ofstream{"slowest_call_" + std::string{call.calculation->name} + ".txt", std::ios::app} << whole << '\n';
    }
    return {seconds, within_bound, text};
}

std::vector<Line> search(const host::EmbeddedHost& host, const Calculation& calculation, double seconds,
                         std::uint64_t seed, Findings& findings) {
    std::vector<Line> lines;
    findings.spent = findings.slowest.seconds = 0.0;
    findings.calls = 0;
    while (findings.spent < seconds && lines.size() < most_faults) {
        const Ending ending = run_apart([&] { Search{host, calculation, seed + lines.size(), findings}.run(seconds); });
        if (ending == Ending::finished) break;
        lines.push_back(line_of(findings.current.call(), endless_seconds));
        std::fprintf(stderr, "%s: %s\n", ending == Ending::endless ? "no end" : "crashed", lines.back().call.c_str());
    }
    const auto& [longest, call] = findings.slowest;
    std::fprintf(stderr, "%-10s %9zu calls, slowest %.6f s, %zu without end or crashed\n",
                 std::string{calculation.name}.c_str(), findings.calls, longest, lines.size());
    if (longest > 0.0) lines.push_back(line_of(call.call(), longest));
    return lines;
}

bool is_asked_for(const Calculation& calculation, int argc, char** argv) {
    const auto same_name = [&](const char* name) { return calculation.name == name; };
    return argc <= 3 || std::any_of(argv + 3, argv + argc, same_name);
}

int search_all(int argc, char** argv) {
    const double seconds = argc > 1 ? std::atof(argv[1]) : 1.0;
    const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const host::EmbeddedHost host{ZELKOVAN_MODULE};
    auto& findings = shared<Findings>();
    std::vector<Line> found;
    for (const Calculation& calculation : catalogue::calculations()) {
        if (!is_asked_for(calculation, argc, argv)) continue;
        const std::vector<Line> lines = search(host, calculation, seconds, seed, findings);
        found.insert(found.end(), lines.begin(), lines.end());
    }
    std::ranges::sort(found, std::ranges::greater{}, &Line::seconds);
    for (const auto& [time, within_bound, call] : found) {
        std::isinf(time) ? std::printf("%12s", "no end") : std::printf("%10.6f s", time);
        std::printf("  %s\n", call.c_str());
    }
    return !found.empty() && std::ranges::all_of(found, &Line::within_bound) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return search_all(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "slowest_calls: %s\n", error.what());
        return 1;
    }
}
