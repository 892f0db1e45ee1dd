#include "host/prepared_call.hpp"

#include <bit>
#include <stdexcept>
#include <vector>

namespace finance::host {

void PreparedCall::lay_out(std::size_t count, std::uint32_t texts, const double* numbers) {
    if (count == count_ && texts == texts_ && numbers == numbers_) return;
    if (count > most_arguments) throw std::length_error{"a prepared call has 32 arguments at most"};
    count_ = SIZE_MAX;  // until it is done
    frame_.fill(name_, std::vector(count, Argument::absent()), 0, false);
    for (std::size_t i = 0; i < count; ++i) {
        if ((texts >> i & 1U) != 0) {
            frame_.set_argument(i + 1, std::string_view{});
        } else {
            frame_.slot(i + 1).value = const_cast<double*>(&numbers[i]);  // modules never write there
        }
    }
    count_ = count;
    texts_ = texts;
    numbers_ = numbers;
}

Evaluation PreparedCall::make(const EmbeddedHost& host) {
    auto result = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
    Evaluation evaluation = host.evaluate(frame_.context(), &result);
    if (evaluation.flagged >= 0) frame_.take_first_flag();
    return evaluation;
}

}  // namespace finance::host
