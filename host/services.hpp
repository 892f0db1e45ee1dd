// The services that a module calls through the host's service vectors, and what they share.
//
// A service is a plain routine: it learns which host and which evaluation it works for from its thread, or, where the
// module is called directly, takes the host that was made last.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/embedded_host.hpp"

namespace finance::host {

class ControlBlock;

// A routine and its place: slot of a service vector.
struct Service {
    std::uint32_t vector;
    std::uint32_t slot;
    void* routine;
};

// All services that this host offers.
[[nodiscard]] std::span<const Service> offered_services();

// Stands in every other place. Names the service asked for (its identifier is in register r10) and aborts.
[[nodiscard]] void* unexpected_service();

// Where the services of one host find its tables and leave what they are given outside an evaluation.
class ServiceDesk {
public:
    explicit ServiceDesk(const ControlBlock& control_block);
    ~ServiceDesk();
    ServiceDesk(const ServiceDesk&) = delete;
    ServiceDesk& operator=(const ServiceDesk&) = delete;

    [[nodiscard]] const ControlBlock& control_block() const { return control_block_; }

    void keep(std::string line);
    void keep(const Note& note);
    [[nodiscard]] std::vector<std::string> log() const;
    [[nodiscard]] std::vector<Note> notes() const;

private:
    const ControlBlock& control_block_;
    mutable std::mutex mutex_;
    std::vector<std::string> log_;
    std::vector<Note> notes_;
};

// While it lives, log lines and notes of this thread go into the evaluation.
class CurrentEvaluation {
public:
    CurrentEvaluation(ServiceDesk& desk, Evaluation& evaluation) noexcept;
    ~CurrentEvaluation();
    CurrentEvaluation(const CurrentEvaluation&) = delete;
    CurrentEvaluation& operator=(const CurrentEvaluation&) = delete;

private:
    ServiceDesk* outer_desk_;
    Evaluation* outer_evaluation_;
};

// Makes a call into the module during which the exit service comes back here instead of ending the process; gives what
// it was asked for, if it was. The call's own frames are left by a long jump: they hold nothing that needs destruction.
[[nodiscard]] std::optional<ExitRequest> run_until_exit(ServiceDesk& desk, void (*call)(void*), void* argument);

template <typename Call>
[[nodiscard]] std::optional<ExitRequest> run_until_exit(ServiceDesk& desk, Call call) {
    return run_until_exit(
        desk, [](void* argument) { (*static_cast<Call*>(argument))(); }, &call);
}

}  // namespace finance::host
