// Lines above a table's header, passed over by --skip. Lines are counted by hand.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "command/tables/table_reader.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

struct SkipCase {
    const char* id;
    std::string_view text;
    std::size_t skip;
    std::string_view rest;
    std::uint64_t first_line;
};

const std::vector<SkipCase> cases{
    {"nothing", "a,b\n1,2\n", 0, "a,b\n1,2\n", 1},
    {"one line", "Loans of 2024\na,b\n1,2\n", 1, "a,b\n1,2\n", 2},
    {"an empty line too", "Loans of 2024\r\n\r\na,b\r\n1,2\r\n", 2, "a,b\r\n1,2\r\n", 3},
    {"an open quotation mark", "the 3\" loans, \"all\na,b\n", 1, "a,b\n", 2},
    {"after a byte-order mark", "\xEF\xBB\xBFTitle\na\n", 1, "a\n", 2},
    {"a mark of UTF-16 after the byte-order mark is text", "\xEF\xBB\xBF\xFF\xFE\na\n", 1, "a\n", 2},
    {"a mark of UTF-16 in the second line", "Title\n\xFF\xFE\na\n", 2, "a\n", 3},
    {"a byte-order mark in a long line",
     "0123456789\xEF\xBB\xBF"
     "0123456789\na\n",
     1, "a\n", 2},
    {"a byte-order mark in the second line",
     "Title\n\xEF\xBB\xBF"
     "a\n",
     1,
     "\xEF\xBB\xBF"
     "a\n",
     2},
    {"a long line", "a title that is longer than most of the blocks\na\n", 1, "a\n", 2},
    {"no line feed at the end", "Title\na", 1, "a", 2},
    {"more than there are", "Title\n", 3, "", 2},
    {"a last line without line feed", "Title", 1, "", 1},
};

TEST(SkipLines, LeavesTheRestWhateverTheBlockSize) {
    for (const SkipCase& row : cases) {
        for (std::size_t block = 1; block <= 64; ++block) {
            const int file = memfd_create("table", 0);
            ASSERT_EQ(pwrite(file, row.text.data(), row.text.size(), 0), static_cast<ssize_t>(row.text.size()));
            command::TableReader reader{file, "t", {.block = block}};
            reader.skip_lines(row.skip);
            reader.peek();
            std::string rest;
            command::Block read;
            for (bool first = true; reader.next(read); first = false) {
                const std::uint64_t least = row.first_line + (first ? 0 : 1);
                EXPECT_TRUE(first ? read.first_line == least : read.first_line >= least)
                    << row.id << ", blocks of " << block;
                rest += read.text();
            }
            EXPECT_EQ(rest, row.rest) << row.id << ", blocks of " << block;
            close(file);
        }
    }
    EXPECT_EQ(cases.size(), 13U);
}

const std::string titled = "<<'END'\nLoans, \"all of them\n\ncost;life\n100;4\n100;0\nEND\n";

// 100 over 4 periods is 25; the refused row stands on the fifth line of the input.
TEST(SkipLines, MapAndFoldBeginWithTheHeader) {
    const CommandRun map = run_command("map 'SLN(cost, 0, life) as part' --skip 2 " + titled);
    EXPECT_EQ(map.output, "cost;life;part\n100;4;25\n100;0;\n");
    EXPECT_NE(map.error.find("line 5: part: argument 3 (life)"), std::string::npos) << map.error;
    const CommandRun fold = run_command("fold 'NPV(100%, cost) as value' --quiet --skip=2 " + titled);
    EXPECT_EQ(fold.output, "value\n75\n");
    const CommandRun bare = run_command("map 'SLN($1, 0, 4) as part' --no-header --quiet --skip 3 " + titled);
    EXPECT_EQ(bare.output, "100;4;25\n100;0;25\n");
}

TEST(SkipLines, WhatIsNoTableAfterwardsIsRefused) {
    const CommandRun over = run_command("map 'SLN(cost, 0, life)' --skip 50 " + titled);
    EXPECT_EQ(over.exit_status, 1);
    EXPECT_EQ(over.error, "finance: the input has no line after those skipped\n");
    const CommandRun none = run_command("map 'SLN(cost, 0, life)' --skip two " + titled);
    EXPECT_EQ(none.exit_status, 2);
    EXPECT_NE(none.error.find("--skip is a whole number from 0 to 1000000, not 'two'"), std::string::npos);
}

}  // namespace
}  // namespace finance::test
