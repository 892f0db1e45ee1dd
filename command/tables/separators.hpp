// Delimiters, line feeds and quotation marks of a text table, found sixteen bytes at a time: of sixty-four bytes, a bit
// for each in a word.
//
//  (1) Quoted is what has an odd number of marks before it, so a doubled mark ends quotation and begins it again.
//  (2) That is right as long as each mark which begins it stands at a field's beginning, or right after another mark.
//      Where one does not, it is a character like others, and only what stands before it is sure.
#pragma once

#include <cstddef>
#include <cstdint>

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

// The bits below the lowest one of a word that is not 0; all bits of a 0.
constexpr std::uint64_t below_lowest(std::uint64_t bits) { return (bits - 1) & ~bits; }

// Goes from chunk to chunk, from the beginning of a record.
class SeparatorScan {
public:
    explicit SeparatorScan(char delimiter) : delimiter_{delimiter} {}

    // Of a whole chunk, or of the last one, of so many bytes.
    Separators next(const char* chunk, std::size_t size = chunk_bytes);

private:
    [[nodiscard]] Separators with_marks(Separators found);

    char delimiter_;
    std::uint64_t inside_ = 0;    // all bits, where the chunk before ended within quotation marks
    std::uint64_t may_open_ = 1;  // its last byte lets a mark open a field
};

}  // namespace finance::command
