#include "command/tables/separators.hpp"

#include <emmintrin.h>

#include <array>
#include <cstring>

#include "command/tables/table_record.hpp"

namespace finance::command {

namespace {

// Which of sixteen bytes are that one.
std::uint64_t equal_bytes(__m128i bytes, __m128i wanted) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
}

Separators equal_in_chunk(const char* chunk, char delimiter) {
    constexpr unsigned width = 16;
    const __m128i delimiters = _mm_set1_epi8(delimiter);
    const __m128i line_feeds = _mm_set1_epi8('\n');
    const __m128i marks = _mm_set1_epi8(quotation_mark);
    Separators found;
    for (unsigned first = 0; first < chunk_bytes; first += width) {
        const __m128i bytes = _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(chunk + first)));
        found.delimiters |= equal_bytes(bytes, delimiters) << first;
        found.line_feeds |= equal_bytes(bytes, line_feeds) << first;
        found.marks |= equal_bytes(bytes, marks) << first;
    }
    return found;
}

// Each bit becomes the parity of those up to it.
constexpr std::uint64_t running_parity(std::uint64_t bits) {
    for (unsigned distance = 1; distance < chunk_bytes; distance *= 2) bits ^= bits << distance;
    return bits;
}

}  // namespace

// The bits of what is quoted include a mark that opens and leave out one that closes.
Separators SeparatorScan::with_marks(Separators found) {
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

// Behind the last bytes stand zeros, which are no separators unless they delimit.
Separators SeparatorScan::next(const char* chunk, std::size_t size) {
    Separators found;
    if (size == chunk_bytes) {
        found = equal_in_chunk(chunk, delimiter_);
    } else {
        std::array<char, chunk_bytes> last{};
        std::memcpy(last.data(), chunk, size);
        found = equal_in_chunk(last.data(), delimiter_);
        found.delimiters &= (std::uint64_t{1} << size) - 1;
    }
    if ((found.marks | inside_) != 0) return with_marks(found);
    may_open_ = (found.delimiters | found.line_feeds) >> (chunk_bytes - 1);
    return found;
}

}  // namespace finance::command
