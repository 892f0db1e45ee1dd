#include "host/services.hpp"

#include <array>
#include <atomic>
#include <csetjmp>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

#include "host/control_block.hpp"
#include "host/service_work.hpp"

extern "C" {
// Called by the trampoline below, by name.
[[noreturn, gnu::visibility("hidden"), gnu::used]] void finance_host_refuse_service(std::uint64_t identifier) noexcept {
    std::fprintf(stderr, "embedded host: unexpected service: vector %u, slot %u\n",
                 static_cast<unsigned>(identifier >> 32), static_cast<unsigned>(identifier & 0xFFFFFFFFU));
    std::abort();
}

// A module jumps to a service with the identifier in r10, which no C++ routine can read. (endbr64: it may be jumped to.)
[[gnu::naked, gnu::visibility("hidden")]] void finance_host_unexpected_service() {
    asm("endbr64\n\t"
        "movq %r10, %rdi\n\t"
        "jmp finance_host_refuse_service");
}
}

namespace finance::host {
namespace {

// What the services on this thread work for. Trivial, so that reading it costs no initialisation.
struct Current {
    ServiceDesk* desk;
    Evaluation* evaluation;
    std::jmp_buf* exit_target;  // set during registration only
    ExitRequest exit_request;
};
constinit thread_local Current current{};

// The hosts alive, oldest first, for modules that are called directly.
struct LiveDesks {
    std::mutex mutex;
    std::vector<ServiceDesk*> desks;
    std::atomic<ServiceDesk*> latest{nullptr};

