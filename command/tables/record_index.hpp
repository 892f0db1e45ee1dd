// The records of a block, many at a time, and where their fields end.
//
//  (1) Delimiters, line feeds and quotation marks are found together (separators.hpp), each byte being looked at once.
//  (2) A record with a mark where none belongs is split alone (table_record.hpp), and so is one that has no end.
//  (3) Of a record that has not as many fields as the table has columns, nothing but their number is sure to be known.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "command/tables/table_reader.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

class RecordIndex {
public:
    static constexpr std::size_t most_records = 256;
    static constexpr std::size_t most_ends = std::size_t{64} * 1024;  // of fields, unless one record has more

    struct Entry {
        Record record{};
        std::uint64_t line = 0;  // the number of the line that it begins on
        std::size_t fields = 0;
        std::size_t first_end = 0;  // of the ends of its fields
    };

    RecordIndex(char delimiter, std::size_t columns);

    // Begins anew, with this block; it must outlive what is asked for.
    void begin(const Block& block);
    // The next records, in place of those before; false where none is left.
    bool next();

    [[nodiscard]] std::size_t size() const { return entries_.size(); }
    [[nodiscard]] const Entry& operator[](std::size_t i) const { return entries_[i]; }
    // An empty line is no row, unless the table has a single column.
    [[nodiscard]] bool empty_line(std::size_t i) const { return entries_[i].record.text.empty() && columns_ > 1; }
    // A field, raw, of a record that has as many as the table has columns.
    [[nodiscard]] std::string_view field(std::size_t i, std::size_t column) const {
        const Entry& entry = entries_[i];
        const char* begin = entry.record.text.data();
        const char* end = begin + entry.record.text.size();
        if (column > 0) begin = base_ + ends_[entry.first_end + column - 1] + 1;
        if (column + 1 < columns_) end = base_ + ends_[entry.first_end + column];
        return {begin, static_cast<std::size_t>(end - begin)};
    }

private:
    void index_chunks();
    bool index_alone();
    void keep(std::uint64_t delimiters, const char* chunk) {
        const auto place = static_cast<std::uint32_t>(chunk - base_);
        std::uint32_t* to = ends_.data() + kept_;
        for (; delimiters != 0; delimiters &= delimiters - 1) {
            *to++ = place + static_cast<std::uint32_t>(std::countr_zero(delimiters));
        }
        kept_ = static_cast<std::size_t>(to - ends_.data());
    }
    void add(const Record& record, std::size_t first_end, std::size_t fields) {
        entries_.push_back({.record = record, .line = line_, .fields = fields, .first_end = first_end});
        ++line_;
        at_ = record.text.data() + record.text.size() + record.line_end.size();
    }
    [[nodiscard]] bool full() const { return entries_.size() == most_records; }

    char delimiter_;
    std::size_t columns_;
    const char* base_ = nullptr;  // of the block's text
    const char* at_ = nullptr;    // the next record
    const char* end_ = nullptr;
    std::uint64_t line_ = 1;
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> ends_;  // where delimiters stand, from the block's first byte; blocks are below 4 GiB
    std::size_t kept_ = 0;             // of ends_
    std::vector<std::string_view> fields_;  // of a record that is split alone
};

}  // namespace finance::command
