// Files that jobs write have their names once they are whole: whatever ends a run before leaves the old one.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

const std::string old_text = "the old one\n";
const std::string table = "rate,nper,pv\n0.005,360,200000\n";
const std::string answered = "rate,nper,pv,pmt\n0.005,360,200000,-1199.1010503055047\n";

std::string read_file(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

class Output : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_output_" + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    fs::path put(const std::string& name, const std::string& text) const {
        std::ofstream{folder_ / name, std::ios::binary} << text;
        return folder_ / name;
    }
    [[nodiscard]] std::string text_of(const std::string& name) const { return read_file(folder_ / name); }
    // In the folder, but for those named.
    [[nodiscard]] std::vector<std::string> others(const std::vector<std::string>& named) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator{folder_}) {
            const std::string name = entry.path().filename();
            if (std::ranges::find(named, name) == named.end()) names.push_back(name);
        }
        return names;
    }
    // Within the folder.
    CommandRun in_folder(const std::string& words) const {
        return run_command(words, "cd '" + folder_.string() + "'; ");
    }
    static CommandRun map(const Output& at, const std::string& rest) {
        return at.in_folder("map 'PMT(rate, nper, pv)' " + rest);
    }

    fs::path folder_;
};

// ---- What ends a run before its end

struct Early {
    const char* id;
    std::string table;
    const char* options;
    const char* error;
};

const Early early_ends[] = {
    {"cut off within quotes", table + "\"0", "", "the input ends within a quoted field"},
    {"binary later on", table + std::string("\0\n", 2), "", "a NUL byte"},
    {"the first refusal", table + "x,1,1\n", "--strict", "stopped at the first refusal"},
};

TEST_F(Output, ATableThatDoesNotComeToItsEndLeavesTheOldFile) {
    for (const Early& row : early_ends) {
        SCOPED_TRACE(row.id);
        put("t.csv", row.table);
        put("out", old_text);
        const CommandRun kept = map(*this, std::string{"t.csv -o out "} + row.options);
        EXPECT_EQ(kept.exit_status, 1);
        EXPECT_EQ(text_of("out"), old_text);
        EXPECT_EQ(kept.error.rfind("finance: map: out is left as it was\n", 0), 0U) << kept.error;
        EXPECT_NE(kept.error.find(row.error), std::string::npos) << kept.error;
        EXPECT_EQ(kept.error.find("answered"), std::string::npos) << "no row has reached the file: " << kept.error;
        const CommandRun fresh = map(*this, std::string{"t.csv -o new "} + row.options);
        EXPECT_EQ(fresh.error.rfind("finance: map: new is not made\n", 0), 0U) << fresh.error;
        EXPECT_EQ(others({"t.csv", "out"}), std::vector<std::string>{});
    }
}

TEST_F(Output, AStrictRunListsWhatStoppedIt) {
    put("t.csv", table + "x,1,1\n");
    EXPECT_EQ(map(*this, "t.csv --strict -o out").error,
              "finance: map: out is not made\n"
              "  line 3: pmt: argument 1 (rate): 'x' is not a number\n"
              "finance: stopped at the first refusal\n");
}

// The table is whole: its refused rows are there, empty.
TEST_F(Output, RefusedRowsAreNoReasonToKeepTheOldOne) {
    put("t.csv", table + "x,1,1\n");
    put("out", old_text);
    const CommandRun run = map(*this, "t.csv -o out");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(text_of("out"), answered + "x,1,1,\n");
    EXPECT_EQ(run.error.rfind("finance: map: 2 rows: 1 answered, 0 missing, 1 refused\n", 0), 0U) << run.error;
}

TEST_F(Output, MayBeTheTableThatIsRead) {
    put("t.csv", table);
    EXPECT_EQ(map(*this, "t.csv -q -o t.csv").exit_status, 0);
    EXPECT_EQ(text_of("t.csv"), answered);
    put("t.csv", table);
    EXPECT_EQ(in_folder("--version >/dev/null; cat t.csv | '" + program() +
                        "' map 'PMT(rate, nper, pv)' -q --output t.csv; sleep 0")
                  .exit_status,
              0);
    EXPECT_EQ(text_of("t.csv"), answered);
    EXPECT_EQ(map(*this, "t.csv >> t.csv").exit_status, 2);
    EXPECT_EQ(text_of("t.csv"), answered);
}

