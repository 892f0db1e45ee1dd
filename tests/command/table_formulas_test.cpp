// Arithmetic and conditions in map and fold, the built command on tables. Expected by hand: (cost - salvage) / life,
// flows divided by powers of 2, sums and products of whole numbers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* assets =
    "kind,cost,scrap value,life,net-rate,bought\n"
    "car,1000,200,4,5%,2024-01-31\n"
    "\"o'van, old\",500,100,8,2%,2023-06-30\n"
    "desk,300,,3,.,2024-02-29\n";

constexpr const char* flows =
    "deal,amount,rate,day\n"
    "a,-100,100%,2024-01-01\n"
    "b,64,100%,2024-01-02\n"
    "a,300,100%,2025-01-01\n"
    "b,16,100%,2025-01-02\n";

class TableFormulas : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_formulas_" + std::to_string(getpid()));
        fs::create_directories(folder_);
        std::ofstream{folder_ / "assets.csv"} << assets;
        std::ofstream{folder_ / "flows.csv"} << flows;
    }
    void TearDown() override { fs::remove_all(folder_); }

    // job: "map 'CALLS' [OPTION...]", the shell's text; the file goes last.
    [[nodiscard]] CommandRun run(const std::string& job, const std::string& file) const {
        return run_command(std::string{job}.append(" --quiet '").append(folder_ / file).append("'"));
    }

    fs::path folder_;
};

struct Case {
    const char* id;
    const char* job;
    const char* file;
    int exit_status;
    const char* output;  // without the columns of the table
};

// The text behind the table's own columns.
std::string results_of(const std::string& output, const std::string& table) {
    std::string results;
    std::size_t out = 0;
    for (std::size_t in = 0; in < table.size(); in = table.find('\n', in) + 1) {
        const std::string own = table.substr(in, table.find('\n', in) - in);
        if (output.compare(out, own.size(), own) != 0) continue;  // left out
        const std::size_t end = output.find('\n', out);
        results.append(output, out + own.size(), end + 1 - out - own.size());
        out = end + 1;
    }
    return out == output.size() ? results : std::string{"not the rows of the table: "}.append(output);
}

constexpr Case maps[] = {
    {"arguments", "map 'SLN(cost*2, \"scrap value\"+100, life/2) as a'", "assets.csv", 0, ",a\n,850\n,200\n,\n"},
    {"a column that looks like arithmetic", "map 'SLN(cost, 0, net-rate) as a, \"net-rate\"*100 as b'", "assets.csv", 0,
     ",a,b\n,20000,5\n,25000,2\n,,\n"},
    {"columns with blanks as they stand", "map 'SLN(cost, scrap value, LIFE) as a'", "assets.csv", 0,
     ",a\n,200\n,50\n,\n"},
    {"later ones use earlier ones", "map 'SLN(cost, 0, life) as yearly, yearly*life as all, all-cost as none'",
     "assets.csv", 0, ",yearly,all,none\n,250,1000,0\n,62.5,500,0\n,100,300,0\n"},
    {"an earlier result as an argument", "map 'cost/2 as half, SLN(half, 0, life) as a, SLN(HALF, 0, life)'",
     "assets.csv", 0, ",half,a,sln\n,500,125,125\n,250,31.25,31.25\n,150,50,50\n"},
    {"a result without a name", "map 'SLN(cost, 0, life), sln/2 as half'", "assets.csv", 0,
     ",sln,half\n,250,125\n,62.5,31.25\n,100,50\n"},
    {"a formula without a name", "map 'cost*life'", "assets.csv", 0, ",cost*life\n,4000\n,4000\n,900\n"},
    {"functions", "map 'max(cost, 400) as a, min(life, 5, cost) as b, round(cost/7, 1) as c, abs(-life) as d'",
     "assets.csv", 0, ",a,b,c,d\n,1000,4,142.9,4\n,500,5,71.4,8\n,400,3,42.9,3\n"},
    {"dates", "map 'YEARFRAC(bought, bought+365, act/365) as a, bought - 2024-01-31 as b, 2024-01-31+life as c'",
     "assets.csv", 0, ",a,b,c\n,1,0,2024-02-04\n,1,-215,2024-02-08\n,1,29,2024-02-03\n"},
    {"missing values", "map '\"scrap value\"*0 as a, max(1, \"net-rate\") as b'", "assets.csv", 0,
     ",a,b\n,0,1\n,0,1\n,,\n"},
    {"constants", "map '2^3^2 as a, -2^2 as b, SLN(100*10, 0, 4) as c'", "assets.csv", 0,
     ",a,b,c\n,512,-4,250\n,512,-4,250\n,512,-4,250\n"},
    {"columns by number", "map '$2/$4 as a'", "assets.csv", 0, ",a\n,250\n,62.5\n,100\n"},

    {"a refusal goes on", "map 'SLN(cost, 0, life-4) as a, a*2 as b' --status", "assets.csv", 1,
     ",a,a_status,b,b_status\n,,argument 3 (life): 0 is not above 0,,a has no answer\n,125,,250,\n"
     ",,argument 3 (life): -1 is not above 0,,a has no answer\n"},
    {"a field that is no number", "map 'SLN(cost, 0, kind*2) as a, kind+1 as b' --status", "assets.csv", 1,
     ",a,a_status,b,b_status\n,,argument 3 (life): 'car' is neither a number nor a date,,'car' is neither a number "
     "nor a date\n,,\"argument 3 (life): 'o'van, old' is neither a number nor a date\",,\"'o'van, old' is neither a "
     "number nor a date\"\n,,argument 3 (life): 'desk' is neither a number nor a date,,'desk' is neither a number nor "
     "a "
     "date\n"},

    {"where numbers", "map 'life as a' --where 'cost > 300 and life < 8'", "assets.csv", 0, ",a\n,4\n"},
    {"where texts", "map 'life as a' --where 'kind = \"car\" or kind != \"desk\"'", "assets.csv", 0, ",a\n,4\n,8\n"},
    {"where a text has a comma and a mark", "map 'life as a' --where 'kind = \"o'\"'\"'van, old\"'", "assets.csv", 0,
     ",a\n,8\n"},
    {"where percent and quoted names", "map 'life as a' --where '\"net-rate\" >= 5% or \"scrap value\" = 100'",
     "assets.csv", 0, ",a\n,4\n,8\n"},
    {"where dates", "map 'life as a' --where 'bought >= 2024-01-31'", "assets.csv", 0, ",a\n,4\n,3\n"},
    {"where missing", "map 'life as a' --where '\"scrap value\" = .'", "assets.csv", 0, ",a\n,3\n"},
    {"where not missing", "map 'life as a' --where 'not \"scrap value\" = .'", "assets.csv", 0, ",a\n,4\n,8\n"},
    {"a missing value is not less", "map 'life as a' --where 'not \"scrap value\" > 100'", "assets.csv", 0, ",a\n,8\n"},
    {"several conditions", "map 'life as a' --where 'cost > 300' --where 'life > 4'", "assets.csv", 0, ",a\n,8\n"},
    {"none is taken", "map 'life as a' --where 'cost > 1e6'", "assets.csv", 0, ",a\n"},
    {"nobody knows", "map 'life as a' --where 'cost > 300 and kind > 1' --status", "assets.csv", 1,
     ",a,a_status\n,,--where: kind: 'car' is neither a number nor a date\n,,\"--where: kind: 'o'van, old' is neither a "
     "number nor a date\"\n,,--where: kind: 'desk' is neither a number nor a date\n"},
};

