// Whatever a message quotes, a terminal gets no order from it and no line of its own: hostile texts through every door of
// the command. Results keep their bytes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

// No text has a ' or a / (they are words of the shell and names of files), nor a " or a comma (they are cells).
struct HostileText {
    std::string text;
    std::string shown;  // by hand
};

const HostileText hostile_texts[] = {
    {"e\nforged line 1\r\x1b[2J\x07\tf", R"(e\nforged line 1\r\x1B[2J\x07\tf)"},
    {"e\n\x7f\xC2\x9B"
     "31m\xC2\x85\x9B"
     "31m\xFF\xE9t\xE9",
     R"(e\n\x7F\u009B31m\u0085\x9B31m\xFF\xE9t\xE9)"},
    {"e\nforged\xE2\x80\xAE\xE2\x80\xA8\xE2\x81\xA6x\xE2\x82\xACy", "e\\nforged\\u202E\\u2028\\u2066x\xE2\x82\xACy"},
    {"e\n" + std::string(220, 'x'), R"(e\nxxxxxxxxxxxxxxxxxxxxxxxx)"},
};

struct Door {
    std::string words;      // of the shell; # stands for the text
    std::size_t lines = 2;  // on standard error
    std::string table{};    // put into t.csv; # stands for the text
};

const std::string good_table = "a,b,c\n0.01,12,-1000\n";
const std::string three_bad_cells = "a,b,c\n\"#\",12,1\n";

const std::vector<Door> doors{
    // Words of the command line
    {"'#'"},
    {"'-#'"},
    {"'--#'"},
    {"'--digits=#' PMT 1 2 3"},
    {"PMT 1 2 3 --digits '#'"},
    {"list '#'"},
    {"help '#'"},
    {"PMT '--#' 1"},
    {"PMT '#' 2 3"},
    {"PMT '#=1'"},
    {"PMT 1 2 3 4 0 '#'"},
    {"PMT rate=1 '#'"},
    {"PMT nper=1 pv=1 'rate=1+#'"},
    {"PMT nper=1 pv=1 'rate=1+$#'"},
    {"IRR '1,#,2'"},
    {"PRICE '#' 2017-11-15 5.75% 6.5% 100 2"},
    {"YEARFRAC 2008-01-01 2009-01-01 '#'", 1},
    {"'PMT(#,2,3)'"},
    {"'PMT(#=2)'"},
    {"'PMT(1,2,3) #'"},
    {"'PMT(1,2,3)#'"},
    {"'PMT(1,2,\"#\")'"},
    {"'PMT(1,2,'\"'#'\"')'"},
    {"'2 * (1+#)'"},
    {"'2 * \"#\"'"},
    {"'2 * #(1)'"},
    // Files
    {"--module '@/#' PMT 1 2 3", 1},
    {"--module '@/#.so' PMT 1 2 3", 1},  // one that is none
    {"map 'PMT(a,b,c)' '@/#'", 1},
    {"map 'PMT(a,b,d)' '@/#.csv'"},
    {"map 'PMT(a,b,c)' '@/#.gz'", 1},
    {"map 'PMT(a,b,c)' '@/t.csv' --output '@/#/t.csv'", 1},
    {"map 'PMT(a,b,c)' '@/#.csv' --output '@/#.csv/t'", 1},
    {"plot 'PMT(r,360,1)' r=0.01..0.02 --output '#'"},
    {"plot 'PMT(r,360,1)' r=0.01..0.02 --output '@/#/t.svg'", 1},
    // Calls over tables
    {"map '#' '@/t.csv'"},
    {"map '#(a)' '@/t.csv'"},
    {"map 'PMT(#,b,c)' '@/t.csv'"},
    {"map 'PMT(\"#\",b,c)' '@/t.csv'"},
    {"map 'PMT(a,b,'\"'#'\"')' '@/t.csv'"},
    {"map 'PMT(1+\"#\",b,c)' '@/t.csv'"},
    {"map 'PMT(a,b,c) as \"#\"' '@/t.csv'", 2, "\"#\",a,b,c\n1,0.01,12,1\n"},
    {"map 'PMT(\"#\",b,c)' '@/t.csv'", 2, "\"#\",b,c,\"#\"\n1,2,3,4\n"},
    {"map 'PMT(\"z#\",b,c)' '@/t.csv'", 2, "\"#\",b,c\n1,2,3\n"},  // did you mean
    {"map 'PMT(1+e,b,c)' '@/t.csv'", 2, "\"e #\",b,c\n1,2,3\n"},   // needs quotation marks
    {"map 'PMT(a,b,c)' '@/t.csv' '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' '--#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --skip '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --delimiter '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --decimal '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --numbers '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --dates '#'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --where '\"#\" > 1'"},
    {"map 'PMT(a,b,c)' '@/t.csv' --where 'a # 1'"},
    // Cells
    {"map 'PMT(a,b,c)' '@/t.csv'", 2, three_bad_cells},
    {"map '1 + a' '@/t.csv'", 2, three_bad_cells},
    {"map 'PMT(a,b,c) as d, 1 + d' '@/t.csv'", 2, three_bad_cells},
    {"map 'YEARFRAC(c,b,a)' '@/t.csv'", 2, three_bad_cells},
    {"map 'COUPNUM(a,b,2)' '@/t.csv' --dates dmy", 2, three_bad_cells},
    {"map 'PMT(a,b,c) as \"#\"' '@/t.csv'", 2, three_bad_cells},
    {"map 'PMT(a,b,c) as \"#\", 1 + \"#\" as d' '@/t.csv'", 2, "a,b,c\n0.01,1.5,1\n"},
    {"map 'PMT(0.01,b,c)' '@/t.csv' --where 'a > 1'", 2, three_bad_cells},
    {"map 'PMT(0.01,b,c)' '@/t.csv' --where '\"#\" > 1'", 2, "\"#\",b,c\nx,12,1\n"},
    {"fold 'IRR(b)' --by a '@/t.csv'", 2, "a,b\n\"#\",1\n\"#\",2\n"},
    {"fold 'IRR(a)' '@/t.csv'", 2, three_bad_cells},
    {"fold 'IRR(\"#\")' '@/t.csv'", 2, "\"#\",b,c\nx,12,1\n"},
    {"fold 'IRR(b)' --by '#' '@/t.csv'"},
    {"fold 'IRR(b)' --by '\"#\"' '@/t.csv'"},
    {"fold 'IRR(b) as \"#\"' --by a '@/t.csv'"},
    // Schedules and pictures
    {"schedule '#'"},
    {"schedule loan nper=2 pv=3 'rate=#'"},
    {"schedule loan '#=1'"},
    {"schedule loan rate=1 nper=2 pv=3 --plot '#'"},
    {"plot 'PMT(r,360,1)' '#'"},
    {"plot 'PMT(r,360,1)' '#=1..2'"},
    {"plot 'PMT(r,360,1)' 'r=#..2'"},
    {"plot 'PMT(r,360,1)' 'r=1..#'"},
    {"plot 'PMT(#,360,r)' r=1..2"},
    {"plot '#(r,360,1)' r=1..2"},
    {"plot 'PMT(r,360,1)' r=0.01..0.02", 1},  // what gnuplot says
};

