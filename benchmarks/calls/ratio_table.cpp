#include "benchmarks/calls/ratio_table.hpp"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <thread>

namespace finance::benchmarks {

namespace {

std::string fixed(double x, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, x);
    return text;
}

std::string row(const std::vector<std::string>& cells) {
    std::string text = "|";
    for (const std::string& cell : cells) text += ' ' + cell + " |";
    return text + '\n';
}

std::string head(const std::vector<std::string>& cells) {
    std::string rule = "|---|";
    for (std::size_t i = 1; i < cells.size(); ++i) rule += "---:|";
    return row(cells) + rule + '\n';
}

std::string verdict(bool met) { return met ? "met" : "**missed**"; }

std::string processor() {
    std::ifstream file{"/proc/cpuinfo"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    }
    return "unknown processor";
}

#ifdef __clang__
constexpr const char* compiler = __VERSION__;  // begins with its name
#else
constexpr const char* compiler = "g++ " __VERSION__;
#endif

std::string machine_and_date() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    char date[16];
    std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));
    return processor() + ", " + std::to_string(std::thread::hardware_concurrency()) + " threads; " + compiler + "; " +
           date;
}

// ---- Sections

std::string against_floors(const Times& times, const std::deque<CallCase>& cases, double goal) {
    std::string text = head({"call", "dispatcher ns", "handler ns", "floor ns", "dispatcher / floor", "goal", ""});
    for (const CallCase& one : cases) {
        if (!times.have({"dispatcher/" + one.label, "handler/" + one.label, "floor/" + one.label})) continue;
        const double call = times["dispatcher/" + one.label].nanoseconds;
        const double floor = times["floor/" + one.label].nanoseconds;
        text += row({one.label, fixed(call, 1), fixed(times["handler/" + one.label].nanoseconds, 1), fixed(floor, 1),
                     fixed(call / floor, 2), "<= " + fixed(goal, 1), verdict(call <= goal * floor)});
    }
    return text;
}

std::string all_calls(const Times& times, const std::deque<CallCase>& cases) {
    std::string text = head({"calculation", "dispatcher ns", "handler ns", "dispatcher - handler"});
    for (const CallCase& one : cases) {
        if (!times.have({"dispatcher/" + one.label, "handler/" + one.label})) continue;
        const double call = times["dispatcher/" + one.label].nanoseconds;
        const double handler = times["handler/" + one.label].nanoseconds;
        text += row({one.label, fixed(call, 1), fixed(handler, 1), fixed(call - handler, 1)});
    }
    return text;
}

std::string against_peers(const Times& times, const std::vector<Peer>& peers) {
    std::string text = head({"answer", "dispatcher ns", "from scratch ns", "times faster", "goal", ""});
    for (const Peer& peer : peers) {
        if (!times.have({"dispatcher/" + std::string{peer.call}, "peer/" + peer.label})) continue;
        const double call = times["dispatcher/" + std::string{peer.call}].nanoseconds;
        const double theirs = times["peer/" + peer.label].nanoseconds;
        text += row({peer.label, fixed(call, 1), fixed(theirs, 1), fixed(theirs / call, 1), ">= " + fixed(peer.goal, 0),
                     verdict(theirs >= peer.goal * call)});
    }
    return text;
}

