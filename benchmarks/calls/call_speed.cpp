// How fast a call of FINANCE is: through the dispatcher of zelkovan.so, from the handler on, beside its floor, beside
// another library, by size, from two threads. Prints a table of ratios and goals.
//
//     call_speed [FILE for the table] [options of Google Benchmark]
//     call_speed --loop=LABEL,TIMES     only that call through the dispatcher, as food for a profiler
//     call_speed --floor=LABEL,TIMES    only its floor
//
// Before anything is timed, floors must answer with the bits of their calls, and peers to within 1e-8.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "benchmarks/calls/call_cases.hpp"
#include "benchmarks/calls/call_record.hpp"
#include "benchmarks/calls/checks.hpp"
#include "benchmarks/calls/peers.hpp"
#include "benchmarks/calls/ratio_table.hpp"
#include "host/embedded_host.hpp"
#include "module/financial_list.hpp"

namespace finance::benchmarks {

namespace {

constexpr double seconds_a_run = 0.01;
constexpr int runs = 9;

template <typename Body>
benchmark::internal::Benchmark* add(const std::string& name, Body body) {
    return benchmark::RegisterBenchmark(name.c_str(), body)->MinTime(seconds_a_run)->Repetitions(runs);
}

// ---- What is timed

void time_dispatcher(benchmark::State& state, host::Dispatcher dispatcher, const CallCase& one) {
    CallRecord call{one.name, one.arguments, one.varied};
    for (auto _ : state) {
        call.vary();
        benchmark::DoNotOptimize(dispatcher(call.context(), call.result()));
        benchmark::ClobberMemory();
    }
    state.counters[calls_counter] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void time_handler(benchmark::State& state, const CallCase& one) {
    CallRecord call{one.name, one.arguments, one.varied};
    const std::size_t row = find_name(one.name);
    Handler* handler = FinancialList[row].handler;
    benchmark::DoNotOptimize(handler);
    for (auto _ : state) {
        call.vary();
        benchmark::DoNotOptimize(handler(call.context(), call.result(), call.count(), static_cast<std::int32_t>(row)));
        benchmark::ClobberMemory();
    }
}

// Not inlined: a profiler counts by its name.
[[gnu::noinline]] double floor_call(const CallCase& one, const CallRecord& call) {
    std::string_view name = one.name;
    Floor floor = one.floor;
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(find_name(name));
    benchmark::DoNotOptimize(floor);
    return floor({call.numbers(), one.flows});
}

void time_floor(benchmark::State& state, const CallCase& one) {
    CallRecord call{one.name, one.arguments, one.varied};
    for (auto _ : state) {
        call.vary();
        benchmark::DoNotOptimize(floor_call(one, call));
        benchmark::ClobberMemory();
    }
}

void time_name(benchmark::State& state) {
    std::string_view name = "PMT";
    for (auto _ : state) {
        benchmark::DoNotOptimize(name);
        benchmark::DoNotOptimize(find_name(name));
    }
}

void time_peer(benchmark::State& state, const Peer& peer) {
    double near_1 = 1.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(near_1);
        benchmark::DoNotOptimize(peer.answer(near_1));
        near_1 = near_1 == 1.0 ? 1.0 + 0x1p-30 : 1.0;
    }
}

void add_call(host::Dispatcher dispatcher, const CallCase& one) {
    add("dispatcher/" + one.label, [=, &one](benchmark::State& state) { time_dispatcher(state, dispatcher, one); });
    add("handler/" + one.label, [&one](benchmark::State& state) { time_handler(state, one); });
    if (one.floor == nullptr) return;
    add("floor/" + one.label, [&one](benchmark::State& state) { time_floor(state, one); });
}

void add_threads(host::Dispatcher dispatcher, const CallCase& one) {
    constexpr double seconds = 0.1;
    const auto body = [=, &one](benchmark::State& state) { time_dispatcher(state, dispatcher, one); };
    add("threads/1", body)->Threads(1)->UseRealTime()->MinTime(seconds);
    add("threads/2", body)->Threads(2)->UseRealTime()->MinTime(seconds);
}

const CallCase& labelled(const std::vector<const std::deque<CallCase>*>& groups, std::string_view label) {
    for (const auto* cases : groups) {
        for (const CallCase& one : *cases) {
            if (one.label == label) return one;
        }
    }
    throw std::runtime_error{"no call " + std::string{label}};
}

// --loop=LABEL,TIMES or --floor=LABEL,TIMES
int profile(std::string_view option, host::Dispatcher dispatcher,
            const std::vector<const std::deque<CallCase>*>& groups) {
    const std::size_t equals = option.find('=');
    const std::size_t comma = option.rfind(',');
    if (comma == option.npos || comma < equals) throw std::runtime_error{"--loop and --floor take LABEL,TIMES"};
    const CallCase& one = labelled(groups, option.substr(equals + 1, comma - equals - 1));
    const bool floor = option.starts_with("--floor");
    if (floor && one.floor == nullptr) throw std::runtime_error{one.label + " has no floor"};
    CallRecord call{one.name, one.arguments, one.varied};
    for (long left = std::atol(option.data() + comma + 1); left > 0; --left) {
        call.vary();
        if (floor) {
            *call.result() = floor_call(one, call);
        } else {
            dispatcher(call.context(), call.result());
        }
    }
    std::printf("%.17g\n", *call.result());
    return 0;
}

int run(int argc, char** argv) {
    const host::EmbeddedHost loaded{ZELKOVAN_MODULE};
    const host::EmbeddedHost linked{mcn_main};  // for the handlers
    const host::Dispatcher dispatcher = loaded.dispatcher();
    const std::deque<CallCase> usual = usual_calls();
    const std::deque<CallCase> large = large_calls();
    const std::deque<CallCase> sized = sized_calls();
    const std::vector<const std::deque<CallCase>*> groups{&usual, &large, &sized};
    const std::vector<Peer> others = peers();

    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first.starts_with("--loop=") || first.starts_with("--floor=")) {
        return profile(first, dispatcher, groups);
    }
    for (const auto* cases : groups) {
        for (const CallCase& one : *cases) {
            check_call(dispatcher, one);
            add_call(dispatcher, one);
        }
    }
    for (const Peer& peer : others) {
        check_peer(dispatcher, labelled(groups, peer.call), peer);
        add("peer/" + peer.label, [&peer](benchmark::State& state) { time_peer(state, peer); });
    }
    add("name", time_name);
    add_threads(dispatcher, labelled(groups, "PMT"));

    // Repetitions of one benchmark apart from each other: what else the machine does hits all alike.
    std::vector<char*> options{argv, argv + argc};
    std::string apart = "--benchmark_enable_random_interleaving=true";
    options.insert(options.begin() + 1, apart.data());
    auto count = static_cast<int>(options.size());
    benchmark::Initialize(&count, options.data());
    Times times;
    benchmark::RunSpecifiedBenchmarks(&times);
    const std::string table = ratio_table({times, usual, large, others});
    std::fputs(table.c_str(), stdout);
    if (count > 1) std::ofstream{options[1]} << table;
    return 0;
}

}  // namespace

}  // namespace finance::benchmarks

int main(int argc, char** argv) {
    try {
        return finance::benchmarks::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "call_speed: %s\n", error.what());
        return 1;
    }
}
