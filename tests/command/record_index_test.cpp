// Records and fields found sixty-four bytes at a time, against a loop that looks at one byte after the other.
#include "command/tables/record_index.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace finance::test {
namespace {

using command::Block;
using command::RecordIndex;

struct Row {
    std::string text{};
    std::string_view line_end{};
    bool quoted = false;
    std::uint64_t line = 0;
    std::size_t count = 0;
    std::vector<std::string> fields{};  // of a record that fits

    friend bool operator==(const Row&, const Row&) = default;
};

// ---- The obvious way. A mark opens a field that it begins; within, two marks are one; after the closing mark, and
// anywhere else, a mark is a byte like others.

enum class Place { at_field, in_plain, in_quotes, after_mark };

Place after(Place place, char c, char delimiter) {
    if (place == Place::in_quotes) return c == '"' ? Place::after_mark : Place::in_quotes;
    if (place == Place::after_mark && c == '"') return Place::in_quotes;
    if (c == delimiter) return Place::at_field;
    return place == Place::at_field && c == '"' ? Place::in_quotes : Place::in_plain;
}

void cut_last(Row& row) {
    row.text.pop_back();
    row.fields.back().pop_back();
}

std::vector<Row> obvious_rows(const std::string& text, char delimiter, std::size_t columns) {
    std::vector<Row> rows;
    std::uint64_t line = 1;
    for (std::size_t i = 0; i < text.size();) {
        Row row{.line = line};
        row.fields.emplace_back();
        Place place = Place::at_field;
        bool ended = false;
        for (; i < text.size() && !ended; ++i) {
            const char c = text[i];
            ended = c == '\n' && place != Place::in_quotes;
            line += c == '\n' ? 1 : 0;
            if (ended) continue;
            row.quoted = row.quoted || c == '"';
            row.text += c;
            if (c == delimiter && place != Place::in_quotes) {
                row.fields.emplace_back();
            } else {
                row.fields.back() += c;
            }
            place = after(place, c, delimiter);
        }
        // A last line feed ends the record even where its marks are not closed.
        const bool within = !ended && row.text.ends_with('\n');
        row.line_end = ended || within ? "\n" : "";
        if (within) cut_last(row);
        if (!row.line_end.empty() && row.text.ends_with('\r')) {
            row.line_end = "\r\n";
            cut_last(row);
        }
        row.count = row.fields.size();
        if (row.count != columns) row.fields.clear();
        rows.push_back(row);
    }
    return rows;
}

// ---- The index

Block block_of(const std::string& text, std::size_t before) {
    return {.buffer = std::string(before, ',') + text, .begin = before, .end = before + text.size(), .first_line = 1};
}

std::vector<Row> indexed_rows(RecordIndex& index, const Block& block, std::size_t columns) {
    std::vector<Row> rows;
    index.begin(block);
    while (index.next()) {
        EXPECT_GT(index.size(), 0U);
        EXPECT_LE(index.size(), RecordIndex::most_records);
        for (std::size_t i = 0; i < index.size(); ++i) {
            const auto& [record, line, count, first_end] = index[i];
            Row& row = rows.emplace_back();
            row = {.text = std::string{record.text},
                   .line_end = record.line_end,
                   .quoted = record.quoted,
                   .line = line,
                   .count = count};
            EXPECT_EQ(index.empty_line(i), row.text.empty() && columns > 1);
            for (std::size_t column = 0; column < columns && count == columns; ++column) {
                row.fields.emplace_back(index.field(i, column));
            }
        }
    }
    EXPECT_EQ(index.size(), 0U);
    return rows;
}

void expect_same(const std::string& text, std::size_t columns, std::size_t before = 0) {
    RecordIndex index{',', columns};
    const Block block = block_of(text, before);
    ASSERT_EQ(indexed_rows(index, block, columns), obvious_rows(text, ',', columns)) << text << " / " << columns;
}

std::string draw_text(std::mt19937_64& draw, std::string_view letters, std::size_t size) {
    std::string text;
    while (text.size() < size) text += letters[draw() % letters.size()];
    return text;
}

TEST(RecordIndex, EveryAlignmentAndSize) {
    std::mt19937_64 draw{1};
    for (std::size_t before = 0; before < 64; ++before) {
        for (std::size_t size = 0; size < 200; ++size) expect_same(draw_text(draw, "aaaa,,\n", size), 3, before);
    }
}

TEST(RecordIndex, EverySeparatorAtEveryPlace) {
    for (std::size_t size : {1U, 15U, 16U, 17U, 63U, 64U, 65U, 128U, 130U}) {
        for (std::size_t place = 0; place < size; ++place) {
            for (const char* separator : {",", "\n", "\r\n", "\"", ",\"\n,\"\n"}) {
                std::string text(size, 'a');
                text.replace(place, 1, separator);
                expect_same(text, 1);
                expect_same(text, 2);
            }
        }
    }
}

// Quotation marks in each record, in some, in none.
TEST(RecordIndex, Draws) {
    std::mt19937_64 draw{2};
    for (const std::string_view letters :
         {"a,\n", "aa,\n\r", "a,\n\"", "aaaaaaaaaa,,,,\n\n\"", "aa,\"\"\"\n\r", "\n", "\"\n"}) {
        for (int i = 0; i < 300; ++i) expect_same(draw_text(draw, letters, draw() % 1000), 1 + draw() % 4);
    }
}

// Well-formed fields with everything in them, and now and then a mark where none belongs.
TEST(RecordIndex, QuotedFields) {
    std::mt19937_64 draw{4};
    const std::vector<std::string> fields{
        "a", "", "123.45", "\"\"", "\"a,b\"", "\"a\nb\"", "\"a \"\"b\"\", c\"", "\"\"\"\"", "\"\r\n\n\""};
    const std::vector<std::string> others{"5\" pipe", "\"a\"x", "\"a\"x\"y", " \"a\"", "\"a\" "};
    for (int i = 0; i < 400; ++i) {
        std::string text;
        for (std::size_t row = 0; row < 300; ++row) {
            for (int column = 0; column < 3; ++column) {
                const bool other = i % 2 == 1 && draw() % 50 == 0;
                text += other ? others[draw() % others.size()] : fields[draw() % fields.size()];
                if (column < 2) text += ',';
            }
            text += i % 3 == 0 ? "\r\n" : "\n";
        }
        expect_same(text, 3);
        if (i % 4 == 0) expect_same(text.substr(0, text.size() - draw() % 100), 3, draw() % 64);
    }
}

TEST(RecordIndex, MoreRecordsThanOneIndexHas) {
    std::string text;
    for (int i = 0; i < 1000; ++i) text.append(std::to_string(i)).append(i % 100 == 99 ? ",\"x\ny\"\n" : ",x\n");
    expect_same(text, 2);
    expect_same(text, 3);
    expect_same(std::string(1000, '\n'), 2);
}

// More fields than an index of a narrow table has room for: alone, after others, before others, at the end.
TEST(RecordIndex, CrowdedRecords) {
    const std::string crowded(5000, ',');
    const std::string marked = std::string{"\","}.append(crowded).append("\"");
    const std::string row = "a,b\n";
    for (const std::string& text :
         {crowded, crowded + "\na,b\n", row + crowded, row + crowded + "\r\nc,d\n",
          row + crowded.substr(0, 500) + "\n" + crowded.substr(0, 60) + "\nc,d\n",
          crowded + "\n" + marked + ",x\n" + crowded + ",\"\"\nc,d\n", marked + "\n" + crowded}) {
        expect_same(text, 2);
        expect_same(text, 5002);
    }
}

// Tables with so many columns that an index has room for a few records only, or for one.
TEST(RecordIndex, WideTables) {
    for (const std::size_t columns : {256U, 257U, 1000U, 20000U, 70000U}) {
        std::string text;
        for (std::size_t row = 0; row < 1'000'000 / columns; ++row) {
            text.append(columns - 1 - (row % 10 == 7 ? 1 : 0), ',').append(row % 4 == 2 ? "\"\n\"\n" : "a\r\n");
        }
        expect_same(text, columns);
    }
}

// Records that do not fit leave less room for those with marks after them.
TEST(RecordIndex, LittleRoom) {
    for (std::size_t commas = 0; commas < 600; ++commas) {
        std::string text(commas, ',');
        text += '\n';
        for (int i = 0; i < 5; ++i) text += "\"a\",b,c\nd,e,f\n";
        expect_same(text, 3);
    }
}

TEST(RecordIndex, BeginsAnew) {
    RecordIndex index{',', 2};
    const Block first = block_of("a,b\n\"c\",d\ne", 0);
    Block second = block_of("f,g\nh,\"i\"\n", 3);
    second.first_line = 7;
    index.begin(first);
    ASSERT_TRUE(index.next());
    index.begin(second);
    ASSERT_TRUE(index.next());
    ASSERT_EQ(index.size(), 2U);
    EXPECT_EQ(index[0].line, 7U);
    EXPECT_EQ(index.field(1, 1), "\"i\"");
    EXPECT_FALSE(index.next());
}

// Up to the last line feed outside of marks, as the obvious way has it.
TEST(WholeRecords, Draws) {
    std::mt19937_64 draw{5};
    for (const std::string_view letters : {"a,\n\"", "aaaaaaaaaa,,,,\n\n\"", "aa,\"\"\"\n\r", "\"\n", "aaaa,,\n"}) {
        for (int i = 0; i < 2000; ++i) {
            const std::string text = draw_text(draw, letters, draw() % 400);
            std::size_t whole = 0;
            Place place = Place::at_field;
            for (std::size_t k = 0; k < text.size(); ++k) {
                const bool ends = text[k] == '\n' && place != Place::in_quotes;
                if (ends) whole = k + 1;
                place = ends ? Place::at_field : after(place, text[k], ',');
            }
            ASSERT_EQ(command::whole_records(text, ','), whole) << text;
        }
    }
}

TEST(LineFeeds, AreCountedAtEveryAlignment) {
    std::mt19937_64 draw{3};
    const std::string text = draw_text(draw, "a\n\n\x0B", 6000);
    for (std::size_t first = 0; first < 20; ++first) {
        for (std::size_t size = 0; size < 5900; size += size < 100 ? 1 : 97) {
            const std::string_view part = std::string_view{text}.substr(first, size);
            ASSERT_EQ(command::count_line_feeds(part), static_cast<std::size_t>(std::ranges::count(part, '\n')));
        }
    }
    EXPECT_EQ(command::count_line_feeds(std::string(10000, '\n')), 10000U);
}

}  // namespace
}  // namespace finance::test
