// 100,000 calls of all calculations, drawn to be slow, the same every time, in a build of the module that counts the
// steps of its loops. Prints how many were made and the ten slowest; exit status 1 where one makes more steps than a call
// may (abi/steps.hpp), takes longer than a second of processor time (a list: a second for each 100,000 values), does not
// end, or crashes.
//
//     hostile_calls            all
//     hostile_calls NUMBER     one of them, typed out whole, and how long it takes
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "hostile/call_draws.hpp"
#include "hostile/watched_calls.hpp"
#include "module/financial_list.hpp"
#include "tests/support/steps.hpp"

namespace {

using namespace finance;
using namespace finance::hostile;

constexpr std::size_t all_calls = 100'000;
constexpr std::size_t most_faults = 12;  // calls without end, or crashes, until it stops
constexpr std::size_t most_of_one = 2;   // such calls of a calculation, which is then left alone
constexpr double alarm_seconds = 2.5;    // more than the second that a call has, so that its time is mostly known

// Literal loops of millions of steps are bounded, but a share of a second each: few calls may ask for them.
constexpr double far_share = 0.005;
constexpr Reach usual_reach{.periods = 1e4, .list = 300, .far = 0.05};

struct Slow {
    std::size_t number;
    double seconds;
    std::int64_t steps;
};

// What a process leaves behind for the next.
struct Progress {
    std::size_t next;  // call
    std::size_t made;
    std::array<Slow, 10> slowest;
    std::size_t too_slow;
    std::size_t too_many_steps;
    std::int64_t most_steps;                              // of any call
    std::array<std::size_t, calculation_count> answered;  // of each calculation
    std::array<std::size_t, calculation_count> faults;    // calls without end, or crashes
    double seconds;                                       // of all calls
    KeptCall current;
};

std::size_t index_of(std::size_t number) { return number % catalogue::calculations().size(); }

Call call_of(std::size_t number, WatchedCalls& calls) {
    Random random{number};
    const Reach reach = random.chance(far_share) ? Reach{} : usual_reach;
    return drawn(catalogue::calculations()[index_of(number)],
                 {random, reach, [&](const Call& asked) { return calls.make(asked).value; }});
}

void keep(Progress& progress, const Slow& slow) {
    Slow& last = progress.slowest.back();
    if (slow.seconds <= last.seconds) return;
    last = slow;
    std::ranges::sort(progress.slowest, std::ranges::greater{}, &Slow::seconds);
}

std::int64_t most_steps_of(const Call& call) {
    return test::most_steps(1 + call.arguments().size(), call.calculation->name.size());
}

void make_calls(const host::EmbeddedHost& host, Progress& progress) {
    WatchedCalls calls{evaluate_by(host), alarm_seconds, progress.current};
    for (; progress.next < all_calls; ++progress.next) {
        const std::size_t number = progress.next;
        if (progress.faults[index_of(number)] >= most_of_one) continue;
        const Call call = call_of(number, calls);
        steps_made = 0;
        const auto [seconds, value] = calls.make(call);
        keep(progress, {number, seconds, steps_made});
        progress.too_slow += seconds > call.bound() ? 1U : 0U;
        progress.too_many_steps += steps_made > most_steps_of(call) ? 1U : 0U;
        progress.most_steps = std::max(progress.most_steps, steps_made);
        progress.answered[index_of(number)] += std::isnan(value) ? 0U : 1U;
        progress.seconds += seconds;
        ++progress.made;
    }
}

// A call's text is drawn again, which asks for nothing but coupon dates.
std::string text_of(const host::EmbeddedHost& host, std::size_t number, KeptCall& current, bool whole) {
    WatchedCalls calls{evaluate_by(host), alarm_seconds, current};
    return call_of(number, calls).text(whole);
}

int show(const host::EmbeddedHost& host, std::size_t number, Progress& progress) {
    const Ending ending = run_apart([&] {
        WatchedCalls calls{evaluate_by(host), 1e6, progress.current};
        const Call call = call_of(number, calls);
        std::printf("%s\n", call.text(true).c_str());
        std::fflush(stdout);
        steps_made = 0;
        const double seconds = calls.make(call).seconds;
        std::printf("%.6f s, %lld steps\n", seconds, static_cast<long long>(steps_made));
    });
    return ending == Ending::finished ? 0 : 1;
}

void print(const host::EmbeddedHost& host, Progress& progress, std::size_t faults) {
    std::printf(
        "hostile calls: %zu made in %.1f s of processor time; %zu above their bound of time and %zu of steps, %zu "
        "without "
        "end or crashed; %lld steps at most\n",
        progress.made, progress.seconds, progress.too_slow, progress.too_many_steps, faults,
        static_cast<long long>(progress.most_steps));
    for (const Slow& slow : progress.slowest) {
        if (slow.seconds == 0.0) continue;
        std::printf("%10.6f s  %9lld steps  %6zu  %s\n", slow.seconds, static_cast<long long>(slow.steps), slow.number,
                    text_of(host, slow.number, progress.current, false).c_str());
    }
}

// Draws that no calculation answers would find nothing.
std::size_t unanswered(const Progress& progress) {
    std::size_t none = 0;
    for (std::size_t i = 0; i < catalogue::calculations().size(); ++i) {
        if (progress.answered[i] > 0) continue;
        ++none;
        std::printf("never answered: %s\n", std::string{catalogue::calculations()[i].name}.c_str());
    }
    return none;
}

int make_all(const host::EmbeddedHost& host, Progress& progress) {
    std::size_t faults = 0;
    while (progress.next < all_calls && faults < most_faults) {
        const Ending ending = run_apart([&] { make_calls(host, progress); });
        if (ending == Ending::finished) continue;
        std::printf("%-10s %6zu  %s\n", ending == Ending::endless ? "no end" : "crashed", progress.next,
                    progress.current.call().text(false).c_str());
        ++progress.faults[index_of(progress.next++)];
        ++faults;
    }
    print(host, progress, faults);
    const bool bounded = progress.too_slow == 0 && progress.too_many_steps == 0;
    return progress.made == all_calls && bounded && unanswered(progress) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const host::EmbeddedHost host{mcn_main};
        auto& progress = shared<Progress>();
        return argc > 1 ? show(host, std::strtoull(argv[1], nullptr, 10), progress) : make_all(host, progress);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hostile_calls: %s\n", error.what());
        return 1;
    }
}
