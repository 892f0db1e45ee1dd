// `finance map`, the built command on tables. The payment of 200000 at 0.5 % over 360 periods is the closed form at 60
// digits (expected_values.py); coupon dates and day counts are by hand.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

const std::string data = TEST_DATA;
const std::string payment = "-1199.1010503055047";

std::string read_file(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

class Map : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_map_" + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    // The path, quoted for the shell.
    std::string put(const std::string& name, const std::string& text) const {
        std::ofstream{folder_ / name, std::ios::binary} << text;
        return quoted(name);
    }
    [[nodiscard]] std::string quoted(const std::string& name) const {
        return std::string{"'"}.append(folder_ / name).append("'");
    }
    [[nodiscard]] std::string text_of(const std::string& name) const { return read_file(folder_ / name); }

    CommandRun map(const std::string& table, const std::string& options = "--quiet",
                   const std::string& calls = "PMT(rate, nper, pv)") const {
        return run_command("map '" + calls + "' " + table + ' ' + options);
    }

    fs::path folder_;
};

TEST_F(Map, RowsKeepEveryByteAndSayWhyTheyHaveNoResult) {
    const CommandRun run =
        run_command("map 'COUPNCD(settlement, maturity, frequency) as next, DOLLARDE(coupon rate, 16)' '" + data +
                    "/bonds.csv' --status");
    const std::string wrong_count = "the row has 3 fields where the table has 6";
    const std::string no_date =
        "\"argument 2 (maturity): '15.11.2017' is not a date: year-month-day as in 2008-02-15, or days since "
        "1960-01-01; --dates dmy reads 2017-11-15\"";
    EXPECT_EQ(run.exit_status, 1);
    std::istringstream lines{run.output};
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "name,settlement,maturity,coupon rate,basis,frequency,next,next_status,dollarde,dollarde_status");
    const auto expect = [&](const std::string& start, const std::string& end) {
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(line.substr(0, start.size()), start);
        EXPECT_EQ(line.substr(line.size() - std::min(line.size(), end.size())), end);
    };
    expect("A,2008-02-15,2017-11-15,0.0575,30/360,2,2008-05-15,,0.", ",");
    expect("\"B, \"\"second\"\"\",2008-02-15,2017-11-15,5.75%,30/360,2,2008-05-15,,0.", ",");
    expect("C,2008-02-15,2017-11-15,0.0575,30/360,2.5,,argument 3 (frequency): 2.5 is not a whole number,0.", ",");
    expect("D,2008-02-15,2017-11-15,,30/360,2,2008-05-15,,,argument 1 (", "): a value is missing");
    expect("E,2008-02-15,2017-11,,,,," + wrong_count + ",,", wrong_count);
    expect("F,2008-02-15,15.11.2017,0.0575,30/360,2,," + no_date + ",0.", ",");
    expect("\"two", "\"two");
    expect("lines\",2008-02-15,2017-11-15,0.0575,30/360,2,2008-05-15,,0.", ",");
    expect("H,2008-02-15,2017-11-15,-0.0575,30/360,2,2008-05-15,,", "");
    EXPECT_FALSE(std::getline(lines, line));
    EXPECT_EQ(run.error.rfind("finance: map: 8 rows: 4 answered, 1 missing, 3 refused\n"
                              "  line 4: next: argument 3 (frequency): 2.5 is not a whole number\n"
                              "  line 6: the row has 3 fields where the table has 6\n"
                              "  line 7: next: argument 2 (maturity): '15.11.2017' is not a date",
                              0),
              0U)
        << run.error;
}

TEST_F(Map, AnswersAreThoseOfSingleCalls) {
    const CommandRun single = run_command("PRICE 2008-02-15 2017-11-15 5.75% 6.5% 100 2");
    const CommandRun run = run_command(
        "map 'PRICE(settlement, maturity, \"coupon rate\", 6.5%, 100, frequency, basis)' '" + data + "/bonds.csv'");
    EXPECT_NE(run.output.find(",2," + single.output), std::string::npos) << run.output;
    EXPECT_NE(run.error.find("line 10: price: argument 3 (rate): -0.0575 is not above 0"), std::string::npos)
        << "the record with two lines counts two" << run.error;
}

