// Text tables as the command reads them, against a reader that goes from character to character.
//
//  (1) Records put together again are the text, byte for byte; a record's fields joined by delimiters are the record.
//  (2) A field that says something says the same after it has been written and read again.
//  (3) An index of the records has the same ones, with the same fields where they fit the first one.
//  (4) Records and fault are the same whatever the size of the blocks that are read, and a fault comes after all
//      records before it.
#include <sys/mman.h>
#include <unistd.h>

#include <vector>

#include "command/tables/foreign_format.hpp"
#include "command/tables/record_index.hpp"
#include "command/tables/table_reader.hpp"
#include "command/tables/table_record.hpp"
#include "fuzz/input.hpp"

namespace finance::fuzz {
namespace {

using command::Record;

// ---- The model

struct ModelRecord {
    std::string_view text;                 // with its line end
    std::vector<std::string_view> fields;  // raw
    bool closed = true;                    // false: the text ends within quotation marks
    bool ended = false;                    // by a line feed
};

// Where a quoted field that begins at i is over; the text's size where it is not closed.
std::size_t after_quotes(std::string_view text, std::size_t i, bool& closed) {
    for (++i; i < text.size(); ++i) {
        if (text[i] != '"') continue;
        if (i + 1 == text.size() || text[i + 1] != '"') return i + 1;
        ++i;
    }
    closed = false;
    return text.size();
}

ModelRecord model_record(std::string_view text, char delimiter) {
    ModelRecord record;
    std::size_t field = 0;
    std::size_t i = 0;
    while (i < text.size() && text[i] != '\n') {
        if (text[i] == '"' && i == field) {
            i = after_quotes(text, i, record.closed);
        } else if (text[i++] == delimiter) {
            record.fields.push_back(text.substr(field, i - 1 - field));
            field = i;
        }
    }
    record.ended = i < text.size();
    const bool carriage_return = record.ended && i > 0 && text[i - 1] == '\r';
    const std::size_t stop = carriage_return ? i - 1 : i;
    record.fields.push_back(text.substr(field, stop - field));
    record.text = text.substr(0, record.ended ? i + 1 : i);
    return record;
}

std::vector<ModelRecord> model_records(std::string_view text, char delimiter) {
    std::vector<ModelRecord> records;
    while (!text.empty()) {
        records.push_back(model_record(text, delimiter));
        text.remove_prefix(records.back().text.size());
    }
    return records;
}

std::string model_field_text(std::string_view raw) {
    bool closed = true;
    if (!raw.starts_with('"') || after_quotes(raw, 0, closed) != raw.size() || !closed) return std::string{raw};
    std::string text;
    for (std::size_t i = 1; i + 1 < raw.size(); ++i) {
        text += raw[i];
        if (raw[i] == '"') ++i;
    }
    return text;
}

// ---- Records and fields of a text at hand

void check_field(std::string_view raw, char delimiter) {
    std::string scratch;
    const std::string said{command::field_text(raw, scratch)};
    must(said == model_field_text(raw), "what a field says");
    std::string written;
    command::append_field(written, said, delimiter);
    const ModelRecord again = model_record(written, delimiter);
    must(again.closed && again.text == written && again.fields.size() == 1, "a written field is one field");
    must(command::field_text(written, scratch) == said, "a written field says what it was to say");
}

void check_records(std::string_view text, char delimiter) {
    std::string joined;
    std::size_t whole = 0;
    command::RecordCursor cursor{text, delimiter};
    Record record;
    for (const ModelRecord& expected : model_records(text, delimiter)) {
        must(cursor.next(record), "there are as many records");
        joined.append(record.text).append(record.line_end);
        must(std::string{record.text}.append(record.line_end) == expected.text, "a record's bytes");
        if (expected.closed && expected.ended) whole += expected.text.size();
        if (!expected.closed) continue;  // is refused where it comes from a file
        const auto fields = command::all_fields(record, delimiter);
        must(fields == expected.fields, "a record's fields");
        std::vector<std::string_view> fewer(fields.size() / 2);
        must(command::split_record(record, delimiter, fewer) == fields.size(), "fields are counted, wanted or not");
        must(std::equal(fewer.begin(), fewer.end(), fields.begin()), "the first fields");
        for (const std::string_view field : fields) check_field(field, delimiter);
    }
    must(!cursor.next(record), "there are no more records");
    must(joined == text, "records are the text");
    must(command::whole_records(text, delimiter) == whole, "the size of the whole records");
}

void check_entry(const command::RecordIndex& index, std::size_t i, const ModelRecord& expected, std::size_t columns) {
    const auto& [record, line, fields, first_end] = index[i];
    must(std::string{record.text}.append(record.line_end) == expected.text, "the bytes of a record in an index");
    if (!expected.closed) return;
    must(fields == expected.fields.size(), "the number of a record's fields in an index");
    for (std::size_t column = 0; column < columns && fields == columns; ++column) {
        must(index.field(i, column) == expected.fields[column], "a field in an index");
    }
}

void check_index(std::string_view text, char delimiter) {
    const std::vector<ModelRecord> records = model_records(text, delimiter);
    const std::size_t columns = records.empty() ? 1 : records.front().fields.size();
    const command::Block block{.buffer = std::string{text}, .begin = 0, .end = text.size(), .first_line = 1};
    command::RecordIndex index{delimiter, columns};
    index.begin(block);
    std::size_t i = 0;
    std::uint64_t line = 1;
    for (const ModelRecord& expected : records) {
        if (i == index.size()) {
            must(index.next(), "an index has as many records");
            i = 0;
        }
        must(index[i].line == line, "the line of a record in an index");
        line += static_cast<std::uint64_t>(std::ranges::count(expected.text, '\n'));
        check_entry(index, i++, expected, columns);
    }
    must(i == index.size() && !index.next(), "an index has no more records");
}

// ---- Blocks of a file

struct ReadResult {
    std::vector<std::string> records{};
    std::string fault{};
    friend bool operator==(const ReadResult&, const ReadResult&) = default;
};

ReadResult expected_reading(std::string_view text, char delimiter, std::size_t limit) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        return {.fault = "t is UTF-16: convert it to UTF-8 first"};
    }
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    ReadResult result;
    std::size_t line = 1;
    for (const ModelRecord& record : model_records(text, delimiter)) {
        const std::string at = "t, line " + std::to_string(line) + ": ";
        if (record.text.substr(0, limit).find('\0') != std::string_view::npos) {
            result.fault = at + "a NUL byte: this is a binary file, not a table of text";
        } else if (record.text.size() > limit) {
            result.fault =
                at + "this record is longer than " + std::to_string(limit) + " bytes; is a quotation mark not closed?";
        } else if (!record.closed) {
            result.fault = at + "the input ends within a quoted field; it may be cut off";
        }
        if (!result.fault.empty()) return result;
        result.records.emplace_back(record.text);
        line += static_cast<std::size_t>(std::ranges::count(record.text, '\n'));
    }
    return result;
}

