#include "command/tables/table_reader.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "command/tables/foreign_format.hpp"
#include "command/tables/table_record.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

constexpr std::string_view binary = "a NUL byte: this is a binary file, not a table of text";

bool is_utf16(std::string_view text) { return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"); }

}  // namespace

TableReader::TableReader(int descriptor, std::string name, BlockSizes sizes)
    : descriptor_{descriptor}, name_{std::move(name)}, bytes_{descriptor, name_}, sizes_{sizes} {}

std::string TableReader::at_line() const { return name_ + ", line " + std::to_string(line_) + ": "; }

void TableReader::fail(const std::string& what) const { throw TableError{at_line() + what}; }

std::optional<std::uint64_t> TableReader::size() const {
    struct stat about {};
    if (bytes_.packed() || fstat(descriptor_, &about) != 0 || !S_ISREG(about.st_mode)) return {};
    return static_cast<std::uint64_t>(about.st_size);
}

bool TableReader::ready() const { return ended_ || bytes_.ready(); }

// ---- Bytes

// Waits for at least one byte, or the end; gives no more than are wanted in all. What cannot be read ends the input with
// a fault.
void TableReader::read_some(Block& block, std::size_t wanted) {
    try {
        const std::size_t n = bytes_.read(block.buffer.data() + block.end, wanted - block.end);
        block.end += n;
        ended_ = n == 0;
    } catch (const TableError& error) {
        fault_ = error.what();
        ended_ = true;
    }
}

std::string_view TableReader::peek() {
    if (ahead_.begin > 0 && ahead_.text().find('\n') == std::string_view::npos) {  // room behind what is there
        ahead_.buffer.erase(0, ahead_.begin);
        ahead_.end -= std::exchange(ahead_.begin, 0);
    }
    ahead_.buffer.resize(std::max(sizes_.block, byte_order_mark.size()));
    while (!ended_ && ahead_.end < ahead_.buffer.size() && ahead_.text().find('\n') == std::string_view::npos) {
        read_some(ahead_, ahead_.buffer.size());
    }
    if (!std::exchange(begun_, true)) {  // marks are such at the input's beginning alone
        if (is_utf16(ahead_.text())) throw TableError{name_ + " is UTF-16: convert it to UTF-8 first"};
        byte_order_mark_ = ahead_.text().starts_with(byte_order_mark);
        if (byte_order_mark_) ahead_.begin += byte_order_mark.size();
        if (byte_order_mark_ && ahead_.text().empty()) return peek();
    }
    const std::string_view foreign = foreign_format(ahead_.text());
    if (!foreign.empty()) throw TableError{name_ + ' ' + std::string{foreign}};
    if (ahead_.text().find('\0') < ahead_.text().find('\n')) fail(std::string{binary});
    return ahead_.text();
}

void TableReader::skip_lines(std::size_t lines) {
    while (lines > 0) {
        const std::string_view text = peek();
        if (text.empty()) return;
        const std::size_t newline = text.find('\n');
        const bool whole = newline != std::string_view::npos;
        ahead_.begin = whole ? ahead_.begin + newline + 1 : ahead_.end;
        if (!whole) continue;  // a line that is longer than a block
        --lines;
        ++line_;
    }
}

// ---- Records

// The size of the first record, as far as it is there.
std::size_t TableReader::first_size(std::string_view text) const {
    const char* next = find_record_end(text.data(), text.data() + text.size(), delimiter_).next;
    return next != nullptr ? static_cast<std::size_t>(next - text.data()) : text.size();
}

// Reads on until there is a whole record, and a block of them or nothing more at hand.
std::size_t TableReader::fill(Block& block) {
    for (std::size_t wanted = sizes_.block;;) {
        wanted = std::max(wanted, block.end + 1);
        if (block.buffer.size() < wanted) block.buffer.resize(wanted);
        while (!ended_ && block.end < wanted && ready()) read_some(block, wanted);
        const std::size_t whole = whole_records(block.text(), delimiter_);
        if (first_size(block.text()) > sizes_.record_limit) {
            before_first_nul(block.text(), sizes_.record_limit);
            fail("this record is longer than " + std::to_string(sizes_.record_limit) +
                 " bytes; is a quotation mark not closed?");
        }
        if (whole > 0 || ended_) return whole;
        if (block.end >= wanted) wanted = std::min(2 * wanted, sizes_.record_limit + 1);
        if (block.end < std::min(wanted, block.buffer.size())) read_some(block, std::min(wanted, block.buffer.size()));
    }
}

// The size of the records before the first NUL byte; all of them where there is none.
std::size_t TableReader::before_first_nul(std::string_view text, std::size_t whole) {
    const std::size_t nul = text.substr(0, whole).find('\0');
    if (nul == std::string_view::npos) return whole;
    const std::size_t before = whole_records(text.substr(0, nul), delimiter_);
    line_ += count_line_feeds(text.substr(0, before));
    fault_ = at_line() + std::string{binary};
    line_ -= count_line_feeds(text.substr(0, before));
    if (before == 0) throw TableError{fault_};
    ended_ = true;
    return before;
}

// What stands after the last line feed.
std::size_t TableReader::last_record(std::string_view text) {
    if (text.empty()) return 0;
    before_first_nul(text, text.size());
    if (find_record_end(text.data(), text.data() + text.size(), delimiter_).in_quotes) {
        fail("the input ends within a quoted field; it may be cut off");
    }
    return text.size();
}

bool TableReader::next(Block& block) {
    // What is ahead moves to the front of the block.
    const std::string_view rest = ahead_.text();
    if (block.buffer.size() > 2 * sizes_.block) block.buffer = {};
    if (block.buffer.size() < std::max(rest.size(), sizes_.block)) {
        block.buffer.resize(std::max(rest.size(), sizes_.block));
    }
    rest.copy(block.buffer.data(), rest.size());
    block.begin = 0;
    block.end = rest.size();
    block.first_line = line_;
    ahead_.begin = ahead_.end = 0;

    std::size_t whole = fill(block);
    if (whole == 0 && !fault_.empty()) throw TableError{fault_};
    whole = whole > 0 ? before_first_nul(block.text(), whole) : last_record(block.text());

    const std::string_view left = block.text().substr(whole);
    ahead_.buffer.assign(left);
    ahead_.end = left.size();
    block.end = whole;
    line_ += count_line_feeds(block.text());
    if (!fault_.empty() && ended_) ahead_.end = 0;
    return whole > 0;
}

}  // namespace finance::command
