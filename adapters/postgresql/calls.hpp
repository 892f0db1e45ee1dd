// Calls as the server's side of the adapter makes them. The two sides are kept apart: the server reports an error by a
// jump that runs no destructor, and the host reports by exceptions that no C program may see. So nothing here calls the
// server but for memory, nothing here throws, and what is given back needs no destructor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "adapters/postgresql/signatures.hpp"
#include "calls/answer.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::postgresql {

using calls::Verdict;

// What keeps a call from having an answer or a missing one.
enum class Trouble : std::uint8_t {
    none,
    argument,   // breaks its rule
    no_answer,  // no argument is at fault
    no_memory,
    failed,  // by a fault of the adapter
};

// Texts are in the server's memory; null where there was none left for them.
struct Outcome {
    Verdict verdict = Verdict::refused;
    Trouble trouble = Trouble::failed;  // refused
    double value = 0.0;                 // answered
    const char* sentence = nullptr;     // refused
    const char* usage = nullptr;        // an argument
};

// What a call is given: one entry a parameter, in the array of its kind; the others' are not set.
struct Row {
    struct Text {
        const char* first;
        std::size_t size;
    };
    struct List {
        const double* first;
        std::size_t size;
    };

    std::size_t count;          // of the parameters given
    std::uint32_t texts_given;  // a bit for each parameter that is a text: the first is bit 0
    bool lists_given;
    double numbers[most_parameters];
    Text texts[most_parameters];
    List lists[most_parameters];

    [[nodiscard]] bool is_text(std::size_t i) const { return ((texts_given >> i) & 1U) != 0; }
    void set_text(std::size_t i, std::string_view text) {
        texts[i] = {text.data(), text.size()};
        texts_given |= 1U << i;
    }
};

static_assert(most_parameters <= 32);
// What the server's error jump may pass over.
static_assert(std::is_trivial_v<Row> && std::is_trivially_destructible_v<Outcome>);

// The calculations in the catalogue's order: entries are made from the same table.
const catalogue::Calculation& calculation_at(std::size_t index) noexcept;

// A call of lists. In the way of an attempt nothing is refused, but missing instead; in that of a reason nothing is
// missing, but refused with its sentence.
Outcome call(const catalogue::Calculation& calculation, const Row& row, Way way = Way::answer) noexcept;

// A call without lists, again and again. The prepared one lives as long as the process; null where there is no memory.
struct PreparedCall;
PreparedCall* prepared_call(const catalogue::Calculation& calculation) noexcept;
Outcome call(PreparedCall& prepared, const Row& row, Way way) noexcept;

// A copy in the server's memory, ended by a 0; null where there is no memory. Never jumps.
char* kept(std::string_view text) noexcept;

}  // namespace finance::adapters::postgresql
