// What is formed at once against what literal walks form: walks over periods, sums in jumps, sums in closed form, at drawn
// places and lengths, across the ends of years. Prints how many of each were compared, and what did not agree; exit status
// 1 where something did not.
//
//     closed_forms SECONDS [SEED]     for so long; 0: a thin slice, the same every time
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "tests/calendar/dates.hpp"
#include "tests/closed/comparison.hpp"

namespace {

using namespace finance;
using namespace finance::closed;

struct Section {
    const char* name;
    Compare compare;
    double longest;  // steps of a walk
    int slice;       // comparisons, where there are no seconds
    int compared = 0;
    int faults = 0;
    int other_bits = 0;  // within their bound
    double worst = 0.0;
};

constexpr int most_shown = 20;
constexpr double usual_longest = 1e5;

void compare_once(Section& section, hostile::Random& random, const host::EmbeddedHost& shipped, bool slice) {
    // Most walks are short: many of them tell more than a long one does, and a few are as long as they come.
    const double longest = slice || random.chance(0.98) ? usual_longest : section.longest;
    const Compared compared = section.compare({random, longest, shipped});
    ++section.compared;
    section.other_bits += compared.agrees && compared.error > 0.0 ? 1 : 0;
    section.worst = std::max(section.worst, compared.agrees ? compared.error : 0.0);
    if (compared.agrees) return;
    if (++section.faults <= most_shown) std::printf("%s: %s\n", section.name, compared.text.c_str());
}

int compare_all(double seconds, std::uint64_t seed) {
    const host::EmbeddedHost shipped{ZELKOVAN_MODULE};
    Section sections[] = {
        {"sums of proportions", sums_of_proportions, 1e7, 600},
        {"coupon lists", coupon_lists, 1e7, 600},
        {"repeated sums", repeated_sums, 1e8, 4000},
        {"loans", loans, 1e8, 1000},
        {"depreciations", depreciations, 4e7, 1000},
        {"bonds", bonds, 2e8, 1000},
        {"early closed forms", early_forms, 1e8, 2000},
    };
    hostile::Random random{seed};
    const auto begin = std::chrono::steady_clock::now();
    const auto spent = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(); };
    int faults = 0;
    for (Section& section : sections) {
        const double until = spent() + seconds / static_cast<double>(std::size(sections));
        const bool slice = seconds == 0.0;
        while (slice ? section.compared < test::drawn(section.slice) : spent() < until)
            compare_once(section, random, shipped, slice);
        std::printf("%-20s %9d compared, %d do not agree; %d within %.2g relative, the others in all bits\n",
                    section.name, section.compared, section.faults, section.other_bits, section.worst);
        std::fflush(stdout);
        faults += section.faults;
    }
    // Where a closed form took over it has other bits than a loop now and then.
    return faults == 0 && sections[std::size(sections) - 1].other_bits > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return compare_all(argc > 1 ? std::atof(argv[1]) : 0.0, argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "closed_forms: %s\n", error.what());
        return 1;
    }
}
