// A call record that is laid out once and used again while its arguments are of the same kinds: the rows of a query are,
// and laying out takes as long as a short calculation.
//
//     call.lay_out(3, 0b100, numbers);      // numbers[0], numbers[1], a text
//     call.set_text(2, "ACT/360");
//     const Evaluation evaluation = call.make(host);
//
// One thread at a time. The host's bytes of the record are 0, its mode too, whatever the host's options say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/call_frame.hpp"

namespace finance::host {

class PreparedCall {
public:
    static constexpr std::size_t most_arguments = 32;

    // The name is not copied.
    explicit PreparedCall(std::string_view name) : name_{name} {}

    // Arguments of which bit i of `texts` says that i is a text, 0 the first after the name; the others are read at
    // every call from where they are, numbers[i]: a NaN is missing. Texts are to be set before the next call. Nothing is
    // done where the record lies so already. std::length_error: more arguments than there are bits.
    void lay_out(std::size_t count, std::uint32_t texts, const double* numbers);

    // Of an argument that is a text; it is not copied. std::length_error: 4 GiB or more.
    void set_text(std::size_t i, std::string_view text) { frame_.set_text(i + 1, text); }

    // The module's marks are taken back.
    [[nodiscard]] Evaluation make(const EmbeddedHost& host);

private:
    std::string_view name_;
    CallFrame frame_{};
    // What the record is laid out for.
    std::size_t count_ = SIZE_MAX;
    std::uint32_t texts_ = 0;
    const double* numbers_ = nullptr;
};

}  // namespace finance::host
