// Delimiters, line feeds and quotation marks of a text table, found sixteen bytes at a time: of sixty-four bytes, a bit
// for each in a word.
//
//  (1) Quoted is what has an odd number of marks before it, so a doubled mark ends quotation and begins it again.
//  (2) That is right as long as each mark which begins it stands at a field's beginning, or right after another mark.
//      Where one does not, it is a character like others, and only what stands before it is sure.
#pragma once

#include <emmintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "command/tables/table_record.hpp"

namespace finance::command {

inline constexpr std::size_t chunk_bytes = 64;

// Of a chunk's bytes.
struct Separators {
    std::uint64_t delimiters = 0;  // outside quotation marks
    std::uint64_t line_feeds = 0;  // outside
    std::uint64_t quoted_line_feeds = 0;
    std::uint64_t marks = 0;
    std::uint64_t doubtful = 0;  // the first mark that is a character like others; nothing from there on is sure
};

inline __m128i sixteen_bytes(const char* p) {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(p)));
}

// Which of sixteen bytes are that character, a bit for each.
inline std::uint64_t equal_bytes(__m128i bytes, char c) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
}

// The bits below the lowest one of a word that is not 0; all bits of a 0.
constexpr std::uint64_t below_lowest(std::uint64_t bits) { return (bits - 1) & ~bits; }

// Goes from chunk to chunk, from the beginning of a record.
class SeparatorScan {
public:
    explicit SeparatorScan(char delimiter) : delimiter_{delimiter} {}

    // Of a whole chunk, or of the last one, of so many bytes. Zeros are put behind these: no separators, unless they
    // delimit.
    Separators next(const char* chunk, std::size_t size) {
        if (size == chunk_bytes) return parted(found_in(chunk));
        std::array<char, chunk_bytes> last{};
        std::memcpy(last.data(), chunk, size);
        Separators found = found_in(last.data());
        found.delimiters &= (std::uint64_t{1} << size) - 1;
        return parted(found);
    }

private:
    // Whether quoted or not.
    [[nodiscard]] Separators found_in(const char* chunk) const {
        constexpr unsigned width = 16;
        Separators found;
        for (unsigned first = 0; first < chunk_bytes; first += width) {
            const __m128i bytes = sixteen_bytes(chunk + first);
            found.delimiters |= equal_bytes(bytes, delimiter_) << first;
            found.line_feeds |= equal_bytes(bytes, '\n') << first;
            found.marks |= equal_bytes(bytes, quotation_mark) << first;
        }
        return found;
    }
    Separators parted(const Separators& found) {
        if ((found.marks | inside_) != 0) return with_marks(found);
        may_open_ = (found.delimiters | found.line_feeds) >> (chunk_bytes - 1);
        return found;
    }
    Separators with_marks(const Separators& found);

    char delimiter_;
    std::uint64_t inside_ = 0;    // all bits, where the chunk before ended within quotation marks
    std::uint64_t may_open_ = 1;  // its last byte lets a mark open a field
};

}  // namespace finance::command
