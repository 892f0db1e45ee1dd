// Every call of the system's that a job makes for its files fails once (tests/command/io_faults.cpp): each time there is a
// sentence and status 1, and the old file is as it was; or the fault is of no matter, and the new one is whole.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

namespace fs = std::filesystem;

struct Job {
    const char* id;
    std::string words;  // the table is %t, the output %o
    bool pictures = false;
};

const std::array jobs{
    Job{"map into a file", "map 'PMT(rate, nper, pv)' '%t' --quiet --output '%o'"},
    Job{"map to standard output", "map 'PMT(rate, nper, pv)' '%t' --quiet > '%o'"},
    Job{"map into its own table", "map 'PMT($1, $2, $3)' '%o' --no-header -q -o '%o'"},
    Job{"fold into a file", "fold 'NPV(0.1, pv)' --by id '%t' --quiet -o '%o'"},
    Job{"fold to standard output", "fold 'NPV(0.1, pv)' --by id '%t' --quiet > '%o'"},
    Job{"schedule", "schedule loan 0.005 360 200000 > '%o'"},
    Job{"schedule for programs", "schedule loan 0.005 3600 200000 --csv > '%o'"},
    Job{"schedule drawn", "schedule loan 0.005 12 200000 --plot '%o.svg'", true},
    Job{"plot into a file", "plot 'PMT(r, 12, 1)' r=1..2 --points 20 --output '%o.svg'", true},
    Job{"plot to standard output", "plot 'PMT(r, 12, 1)' r=1..2 --points 20 > '%o.svg'", true},
    Job{"one answer", "PMT 0.005 360 200000 > '%o'"},
};

