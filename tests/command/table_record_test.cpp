// Records and fields, by hand; and the reader's blocks, whatever their size.
#include "command/tables/table_record.hpp"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "command/tables/table_reader.hpp"

namespace finance::test {
namespace {

using command::Block;
using command::Record;
using command::TableError;
using command::TableReader;
using Texts = std::vector<std::string>;

std::vector<Record> records_of(std::string_view text, char delimiter = ',') {
    std::vector<Record> records;
    command::RecordCursor cursor{text, delimiter};
    for (Record record; cursor.next(record);) records.push_back(record);
    return records;
}

struct SplitCase {
    const char* id;
    const char* text;
    std::vector<Texts> expected;  // what the fields say, by record
};

const std::vector<SplitCase> splits{
    {"plain", "a,b\nc,d\n", {{"a", "b"}, {"c", "d"}}},
    {"no line feed at the end", "a,b\nc,d", {{"a", "b"}, {"c", "d"}}},
    {"carriage returns", "a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
    {"empty fields", ",\n,,\n", {{"", ""}, {"", "", ""}}},
    {"empty lines", "\n\na\n", {{""}, {""}, {"a"}}},
    {"longer than sixteen bytes",
     "0123456789,123456789,1234567890123456789,x\n",
     {{"0123456789", "123456789", "1234567890123456789", "x"}}},
    {"quoted", "\"a\",\"b\"\n", {{"a", "b"}}},
    {"quoted delimiter", "\"a,b\",c\n", {{"a,b", "c"}}},
    {"quoted line feed", "\"a\nb\",c\nd,e\n", {{"a\nb", "c"}, {"d", "e"}}},
    {"quoted carriage return", "\"a\r\nb\"\r\n", {{"a\r\nb"}}},
    {"doubled marks", "\"a\"\"b\",\"\"\"\"\n", {{"a\"b", "\""}}},
    {"only doubled marks before the close", "\"a\"\"\",b\n", {{"a\"", "b"}}},
    {"empty quoted", "\"\",\"\"\n", {{"", ""}}},
    {"a mark within a field", "5\" pipe,b\nc,d\n", {{"5\" pipe", "b"}, {"c", "d"}}},
    {"a mark after a blank", "a, \"b\nc,d\n", {{"a", " \"b"}, {"c", "d"}}},
    {"text after the closing mark", "\"a\"x,b\nc,d\n", {{"\"a\"x", "b"}, {"c", "d"}}},
    {"a mark after the closing mark", "\"a\"x\"y,b\nc,d\n", {{"\"a\"x\"y", "b"}, {"c", "d"}}},
    {"quoted, then a stray mark in the next field", "\"a\",b\"c\nd,e\n", {{"a", "b\"c"}, {"d", "e"}}},
    {"quoted last field, no line feed", "a,\"b\"", {{"a", "b"}}},
};

TEST(TableRecord, Splits) {
    for (const SplitCase& row : splits) {
        std::vector<Texts> found;
        for (const Record& record : records_of(row.text)) {
            std::string scratch;
            Texts& fields = found.emplace_back();
            for (const auto raw : command::all_fields(record, ',')) {
                fields.emplace_back(command::field_text(raw, scratch));
            }
        }
        EXPECT_EQ(found, row.expected) << row.id;
    }
}

TEST(TableRecord, FewerFieldsThanThereAre) {
    std::vector<std::string_view> two(2);
    EXPECT_EQ(command::split_record(records_of("a,b,c,d\n").front(), ',', two), 4U);
    EXPECT_EQ(two, (std::vector<std::string_view>{"a", "b"}));
}

TEST(TableRecord, WholeRecords) {
    EXPECT_EQ(command::whole_records("", ','), 0U);
    EXPECT_EQ(command::whole_records("a,b", ','), 0U);
    EXPECT_EQ(command::whole_records("a\nb", ','), 2U);
    EXPECT_EQ(command::whole_records("a\n\"b\nc", ','), 2U);
    EXPECT_EQ(command::whole_records("a\n\"b\nc\"\nd", ','), 8U);
    EXPECT_EQ(command::whole_records("a\tx\"\nb", '\t'), 5U);
}

TEST(TableRecord, FieldsAreQuotedWhereTheyMustBe) {
    std::string text;
    for (const char* field : {"a", "a,b", "a\"b", "a\nb", "a;b"}) {
        command::append_field(text, field, ',');
        text += '|';
    }
    EXPECT_EQ(text, "a|\"a,b\"|\"a\"\"b\"|\"a\nb\"|a;b|");
}

// Whatever a field says, it is read back.
RC_GTEST_PROP(TableRecord, AppendedFieldsAreReadBack, ()) {
    const auto fields = *rc::gen::nonEmpty(
        rc::gen::container<Texts>(rc::gen::container<std::string>(rc::gen::element('a', ',', '"', '\n', '\r', ' '))));
    std::string text;
    for (const std::string& field : fields) {
        if (!text.empty() || &field != &fields.front()) text += ',';
        command::append_field(text, field, ',');
    }
    text += '\n';
    RC_ASSERT(command::whole_records(text, ',') == text.size());
    const auto records = records_of(text);
    RC_ASSERT(records.size() == 1U);
    const auto raw = command::all_fields(records.front(), ',');
    RC_ASSERT(raw.size() == fields.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        std::string scratch;
        RC_ASSERT(command::field_text(raw[i], scratch) == fields[i]);
    }
}

// ---- The reader

// A pipe that has been filled and closed; what is put in must fit its buffer.
class FilledPipe {
public:
    explicit FilledPipe(std::string_view text) {
        if (pipe(ends_.data()) != 0) throw std::runtime_error{"no pipe"};
        if (write(ends_[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error{"too much for a pipe"};
        }
        close(ends_[1]);
    }
    ~FilledPipe() { close(ends_[0]); }
    FilledPipe(const FilledPipe&) = delete;
    FilledPipe& operator=(const FilledPipe&) = delete;
    [[nodiscard]] int end() const { return ends_[0]; }

private:
    std::array<int, 2> ends_{};
};

struct ReadResult {
    Texts records{};
    std::vector<std::uint64_t> lines{};
    std::string fault{};
};

ReadResult read_all(std::string_view text, command::BlockSizes sizes) {
    const FilledPipe pipe{text};
    TableReader reader{pipe.end(), "t", sizes};
    ReadResult result;
    Block block;
    try {
        reader.peek();
        while (reader.next(block)) {
            std::uint64_t line = block.first_line;
            for (const Record& record : records_of(block.text())) {
                result.records.emplace_back(std::string{record.text}.append(record.line_end));
                result.lines.push_back(line);
                line += static_cast<std::uint64_t>(
                    std::count(result.records.back().begin(), result.records.back().end(), '\n'));
            }
        }
    } catch (const TableError& error) {
        result.fault = error.what();
    }
    return result;
}

const std::string nasty =
    "a,b\r\n\"x\ny\",\"\"\"\"\n\n5\",\"q\"\"\n\"\"\",z\n\"\",\"\n\n\"\nplain line of some length,1\n\"last\",\"one\"";
const Texts nasty_records{"a,b\r\n",
                          "\"x\ny\",\"\"\"\"\n",
                          "\n",
                          "5\",\"q\"\"\n\"\"\",z\n",
                          "\"\",\"\n\n\"\n",
                          "plain line of some length,1\n",
                          "\"last\",\"one\""};

TEST(TableReader, RecordsAreTheSameWhateverTheBlockSize) {
    std::size_t checked = 0;
    for (std::size_t block = 1; block <= nasty.size() + 1; ++block) {
        const ReadResult result = read_all(nasty, {.block = block});
        EXPECT_EQ(result.records, nasty_records) << "blocks of " << block;
        EXPECT_EQ(result.lines, (std::vector<std::uint64_t>{1, 2, 4, 5, 7, 10, 11})) << "blocks of " << block;
        EXPECT_EQ(result.fault, "");
        ++checked;
    }
    EXPECT_EQ(checked, 80U);
}

struct FaultCase {
    const char* id;
    std::string text;
    Texts before;
    const char* fault;
};

const std::vector<FaultCase> faults{
    {"an open quote at the end",
     "a\nb\n\"c\nd\n",
     {"a\n", "b\n"},
     "t, line 3: the input ends within a quoted field; it may be cut off"},
    {"a NUL byte",
     std::string("a\nb\nc\0d\ne\n", 10),
     {"a\n", "b\n"},
     "t, line 3: a NUL byte: this is a binary file, not a table of text"},
    {"a NUL byte in the last line",
     std::string("a\nb\nc\0d", 7),
     {"a\n", "b\n"},
     "t, line 3: a NUL byte: this is a binary file, not a table of text"},
    {"a record that is too long",
     "a\n" + std::string(40, 'b') + "\nc\n",
     {"a\n"},
     "t, line 2: this record is longer than 32 bytes; is a quotation mark not closed?"},
    {"UTF-16",
     "\xFF\xFE"
     "a",
     {},
     "t is UTF-16: convert it to UTF-8 first"},
};

TEST(TableReader, FaultsComeAfterWhatStandsBeforeThem) {
    for (const FaultCase& row : faults) {
        for (std::size_t block = 1; block <= 16; ++block) {
            const ReadResult result = read_all(row.text, {.block = block, .record_limit = 32});
            EXPECT_EQ(result.records, row.before) << row.id << ", blocks of " << block;
            EXPECT_EQ(result.fault, row.fault) << row.id << ", blocks of " << block;
        }
    }
}

TEST(TableReader, ARecordOfTheLimitPasses) {
    const std::string text = std::string(31, 'b') + "\nc\n";
    EXPECT_EQ(read_all(text, {.block = 4, .record_limit = 32}).records, (Texts{std::string(31, 'b') + "\n", "c\n"}));
    const std::string last(32, 'd');  // no line feed
    for (const std::size_t block : {4U, 31U, 32U, 40U}) {
        EXPECT_EQ(read_all(last, {.block = block, .record_limit = 32}).records, (Texts{last})) << block;
        EXPECT_EQ(read_all("e\n" + last, {.block = block, .record_limit = 32}).records, (Texts{"e\n", last})) << block;
    }
    EXPECT_EQ(read_all(last + "\n", {.block = 4, .record_limit = 32}).records, Texts{});
}

TEST(TableReader, AFolderCannotBeRead) {
    const std::unique_ptr<FILE, int (*)(FILE*)> folder{fopen("/", "r"), fclose};
    ASSERT_TRUE(folder);
    TableReader reader{fileno(folder.get()), "t"};
    Block block;
    EXPECT_THROW(reader.next(block), TableError);
}

TEST(TableReader, AByteOrderMarkIsNoPartOfTheFirstField) {
    const FilledPipe pipe{
        "\xEF\xBB\xBF"
        "a,b\n"};
    TableReader reader{pipe.end(), "t"};
    EXPECT_EQ(reader.peek(), "a,b\n");
    Block block;
    ASSERT_TRUE(reader.next(block));
    EXPECT_EQ(block.text(), "a,b\n");
    EXPECT_TRUE(reader.has_byte_order_mark());
}

}  // namespace
}  // namespace finance::test