// A file in memory that holds the text.
int file_of(std::string_view text) {
    static const int file = memfd_create("table", 0);
    must(pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
             ftruncate(file, static_cast<off_t>(text.size())) == 0,
         "a file in memory");
    return file;
}

ReadResult reading(int file, char delimiter, command::BlockSizes sizes) {
    ReadResult result;
    must(lseek(file, 0, SEEK_SET) == 0, "a file in memory is read from its beginning");
    command::TableReader reader{file, "t", sizes};
    std::size_t line = 1;
    try {
        reader.peek();
        reader.set_delimiter(delimiter);
        for (command::Block block; reader.next(block);) {
            must(block.first_line == line, "the line of a block");
            command::RecordCursor cursor{block.text(), delimiter};
            for (Record record; cursor.next(record);) {
                result.records.push_back(std::string{record.text}.append(record.line_end));
            }
            line += static_cast<std::size_t>(std::ranges::count(block.text(), '\n'));
        }
    } catch (const command::TableError& error) {
        result.fault = error.what();
    }
    return result;
}

// Packed files and those of other formats are no text tables.
bool is_text_table(std::string_view text) {
    if (text.starts_with("\x1F\x8B")) return false;
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return command::foreign_format(text).empty();
}

void run(Bytes in) {
    constexpr std::array delimiters{',', ',', ',', '\t', ';', ';', '|', ' ', ':', '\x80'};
    const char delimiter = delimiters[in.below(delimiters.size())];
    const std::size_t small = 1 + in.below(24);
    const std::size_t limit = in.flag() ? 4096 : 32 + in.below(64);
    const std::string_view text = in.rest();
    check_records(text, delimiter);
    check_index(text, delimiter);
    if (!is_text_table(text)) return;
    const ReadResult expected = expected_reading(text, delimiter, limit);
    const int file = file_of(text);
    for (const std::size_t block : {small, std::size_t{24}, limit - 1, limit}) {
        must(reading(file, delimiter, {.block = block, .record_limit = limit}) == expected, "records and fault");
    }
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
