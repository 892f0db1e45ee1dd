// How many rows a second `finance map` answers, on one core and on two: PMT of a table of eight numeric columns, PRICE of
// seven columns, PMT of three columns of thirty. Beside the first a plain program on one core that only reads the eight
// columns with std::from_chars and writes one with std::to_chars. All read the same files and write a file; best of five
// runs each, in turn.
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <utility>

namespace {

constexpr int columns = 8;
constexpr int runs = 5;

// ---- Tables

class Draws {
public:
    double number(double low, double high) {
        return low + (high - low) * static_cast<double>(random_() >> 11U) * 0x1p-53;
    }
    int whole(int low, int high) { return static_cast<int>(number(low, high + 1)); }

private:
    std::mt19937_64 random_{1};
};

// As printf has it.
template <typename... Values>
void print(std::ofstream& file, const char* format, Values... values) {
    std::array<char, 256> line;
    file.write(line.data(), std::snprintf(line.data(), line.size(), format, values...));
}

void write_numbers(std::ofstream& file, Draws& draw, long rows) {
    file << "id,a,rate,b,nper,c,pv,d\n";
    for (long i = 0; i < rows; ++i) {
        const double a = draw.number(0, 100);
        const double rate = draw.number(0.001, 0.011);
        const double b = draw.number(0, 1);
        const int nper = draw.whole(12, 400);
        const int c = draw.whole(1, 1'000'000);
        const double pv = draw.number(1, 1e6);
        print(file, "%ld,%.3f,%.6f,%.4f,%d,%d,%.2f,%.5f\n", i, a, rate, b, nper, c, pv, draw.number(0, 1));
    }
}

void print_day(std::ofstream& file, Draws& draw, int first_year, int last_year) {
    const int year = draw.whole(first_year, last_year);
    const int month = draw.whole(1, 12);
    print(file, "%d-%02d-%02d,", year, month, draw.whole(1, 28));
}

void write_bonds(std::ofstream& file, Draws& draw, long rows) {
    file << "settlement,maturity,rate,yield,redemption,frequency,basis\n";
    for (long i = 0; i < rows; ++i) {
        print_day(file, draw, 2010, 2024);
        print_day(file, draw, 2026, 2040);
        const double rate = draw.number(0.01, 0.1);
        const double yield = draw.number(0.01, 0.1);
        const int frequency = 1 << draw.whole(0, 2);
        print(file, "%.4f,%.5f,100,%d,%d\n", rate, yield, frequency, draw.whole(0, 4));
    }
}

// Texts and numbers that nobody asks for, and three columns among them.
void write_wide(std::ofstream& file, Draws& draw, long rows) {
    constexpr int rate = 4;
    constexpr int nper = 15;
    constexpr int pv = 26;
    constexpr int last = 29;
    for (int i = 0; i <= last; ++i) {
        print(file, i == rate ? "rate" : i == nper ? "nper" : i == pv ? "pv" : "c%d", i);
        file << (i < last ? ',' : '\n');
    }
    for (long row = 0; row < rows; ++row) {
        for (int i = 0; i <= last; ++i) {
            if (i == rate) {
                print(file, "%.6f", draw.number(0.001, 0.011));
            } else if (i == nper) {
                print(file, "%d", draw.whole(12, 400));
            } else if (i == pv) {
                print(file, "%.2f", draw.number(1, 1e6));
            } else if (i % 7 == 0) {
                print(file, "name of %d", draw.whole(1, 100'000));
            } else {
                print(file, "%.3f", draw.number(0, 1000));
            }
            file << (i < last ? ',' : '\n');
        }
    }
}

struct Table {
    const char* name;
    void (*write)(std::ofstream& file, Draws& draw, long rows);
    const char* call;
    bool numbers = false;  // whether the plain program can read it
};

constexpr std::array tables{
    Table{"PMT, 8 columns", write_numbers, "PMT(rate, nper, pv)", true},
    Table{"PRICE, 7 columns", write_bonds, "PRICE(settlement, maturity, rate, yield, redemption, frequency, basis)"},
    Table{"PMT, 30 columns", write_wide, "PMT(rate, nper, pv)"},
};

// ---- The plain program

// Writes a line with the sum of its fields, so that no reading can be left out.
void plain_line(const char* begin, const char* end, std::string& output) {
    double last = 0.0;
    for (int i = 0; i < columns && begin < end; ++i) {
        double value = 0.0;
        begin = std::from_chars(begin, end, value).ptr + 1;
        last += value;
    }
    std::array<char, 32> text;
    output.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), last).ptr);
    output += '\n';
}

