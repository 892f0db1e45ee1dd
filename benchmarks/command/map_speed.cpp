// `finance map` of PMT over a table of eight numeric columns, against a plain program that only reads those columns with
// std::from_chars and writes one with std::to_chars. Both read the same file and write a file; best of five runs each,
// in turn. Prints rows a second and the ratio.
#include <fcntl.h>
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

void make_table(const std::filesystem::path& path, long rows) {
    std::mt19937_64 random{1};
    const auto uniform = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random() >> 11U) * 0x1p-53;
    };
    std::ofstream file{path, std::ios::binary};
    file << "id,a,rate,b,nper,c,pv,d\n";
    std::array<char, 160> line;
    for (long i = 0; i < rows; ++i) {
        const int size =
            std::snprintf(line.data(), line.size(), "%ld,%.3f,%.6f,%.4f,%d,%d,%.2f,%.5f\n", i, uniform(0, 100),
                          uniform(0.001, 0.011), uniform(0, 1), static_cast<int>(uniform(12, 400)),
                          static_cast<int>(uniform(1, 1e6)), uniform(1, 1e6), uniform(0, 1));
        file.write(line.data(), size);
    }
}

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

void report(const char* what, double time, long rows) {
    std::printf("%-14s %7.3f s  %10.0f rows a second\n", what, time, static_cast<double>(rows) / time);
}

}  // namespace

int main(int argc, char** argv) {
    const long rows = argc > 1 ? std::atol(argv[1]) : 1000000;
    const auto folder = std::filesystem::temp_directory_path() / ("map_speed_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const auto table = folder / "table.csv";
    make_table(table, rows);
    const std::string command = std::string{"'"} + FINANCE_COMMAND + "' map 'PMT(rate, nper, pv)' --quiet '" +
                                table.string() + "' --output '" + (folder / "map.csv").string() + '\'';
    double plain = std::numeric_limits<double>::infinity();
    double map = plain;
    for (int i = 0; i < runs; ++i) {
        plain = std::min(plain, seconds([&] { plain_program(table, folder / "plain.csv"); }));
        map = std::min(map, seconds([&] {
                           if (std::system(command.c_str()) != 0) std::exit(1);
                       }));
    }
    report("plain program", plain, rows);
    report("finance map", map, rows);
    std::printf("finance map reaches %.2f of the plain program\n", plain / map);
    std::filesystem::remove_all(folder);
}