std::string read_file(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

class IoFaults : public testing::Test {
protected:
    static constexpr std::string_view old_text = "1,2,3\n4,5,6\n";

    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("finance_io_" + std::to_string(getpid()));
        fs::create_directories(folder_);
        std::ofstream table{folder_ / "t.csv"};
        table << "id,rate,nper,pv\n";
        for (int i = 0; i < 20'000; ++i) table << i << ",0.005,360,200000\n";
    }
    void TearDown() override { fs::remove_all(folder_); }

    [[nodiscard]] fs::path output(const Job& job) const {
        return folder_ / "out" / (job.words.find("%o.svg") != std::string::npos ? "o.svg" : "o");
    }

    CommandRun run(const Job& job, const std::string& faults) const {
        std::string words = job.words;
        const auto put = [&](std::string_view mark, const std::string& text) {
            for (auto at = words.find(mark); at != std::string::npos; at = words.find(mark)) {
                words.replace(at, mark.size(), text);
            }
        };
        put("%t", folder_ / "t.csv");
        put("%o", folder_ / "out" / "o");
        fs::remove(trace());
        fs::remove_all(folder_ / "out");
        fs::create_directory(folder_ / "out");
        std::ofstream{output(job)} << old_text;
        fs::permissions(output(job), fs::perms{0646});  // not what the umask gives
        const std::string environment =
            faults.empty() ? "" : "LD_PRELOAD='" IO_FAULTS_LIBRARY "' IO_FAULTS=" + faults + ':' + trace().string();
        return run_command(words, environment);
    }

    [[nodiscard]] fs::path trace() const { return folder_ / "trace"; }
    [[nodiscard]] bool failed() const { return fs::exists(trace()); }

    // After a call that failed with that error, or, with 0, that did not.
    void check(const Job& job, const CommandRun& end, const std::string& whole, int error) const {
        const std::string text = read_file(output(job));
        const auto files = std::distance(fs::directory_iterator{folder_ / "out"}, fs::directory_iterator{});
        EXPECT_EQ(files, 1) << "a file was left behind";
        if (end.exit_status == 0) {
            EXPECT_TRUE(text == whole) << text.size() << " bytes for " << whole.size();
            EXPECT_EQ(end.error, "");
            return;
        }
        EXPECT_EQ(end.exit_status, 1);
        EXPECT_NE(error, 0);
        EXPECT_EQ(end.error.rfind("finance: ", 0), 0U) << end.error;
        EXPECT_NE(end.error.find(std::strerror(error)), std::string::npos) << end.error;
        EXPECT_EQ(std::ranges::count(end.error, '\n'), 1) << end.error;
        if (job.words.find("> '") == std::string::npos) {
            EXPECT_TRUE(text == old_text) << "the old file was touched";
        } else {
            EXPECT_TRUE(whole.starts_with(text)) << "what came was not what should have";
            EXPECT_TRUE(job.pictures || text.empty() || text.ends_with('\n')) << "cut inside of a row";
        }
    }

    // Each call, the first to the last, fails with that error. How often it was made.
    int fail_each(const Job& job, const std::string& call, int error, const std::string& whole) const {
        constexpr int most = 400;
        for (int n = 1; n < most; ++n) {
            SCOPED_TRACE(std::string{job.id} + ", " + call + ' ' + std::to_string(n) + ": " + std::strerror(error));
            const CommandRun end = run(job, call + ':' + std::to_string(n) + ':' + std::to_string(error));
            check(job, end, whole, failed() ? error : 0);
            if (testing::Test::HasFailure()) return n;
            if (!failed()) {
                EXPECT_EQ(end.exit_status, 0);
                return n - 1;
            }
        }
        ADD_FAILURE() << job.id << ": " << call << " has no end";
        return most;
    }

    // What the job writes where nothing fails.
    std::string whole(const Job& job) const {
        const CommandRun end = run(job, "");
        EXPECT_EQ(end.exit_status, 0) << job.id << ": " << end.error;
        std::string text = read_file(output(job));
        EXPECT_NE(text, old_text) << job.id;
        return text;
    }

    fs::path folder_;
};

TEST_F(IoFaults, EachCallFailsOnceInEveryJob) {
    for (const Job& job : jobs) {
        const std::string text = whole(job);
        const bool replaces = job.words.find("> '") == std::string::npos;
        const auto times = [&](const char* call, int error) { return fail_each(job, call, error, text); };
        EXPECT_GE(times("write", ENOSPC), 1) << job.id;
        EXPECT_GE(job.id == jobs[0].id ? times("write", EIO) : 1, 1);
        if (HasFailure()) return;
        EXPECT_EQ(times("fsync", EIO), replaces ? 2 : 0) << job.id << ": the file, its folder";
        EXPECT_EQ(times("rename", EXDEV), replaces ? 1 : 0) << job.id;
        EXPECT_EQ(times("fchmod", EPERM), replaces ? 1 : 0) << job.id;
        EXPECT_GE(times("close", EIO), replaces ? 1 : 0) << job.id;
        EXPECT_GE(times("open", EMFILE), replaces ? 2 : 0) << job.id;
        EXPECT_GE(times("read", EIO), job.pictures ? 1 : 0) << job.id;
        EXPECT_EQ(times("pipe2", EMFILE), job.pictures ? 2 : 0) << job.id;
        EXPECT_EQ(times("memfd_create", ENFILE), job.pictures ? 1 : 0) << job.id;
        EXPECT_EQ(times("posix_spawnp", EAGAIN), job.pictures ? 1 : 0) << job.id;
        if (HasFailure()) return;
    }
}

// Threads that the system does not give are done without; the last run has none at all.
TEST_F(IoFaults, ThreadsThatCannotBeMadeAreDoneWithout) {
    const int threads = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 4);
    for (const Job& job : jobs) {
        const std::string text = whole(job);
        for (const int n : {1, 2, 3, 4, 0}) {
            SCOPED_TRACE(std::string{job.id} + ", thread " + std::to_string(n));
            const CommandRun end = run(job, "pthread_create:" + std::to_string(n) + ':' + std::to_string(EAGAIN));
            const bool makes_them = std::string_view{job.id}.starts_with("map");
            EXPECT_EQ(failed(), makes_them && n <= threads);
            EXPECT_EQ(end.exit_status, 0) << end.error;
            check(job, end, text, 0);
        }
    }
}

// Half of what is written, interruptions, an output that has no room yet: no faults.
TEST_F(IoFaults, WhatIsNoFault) {
    for (const Job& job : jobs) {
        const std::string text = whole(job);
        for (const char* call : {"write", "read", "open", "close", "fsync", "rename", "fchmod"}) {
            for (const int error : {-1, EINTR, EAGAIN}) {
                const bool streams = std::string_view{call} == "write" || std::string_view{call} == "read";
                if (error != EINTR && !streams) continue;
                if (error == EAGAIN && job.pictures) continue;  // gnuplot's pipes wait
                SCOPED_TRACE(std::string{job.id} + ", " + call + ' ' + std::to_string(error));
                const CommandRun end = run(job, std::string{call} + ":0:" + std::to_string(error));
                EXPECT_EQ(end.exit_status, 0) << end.error;
                EXPECT_TRUE(failed() || std::string_view{call} != "write") << "nothing has happened";
                check(job, end, text, 0);
            }
        }
    }
}

}  // namespace
}  // namespace finance::test