TEST_F(Map, WindowsFilesStayAsTheyAre) {
    const CommandRun run = map("'" + data + "/loans_windows.csv'");
    EXPECT_EQ(run.exit_status, 0) << run.error;
    EXPECT_EQ(run.output, "\xEF\xBB\xBFid;rate;nper;pv;pmt\r\n1;0.005;360;200000;" + payment +
                              "\r\n2; 0.5% ;\"360\";2e5;" + payment + "\r\n3;0.005;360;200000;" + payment + "\r\n");
}

TEST_F(Map, TabsAndMissingValues) {
    const CommandRun run = map("'" + data + "/loans.tsv'", "");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, "id\trate\tnper\tpv\tpmt\n1\t0.005\t360\t200000\t" + payment + "\n2\t.\t360\t200000\t\n");
    EXPECT_EQ(run.error, "finance: map: 2 rows: 1 answered, 1 missing, 0 refused\n");
}

TEST_F(Map, StandardInputAndOutputFile) {
    const std::string table = "rate\tnper\tpv\n0.005\t360\t200000\n";
    const std::string answered = "rate\tnper\tpv\tpmt\n0.005\t360\t200000\t" + payment + "\n";
    EXPECT_EQ(map("- < " + put("t", table)).output, answered) << "tabs guessed from the header";
    EXPECT_EQ(map("--output " + quoted("out") + " --quiet < " + quoted("t"), "").output, "");
    EXPECT_EQ(text_of("out"), answered);
}

TEST_F(Map, WithoutHeader) {
    const std::string table = put("t.csv", "0.005,360,200000\n0.005,360,.\n");
    EXPECT_EQ(map(table, "--no-header --quiet", "PMT($1, $2, pv=$3), PMT($1,$2,1) as p").output.substr(0, 37),
              "0.005,360,200000," + payment + ',');
    const CommandRun named = map(table, "--no-header");
    EXPECT_EQ(named.exit_status, 2);
    EXPECT_EQ(named.output, "");
}

TEST_F(Map, AToldDelimiter) {
    EXPECT_EQ(map(put("t.csv", "rate|nper|pv\n0.005|360|200000\n"), "--quiet --delimiter '|'").output,
              "rate|nper|pv|pmt\n0.005|360|200000|" + payment + "\n");
}

TEST_F(Map, EmptyLinesAreNoRows) {
    const CommandRun run = map(put("t.csv", "rate,nper,pv\n\n0.005,360,200000\n\n"), "");
    EXPECT_EQ(run.output, "rate,nper,pv,pmt\n\n0.005,360,200000," + payment + "\n\n");
    EXPECT_EQ(run.error, "finance: map: 1 rows: 1 answered, 0 missing, 0 refused\n");
    EXPECT_EQ(map(put("one.csv", "x\n\n3\n"), "--quiet", "SLN(x, 0, 1)").output, "x,sln\n,\n3,3\n")
        << "but in a table of one column they are";
}

TEST_F(Map, StrictStopsBeforeTheFirstRefusal) {
    std::string table = "rate,nper,pv\n";
    for (int i = 0; i < 20000; ++i) table += i == 15000 ? "0.005,x,200000\n" : "0.005,360,200000\n";
    const CommandRun run = map(put("t.csv", table), "--strict");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(std::ranges::count(run.output, '\n'), 15001);
    EXPECT_EQ(run.output.substr(run.output.size() - payment.size() - 1), payment + '\n');
    EXPECT_EQ(run.error,
              "finance: map: 15001 rows: 15000 answered, 0 missing, 1 refused\n"
              "  line 15002: pmt: argument 2 (nper): 'x' is not a number\n"
              "finance: stopped at the first refusal\n");
}