TEST_F(TableFormulas, Map) {
    for (const Case& row : maps) {
        const CommandRun done = run(row.job, row.file);
        EXPECT_EQ(done.exit_status, row.exit_status) << row.id << done.error;
        EXPECT_EQ(results_of(done.output, assets), row.output) << row.id << done.error;
    }
}

constexpr Case folds[] = {
    {"lists", "fold 'NPV(100%, amount*2) as a' --by deal", "flows.csv", 0, "deal,a\na,50\nb,72\n"},
    {"a shared value", "fold 'NPV(rate*3, amount/16) as a' --by deal", "flows.csv", 0,
     "deal,a\na,-0.390625\nb,1.0625\n"},
    {"of results", "fold 'NPV(rate, amount) as a, -a*2 as b, SLN(1,2,b)'", "flows.csv", 2, ""},
    {"of results and shared columns", "fold 'NPV(rate, amount) as a, a*2+rate as b' --by deal", "flows.csv", 0,
     "deal,a,b\na,25,51\nb,36,73\n"},
    {"a result as an argument", "fold 'NPV(rate, amount) as a, NPV(a/a, amount) as b' --by deal", "flows.csv", 0,
     "deal,a,b\na,25,25\nb,36,36\n"},
    {"where", "fold 'NPV(rate, amount) as a' --by deal --where 'deal = \"b\" and amount > 20'", "flows.csv", 0,
     "deal,a\nb,32\n"},
    {"a value that changes", "fold 'NPV(rate, amount) as a, a*amount as b' --by deal --where 'deal = \"a\"'",
     "flows.csv", 1, "deal,a,b\na,25,\n"},
    {"a refusal goes on", "fold 'NPV(rate-1, amount) as a, a*2 as b' --by deal --status --where 'deal = \"a\"'",
     "flows.csv", 1, "deal,a,a_status,b,b_status\na,,argument 1 (rate): 0 is not above 0,,a has no answer\n"},
    {"a field that is no number", "fold 'NPV(rate, deal*2) as a' --status --where 'amount = 64'", "flows.csv", 1,
     "a,a_status\n,line 3: 'b' is neither a number nor a date\n"},
    {"a list of results", "fold 'NPV(rate, amount) as a, NPV(rate, a) as b'", "flows.csv", 2, ""},
    {"nobody knows", "fold 'NPV(rate, amount) as a' --where 'deal > 1'", "flows.csv", 1, "a\n"},
};

TEST_F(TableFormulas, Fold) {
    for (const Case& row : folds) {
        const CommandRun done = run(row.job, row.file);
        EXPECT_EQ(done.exit_status, row.exit_status) << row.id << done.error;
        EXPECT_EQ(done.output, row.output) << row.id << done.error;
    }
}

