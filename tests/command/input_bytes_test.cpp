// Inputs packed by gzip: zlib packs, the reader must give the text back, or say what is wrong with the stream.
#include "command/tables/input_bytes.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "command/tables/table_record.hpp"
#include "tests/command/packed_text.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using command::InputBytes;
using command::TableError;

class MemoryFile {
public:
    explicit MemoryFile(std::string_view text) : descriptor_{memfd_create("input", 0)} {
        if (pwrite(descriptor_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error{"no file in memory"};
        }
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

struct Reading {
    std::string text{};
    std::string fault{};
};

Reading read_all(std::string_view bytes, std::size_t room) {
    const MemoryFile file{bytes};
    InputBytes input{file.descriptor(), "t"};
    Reading reading;
    std::string some(room, '\0');
    try {
        for (std::size_t n = 0; (n = input.read(some.data(), room)) > 0;) reading.text.append(some, 0, n);
    } catch (const TableError& error) {
        reading.fault = error.what();
    }
    return reading;
}

std::string long_text() {
    std::string text;
    for (int i = 0; i < 40'000; ++i) text += std::to_string(i * 7919 % 100'003) + ",0.5%\n";
    return text;
}

struct InputCase {
    const char* id;
    std::string bytes;
    std::string text;
    std::string fault;
};

const std::string garbage = "t is damaged: what follows the end of its gzip stream is no gzip";
const std::string cut = "t is cut off: its gzip stream does not end";

TEST(InputBytes, AreGivenWhateverTheRoom) {
    const std::vector<InputCase> cases{
        {"nothing", "", "", ""},
        {"plain", "a,b\n1,2\n", "a,b\n1,2\n", ""},
        {"one byte of the mark", "\x1F", "\x1F", ""},
        {"the mark's first byte and another", "\x1F,b\n", "\x1F,b\n", ""},
        {"long and plain", long_text(), long_text(), ""},
        {"packed", packed("a,b\n1,2\n"), "a,b\n1,2\n", ""},
        {"nothing packed", packed(""), "", ""},
        {"long and packed", packed(long_text()), long_text(), ""},
        {"two members", packed("a,b\n") + packed("1,2\n"), "a,b\n1,2\n", ""},
        {"members with nothing", packed("") + packed("a\n") + packed("") + packed("b\n"), "a\nb\n", ""},
        {"text after the stream", packed("a\n") + "more", "a\n", garbage},
        {"the mark alone", "\x1F\x8B", "", cut},
        {"half a second member", packed("a\n") + packed("b\n").substr(0, 8), "a\n", cut},
    };
    for (const InputCase& row : cases) {
        for (const std::size_t room : {1U, 2U, 7U, 65'536U, 1'000'000U}) {
            const Reading reading = read_all(row.bytes, room);
            EXPECT_EQ(reading.text, row.text) << row.id << ", room for " << room;
            EXPECT_EQ(reading.fault, row.fault) << row.id << ", room for " << room;
        }
    }
    EXPECT_EQ(cases.size(), 13U);
}

TEST(InputBytes, AStreamCutAnywhereIsAFault) {
    const std::string text = "rate,nper,pv\n0.5%,360,200000\n0.45%,60,18500\n";
    const std::string whole = packed(text);
    ASSERT_GT(whole.size(), 20U);
    for (std::size_t size = 2; size < whole.size(); ++size) {
        const Reading reading = read_all(whole.substr(0, size), 64);
        EXPECT_EQ(reading.fault, cut) << size;
        EXPECT_TRUE(text.starts_with(reading.text)) << size;
    }
}

// The checksum, at the latest, tells.
TEST(InputBytes, AFlippedByteAfterTheHeadIsAFault) {
    const std::string whole = packed("rate,nper,pv\n0.5%,360,200000\n0.45%,60,18500\n");
    constexpr std::size_t head = 10;
    for (std::size_t at = head; at < whole.size(); ++at) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x40);
        EXPECT_NE(read_all(damaged, 64).fault, "") << at;
    }
}

// ---- Through the command

class PackedTable : public testing::Test {
protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() / ("finance_packed_" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    [[nodiscard]] std::string put(const std::string& name, const std::string& bytes) const {
        std::ofstream{folder_ / name, std::ios::binary} << bytes;
        return (folder_ / name).string();
    }

    std::filesystem::path folder_;
};

const std::string flows = "deal,amount\nA,-100\nA,60\nA,60\nB,-100\nB,120\n";

// IRR of -100, 120 is 0.2 by hand; the search ends within its own tolerance of it.
TEST_F(PackedTable, IsReadByMapAndFoldFromFilesAndPipes) {
    const std::string file = put("flows.csv.gz", packed(flows));
    const std::string map = "map 'SLN(amount, 0, 4) as quarter' --quiet ";
    const std::string mapped = "deal,amount,quarter\nA,-100,-25\nA,60,15\nA,60,15\nB,-100,-25\nB,120,30\n";
    EXPECT_EQ(run_command(map + file).output, mapped);
    EXPECT_EQ(run_command(map + "<" + file).output, mapped);
    const CommandRun fold = run_command("fold 'IRR(amount)' --by deal --quiet " + file);
    EXPECT_EQ(fold.exit_status, 0) << fold.error;
    const std::size_t rate = fold.output.find("\nB,");
    ASSERT_NE(rate, std::string::npos) << fold.output;
    EXPECT_NEAR(std::stod(fold.output.substr(rate + 3)), 0.2, 1e-12);
}

TEST_F(PackedTable, DamageIsToldAfterTheRowsBeforeIt) {
    std::string rows = "amount\n";
    for (int i = 0; i < 100'000; ++i) rows += std::to_string(i * 7919 % 100'003) + '\n';
    const std::string whole = packed(rows);
    const std::string file = put("cut.csv.gz", whole.substr(0, whole.size() / 2));
    const CommandRun run = run_command("map 'SLN(amount, 0, 1) as same' --quiet " + file);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.error, "finance: " + file + " is cut off: its gzip stream does not end\n");
    EXPECT_TRUE(run.output.starts_with("amount,same\n0,0\n7919,7919\n"));
    EXPECT_TRUE(run.output.ends_with('\n'));
}

// 200 MB of one record, in 200 KB of file: no more of it is unpacked than a record may have.
TEST_F(PackedTable, ABombIsRefusedWhereItsRecordIsTooLong) {
    const std::string file = put("bomb.gz", packed("a\n" + std::string(200'000'000, 'x')));
    ASSERT_LT(std::filesystem::file_size(file), 250'000U);
    const std::string shell = "map 'SLN(a, 0, 1)' --quiet " + file;
    const CommandRun run = run_command(shell + "; echo $?");
    EXPECT_NE(run.error.find("is longer than 16777216 bytes"), std::string::npos) << run.error;
    EXPECT_TRUE(run.output.ends_with("1\n")) << run.output;
}

}  // namespace
}  // namespace finance::test