TEST_F(Map, ManyRowsInOrder) {
    std::string table = "id,rate,nper,pv\n";
    std::string expected = "id,rate,nper,pv,pmt\n";
    for (int i = 0; i < 100000; ++i) {
        const std::string row = std::to_string(i) + ",0.005,360,200000";
        table += row + '\n';
        expected += row + ',' + payment + '\n';
    }
    const CommandRun run = map(put("t.csv", table), "");
    EXPECT_TRUE(run.output == expected) << "some of " << run.output.size() << " bytes differ";
    EXPECT_EQ(run.error, "finance: map: 100000 rows: 100000 answered, 0 missing, 0 refused\n");
}

// Rows are worked on many at a time: whatever a row is, those around it stay what they are alone. Thirteen kinds of row,
// so that each comes at every place among rows that are worked on together.
TEST_F(Map, EachRowIsWhatItIsAlone) {
    const std::vector<std::string> rows{
        "0.005,360,200000,\"ACTUAL\"",  "0.005,x,200000,1",        "0.005,360,200000", "",
        "0.005,360,200000,4",           "-1,360,200000,0",         ".,360,200000,0",   "0.005,360,200000,\"ACT/\"\"\"",
        "0.005,360,200000,nonsense",    "\"0.005\",360,1,act/360", "1,1,1,1,1,1",      "0.005,2.5,200000,",
        "0.005,360,\"200000\",\"\"\"\""};
    const std::string calls = "PMT(rate, nper, pv), YEARFRAC(nper, pv, basis)";
    for (const char* option : {"--quiet", "--quiet --status", "--quiet --json"}) {
        std::vector<std::string> alone;
        std::string table;
        std::string expected;
        for (const std::string& row : rows) {
            const std::string output = map(put("t.csv", "rate,nper,pv,basis\n" + row + '\n'), option, calls).output;
            alone.push_back(output.substr(output.starts_with('{') ? 0 : output.find('\n') + 1));
        }
        for (std::size_t i = 0; i < 4000; ++i) {
            table += rows[i % rows.size()] + '\n';
            std::string line = alone[i % rows.size()];
            const std::string first = R"({"line":2,)";
            for (auto at = line.find(first); at != std::string::npos; at = line.find(first, at + 1)) {
                line.replace(at, first.size(), R"({"line":)" + std::to_string(i + 2) + ',');
            }
            expected += line;
        }
        const std::string output = map(put("t.csv", "rate,nper,pv,basis\n" + table), option, calls).output;
        EXPECT_TRUE(output.ends_with(expected)) << option << ": some of " << output.size() << " bytes differ";
        EXPECT_GT(expected.size(), 4000U * 20);
    }
}

TEST_F(Map, StrictStopsAnywhere) {
    for (const int refused : {0, 1, 254, 255, 256, 257, 511, 512, 600}) {
        std::string table = "rate,nper,pv\n";
        std::string expected = "rate,nper,pv,pmt\n";
        for (int i = 0; i < 700; ++i) {
            table += i == refused ? "0,1,1\n" : "0.005,360,200000\n";
            if (i < refused) expected += "0.005,360,200000," + payment + '\n';
        }
        const CommandRun run = map(put("t.csv", table), "--strict");
        EXPECT_EQ(run.output, expected) << refused;
        EXPECT_EQ(run.error, "finance: map: " + std::to_string(refused + 1) + " rows: " + std::to_string(refused) +
                                 " answered, 0 missing, 1 refused\n  line " + std::to_string(refused + 2) +
                                 ": pmt: argument 1 (rate): 0 is not above 0\n"
                                 "finance: stopped at the first refusal\n");
    }
}

