#include "command/tables/record_index.hpp"

#include <algorithm>
#include <bit>

#include "command/tables/separators.hpp"

namespace finance::command {

// Room for the fields of as many records as fit the table, or, where it is wide, of fewer.
RecordIndex::RecordIndex(char delimiter, std::size_t columns)
    : delimiter_{delimiter},
      columns_{columns},
      ends_(std::max(columns, std::min(most_records * columns, most_ends)) + chunk_bytes) {
    entries_.reserve(most_records);
}

void RecordIndex::begin(const Block& block) {
    const std::string_view text = block.text();
    base_ = at_ = text.data();
    end_ = base_ + text.size();
    line_ = block.first_line;
    entries_.clear();
}

bool RecordIndex::next() {
    entries_.clear();
    kept_ = 0;
    while (at_ != end_ && !full()) {
        index_chunks();
        if (at_ != end_ && !full() && !index_alone()) break;
    }
    return !entries_.empty();
}

// Up to the end, to as many records as an index has, to a record whose fields there is no room for, or to one that must
// be split alone.
void RecordIndex::index_chunks() {
    SeparatorScan scan{delimiter_};
    std::size_t first_end = kept_;
    std::uint64_t marks = 0;  // in the record so far: whether there are any
    int quoted_lines = 0;
    for (const char* p = at_; p != end_ && ends_.size() - kept_ >= chunk_bytes;) {
        const std::size_t size = std::min(chunk_bytes, static_cast<std::size_t>(end_ - p));
        Separators found = scan.next(p, size);
        std::uint64_t line_feeds = found.line_feeds & below_lowest(found.doubtful);
        for (; line_feeds != 0; line_feeds &= line_feeds - 1) {
            const std::uint64_t before = below_lowest(line_feeds);
            keep(found.delimiters & before, p);
            const char* line_feed = p + std::countr_zero(line_feeds);
            marks |= found.marks & before;
            add(without_line_end(at_, line_feed + 1, marks != 0), first_end, kept_ - first_end + 1);
            if (marks != 0)
                line_ += static_cast<unsigned>(quoted_lines + std::popcount(found.quoted_line_feeds & before));
            first_end = kept_;
            if (full()) return;
            found.delimiters &= ~before;
            found.marks &= ~before;
            found.quoted_line_feeds &= ~before;
            marks = 0;
            quoted_lines = 0;
        }
        if (found.doubtful != 0) break;
        keep(found.delimiters, p);
        marks |= found.marks;
        if (found.quoted_line_feeds != 0) quoted_lines += std::popcount(found.quoted_line_feeds);
        p += size;
    }
    kept_ = first_end;
}

// false: there is no room for its fields.
bool RecordIndex::index_alone() {
    if (ends_.size() - kept_ < columns_) return false;
    const char* next = find_record_end(at_, end_, delimiter_).next;
    const Record whole = without_line_end(at_, next != nullptr ? next : end_, false);
    const Record record{whole.text, whole.line_end, whole.text.find(quotation_mark) != std::string_view::npos};
    const std::size_t first_end = kept_;
    fields_.resize(columns_);
    const std::size_t count = split_record(record, delimiter_, fields_);
    for (std::size_t i = 0; i + 1 < columns_ && count == columns_; ++i) {
        ends_[kept_++] = static_cast<std::uint32_t>(fields_[i].data() + fields_[i].size() - base_);
    }
    add(record, first_end, count);
    line_ += count_line_feeds(record.text);
    return true;
}

}  // namespace finance::command
