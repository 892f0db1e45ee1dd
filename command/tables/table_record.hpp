// Records and fields of a text table.
//
//  (1) A record ends with a line feed, alone or after a carriage return, or with the text.
//  (2) A field that begins with a quotation mark goes to the closing one: delimiters and line ends within belong to it,
//      two marks stand for one. A mark anywhere else is a character like others.
//  (3) What follows a closing mark up to the next delimiter makes the field malformed: its bytes are its text.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

// A table that cannot be read on, or written on: exit status 1.
class TableError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline constexpr char quotation_mark = '"';

// The first byte that is c; end where there is none.
const char* find_byte(const char* begin, const char* end, char c);

std::size_t count_line_feeds(std::string_view text);

struct RecordEnd {
    const char* next = nullptr;  // one past the record's line feed; null where the text ends before
    bool in_quotes = false;      // then: whether it ends within a quoted field
};

RecordEnd find_record_end(const char* begin, const char* end, char delimiter);

// The size of the whole records at the front of a text that begins with a record.
std::size_t whole_records(std::string_view text, char delimiter);

struct Record {
    std::string_view text{};      // without its line end
    std::string_view line_end{};  // empty, "\n" or "\r\n"
    bool quoted = false;          // there is a quotation mark in it
};

// The record between two places, its line feed, if it has one, included.
inline Record without_line_end(const char* begin, const char* end, bool quoted) {
    const char* stop = end;
    if (stop != begin && stop[-1] == '\n') {
        --stop;
        if (stop != begin && stop[-1] == '\r') --stop;
    }
    return {.text = {begin, static_cast<std::size_t>(stop - begin)},
            .line_end = {stop, static_cast<std::size_t>(end - stop)},
            .quoted = quoted};
}

// Walks over the records of a text.
class RecordCursor {
public:
    RecordCursor(std::string_view text, char delimiter);
    bool next(Record& record);

private:
    const char* at_;
    const char* end_;
    const char* quote_;  // the first quotation mark from at_ on, or the end
    char delimiter_;
};

// Puts the first fields.size() fields, raw, in their places; gives how many fields the record has.
std::size_t split_record(const Record& record, char delimiter, std::vector<std::string_view>& fields);

// All fields, raw.
std::vector<std::string_view> all_fields(const Record& record, char delimiter);

// What a raw field says. scratch keeps it where marks were doubled.
std::string_view field_text(std::string_view raw, std::string& scratch);

// Without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);

// Appends a field that says so, quoted where it must be.
void append_field(std::string& output, std::string_view text, char delimiter);

}  // namespace finance::command