void plain_program(const std::filesystem::path& input, const std::filesystem::path& output) {
    constexpr std::size_t block = std::size_t{256} * 1024;
    const int in = open(input.c_str(), O_RDONLY);
    const int out = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    std::string buffer(block, '\0');
    std::string text;
    std::size_t kept = 0;
    bool header = true;
    for (ssize_t n = 0; (n = read(in, buffer.data() + kept, block - kept)) > 0;) {
        const char* p = buffer.data();
        const char* end = p + kept + static_cast<std::size_t>(n);
        text.clear();
        while (const void* found = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
            const char* newline = static_cast<const char*>(found);
            if (!std::exchange(header, false)) plain_line(p, newline, text);
            p = newline + 1;
        }
        kept = static_cast<std::size_t>(end - p);
        std::memmove(buffer.data(), p, kept);
        if (write(out, text.data(), text.size()) < 0) std::abort();
    }
    close(in);
    close(out);
}

// ---- Times

template <typename Run>
double seconds(Run run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// This process, and so those that it starts, on so many cores.
void use_cores(unsigned count) {
    cpu_set_t cores;
    CPU_ZERO(&cores);
    for (unsigned i = 0; i < count; ++i) CPU_SET(i, &cores);
    if (sched_setaffinity(0, sizeof cores, &cores) != 0) std::exit(1);
}

void report(const char* what, double time, long rows, double other, const char* than) {
    std::printf("  %-26s %7.3f s  %10.0f rows a second", what, time, static_cast<double>(rows) / time);
    than == nullptr ? std::puts("") : std::printf("  %.2f of %s\n", other / time, than);
}

// From before the file is there to when all of it is written, but for what the system does later.
double map_seconds(const std::string& command, const std::filesystem::path& output, unsigned cores) {
    if (std::filesystem::is_regular_file(output)) std::filesystem::remove(output);  // emptying it takes time of its own
    const std::string line = command + " > '" + output.string() + '\'';
    use_cores(cores);
    return seconds([&] {
        if (std::system(line.c_str()) != 0) std::exit(1);
    });
}

void run_table(const Table& table, const std::filesystem::path& folder, long rows) {
    const auto input = folder / "table.csv";
    Draws draw;
    std::ofstream file{input, std::ios::binary};
    table.write(file, draw, rows);
    file.close();
    const std::string command =
        std::string{"'"} + FINANCE_COMMAND + "' map '" + table.call + "' --quiet '" + input.string() + '\'';
    constexpr double never = std::numeric_limits<double>::infinity();
    double plain = never;
    std::array<double, 2> to_file{never, never};  // on one core, and on two
    std::array<double, 2> to_nobody{never, never};
    for (int i = 0; i < runs; ++i) {
        use_cores(1);
        if (table.numbers) plain = std::min(plain, seconds([&] { plain_program(input, folder / "plain.csv"); }));
        for (const unsigned core : {0U, 1U}) {
            to_file[core] = std::min(to_file[core], map_seconds(command, folder / "map.csv", core + 1));
            to_nobody[core] = std::min(to_nobody[core], map_seconds(command, "/dev/null", core + 1));
        }
    }
    std::printf("%s\n", table.name);
    if (table.numbers) report("plain program, one core", plain, rows, plain, nullptr);
    report("one core", to_file[0], rows, plain, table.numbers ? "the plain program" : nullptr);
    report("two cores", to_file[1], rows, to_file[0], "one core");
    report("one core, to /dev/null", to_nobody[0], rows, to_nobody[0], nullptr);
    report("two cores, to /dev/null", to_nobody[1], rows, to_nobody[0], "one core");
}

}  // namespace

int main(int argc, char** argv) {
    const long rows = argc > 1 ? std::atol(argv[1]) : 1000000;
    const auto folder = std::filesystem::temp_directory_path() / ("map_speed_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    for (const Table& table : tables) run_table(table, folder, rows);
    std::filesystem::remove_all(folder);
}