    void add(ServiceDesk* desk) {
        const std::lock_guard lock{mutex};
        desks.push_back(desk);
        latest = desk;
    }
    void remove(ServiceDesk* desk) {
        const std::lock_guard lock{mutex};
        std::erase(desks, desk);
        latest = desks.empty() ? nullptr : desks.back();
    }
};

LiveDesks& live_desks() {
    static LiveDesks desks;
    return desks;
}

ServiceDesk* desk_here() { return current.desk != nullptr ? current.desk : live_desks().latest.load(); }

bool multibyte_here() {
    const ServiceDesk* desk = desk_here();
    return desk != nullptr && desk->control_block().multibyte();
}

// The text of a format and its arguments; the format itself where they do not go together.
std::string printed(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    std::array<char, 256> usual;
    const int length = std::vsnprintf(usual.data(), usual.size(), format, arguments);
    std::string line;
    if (length < 0) {
        line = format;
    } else if (const auto size = static_cast<std::size_t>(length); size < usual.size()) {
        line.assign(usual.data(), size);
    } else {
        line.resize(size);
        std::vsnprintf(line.data(), size + 1, format, again);
    }
    va_end(again);
    return line;
}

// ---- The services, as a module calls them. No exception may pass through its frames: what cannot be kept is dropped.

void log_service(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    try {
        std::string line = printed(format != nullptr ? format : "", arguments);
        if (current.evaluation != nullptr) {
            current.evaluation->log.push_back(std::move(line));
        } else if (ServiceDesk* desk = desk_here()) {
            desk->keep(std::move(line));
        }
    } catch (const std::exception&) {
        // Out of memory: the line is lost.
    }
    va_end(arguments);
}

void note_service(std::int32_t message_set, std::int32_t message_number) noexcept {
    try {
        const Note note{message_set, message_number};
        if (current.evaluation != nullptr) {
            current.evaluation->notes.push_back(note);
        } else if (ServiceDesk* desk = desk_here()) {
            desk->keep(note);
        }
    } catch (const std::exception&) {
        // Out of memory: the note is lost.
    }
}

[[noreturn]] void exit_service(std::int64_t code, std::int64_t detail) {
    if (current.exit_target != nullptr) {
        current.exit_request = {code, detail};
        std::longjmp(*current.exit_target, 1);
    }
    std::fprintf(stderr, "embedded host: the module ended the process with code %lld, detail %lld\n",
                 static_cast<long long>(code), static_cast<long long>(detail));
    std::abort();
}

void lower_service(char* text, std::int64_t length) noexcept {
    convert_case(text, length, Case::lower, multibyte_here());
}

void upper_service(char* text, std::int64_t length) noexcept {
    convert_case(text, length, Case::upper, multibyte_here());
}

void translate_service(const char* source, std::int64_t length, char* destination, std::int64_t destination_length,
                       std::int64_t) noexcept {
    copy_text(source, length, destination, destination_length);
}

std::int32_t compare_service(const char* a, std::int64_t a_length, const char* b, std::int64_t b_length,
                             std::int64_t) noexcept {
    const ServiceDesk* desk = desk_here();
    return compare_texts(desk != nullptr ? desk->control_block().collating_table() : ControlBlock::plain_table(), a,
                         a_length, b, b_length);
}

double date_service(double month, double day, double year) noexcept { return date_value(month, day, year); }

// False where the exit service came back. Nothing here lives across the jump but the jump's own record.
bool returns(void (*call)(void*), void* argument) {
    std::jmp_buf target;
    if (setjmp(target) != 0) return false;
    current.exit_target = &target;
    call(argument);
    return true;
}

}  // namespace

std::span<const Service> offered_services() {
    static const Service services[] = {
        {ZELKOVAN_SERVICE_LOWER, reinterpret_cast<void*>(&lower_service)},
        {ZELKOVAN_SERVICE_UPPER, reinterpret_cast<void*>(&upper_service)},
        {ZELKOVAN_SERVICE_TRANSLATE_0, reinterpret_cast<void*>(&translate_service)},
        {ZELKOVAN_SERVICE_TRANSLATE_1, reinterpret_cast<void*>(&translate_service)},
        {ZELKOVAN_SERVICE_COMPARE, reinterpret_cast<void*>(&compare_service)},
        {ZELKOVAN_SERVICE_EXIT, reinterpret_cast<void*>(&exit_service)},
        {ZELKOVAN_SERVICE_NOTE, reinterpret_cast<void*>(&note_service)},
        {ZELKOVAN_SERVICE_LOG, reinterpret_cast<void*>(&log_service)},
        {ZELKOVAN_SERVICE_DATE, reinterpret_cast<void*>(&date_service)},
    };
    return services;
}

void* unexpected_service() { return reinterpret_cast<void*>(&finance_host_unexpected_service); }

ServiceDesk::ServiceDesk(const ControlBlock& control_block) : control_block_{control_block} { live_desks().add(this); }

ServiceDesk::~ServiceDesk() { live_desks().remove(this); }

void ServiceDesk::keep(std::string line) {
    const std::lock_guard lock{mutex_};
    log_.push_back(std::move(line));
}

void ServiceDesk::keep(const Note& note) {
    const std::lock_guard lock{mutex_};
    notes_.push_back(note);
}

std::vector<std::string> ServiceDesk::log() const {
    const std::lock_guard lock{mutex_};
    return log_;
}

std::vector<Note> ServiceDesk::notes() const {
    const std::lock_guard lock{mutex_};
    return notes_;
}

CurrentEvaluation::CurrentEvaluation(ServiceDesk& desk, Evaluation& evaluation) noexcept
    : outer_desk_{current.desk}, outer_evaluation_{current.evaluation} {
    current.desk = &desk;
    current.evaluation = &evaluation;
}

CurrentEvaluation::~CurrentEvaluation() {
    current.desk = outer_desk_;
    current.evaluation = outer_evaluation_;
}

std::optional<ExitRequest> run_until_exit(ServiceDesk& desk, void (*call)(void*), void* argument) {
    const Current outer = current;
    current = {&desk, nullptr, nullptr, {}};
    const bool returned = returns(call, argument);
    const ExitRequest request = current.exit_request;
    current = outer;
    return returned ? std::nullopt : std::optional{request};
}

}  // namespace finance::host
