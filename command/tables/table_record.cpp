#include "command/tables/table_record.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

#include "command/tables/separators.hpp"

namespace finance::command {

namespace {

constexpr char mark = quotation_mark;

std::string_view between(const char* begin, const char* end) { return {begin, static_cast<std::size_t>(end - begin)}; }

// One past the mark that closes the field whose first character after the opening mark is at p; null where none does.
const char* after_closing_mark(const char* p, const char* end) {
    for (;;) {
        p = find_byte(p, end, mark);
        if (p == end) return nullptr;
        if (p + 1 == end || p[1] != mark) return p + 1;
        p += 2;
    }
}

// Takes the fields of a record one by one, as they are found.
class FieldTaker {
public:
    FieldTaker(const char* begin, std::vector<std::string_view>& fields) : field_{begin}, fields_{fields} {}
    void take(const char* delimiter) {
        if (count_ < fields_.size()) fields_[count_] = between(field_, delimiter);
        ++count_;
        field_ = delimiter + 1;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    const char* field_;
    std::vector<std::string_view>& fields_;
    std::size_t count_ = 0;
};

// Sixteen bytes at a time.
std::size_t split_plain(std::string_view text, char delimiter, std::vector<std::string_view>& fields) {
    constexpr std::ptrdiff_t width = 16;
    const char* p = text.data();
    const char* end = p + text.size();
    FieldTaker taker{p, fields};
    for (; end - p >= width; p += width) {
        std::uint64_t places = equal_bytes(sixteen_bytes(p), delimiter);
        for (; places != 0; places &= places - 1) taker.take(p + std::countr_zero(places));
    }
    for (; p != end; ++p) {
        if (*p == delimiter) taker.take(p);
    }
    taker.take(end);
    return taker.count();
}

std::size_t split_quoted(std::string_view text, char delimiter, std::vector<std::string_view>& fields) {
    const char* p = text.data();
    const char* end = p + text.size();
    FieldTaker taker{p, fields};
    for (;;) {
        if (p != end && *p == mark) {
            const char* closed = after_closing_mark(p + 1, end);
            p = closed != nullptr ? closed : end;
        }
        p = find_byte(p, end, delimiter);
        taker.take(p);
        if (p == end) return taker.count();
        ++p;
    }
}

}  // namespace

const char* find_byte(const char* begin, const char* end, char c) {
    const void* found = begin == end ? nullptr : std::memchr(begin, c, static_cast<std::size_t>(end - begin));
    return found != nullptr ? static_cast<const char*>(found) : end;
}

// Sixteen counters of a byte each, which are added up before one could overflow.
std::size_t count_line_feeds(std::string_view text) {
    constexpr std::size_t width = 16;
    constexpr std::size_t most_steps = 255;
    const __m128i wanted = _mm_set1_epi8('\n');
    std::size_t count = 0;
    while (text.size() >= width) {
        const std::size_t steps = std::min(text.size() / width, most_steps);
        __m128i counters = _mm_setzero_si128();
        for (std::size_t i = 0; i < steps; ++i) {
            counters = _mm_sub_epi8(counters, _mm_cmpeq_epi8(sixteen_bytes(text.data() + i * width), wanted));
        }
        const __m128i sums = _mm_sad_epu8(counters, _mm_setzero_si128());
        count += static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_add_epi64(sums, _mm_unpackhi_epi64(sums, sums))));
        text.remove_prefix(steps * width);
    }
    return count + static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

RecordEnd find_record_end(const char* begin, const char* end, char delimiter) {
    for (const char* p = begin;;) {
        const char* newline = find_byte(p, end, '\n');
        const char* quote = find_byte(p, newline, mark);
        while (quote != newline && quote != begin && quote[-1] != delimiter)
            quote = find_byte(quote + 1, newline, mark);
        if (quote == newline) return {.next = newline == end ? nullptr : newline + 1};
        p = after_closing_mark(quote + 1, end);
        if (p == nullptr) return {.in_quotes = true};
        if (p == end) return {};
    }
}

namespace {

// Where the last record ends before which no mark is in doubt; the beginning where there is none.
const char* end_of_sure_records(const char* begin, const char* end, char delimiter) {
    SeparatorScan scan{delimiter};
    const char* whole = begin;
    for (const char* p = begin; p != end;) {
        const std::size_t size = std::min(chunk_bytes, static_cast<std::size_t>(end - p));
        const Separators found = scan.next(p, size);
        const std::uint64_t line_feeds = found.line_feeds & below_lowest(found.doubtful);
        if (line_feeds != 0) whole = p + std::bit_width(line_feeds);
        if (found.doubtful != 0) break;
        p += size;
    }
    return whole;
}

}  // namespace

std::size_t whole_records(std::string_view text, char delimiter) {
    if (text.find(mark) == std::string_view::npos) return text.rfind('\n') + 1;
    const char* p = text.data();
    const char* end = p + text.size();
    while (p != end) {
        p = end_of_sure_records(p, end, delimiter);
        const char* next = find_record_end(p, end, delimiter).next;
        if (next == nullptr) break;
        p = next;
    }
    return static_cast<std::size_t>(p - text.data());
}

RecordCursor::RecordCursor(std::string_view text, char delimiter)
    : at_{text.data()}, end_{at_ + text.size()}, quote_{find_byte(at_, end_, mark)}, delimiter_{delimiter} {}

bool RecordCursor::next(Record& record) {
    if (at_ == end_) return false;
    if (quote_ < at_) quote_ = find_byte(at_, end_, mark);
    const char* newline = find_byte(at_, end_, '\n');
    const bool quoted = quote_ < newline;
    const char* next = newline == end_ ? end_ : newline + 1;
    if (quoted) next = find_record_end(at_, end_, delimiter_).next;
    if (next == nullptr) next = end_;
    record = without_line_end(at_, next, quoted);
    at_ = next;
    return true;
}

std::size_t split_record(const Record& record, char delimiter, std::vector<std::string_view>& fields) {
    return record.quoted ? split_quoted(record.text, delimiter, fields) : split_plain(record.text, delimiter, fields);
}

std::vector<std::string_view> all_fields(const Record& record, char delimiter) {
    std::vector<std::string_view> fields;
    fields.resize(split_record(record, delimiter, fields));
    split_record(record, delimiter, fields);
    return fields;
}

std::string_view field_text(std::string_view raw, std::string& scratch) {
    if (raw.empty() || raw.front() != mark) return raw;
    const char* end = raw.data() + raw.size();
    if (after_closing_mark(raw.data() + 1, end) != end) return raw;
    std::string_view inner = raw.substr(1, raw.size() - 2);
    if (inner.find(mark) == std::string_view::npos) return inner;
    scratch.clear();
    for (std::size_t i = 0; i < inner.size(); ++i) {
        scratch += inner[i];
        if (inner[i] == mark) ++i;
    }
    return scratch;
}

std::string_view trimmed(std::string_view text) {
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

void append_field(std::string& output, std::string_view text, char delimiter) {
    const auto needs_quotes = [&](char c) { return c == delimiter || c == mark || c == '\n' || c == '\r'; };
    if (std::ranges::none_of(text, needs_quotes)) {
        output += text;
        return;
    }
    output += mark;
    for (const char c : text) {
        if (c == mark) output += mark;
        output += c;
    }
    output += mark;
}

}  // namespace finance::command
