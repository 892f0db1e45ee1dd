// A call of FINANCE: its arguments, what it came to, and whoever makes it.
#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"

namespace finance::host {

// An argument as a program has it. Texts are not copied: they must live until the call has ended.
class Argument {
public:
    enum class Kind : std::uint8_t {
        number,       // a double; NaN is missing
        text,         // characters
        absent,       // a numeric argument without a value: its slot's value pointer is null
        absent_text,  // a character argument without a text: its slot's value pointer is null
    };
    constexpr Argument(double number) : number_{number} {}
    template <std::integral Whole>
    constexpr Argument(Whole number) : number_{static_cast<double>(number)} {}
    // A view whose data() is null makes a character descriptor with a null text pointer.
    constexpr Argument(std::string_view text) : text_{text}, kind_{Kind::text} {}
    Argument(const std::string& text) : Argument{std::string_view{text}} {}
    // A null pointer is absent_text.
    constexpr Argument(const char* text)
        : text_{text != nullptr ? std::string_view{text} : std::string_view{}},
          kind_{text != nullptr ? Kind::text : Kind::absent_text} {}
    static constexpr Argument absent() { return Argument{Kind::absent}; }
    static constexpr Argument absent_text() { return Argument{Kind::absent_text}; }
    static constexpr Argument missing() { return Argument{std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS)}; }

    [[nodiscard]] constexpr Kind kind() const { return kind_; }
    [[nodiscard]] constexpr const double& number() const { return number_; }
    [[nodiscard]] constexpr std::string_view text() const { return text_; }

private:
    explicit constexpr Argument(Kind kind) : kind_{kind} {}

    double number_ = 0.0;
    std::string_view text_;
    Kind kind_ = Kind::number;
};

// A message of the host's catalogue that the module asked for.
struct Note {
    std::int32_t message_set = 0;
    std::int32_t message_number = 0;
    friend bool operator==(const Note&, const Note&) = default;
};

struct Evaluation {
    std::uint32_t status = 0;      // 0 answered, 120836 refused
    double value = 0.0;            // the missing value (a NaN) where there is no answer
    int flagged = -1;              // first argument marked as invalid: 0 the name, 1 the first after it; -1 none
    std::vector<std::string> log;  // lines, in order
    std::vector<Note> notes;       // in order

    [[nodiscard]] bool answered() const { return status == ZELKOVAN_STATUS_SUCCESS; }
};

// What makes calls: the embedded host (host/embedded_host.hpp), or the module itself where nothing is loaded (wasm/).
class Evaluator {
public:
    Evaluator() = default;
    Evaluator(const Evaluator&) = delete;
    Evaluator& operator=(const Evaluator&) = delete;
    virtual ~Evaluator() = default;

    // FINANCE(name, arguments...).
    [[nodiscard]] virtual Evaluation evaluate(std::string_view name, std::span<const Argument> arguments) const = 0;
};

}  // namespace finance::host
