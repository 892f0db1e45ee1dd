#include "command/tables/separators.hpp"

namespace finance::command {

namespace {

// Each bit becomes the parity of those up to it.
constexpr std::uint64_t running_parity(std::uint64_t bits) {
    for (unsigned distance = 1; distance < chunk_bytes; distance *= 2) bits ^= bits << distance;
    return bits;
}

}  // namespace

// A mark that begins quotation counts as quoted, one that ends it does not.
Separators SeparatorScan::with_marks(const Separators& found) {
    const std::uint64_t inside = running_parity(found.marks) ^ inside_;
    Separators parted{.delimiters = found.delimiters & ~inside,
                      .line_feeds = found.line_feeds & ~inside,
                      .quoted_line_feeds = found.line_feeds & inside,
                      .marks = found.marks};
    const std::uint64_t before_field = parted.delimiters | parted.line_feeds | found.marks;
    const std::uint64_t wrong = found.marks & inside & ~(before_field << 1U | may_open_);
    parted.doubtful = wrong & (~wrong + 1);
    inside_ = std::uint64_t{0} - (inside >> (chunk_bytes - 1));
    may_open_ = before_field >> (chunk_bytes - 1);
    return parted;
}

}  // namespace finance::command