TEST_F(TableFormulas, ObjectsSayTheSame) {
    const CommandRun done = run("--json map 'SLN(cost, 0, life-4) as a, a*2 as b' --where 'life != 3'", "assets.csv");
    const std::string car =
        "{\"line\":2,\"row\":{\"kind\":\"car\",\"cost\":\"1000\",\"scrap value\":\"200\",\"life\":\"4\","
        "\"net-rate\":\"5%\",\"bought\":\"2024-01-31\"},";
    const std::string van =
        "{\"line\":3,\"row\":{\"kind\":\"o'van, old\",\"cost\":\"500\",\"scrap value\":\"100\",\"life\":\"8\","
        "\"net-rate\":\"2%\",\"bought\":\"2023-06-30\"},";
    EXPECT_EQ(
        done.output,
        car +
            "\"result\":\"a\",\"calculation\":\"SLN\",\"status\":\"refused\",\"value\":null,\"argument\":"
            "{\"position\":3,\"name\":\"life\"},\"rule\":\"number, must be above 0\",\"message\":\"0 is not above 0\","
            "\"notes\":[]}\n" +
            car +
            "\"result\":\"b\",\"calculation\":null,\"status\":\"refused\",\"value\":null,\"argument\":null,"
            "\"rule\":null,\"message\":\"a has no answer\",\"notes\":[]}\n" +
            van +
            "\"result\":\"a\",\"calculation\":\"SLN\",\"status\":\"answered\",\"value\":125,\"argument\":"
            "null,\"rule\":null,\"message\":null,\"notes\":[]}\n" +
            van +
            "\"result\":\"b\",\"calculation\":null,\"status\":\"answered\",\"value\":250,\"argument\":null,"
            "\"rule\":null,\"message\":null,\"notes\":[]}\n");
}

struct WrongCase {
    const char* calls;
    const char* sentence;
};

constexpr WrongCase wrongs[] = {
    {"SLN(cots/2, 0, 1)", "SLN: cost: t has no column 'cots' (did you mean cost?), in 'cots/2'"},
    {"SLN(cost/, 0, 1)", "SLN: cost: a value is expected at the end of 'cost/'"},
    {"SLN(cost, 0, b), b*2 as c", "t has no column 'b'"},
    {"SLN(cost, 0, 1) as a, a*b", "t has no column 'b', at 'b' of 'a*b'"},
    {"scrap value*2", "t has no column 'scrap' (\"scrap value\" needs its quotation marks), in 'scrap value*2'"},
    {"2*net-rate", "t has no column 'net' (\"net-rate\" needs its quotation marks), at 'net-rate' of '2*net-rate'"},
    {"cost = 2", "a comparison is for --where, not at '= 2' of 'cost = 2'"},
    {"SLN(cost, 0, SLN(1,2,3))",
     "SLN: life: SLN cannot stand within a call or a formula: name its result, and go on with the name, in "
     "'SLN(1,2,3)'"},
    {"SLN(cost, 0, life) as a, 2*b as a", "t has no column 'b', at 'b' of '2*b'"},
    {"SLN(cost, 0, 2024-01-31+1)", "SLN: life: '2024-01-31+1' is a date"},
};

TEST_F(TableFormulas, WrongUsagePointsIntoTheFormula) {
    for (const WrongCase& row : wrongs) {
        const CommandRun done = run(std::string{"map '"}.append(row.calls).append("'"), "assets.csv");
        std::string error = done.error.substr(0, done.error.find('\n'));
        const std::string name = (folder_ / "assets.csv").string();
        const std::size_t at = error.find(name);
        if (at != std::string::npos) error.erase(at, name.size()).insert(at, 1, 't');
        EXPECT_EQ(done.exit_status, 2) << row.calls;
        EXPECT_EQ(error, std::string{"finance: "}.append(row.sentence)) << row.calls;
    }
    EXPECT_EQ(run("map 'life' --where 'life >'", "assets.csv").error,
              "finance: --where: a value is expected at the end of 'life >'\ntry: finance help map\n");
}

// 700 rows are more than two blocks.
TEST_F(TableFormulas, ManyRows) {
    std::ofstream table{folder_ / "many.csv"};
    std::string expected = "n,m,a,b\n";
    table << "n,m\n";
    for (int i = 1; i <= 700; ++i) {
        const std::string row = std::to_string(i).append(",").append(std::to_string(700 - i));
        table << row << '\n';
        if (i % 2 != 0 && i <= 600) continue;
        expected.append(row).append(",").append(std::to_string(i * 2 - 1)).append(",");
        expected.append(std::to_string(i * 4)).append("\n");
    }
    table.close();
    const CommandRun done =
        run("map 'n*2-1 as a, a*2+2 as b' --where 'n > 600 or n - 2*round((n-0.5)/2) = 0'", "many.csv");
    EXPECT_EQ(done.exit_status, 0);
    EXPECT_EQ(done.output, expected);
}

}  // namespace
}  // namespace finance::test
