// What a call through one zelkovan.so costs beside the same call through another: two builds, or two states of the source.
//
//     call_pairs FIRST.so SECOND.so [ROUNDS]
//
// Every calculation at the example of the catalogue. A round times a block of calls through the first module and one
// through the second, in turns of which goes first; a line is the median of what rounds differ by, so that whatever else
// the machine does hits both alike. The last line is the median of the lines.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <vector>

#include "benchmarks/calls/call_cases.hpp"
#include "benchmarks/calls/call_record.hpp"
#include "host/embedded_host.hpp"

namespace finance::benchmarks {

namespace {

constexpr int calls_a_block = 300;
constexpr int usual_rounds = 1001;

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Nanoseconds a call.
double block(host::Dispatcher dispatcher, CallRecord& call) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < calls_a_block; ++i) {
        call.vary();
        dispatcher(call.context(), call.result());
    }
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / calls_a_block;
}

struct Pair {
    double first = 0.0;    // ns a call
    double differs = 0.0;  // second - first
    double ratio = 0.0;
};

Pair time_pair(host::Dispatcher first, host::Dispatcher second, const CallCase& one, int rounds) {
    CallRecord call{one.name, one.arguments, one.varied};
    std::vector<double> firsts, differences, ratios;
    for (int round = 0; round < rounds; ++round) {
        const bool first_goes_first = round % 2 == 0;
        const double earlier = block(first_goes_first ? first : second, call);
        const double later = block(first_goes_first ? second : first, call);
        const double a = first_goes_first ? earlier : later;
        const double b = first_goes_first ? later : earlier;
        firsts.push_back(a);
        differences.push_back(b - a);
        ratios.push_back(b / a);
    }
    return {median(firsts), median(differences), median(ratios)};
}

void compare(const char* first_path, const char* second_path, int rounds) {
    const host::EmbeddedHost first{first_path};
    const host::EmbeddedHost second{second_path};
    std::vector<double> differences, ratios;
    for (const CallCase& one : usual_calls()) {
        const Pair pair = time_pair(first.dispatcher(), second.dispatcher(), one, rounds);
        std::printf("%-12s %8.2f ns %+7.2f ns  %.3f\n", one.label.c_str(), pair.first, pair.differs, pair.ratio);
        differences.push_back(pair.differs);
        ratios.push_back(pair.ratio);
    }
    std::printf("%-12s %8zu    %+7.2f ns  %.3f\n", "median", differences.size(), median(differences), median(ratios));
}

}  // namespace

}  // namespace finance::benchmarks

int main(int count, char** words) {
    if (count < 3) {
        std::fprintf(stderr, "call_pairs FIRST.so SECOND.so [ROUNDS]\n");
        return 2;
    }
    try {
        finance::benchmarks::compare(words[1], words[2],
                                     count > 3 ? std::max(std::atoi(words[3]), 1) : finance::benchmarks::usual_rounds);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "call_pairs: %s\n", error.what());
        return 1;
    }
}