TEST_F(Map, FirstRefusalsAreListed) {
    std::string table = "rate,nper,pv\n";
    for (int i = 0; i < 8; ++i) table += "0,1,1\n";
    const CommandRun run = map(put("t.csv", table), "");
    EXPECT_EQ(run.error,
              "finance: map: 8 rows: 0 answered, 0 missing, 8 refused\n"
              "  line 2: pmt: argument 1 (rate): 0 is not above 0\n"
              "  line 3: pmt: argument 1 (rate): 0 is not above 0\n"
              "  line 4: pmt: argument 1 (rate): 0 is not above 0\n"
              "  line 5: pmt: argument 1 (rate): 0 is not above 0\n"
              "  line 6: pmt: argument 1 (rate): 0 is not above 0\n"
              "  and 3 more\n");
}

// ---- Bad input

struct BadCase {
    const char* id;
    std::string table;
    int exit_status;
    const char* output;
    const char* error;  // what standard error ends with, %: the table's path
};

const BadCase bad_tables[] = {
    {"empty", "", 1, "", "finance: % is empty\n"},
    {"only a header", "rate,nper,pv\n", 0, "rate,nper,pv,pmt\n", ""},
    {"no such column", "rat,nper,pv\n1,1,1\n", 2, "",
     "finance: % has no column 'rate' (did you mean rat?)\ntry: finance help map\n"},
    {"binary from the start",
     std::string("\x7f"
                 "ELF\0\0\n",
                 7),
     1, "", "finance: %, line 1: a NUL byte: this is a binary file, not a table of text\n"},
    {"binary, delimiters of all kinds",
     std::string("\x7F"
                 "a,;\0\t\n",
                 8),
     1, "", "finance: %, line 1: a NUL byte: this is a binary file, not a table of text\n"},
    {"binary later on", std::string("rate,nper,pv\n0,1,1\n\0,1,1\n", 25), 1, "rate,nper,pv,pmt\n0,1,1,\n",
     "finance: %, line 3: a NUL byte: this is a binary file, not a table of text\n"},
    {"cut off within quotes", "rate,nper,pv\n0,1,1\n0,\"1,1\n0,1,1\n", 1, "rate,nper,pv,pmt\n0,1,1,\n",
     "finance: %, line 3: the input ends within a quoted field; it may be cut off\n"},
    {"carriage returns alone", "rate,nper,pv\r1,1,1\r", 1, "",
     "finance: %: lines end in carriage returns alone; convert them to line feeds first\n"},
    {"UTF-16", std::string("\xFF\xFEr\0a\0", 6), 1, "", "finance: % is UTF-16: convert it to UTF-8 first\n"},
};

TEST_F(Map, BadTables) {
    for (const BadCase& row : bad_tables) {
        SCOPED_TRACE(row.id);
        const CommandRun run = map(put("t.csv", row.table));
        std::string error = row.error;
        if (const auto place = error.find('%'); place != std::string::npos) {
            error.replace(place, 1, (folder_ / "t.csv").string());
        }
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, row.output);
        EXPECT_EQ(run.error, error);
    }
}

TEST_F(Map, ALongRecordWorksOrIsNamed) {
    const std::string head = "note,rate,nper,pv\n";
    const std::string row = ",0.005,360,200000";
    const std::string note(10'000'000, 'x');
    EXPECT_TRUE(map(put("t.csv", head + note + row + '\n')).output ==
                "note,rate,nper,pv,pmt\n" + note + row + ',' + payment + '\n');
    const CommandRun over = map(put("t.csv", head + 'y' + row + '\n' + std::string(100'000'000, 'x') + row + '\n'));
    EXPECT_EQ(over.exit_status, 1);
    EXPECT_EQ(over.output, "note,rate,nper,pv,pmt\ny" + row + ',' + payment + '\n');
    EXPECT_EQ(over.error, "finance: " + (folder_ / "t.csv").string() +
                              ", line 3: this record is longer than 16777216 bytes; is a quotation mark not closed?\n");
}