std::string filled(std::string text, const std::string& hostile, const std::string& folder) {
    for (const auto& [mark, value] : {std::pair{'#', hostile}, std::pair{'@', folder}}) {
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size())) {
            text.replace(at, 1, value);
        }
    }
    return text;
}

// The first thing that a terminal would not just show; "" where there is none.
std::string order_in(std::string_view text) {
    const auto has = [&](std::string_view bytes) { return text.find(bytes) != std::string_view::npos; };
    const auto is_control = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\n') || byte == 0x7F;
    };
    if (std::ranges::any_of(text, is_control)) return "a control character";
    for (unsigned char c1 = 0x80; c1 < 0xA0; ++c1) {
        if (has(std::string{'\xC2', static_cast<char>(c1)})) return "a C1 control character";
    }
    for (const char* const turn : {"\xE2\x80\xA8", "\xE2\x80\xAE", "\xE2\x81\xA6"}) {
        if (has(turn)) return "a character that parts or turns lines";
    }
    for (const char* const raw : {"\xFF", "m\xE9", "1m\x9B"}) {
        if (has(raw)) return "a byte that is no UTF-8";
    }
    return {};
}

class HostileTexts : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_hostile_" + std::to_string(getpid()));
        fs::create_directories(folder_ / "bin");
        path_ = std::getenv("PATH");
        setenv("PATH", (folder_ / "bin:").string().append(path_).c_str(), 1);
    }
    void TearDown() override {
        setenv("PATH", path_.c_str(), 1);
        fs::remove_all(folder_);
    }

    void put(const fs::path& name, const std::string& text) const {
        std::ofstream{folder_ / name, std::ios::binary} << text;
    }

    // Files of that name, and a gnuplot that says it.
    void lay_out(const std::string& text) const {
        if (text.size() < 200) {
            for (const char* const ending : {".csv", ".so", ".gz"}) put(text + ending, good_table);
            put(text + ".gz", "\x1f\x8b\x08 no more");
        }
        put("bin/said", text);
        const std::string said = (folder_ / "bin/said").string();
        put("bin/gnuplot", "#!/bin/sh\ncat >/dev/null\necho picture\ncat '" + said + "' >&2\nexit $GNUPLOT_STATUS\n");
        fs::permissions(folder_ / "bin/gnuplot", fs::perms::owner_all);
    }

    fs::path folder_;
    std::string path_;
};

