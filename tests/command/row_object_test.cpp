// A row's columns as JSON. Expected objects are written down from the rows.
#include "command/tables/row_object.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

struct RowCase {
    std::vector<std::string> names;
    std::string_view row;
    std::string_view object;
};

const std::vector<RowCase> cases{
    {{"rate", "nper"}, "0.5%,360", R"({"rate":"0.5%","nper":"360"})"},
    {{"a", "b"}, R"("1,5","say ""x""")", R"({"a":"1,5","b":"say \"x\""})"},
    {{"a", "b"}, " 1 ,", R"({"a":" 1 ","b":""})"},
    {{"a", "b", "c"}, "1,2", R"({"a":"1","b":"2"})"},
    {{"a"}, "1,2,3", R"({"a":"1","$2":"2","$3":"3"})"},
    {{"a", "a", "", "b"}, "1,2,3,4", R"({"a":"1","$2":"2","$3":"3","b":"4"})"},
    {{"$1", "$2"}, "1,2", R"({"$1":"1","$2":"2"})"},
    {{"line", "result"}, "1,2", R"({"line":"1","result":"2"})"},
};

TEST(RowObject, HasTheColumnsUnderTheirNames) {
    for (const RowCase& row : cases) {
        command::RowObject object{row.names, ','};
        command::Record record;
        ASSERT_TRUE((command::RecordCursor{row.row, ','}.next(record)));
        for (int again = 0; again < 2; ++again) {
            command::JsonText json;
            object.append(json, record);
            EXPECT_EQ(json.str(), row.object) << row.row;
        }
    }
    EXPECT_EQ(cases.size(), 8U);
}

// 100 over 4 periods is 25.
TEST(RowObject, StandsInEveryObjectOfMap) {
    const std::string nothing = R"("argument":null,"rule":null,"message":null,"notes":[]})";
    const CommandRun run = run_command(
        "--json map 'SLN(cost, 0, life) as value' --quiet <<'END'\n"
        "value of;cost;life\ncar;100;4\nEND\n");
    EXPECT_EQ(run.output, R"({"line":2,"row":{"value of":"car","cost":"100","life":"4"},"result":"value",)"
                          R"("calculation":"SLN","status":"answered","value":25,)" +
                              nothing + '\n');
    const CommandRun bare = run_command("--json map 'SLN($1, 0, $2)' --no-header --quiet <<'END'\n100,4\nEND\n");
    EXPECT_EQ(bare.output, R"({"line":1,"row":{"$1":"100","$2":"4"},"result":"sln","calculation":"SLN",)"
                           R"("status":"answered","value":25,)" +
                               nothing + '\n');
}

}  // namespace
}  // namespace finance::test
