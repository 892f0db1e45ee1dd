#include "hostile/watched_calls.hpp"

#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace finance::hostile {

namespace {

constexpr int exit_endless = 3;
constexpr int exit_failed = 4;

extern "C" void end_endless_call(int) { _exit(exit_endless); }

[[noreturn]] void fail(const char* what) { throw std::system_error{errno, std::generic_category(), what}; }

}  // namespace

void KeptCall::keep(const Call& call) {
    std::size_t size = 0;
    for (const std::vector<double>& values : call.given) size += values.size();
    if (size > values_.size() || call.given.size() > sizes_.size())
        throw std::length_error{"a call of too many values"};
    calculation_ = call.calculation;
    auto next = values_.begin();
    for (std::size_t i = 0; i < call.given.size(); ++i) {
        sizes_[i] = call.given[i].size();
        next = std::ranges::copy(call.given[i], next).out;
    }
}

Call KeptCall::call() const {
    Call call{.calculation = calculation_};
    const double* next = values_.data();
    for (std::size_t i = 0; i < calculation_->parameters.size(); ++i) {
        call.given.emplace_back(next, next + sizes_[i]);
        next += sizes_[i];
    }
    return call;
}

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

Ending run_apart(const std::function<void()>& work) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) fail("fork");
    if (child == 0) {
        try {
            work();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            _exit(exit_failed);
        }
        std::fflush(nullptr);
        _exit(0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) fail("waitpid");
    }
    if (!WIFEXITED(status)) return Ending::crashed;
    if (WEXITSTATUS(status) == exit_endless) return Ending::endless;
    if (WEXITSTATUS(status) != 0) throw std::runtime_error{"the process that makes the calls failed"};
    return Ending::finished;
}

Evaluate evaluate_by(const host::EmbeddedHost& host) {
    return [&host](std::string_view name, std::span<const host::Argument> arguments) {
        return host.evaluate(name, arguments);
    };
}

WatchedCalls::WatchedCalls(Evaluate evaluate, double longest, KeptCall& current)
    : evaluate_{std::move(evaluate)}, longest_{longest}, current_{current} {
    struct sigaction action {};
    action.sa_handler = end_endless_call;
    if (sigaction(SIGALRM, &action, nullptr) != 0) fail("sigaction");
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    if (timer_create(CLOCK_THREAD_CPUTIME_ID, &event, &timer_) != 0) fail("timer_create");
}

WatchedCalls::~WatchedCalls() { timer_delete(timer_); }

WatchedCalls::Made WatchedCalls::make(const Call& call) {
    current_.keep(call);
    const std::vector<host::Argument> arguments = call.arguments();
    set_alarm(longest_);
    const double begin = processor_seconds();
    const host::Evaluation evaluation = evaluate_(call.calculation->name, arguments);
    const double seconds = processor_seconds() - begin;
    return {seconds, evaluation.answered() ? evaluation.value : std::numeric_limits<double>::quiet_NaN()};
}

void WatchedCalls::set_alarm(double seconds) {
    const double whole = std::floor(seconds);
    itimerspec when{};
    when.it_value.tv_sec = static_cast<time_t>(whole);
    when.it_value.tv_nsec = static_cast<long>((seconds - whole) * 1e9);
    if (timer_settime(timer_, 0, &when, nullptr) != 0) fail("timer_settime");
}

}  // namespace finance::hostile
