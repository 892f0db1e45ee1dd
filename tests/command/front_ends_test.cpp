// One call, told by every front end of the command: alone, in a table, in a group of rows, for machines. Each has its own
// words around the same sentence. The sentences are by hand from the catalogue's rules and failures.
#include <gtest/gtest.h>

#include <string>

#include "catalogue/catalogue.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

struct Case {
    const char* words;             // of a direct call
    const char* call;              // the same in a table; nothing else is read of it
    const char* label;             // "argument 2 (nper): "; "no answer: "; empty: neither
    std::string reason;            // ""; what machines are told, which is null
    const char* status;            // of a direct call
    const char* verdict;           // in a table
    int exit_status;               // of a direct call
    const char* unexplained = "";  // in a table, where the reason is empty
};

std::string failure(const char* name) { return std::string{catalogue::find(name)->failure}; }

const Case cases[] = {
    {"PMT 0.005 2.5 200000", "PMT(0.005, 2.5, 200000)", "argument 2 (nper): ", "2.5 is not a whole number", "refused",
     "refused", 1},
    {"PMT . 12 200000", "PMT(., 12, 200000)", "argument 1 (rate): ", "a value is missing", "refused", "missing", 1},
    {"PMT 0.005 nper= pv=1", "PMT(0.005, nper=, pv=1)", "argument 2 (nper): ", "no value given", "refused", "missing",
     1},
    {"IRR -100 . 60", "IRR(-100, ., 60)", "argument 1 (flows, value 2): ", "a value is missing", "refused", "missing",
     1},
    {"FV 0.1 12 . .", "FV(0.1, 12, ., .)", "argument 4 (pv): ",
     "a value is missing (it must not be missing where pmt is missing too)", "refused", "missing", 1},
    {"YEARFRAC 0 1 never", "YEARFRAC(0, 1, 'never')", "argument 3 (basis): ",
     "'never' is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4", "refused", "refused", 1},
    {"MIRR 100 110 0.1 0.1", "MIRR(100, 110, 0.1, 0.1)", "no answer: ", failure("MIRR"), "refused", "refused", 1},
    {"XIRR 100 100 0 365", "XIRR(100, 100, 0, 365)", "no answer: ",
     "the values do not change sign: a rate needs money paid and money received", "missing", "missing", 0},
    {"EFFECT -13 12", "EFFECT(-13, 12)", "", "", "missing", "missing", 0, "the answer is a missing value"},
};

std::string name_of(const Case& row) { return std::string{row.words}.substr(0, std::string{row.words}.find(' ')); }

std::string table_words(const Case& row) { return row.reason.empty() ? row.unexplained : row.label + row.reason; }

// A field with a comma is quoted.
std::string field(const std::string& text) { return text.find(',') == std::string::npos ? text : '"' + text + '"'; }

TEST(FrontEnds, Alone) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.words);
        const CommandRun run = run_command(row.words);
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, row.exit_status == 0 ? ".\n" : "");
        EXPECT_EQ(run.error,
                  row.reason.empty() ? "" : "finance: " + name_of(row) + ": " + row.label + row.reason + '\n');
    }
}

TEST(FrontEnds, AloneForMachines) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.words);
        const CommandRun run = run_command("--json " + std::string{row.words});
        EXPECT_EQ(run.exit_status, row.exit_status);
        const std::string message = row.reason.empty() ? "null" : '"' + row.reason + '"';
        EXPECT_NE(run.output.find(",\"message\":" + message + ','), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("\"status\":\"" + std::string{row.status} + '"'), std::string::npos) << run.output;
    }
}

CommandRun run_on_table(const Case& row, const std::string& options) {
    return run_command("map \"" + std::string{row.call} + " as r\" " + options + " <<'END'\nx\n1\nEND\n");
}

TEST(FrontEnds, InATable) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.words);
        const CommandRun run = run_on_table(row, "--status");
        const bool refused = row.verdict == std::string{"refused"};
        EXPECT_EQ(run.output, "x,r,r_status\n1,," + field(table_words(row)) + '\n');
        EXPECT_EQ(run.error, refused ? "finance: map: 1 rows: 0 answered, 0 missing, 1 refused\n  line 2: r: " +
                                           table_words(row) + '\n'
                                     : "finance: map: 1 rows: 0 answered, 1 missing, 0 refused\n");
        EXPECT_EQ(run.exit_status, refused ? 1 : 0);
    }
}

TEST(FrontEnds, InATableForMachines) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.words);
        const CommandRun run = run_on_table(row, "--json --quiet");
        const std::string message = row.reason.empty() ? "null" : '"' + row.reason + '"';
        EXPECT_NE(run.output.find(",\"message\":" + message + ','), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("\"status\":\"" + std::string{row.verdict} + '"'), std::string::npos) << run.output;
    }
}

// ---- Groups of rows: calls of lists, their values one below the other

struct GroupCase {
    const char* rows;
    const char* call;
    std::string status;  // what the column says
    const char* verdict;
};

const GroupCase groups[] = {
    {"-100\n.\n60\n", "IRR(x)", "argument 1 (flows, value 2): a value is missing", "missing"},
    {"100\n110\n", "MIRR(x, 0.1, 0.1)", "no answer: " + failure("MIRR"), "refused"},
    {"100\n110\n", "NPV(0, x)", "argument 1 (rate): 0 is not above 0", "refused"},
    {"100\n110\n", "XIRR(x, x)", "no answer: the values do not change sign: a rate needs money paid and money received",
     "missing"},
};

TEST(FrontEnds, InGroups) {
    for (const GroupCase& row : groups) {
        SCOPED_TRACE(row.call);
        const std::string end = std::string{" <<'END'\nx\n"} + row.rows + "END\n";
        const CommandRun run = run_command("fold '" + std::string{row.call} + " as r' --status" + end);
        EXPECT_EQ(run.output, "r,r_status\n," + field(row.status) + '\n');
        const bool refused = row.verdict == std::string{"refused"};
        EXPECT_EQ(run.error,
                  refused ? "finance: fold: 1 groups: 0 answered, 0 missing, 1 refused\n  r: " + row.status + '\n'
                          : "finance: fold: 1 groups: 0 answered, 1 missing, 0 refused\n");
    }
}

}  // namespace
}  // namespace finance::test