TEST_F(Output, WrongUsageLeavesTheOldFile) {
    put("t.csv", table);
    put("out", old_text);
    EXPECT_EQ(in_folder("map 'PMT(rate, nper, p)' t.csv -o out").exit_status, 2);
    EXPECT_EQ(map(*this, "t.csv -o out --dates never").exit_status, 2);
    EXPECT_EQ(text_of("out"), old_text);
}

// The limit on the size of files stands in for a full disk; its signal is none of the command's.
TEST_F(Output, AFileThatGrowsTooLargeIsNotKept) {
    std::string rows = "rate,nper,pv\n";
    for (int i = 0; i < 10'000; ++i) rows += "0.005,360,200000\n";
    put("t.csv", rows);
    put("out", old_text);
    const CommandRun run =
        run_command("map 'PMT(rate, nper, pv)' t.csv -o out", "cd '" + folder_.string() + "'; ulimit -f 100 && ");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.error, "finance: map: out is left as it was\nfinance: out cannot be written: File too large\n");
    EXPECT_EQ(text_of("out"), old_text);
    EXPECT_EQ(others({"t.csv", "out"}), std::vector<std::string>{});
}

TEST_F(Output, CountsOnlyGroupsThatWereWritten) {
    std::string rows = "id,pv\n";
    for (int i = 0; i < 20'000; ++i) rows += std::to_string(i) + ",1\n";
    put("t.csv", rows);
    const CommandRun run =
        run_command("fold 'NPV(0.1, pv)' --by id t.csv > out", "cd '" + folder_.string() + "'; ulimit -f 200 && ");
    EXPECT_EQ(run.exit_status, 1);
    const auto written = std::ranges::count(text_of("out"), '\n') - 1;
    const long counted = std::stol(run.error.substr(std::string_view{"finance: fold: "}.size()));
    EXPECT_LE(counted, written) << run.error;
    EXPECT_GT(counted, 0) << run.error;
    EXPECT_LT(written, 20'000);
}

// ---- Signals

// A run of map that reads rows from a pipe and has written some of them.
class FedRun {
public:
    FedRun(const fs::path& folder, int ignored) : folder_{folder} {
        const fs::path rows = folder / "rows", out = folder / "out";
        mkfifo(rows.c_str(), 0600);
        process_ = fork();
        if (process_ == 0) {
            if (ignored != 0) std::signal(ignored, SIG_IGN);
            const rlimit no_core{0, 0};
            setrlimit(RLIMIT_CORE, &no_core);
            execl(program().c_str(), "finance", "map", "PMT(rate, nper, pv)", rows.c_str(), "-q", "-o", out.c_str(),
                  nullptr);
            _exit(127);
        }
        pipe_ = open(rows.c_str(), O_WRONLY | O_CLOEXEC);
        give(table);
        for (int i = 0; i < 2000 && !begun(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    ~FedRun() {
        if (pipe_ >= 0) close(pipe_);
    }
    FedRun(const FedRun&) = delete;
    FedRun& operator=(const FedRun&) = delete;

    void give(const std::string& text) const {
        EXPECT_EQ(write(pipe_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    // Whether there is a file beside the old one with rows in it.
    [[nodiscard]] bool begun() const {
        for (const auto& entry : fs::directory_iterator{folder_}) {
            std::error_code gone;
            const bool new_one = entry.path().filename().string().starts_with(".finance.");
            if (new_one && fs::file_size(entry.path(), gone) == answered.size()) return true;
        }
        return false;
    }
    void send(int signal) const { kill(process_, signal); }
    // The status of its end.
    int end() {
        if (pipe_ >= 0) close(pipe_);
        pipe_ = -1;
        int status = 0;
        waitpid(process_, &status, 0);
        return status;
    }

private:
    fs::path folder_;
    pid_t process_ = 0;
    int pipe_ = -1;
};

TEST_F(Output, SignalsThatEndARunLeaveTheOldFile) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGUSR1, SIGXCPU, SIGABRT}) {
        SCOPED_TRACE(strsignal(signal));
        put("out", old_text);
        FedRun run{folder_, 0};
        ASSERT_TRUE(run.begun());
        run.send(signal);
        // It ends by itself, whatever is still to be read.
        int status = 0;
        for (int i = 0; i < 2000 && run.begun(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds{5});
        status = run.end();
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(text_of("out"), old_text);
        fs::remove(folder_ / "rows");
        EXPECT_EQ(others({"out"}), std::vector<std::string>{});
    }
}

TEST_F(Output, SignalsThatEndNothingDoNothing) {
    for (const auto& [signal, ignored] : {std::pair{SIGPIPE, 0}, {SIGXFSZ, 0}, {SIGHUP, SIGHUP}, {SIGINT, SIGINT}}) {
        SCOPED_TRACE(strsignal(signal));
        put("out", old_text);
        FedRun run{folder_, ignored};
        ASSERT_TRUE(run.begun());
        run.send(signal);
        run.give("0.005,360,200000\n");
        EXPECT_EQ(run.end(), 0);
        EXPECT_EQ(text_of("out"), answered + "0.005,360,200000,-1199.1010503055047\n");
        fs::remove(folder_ / "rows");
        EXPECT_EQ(others({"out"}), std::vector<std::string>{});
    }
}

TEST_F(Output, AKilledRunLeavesTheOldFileAndAPart) {
    put("out", old_text);
    FedRun run{folder_, 0};
    ASSERT_TRUE(run.begun());
    run.send(SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(run.end()));
    EXPECT_EQ(text_of("out"), old_text);
    EXPECT_EQ(others({"out", "rows"}).size(), 1U);
}

// ---- What the new file is

TEST_F(Output, HasTheOldOnesRightsElseTheUsualOnes) {
    put("t.csv", table);
    put("out", old_text);
    fs::permissions(folder_ / "out", fs::perms{0604});
    const mode_t before = umask(027);
    EXPECT_EQ(map(*this, "t.csv -q -o out").exit_status, 0);
    EXPECT_EQ(map(*this, "t.csv -q -o new").exit_status, 0);
    umask(before);
    EXPECT_EQ(fs::status(folder_ / "out").permissions(), fs::perms{0604});
    EXPECT_EQ(fs::status(folder_ / "new").permissions(), fs::perms{0640});
    EXPECT_EQ(text_of("out"), answered);
}

TEST_F(Output, HasTheOldOnesOwner) {
    if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
    put("t.csv", table);
    put("out", old_text);
    ASSERT_EQ(chown((folder_ / "out").c_str(), 12, 34), 0);
    EXPECT_EQ(map(*this, "t.csv -q -o out").exit_status, 0);
    struct stat about {};
    ASSERT_EQ(stat((folder_ / "out").c_str(), &about), 0);
    EXPECT_EQ(about.st_uid, 12U);
    EXPECT_EQ(about.st_gid, 34U);
}

TEST_F(Output, LinksStayAndWhatTheyLeadToIsReplaced) {
    put("t.csv", table);
    fs::create_directory(folder_ / "far");
    put("far/out", old_text);
    fs::create_hard_link(folder_ / "far" / "out", folder_ / "further");
    fs::create_symlink("far/middle", folder_ / "link");
    fs::create_symlink("../far/out", folder_ / "far" / "middle");
    fs::create_symlink("far/nothing", folder_ / "dangling");
    EXPECT_EQ(map(*this, "t.csv -q -o link").exit_status, 0);
    EXPECT_EQ(map(*this, "t.csv -q -o dangling").exit_status, 0);
    EXPECT_TRUE(fs::is_symlink(folder_ / "link") && fs::is_symlink(folder_ / "far" / "middle"));
    EXPECT_TRUE(fs::is_symlink(folder_ / "dangling"));
    EXPECT_EQ(text_of("far/out"), answered);
    EXPECT_EQ(text_of("far/nothing"), answered);
    EXPECT_EQ(text_of("further"), old_text) << "a further name keeps the old contents";
}

TEST_F(Output, WhatIsNoFileIsWrittenToAsItStands) {
    put("t.csv", table);
    EXPECT_EQ(map(*this, "t.csv -q -o /dev/null").exit_status, 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(map(*this, "t.csv -q -o /dev/stdout").output, answered);
    EXPECT_EQ(map(*this, "t.csv -q -o /dev/stdout > out").exit_status, 0);
    EXPECT_EQ(text_of("out"), answered);
    EXPECT_EQ(map(*this, "t.csv -q -o /dev/fd/7 7> seven").exit_status, 0);
    EXPECT_EQ(text_of("seven"), answered);
    EXPECT_EQ(map(*this, "t.csv -q -o out >> out").exit_status, 0) << "standard output already";
    EXPECT_EQ(text_of("out"), answered + answered);
    mkfifo((folder_ / "pipe").c_str(), 0600);
    EXPECT_EQ(map(*this, "t.csv -q -o pipe & cat pipe; wait").output, answered);
    EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
    EXPECT_EQ(map(*this, "t.csv -q -o /dev/full").error,
              "finance: /dev/full cannot be written: No space left on device\n");
}

// A file without a name any more: nothing could be put in its place.
TEST_F(Output, AFileThatHasNoNameIsWrittenTo) {
    put("t.csv", table);
    const CommandRun deleted = run_command("map 'PMT(rate, nper, pv)' t.csv -q -o /dev/fd/7; cat <&8",
                                           "cd '" + folder_.string() + "'; echo " + std::string(200, 'x') +
                                               " > gone && exec 7<>gone 8<gone && rm gone && ");
    EXPECT_EQ(deleted.output, answered);
    EXPECT_EQ(others({"t.csv"}), std::vector<std::string>{});
}

struct Refused {
    const char* file;
    const char* error;
};

constexpr Refused refusals[] = {{"nowhere/out", "No such file or directory"},
                                {".", "Is a directory"},
                                {"t.csv/out", "Not a directory"},
                                {"new/", "No such file or directory"},
                                {"circle", "Too many levels of symbolic links"}};

TEST_F(Output, WhatCannotBeWrittenIsSaidAtOnce) {
    put("t.csv", table);
    fs::create_symlink("circle", folder_ / "circle");
    for (const Refused& row : refusals) {
        const CommandRun run = map(*this, std::string{"t.csv -o "} + row.file);
        EXPECT_EQ(run.exit_status, 1) << row.file;
        EXPECT_EQ(run.error, std::string{"finance: "} + row.file + " cannot be written: " + row.error + '\n');
    }
    EXPECT_EQ(others({"t.csv", "circle"}), std::vector<std::string>{});
}

TEST_F(Output, AClosedStandardStreamIsNotTakenForTheFile) {
    put("t.csv", table + "x,1,1\n");
    EXPECT_EQ(map(*this, "t.csv -o out >&- 2>&- <&-").exit_status, 1);
    EXPECT_EQ(text_of("out"), answered + "x,1,1,\n");
}

TEST_F(Output, PicturesReplaceAsTablesDo) {
    put("p.svg", old_text);
    fs::create_symlink("p.svg", folder_ / "link.svg");
    EXPECT_EQ(in_folder("plot 'PMT(r, 12, 1)' r=-2..-1 -o link.svg").exit_status, 1);
    EXPECT_EQ(text_of("p.svg"), old_text);
    EXPECT_EQ(in_folder("plot 'PMT(r, 12, 1)' r=1..2 -o link.svg").exit_status, 0);
    EXPECT_EQ(in_folder("schedule loan 0.01 12 1000 --plot loan.svg").exit_status, 0);
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.svg"));
    EXPECT_NE(text_of("p.svg").find("</svg>"), std::string::npos);
    EXPECT_NE(text_of("loan.svg").find("</svg>"), std::string::npos);
    EXPECT_EQ(others({"p.svg", "link.svg", "loan.svg"}), std::vector<std::string>{});
}

}  // namespace
}  // namespace finance::test