// gnuplot draws where the picture cannot be written.
void set_gnuplot_status(const Door& door) { setenv("GNUPLOT_STATUS", door.words.ends_with(".svg'") ? "0" : "1", 1); }

// Line feeds of gnuplot's are blanks.
bool quotes(const std::string& error, const std::string& shown) {
    const auto has = [&](const std::string& text) { return error.find(text) != std::string::npos; };
    return has(shown.substr(0, 8)) || has("e " + shown.substr(3, 5));
}

bool names_a_file(const Door& door) { return door.words.find("@/#") != std::string::npos; }

TEST_F(HostileTexts, GetsThroughNoDoor) {
    std::size_t checked = 0;
    for (const HostileText& hostile : hostile_texts) {
        lay_out(hostile.text);
        for (const Door& door : doors) {
            if (names_a_file(door) && hostile.text.size() > 200) continue;  // with a folder it could be too long
            set_gnuplot_status(door);
            put("t.csv", filled(door.table.empty() ? good_table : door.table, hostile.text, ""));
            const CommandRun run = run_command(filled(door.words, hostile.text, folder_.string()));
            const std::string where = door.words + " with " + hostile.shown + ": " + run.error;
            EXPECT_NE(run.exit_status, 0) << where;
            EXPECT_EQ(order_in(run.error), "") << where;
            EXPECT_EQ(run.error.find("\nforged"), std::string::npos) << where;
            EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(run.error, '\n')), door.lines) << where;
            EXPECT_TRUE(quotes(run.error, hostile.shown)) << where;
            EXPECT_LE(run.error.size(), 1'000U) << where;
            ++checked;
        }
    }
    EXPECT_GE(checked, 4 * doors.size() - 10);
}

TEST_F(HostileTexts, ObjectsHaveNoControls) {
    int checked = 0;
    for (const HostileText& hostile : hostile_texts) {
        lay_out(hostile.text);
        for (const Door& door : doors) {
            if (names_a_file(door)) continue;
            set_gnuplot_status(door);
            put("t.csv", filled(door.table.empty() ? good_table : door.table, hostile.text, ""));
            const CommandRun run = run_command(filled(door.words, hostile.text, folder_.string()) + " --json");
            EXPECT_EQ(order_in(run.error), "") << door.words;
            for (const char c : run.output) {
                const auto byte = static_cast<unsigned char>(c);
                EXPECT_TRUE((byte >= 0x20 && byte != 0x7F) || c == '\n') << door.words << ": " << run.output;
            }
            EXPECT_EQ(run.output.find("\xC2\x9B"), std::string::npos) << door.words << ": " << run.output;
            ++checked;
        }
    }
    EXPECT_GT(checked, 200);
}

// A script is lines: a text has no line feed.
TEST_F(HostileTexts, GetsThroughNoScript) {
    int checked = 0;
    for (const std::string line : {"PMT \x1b[2J 2 3", "\x1b[2J", "\xC2\x9B(1)", "r\x1b[2J = 5", "r = \x1b[2J", "?\x9B",
                                   "list \x1b[2J", "--\x1b[2J", "\x1b[2J + 1", "PMT(\x1b[2J, 2, 3)"}) {
        put("script", line + '\n');
        const CommandRun run = run_command("< '" + (folder_ / "script").string() + "'");
        EXPECT_NE(run.exit_status, 0) << line;
        EXPECT_EQ(order_in(run.error), "") << run.error;
        EXPECT_EQ(std::ranges::count(run.error, '\n'), 1) << run.error;
        ++checked;
    }
    EXPECT_EQ(checked, 10);
}

// Columns are carried over as they are, whatever they hold.
TEST_F(HostileTexts, ResultsKeepTheirBytes) {
    for (const HostileText& hostile : hostile_texts) {
        const std::string row = "\"" + hostile.text + "\",0.01,1,-1.01";
        put("t.csv", "name,a,b,c\n" + row + '\n');
        const std::string table = "'" + (folder_ / "t.csv").string() + "' --quiet";
        const CommandRun mapped = run_command("map 'PV(a,b,c)' " + table);
        EXPECT_EQ(mapped.output, "name,a,b,c,pv\n" + row + ",1\n");
        const CommandRun folded = run_command("fold 'NPV(a,c)' --by name " + table);
        EXPECT_EQ(folded.output, "name,npv\n\"" + hostile.text + "\",-1\n");
    }
}

}  // namespace
}  // namespace finance::test
