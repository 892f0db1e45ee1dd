// Whole call records for tests, built the way an unfriendly host would: every byte and bit that belongs to the host is
// filled with junk, and checked to be unchanged afterwards.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "abi/status.hpp"
#include "abi/zelkovan.h"

namespace finance::host {
class EmbeddedHost;  // host/embedded_host.hpp
}

namespace finance::test {

inline constexpr double missing = MISSING_VALUE;

// One argument of a test call.
class Arg {
public:
    enum class Kind : std::uint8_t { number, text, absent, absent_text, no_descriptor, other_type };
    Arg(double number) : number_{number} {}
    Arg(int number) : number_{static_cast<double>(number)} {}
    Arg(const char* text) : kind_{Kind::text}, text_{text} {}
    Arg(std::string text) : kind_{Kind::text}, text_{std::move(text)} {}
    static Arg of(Kind kind) {
        Arg made{0.0};
        made.kind_ = kind;
        return made;
    }
    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] double number() const { return number_; }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    Kind kind_ = Kind::number;
    double number_ = 0.0;
    std::string text_;
};

inline const Arg absent = Arg::of(Arg::Kind::absent);                // numeric, null value pointer
inline const Arg absent_text = Arg::of(Arg::Kind::absent_text);      // character, null text pointer
inline const Arg no_descriptor = Arg::of(Arg::Kind::no_descriptor);  // character, null value pointer
inline const Arg other_type = Arg::of(Arg::Kind::other_type);        // type 3, a number behind it

// What a call left behind.
struct Outcome {
    Status status = 0;
    double value = 0.0;
    bool written = false;          // the result was stored to
    std::vector<int> flagged;      // slots whose invalid bit is set, ascending
    bool host_bytes_kept = false;  // nothing of the host's was changed
};

// A call record: name in slot 0, then the arguments.
class Call {
public:
    Call(std::string_view name, std::vector<Arg> arguments);

    [[nodiscard]] HostCallContext* context() { return reinterpret_cast<HostCallContext*>(record_.data()); }
    [[nodiscard]] std::int64_t count() { return context()->count; }
    void set_count(std::int64_t count) { context()->count = count; }
    void set_mode(std::uint8_t mode);
    double* result() { return &result_; }

    // Hands the record to the handler of the calculation, to the dispatcher, or to a routine like that, and looks at what
    // is left.
    Outcome through_handler();
    Outcome through_dispatcher();
    Outcome through(std::uint32_t (*routine)(HostCallContext* context, double* result));

private:
    void fill_slot(std::size_t i, const Arg& argument);
    void prepare();
    Outcome outcome(Status status);

    std::string name_;
    std::vector<Arg> arguments_;
    std::vector<std::uint64_t> record_;
    std::vector<std::uint64_t> before_;
    std::vector<double> numbers_;
    std::vector<CharacterDescriptor> descriptors_;
    double result_ = 0.0;
};

// The row of a calculation in the module's table; fails the test when there is none.
std::int32_t row_of(std::string_view name);

std::uint64_t bits(double x);
bool same_value(double a, double b);                      // equal bits, or both NaN
double units_in_last_place(double got, double expected);  // distance in ulps of expected; huge where one is NaN

// The embedded host around the module's objects linked into this program; made at the first call of either function.
host::EmbeddedHost& linked_host();
void ensure_host();

}  // namespace finance::test