std::string against_size(const Times& times) {
    const auto time = [&](const std::string& label) { return times["dispatcher/" + label].nanoseconds; };
    const std::vector<std::string> needed{"dispatcher/PRICE at 10",     "dispatcher/PRICE at 60",
                                          "dispatcher/PRICE at 240",    "dispatcher/PRICE at 960",
                                          "dispatcher/COUPNUM over 1",  "dispatcher/COUPNUM over 900",
                                          "dispatcher/YEARFRAC over 1", "dispatcher/YEARFRAC over 900"};
    if (!times.have(needed)) return {};
    constexpr double steady = 1.2;
    const auto of_one_coupon = [&](int few, int many) {
        return (time("PRICE at " + std::to_string(many)) - time("PRICE at " + std::to_string(few))) / (many - few);
    };
    std::string text = head({"growth", "small ns", "large ns", "ratio", "goal", ""});
    text += row({"PRICE with 10 and with 60 coupons", fixed(time("PRICE at 10"), 1), fixed(time("PRICE at 60"), 1),
                 fixed(time("PRICE at 60") / time("PRICE at 10"), 2), "", ""});
    const double low = of_one_coupon(60, 240);
    const double high = of_one_coupon(240, 960);
    text += row({"PRICE, one coupon more: from 60 to 240, from 240 to 960", fixed(low, 2), fixed(high, 2),
                 fixed(high / low, 2), "<= 1.2", verdict(high <= steady * low)});
    for (const std::string name : {"COUPNUM", "YEARFRAC"}) {
        const double near = time(name + " over 1");
        const double far = time(name + " over 900");
        text += row({name + ", dates a year and 900 years apart", fixed(near, 1), fixed(far, 1), fixed(far / near, 2),
                     "<= 1.2", verdict(far <= steady * near)});
    }
    return text;
}

std::string by_threads(const Times& times) {
    if (!times.have({"threads/1", "threads/2"})) return {};
    constexpr double goal = 1.9;
    const double one = times["threads/1"].calls_per_second;
    const double two = times["threads/2"].calls_per_second;
    // Two threads that hold each other up take more processor time a call; a busy machine only takes them wall time.
    const double alone = times["threads/1"].nanoseconds;
    const double together = times["threads/2"].nanoseconds;
    return head({"PMT", "one thread", "two threads", "ratio", "goal", ""}) +
           row({"calls a second of wall time", fixed(one, 0), fixed(two, 0), fixed(two / one, 2), ">= 1.9",
                verdict(two >= goal * one)}) +
           row({"ns of processor time a call", fixed(alone, 1), fixed(together, 1), fixed(2.0 * alone / together, 2),
                "", ""});
}

const std::string about = R"(# How fast a call is

Written by `cmake --build BUILD --target bench` (configured with `-D ZELKOVAN_BENCHMARKS=ON`; Google Benchmark, and
QuantLib where it is installed).

A floor is what the rules demand and nothing else: the exponentials, logarithms, powers and dependent multiplications of
the formula, the steps that a search takes, the splitting of day numbers into days, months and years, one comparison of a
basis with its words, and the look-up of the name that calls make: by its letters and length, once the host's table is
seen to have the letters in order. It answers with the bits of the call.

What calls still cost beyond their floors: arguments are checked one by one, a record is cleared, and dates go through
memory between the routines that split and count them. XNPV reads 501 arguments, which takes longer than to discount 250
flows side by side. The goals are older than that, and than the look-up: they were set when floors searched for names and
formed one power after the other.

)";

}  // namespace

std::string ratio_table(const Measurements& measurements) {
    const Times& times = measurements.times;
    constexpr double goal_of_usual = 1.8;
    constexpr double goal_of_large = 1.3;
    std::string text = about + machine_and_date() + ". Processor time, the best of nine runs in random order.\n";
    if (times.has("name")) text += "\nOne look-up of a name alone: " + fixed(times["name"].nanoseconds, 1) + " ns.\n";
    text += "\n## Closed forms against their floors\n\n" + against_floors(times, measurements.usual, goal_of_usual);
    text +=
        "\n## Sums and searches against their floors\n\n" + against_floors(times, measurements.large, goal_of_large);
    text += "\n## " + peer_library() + "\n\n" + against_peers(times, measurements.peers);
    text += "\n## Growth\n\n" + against_size(times);
    text += "\n## Threads\n\n" + by_threads(times);
    text += "\n## Every calculation\n\n" + all_calls(times, measurements.usual);
    return text;
}

}  // namespace finance::benchmarks
