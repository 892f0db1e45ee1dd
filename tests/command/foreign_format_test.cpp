// Files that are no text tables, by the first bytes that their formats document, and headers that look a little alike.
#include "command/tables/foreign_format.hpp"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using namespace std::string_view_literals;

struct FormatCase {
    std::string_view beginning;
    std::string_view word;  // of the sentence; empty: may be a table
};

const std::vector<FormatCase> cases{
    {"PK\x03\x04\x14\0\x06"sv, "zip archive"},
    {"PK\x05\x06\0\0"sv, "empty zip"},
    {"\xD0\xCF\x11\xE0\xA1\xB1"sv, ".xls"},
    {"PAR1\x15\x04"sv, "Parquet"},
    {"ARROW1\0\0"sv, "Arrow"},
    {"\x28\xB5\x2F\xFD\x04"sv, "zstd -dc"},
    {"\xFD\x37\x7A\x58\x5A\x00\x00"sv, "xz -dc"},
    {"BZh91AY&SY\x01"sv, "bzip2 -dc"},
    {"SQLite format 3\0"sv, "SQLite"},
    {"{\"rate\": 0.005}", "JSON"},
    {"{}", "JSON"},
    {"[\n  {\"rate\": 0.005}\n]", "JSON"},
    {"\n [[1, 2]]", "JSON"},
    {"[\"rate\", \"nper\"]", "JSON"},
    {"[]", "JSON"},

    {"", ""},
    {"rate,nper,pv\n", ""},
    {"PAR1,PAR2\n", ""},
    {"PK,name\n", ""},
    {"BZh9,rate\n", ""},
    {"[rate],[nper]\n", ""},
    {"{rate},nper\n", ""},
    {"\"[\",nper\n", ""},
    {"[", ""},
};

TEST(ForeignFormat, IsToldByFirstBytes) {
    std::size_t checked = 0;
    for (const auto& [beginning, word] : cases) {
        const std::string_view sentence = command::foreign_format(beginning);
        EXPECT_EQ(sentence.empty(), word.empty()) << beginning;
        EXPECT_NE(sentence.find(word), std::string_view::npos) << beginning << ": " << sentence;
        ++checked;
    }
    EXPECT_EQ(checked, 24U);
}

TEST(ForeignFormat, IsRefusedByMapAndFold) {
    const CommandRun map = run_command("map 'PMT(rate, nper, pv)' <<'END'\n[{\"rate\": 0.005}]\nEND");
    EXPECT_EQ(map.exit_status, 1);
    EXPECT_EQ(map.output, "");
    EXPECT_EQ(map.error.find("finance: the input is JSON: "), 0U) << map.error;
    const CommandRun fold = run_command("fold 'IRR(amount)' - <<'END'\n{\"amount\": 1}\nEND");
    EXPECT_EQ(fold.exit_status, 1);
    EXPECT_EQ(fold.error.find("finance: the input is JSON: "), 0U) << fold.error;
}

}  // namespace
}  // namespace finance::test