TEST_F(Map, AFullDiskFails) {
    const CommandRun full = map(put("t.csv", "rate,nper,pv\n0.005,360,200000\n"), "> /dev/full");
    EXPECT_EQ(full.exit_status, 1);
    EXPECT_NE(full.error.find("finance: the output cannot be written: No space left on device\n"), std::string::npos)
        << full.error;
}

// A limit on the size of files stands in for a disk that fills up within a record.
TEST_F(Map, AFileThatIsFullEndsWithAWholeRow) {
    std::string table = "rate,nper,pv\n";
    for (int i = 0; i < 10000; ++i) table += "0.005,360,200000\n";
    const std::string path = put("t.csv", table);
    const rlimit tight{.rlim_cur = 100'001, .rlim_max = RLIM_INFINITY};
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const CommandRun run = map(path, "--quiet > " + quoted("out"));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_NE(run.error.find("cannot be written: File too large"), std::string::npos) << run.error;
    const std::string written = text_of("out");
    EXPECT_EQ(written.size(), 99'991U);
    EXPECT_LE(written.size(), 100'001U);
    EXPECT_EQ(written.substr(written.size() - payment.size() - 1), payment + '\n');
}

TEST_F(Map, AClosedPipeEndsInSilenceAClosedOutputDoesNot) {
    std::string table = "rate,nper,pv\n";
    for (int i = 0; i < 100000; ++i) table += "0.005,360,200000\n";
    const std::string path = put("t.csv", table);
    const CommandRun run = map(path, "| head -n 1");
    const CommandRun closed = map(path, ">&-");
    EXPECT_EQ(run.output, "rate,nper,pv,pmt\n");
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(closed.exit_status, 1);
    EXPECT_NE(closed.error.find("finance: the output cannot be written: Bad file descriptor\n"), std::string::npos);
}

// A producer that waits for its rows to be answered gets them.
TEST_F(Map, RowsAreAnsweredWhileTheInputIsStillOpen) {
    const std::string fifo = quoted("rows");
    const CommandRun run = run_command("--version > /dev/null; mkfifo " + fifo +
                                       "; ('" FINANCE_COMMAND "' map 'PMT(rate,nper,pv)' --quiet < " + fifo + " > " +
                                       quoted("out") + ") & exec 7> " + fifo +
                                       "; printf 'rate,nper,pv\\n0.005,360,200000\\n' >&7; "
                                       "for i in $(seq 100); do sleep 0.05; grep -q 0.005 " +
                                       quoted("out") + " && break; done; cat " + quoted("out") + "; exec 7>&-; wait");
    EXPECT_EQ(run.output, "rate,nper,pv,pmt\n0.005,360,200000," + payment + "\n");
}

// ---- Memory and wrong usage

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif
#else
constexpr bool sanitized = false;
#endif

// The most that the command has had in memory, in KiB; -1 where it failed.
long peak_memory(const std::string& table) {
    const pid_t child = fork();
    if (child == 0) {
        execl(FINANCE_COMMAND, "finance", "map", "PMT(rate, nper, pv)", table.c_str(), "--quiet", "--output",
              "/dev/null", nullptr);
        _exit(127);
    }
    int status = -1;
    rusage used{};
    return wait4(child, &status, 0, &used) == child && status == 0 ? used.ru_maxrss : -1;
}

TEST_F(Map, MemoryStaysFlat) {
    if (sanitized) GTEST_SKIP() << "sanitizers keep memory of their own";
    std::string rows;
    for (int i = 0; i < 50000; ++i) rows += "0.005,360,200000\n";
    {
        std::ofstream file{folder_ / "t.csv", std::ios::binary};
        file << "rate,nper,pv\n";
        for (int i = 0; i < 100; ++i) file << rows;
    }
    ASSERT_EQ(fs::file_size(folder_ / "t.csv"), 85'000'013U);
    const long peak = peak_memory((folder_ / "t.csv").string());
    EXPECT_GT(peak, 0);
    EXPECT_LT(peak, 32L * 1024);
}

struct UsageCase {
    const char* words;
    const char* error;
};

constexpr UsageCase wrong_usages[] = {
    {"map", "finance: map: the calls are missing, as in 'PMT(rate, nper, pv)'\ntry: finance help map\n"},
    {"map 'SLN(1,0,1)' a b", "finance: map: one table at a time, not 'b' as well\ntry: finance help map\n"},
    {"map 'SLN(1,0,1)' --outptu a",
     "finance: map: no option is called --outptu (did you mean --output?)\ntry: finance help map\n"},
    {"map 'SLN(1,0,1)' --output", "finance: map: --output needs a value\ntry: finance help map\n"},
    {"map 'SLN(1,0,1)' --strict=1", "finance: map: --strict takes no value\ntry: finance help map\n"},
    {"map 'SLN(1,0,1)' --delimiter x",
     "finance: fields cannot be separated by 'x'\ntry: --delimiter comma, tab, semicolon, or one character\n"},
    {"map 'SLN(1,0,1)' --by a", "finance: map: no option is called --by\ntry: finance help map\n"},
    {"map 'SLN(1,0'", "finance: ',' or ')' is expected at the end of the calls\ntry: finance help map\n"},
};

// The table first, as other programs have it, or alone: nothing is waited for from standard input.
TEST_F(Map, TheCallsComeBeforeTheTable) {
    const std::string table = put("loans.csv", "rate,nper,pv\n0.005,360,200000\n");
    const std::string error = "finance: map: '" + (folder_ / "loans.csv").string() +
                              "' is a file: the calls come before the table\ntry: finance help map\n";
    for (const std::string& words : {"map " + table, "map " + table + " 'PMT(rate, nper, pv)'"}) {
        const CommandRun run = run_command(words);
        EXPECT_EQ(run.exit_status, 2);
        EXPECT_EQ(run.error, error);
    }
}

// Values: 0.005 a period over 360 of 200000, as above. The rule is the catalogue's.
TEST_F(Map, ObjectsForMachines) {
    const std::string table = put("loans.csv", "rate,nper,pv\n0.005,360,200000\n\n0.005,2.5,1\nx,1,1\n.,1,1\n1,1\n");
    const std::string nothing = R"("rule":null,"message":null,"notes":[]})";
    const CommandRun run = map(table, "--json --quiet", "PMT(rate, nper, pv), SLN(pv, 0, 1) as line");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.error, "");
    std::istringstream lines{run.output};
    const auto expect = [&](const std::string& wanted) {
        std::string line;
        ASSERT_TRUE(std::getline(lines, line)) << wanted;
        EXPECT_EQ(line, wanted);
    };
    expect(
        R"({"line":2,"row":{"rate":"0.005","nper":"360","pv":"200000"},"result":"pmt","calculation":"PMT","status":"answered","value":)" +
        payment + R"(,"argument":null,)" + nothing);
    expect(
        R"({"line":2,"row":{"rate":"0.005","nper":"360","pv":"200000"},"result":"line","calculation":"SLN","status":"answered","value":200000,"argument":null,)" +
        nothing);
    expect(
        R"({"line":4,"row":{"rate":"0.005","nper":"2.5","pv":"1"},"result":"pmt","calculation":"PMT","status":"refused","value":null,)"
        R"("argument":{"position":2,"name":"nper"},"rule":"whole number, must be at least 1",)"
        R"("message":"2.5 is not a whole number","notes":[]})");
    expect(
        R"({"line":4,"row":{"rate":"0.005","nper":"2.5","pv":"1"},"result":"line","calculation":"SLN","status":"answered","value":1,"argument":null,)" +
        nothing);
    expect(
        R"({"line":5,"row":{"rate":"x","nper":"1","pv":"1"},"result":"pmt","calculation":"PMT","status":"refused","value":null,)"
        R"("argument":{"position":1,"name":"rate"},"rule":"number, must be above 0",)"
        R"("message":"'x' is not a number","notes":[]})");
    expect(
        R"({"line":5,"row":{"rate":"x","nper":"1","pv":"1"},"result":"line","calculation":"SLN","status":"answered","value":1,"argument":null,)" +
        nothing);
    expect(
        R"({"line":6,"row":{"rate":".","nper":"1","pv":"1"},"result":"pmt","calculation":"PMT","status":"missing","value":null,)"
        R"("argument":{"position":1,"name":"rate"},"rule":"number, must be above 0",)"
        R"("message":"a value is missing","notes":[]})");
    expect(
        R"({"line":6,"row":{"rate":".","nper":"1","pv":"1"},"result":"line","calculation":"SLN","status":"answered","value":1,"argument":null,)" +
        nothing);
    const std::string misfit = R"("status":"refused","value":null,"argument":null,"rule":null,)"
                               R"("message":"the row has 2 fields where the table has 3","notes":[]})";
    expect(R"({"line":7,"row":{"rate":"1","nper":"1"},"result":"pmt","calculation":"PMT",)" + misfit);
    expect(R"({"line":7,"row":{"rate":"1","nper":"1"},"result":"line","calculation":"SLN",)" + misfit);
    EXPECT_TRUE(std::istream::traits_type::eq_int_type(lines.peek(), EOF));
}

TEST_F(Map, WrongUsage) {
    for (const UsageCase& row : wrong_usages) {
        const CommandRun run = run_command(std::string{row.words} + " < /dev/null");
        EXPECT_EQ(run.exit_status, 2) << row.words;
        EXPECT_EQ(run.output, "") << row.words;
        EXPECT_EQ(run.error, row.error) << row.words;
    }
}

TEST_F(Map, AFileThatIsNotThere) {
    const CommandRun run = map("/nowhere/t.csv");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.error, "finance: /nowhere/t.csv cannot be opened: No such file or directory\n");
    EXPECT_NE(map("/").error.find("cannot be read: Is a directory\n"), std::string::npos);
    const CommandRun folder = map(put("t.csv", "rate,nper,pv\n"), "--output /nowhere/out");
    EXPECT_EQ(folder.exit_status, 1);
    EXPECT_EQ(folder.error, "finance: /nowhere/out cannot be written: No such file or directory\n");
}

TEST_F(Map, Help) {
    const CommandRun help = run_command("help map");
    EXPECT_EQ(help.exit_status, 0);
    EXPECT_NE(help.output.find("finance map 'CALL(ARGUMENT, ...) [as NAME], ...' [FILE]"), std::string::npos);
    EXPECT_EQ(run_command("map --help").output, help.output);
    EXPECT_NE(run_command("help").output.find("  finance map "), std::string::npos);
}

TEST(MapAnswers, ThatDoNotHoldAreEmptyAndCountedApart) {
    const std::string table = "<<'END'\nn,a,p,f\n60,-400,20000,0\n120,-200,0,30000\n60,-100,0,8000\n1,-1,inf,0\nEND\n";
    const CommandRun run = run_command("map 'RATE(n, a, p, f) as r, PMT(1%, n, p) as m' " + table);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_NE(run.output.find("\n120,-200,0,30000,,"), std::string::npos) << run.output;
    EXPECT_EQ(run.error.substr(0, run.error.find('\n')),
              "finance: map: 4 rows: 1 answered, 0 missing, 2 do not solve, 1 too large, 0 refused");
    const CommandRun strict = run_command("map 'RATE(n, a, p, f) as r' --strict --quiet " + table);
    EXPECT_EQ(strict.exit_status, 1);
    EXPECT_EQ(strict.output.find("\n120"), std::string::npos) << "it stops there";
}

}  // namespace
}  // namespace finance::test
