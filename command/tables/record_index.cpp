#include "command/tables/record_index.hpp"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace finance::command {

namespace {

constexpr std::ptrdiff_t chunk = 64;  // bytes, a bit each in a word

// Which of sixteen bytes are that one.
std::uint64_t equal_bytes(const char* p, __m128i wanted) {
    const __m128i bytes = _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(p)));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
}

// Which of a chunk's bytes are that one.
std::uint64_t equal_in_chunk(const char* p, char c) {
    const __m128i wanted = _mm_set1_epi8(c);
    return equal_bytes(p, wanted) | equal_bytes(p + 16, wanted) << 16U | equal_bytes(p + 32, wanted) << 32U |
           equal_bytes(p + 48, wanted) << 48U;
}

// Those below the lowest bit that is set.
constexpr std::uint64_t below_lowest(std::uint64_t bits) { return (bits - 1) & ~bits; }

}  // namespace

struct RecordIndex::Separators {
    std::uint64_t delimiters;
    std::uint64_t line_feeds;
};

// There is room for a whole index of records that fit the table.
RecordIndex::RecordIndex(char delimiter, std::size_t columns)
    : delimiter_{delimiter}, columns_{columns}, ends_(most_records * columns + chunk), fields_(columns) {
    entries_.reserve(most_records);
}

void RecordIndex::begin(const Block& block) {
    const std::string_view text = block.text();
    base_ = at_ = text.data();
    end_ = base_ + text.size();
    quote_ = find_byte(at_, end_, quotation_mark);
    line_ = block.first_line;
    entries_.clear();
}

bool RecordIndex::next() {
    entries_.clear();
    kept_ = 0;
    while (at_ != end_ && !full()) {
        const char* before = at_;
        if (quote_ < at_) quote_ = find_byte(at_, end_, quotation_mark);
        const char* end = end_of_plain();
        end != at_ ? index_plain(end) : index_with_marks();
        if (at_ != before) continue;
        if (!entries_.empty()) break;  // what is kept takes up the room for this record
        index_crowded();
    }
    return !entries_.empty();
}

// The beginning of the first record with a quotation mark.
const char* RecordIndex::end_of_plain() const {
    if (quote_ == end_) return end_;
    const std::string_view before{at_, static_cast<std::size_t>(quote_ - at_)};
    return at_ + (before.rfind('\n') + 1);  // 0 where there is none
}

void RecordIndex::add(const Record& record, std::size_t first_end, std::size_t fields) {
    entries_.push_back({.record = record, .line = line_, .fields = fields, .first_end = first_end});
    ++line_;
}

// ---- Records without quotation marks

RecordIndex::Separators RecordIndex::separators_at(const char* p, const char* end) const {
    if (end - p >= chunk) return {equal_in_chunk(p, delimiter_), equal_in_chunk(p, '\n')};
    std::array<char, chunk> last{};
    const auto size = static_cast<std::size_t>(end - p);
    std::memcpy(last.data(), p, size);
    const std::uint64_t there = (std::uint64_t{1} << size) - 1;
    return {equal_in_chunk(last.data(), delimiter_) & there, equal_in_chunk(last.data(), '\n')};
}

void RecordIndex::keep(std::uint64_t delimiters, const char* from) {
    const auto place = static_cast<std::uint32_t>(from - base_);
    for (; delimiters != 0; delimiters &= delimiters - 1) {
        ends_[kept_++] = place + static_cast<std::uint32_t>(std::countr_zero(delimiters));
    }
}

// Up to the end, to as many records as there is room for, or to a record whose fields there is no room for.
void RecordIndex::index_plain(const char* end) {
    std::size_t first_end = kept_;
    for (const char* p = at_; p < end; p += chunk) {
        if (ends_.size() - kept_ < static_cast<std::size_t>(chunk)) return;
        auto [delimiters, line_feeds] = separators_at(p, end);
        for (; line_feeds != 0; line_feeds &= line_feeds - 1) {
            const std::uint64_t before = delimiters & below_lowest(line_feeds);
            keep(before, p);
            delimiters ^= before;
            const char* line_feed = p + std::countr_zero(line_feeds);
            add(without_line_end(at_, line_feed + 1, false), first_end, kept_ - first_end + 1);
            at_ = line_feed + 1;
            first_end = kept_;
            if (full()) return;
        }
        keep(delimiters, p);
    }
    if (at_ == end) return;
    add(without_line_end(at_, end, false), first_end, kept_ - first_end + 1);  // the last one, without its line feed
    at_ = end;
}

// ---- Others

void RecordIndex::index_with_marks() {
    if (ends_.size() - kept_ < columns_) return;
    const char* next = find_record_end(at_, end_, delimiter_).next;
    if (next == nullptr) next = end_;
    const Record record = without_line_end(at_, next, true);
    const std::size_t first_end = kept_;
    const std::size_t count = split_record(record, delimiter_, fields_);
    for (std::size_t i = 0; i + 1 < std::min(count, columns_); ++i) {
        ends_[kept_++] = static_cast<std::uint32_t>(fields_[i].data() + fields_[i].size() - base_);
    }
    add(record, first_end, count);
    line_ += static_cast<std::uint64_t>(std::ranges::count(record.text, '\n'));
    at_ = next;
}

// A record with more fields than a whole index has room for: they are counted.
void RecordIndex::index_crowded() {
    const char* line_feed = find_byte(at_, end_, '\n');
    const char* next = line_feed == end_ ? end_ : line_feed + 1;
    const Record record = without_line_end(at_, next, false);
    std::vector<std::string_view> none;
    kept_ = 0;
    add(record, 0, split_record(record, delimiter_, none));
    at_ = next;
}

}  // namespace finance::command
