// The embedded host: everything that zelkovan.so expects around it, so that FINANCE runs in any program.
//
//     finance::host::EmbeddedHost host{"lib/zelkovan.so"};
//     const auto answer = host.evaluate("PMT", {0.005, 360.0, 200000.0});
//
// It loads the module as any host does (entry point, image record, registration entry, items, dispatcher) and keeps the
// dispatcher. A module serves one host at a time: of each shared object, one EmbeddedHost may live in a process, whatever
// copies of this library the process has.
#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "host/evaluator.hpp"

namespace finance::host {

struct Options {
    bool case_blind = true;          // the collating table folds case, so that "pmt" names PMT
    bool multibyte = false;          // texts go through the multibyte services
    std::uint8_t note_mode = 0;      // mode byte of every call's context; the note counter starts at 0 in each call
    bool junk_in_host_bits = false;  // fills every host-owned byte and bit of a call with a pattern, and checks after
                                     // the call that the module changed none: std::logic_error if it did
    bool toolkit = true;             // false: the toolkit handle is null
    std::uint64_t failing_request = 0;  // this memory request of the registration gets nothing, 1 the first; 0 none
};

// What a module handed to the exit service.
struct ExitRequest {
    std::int64_t code = 0;
    std::int64_t detail = 0;
    friend bool operator==(const ExitRequest&, const ExitRequest&) = default;
};

// The module could not be loaded, or ended the process while it was registered.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    LoadError(const std::string& reason, ExitRequest exit) : std::runtime_error{reason}, exit_{exit} {}

    // Present where the module asked for the exit.
    [[nodiscard]] const std::optional<ExitRequest>& exit_request() const { return exit_; }

private:
    std::optional<ExitRequest> exit_;
};

using EntryPoint = const ImageInformation* (*)(void* gcb_anchor, void* pidb_anchor);
using Dispatcher = std::uint32_t (*)(HostCallContext* context, double* result);
using ColumnsEntry = std::int64_t (*)(const ZelkovanColumns* request);

struct Batch;        // host/batch.hpp
class MemoryVector;  // host/memory_vector.hpp: allocation with accounting and faults
class Toolkit;       // host/toolkit.hpp: pools with accounting and faults

class EmbeddedHost final : public Evaluator {
public:
    // Loads the shared object at that path (a relative one starts at the current folder, not on the library path);
    // throws LoadError with the reason.
    explicit EmbeddedHost(const std::filesystem::path& module, const Options& options = {});
    // Uses a module that is linked into the program; batches go through its entry for columns, where there is one.
    explicit EmbeddedHost(EntryPoint entry, const Options& options = {}, ColumnsEntry columns = nullptr);
    ~EmbeddedHost() override;
    EmbeddedHost(const EmbeddedHost&) = delete;
    EmbeddedHost& operator=(const EmbeddedHost&) = delete;

    // FINANCE(name, arguments...). Safe from any thread. Allocates nothing where the module logs nothing and the call
    // has no more arguments than an earlier one of the same thread (or 32). std::length_error: a text of 4 GiB or more,
    // or more than 2^31 - 2 arguments.
    [[nodiscard]] Evaluation evaluate(std::string_view name, std::span<const Argument> arguments) const override;
    [[nodiscard]] Evaluation evaluate(std::string_view name, std::initializer_list<Argument> arguments) const;

    // The same for a call record of the caller's own, handed over as it is: no junk is added, *result is not preset.
    // Log lines and notes are collected; the value is *result where the call is answered, else the missing value.
    [[nodiscard]] Evaluation evaluate(HostCallContext* context, double* result) const;

    // The same calculation over many rows (host/batch.hpp), by up to that many threads. Gives how many rows were refused.
    // std::length_error as above; then some rows may have their answers and others not.
    [[nodiscard]] std::size_t evaluate_rows(const Batch& batch, unsigned threads = 1) const;

    [[nodiscard]] Dispatcher dispatcher() const;
    [[nodiscard]] const ImageInformation& image() const;
    [[nodiscard]] const FunctionItem& item() const;

    // Tables and modes that the module reads at call time; change them between calls only.
    void set_case_blind(bool on);
    void set_multibyte(bool on);
    [[nodiscard]] MemoryVector& memory();
    [[nodiscard]] Toolkit& toolkit();

    // What the module logged and noted outside evaluate, that is when its dispatcher or a routine was called directly.
    [[nodiscard]] std::vector<std::string> log_outside_calls() const;
    [[nodiscard]] std::vector<Note> notes_outside_calls() const;

    // The control block itself (128 words), for tests of what the module reads and marks. Its words:
    // host/control_block.hpp.
    [[nodiscard]] void** control_block();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace finance::host
