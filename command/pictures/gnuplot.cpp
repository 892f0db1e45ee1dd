#include "command/pictures/gnuplot.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <utility>

#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/files/descriptors.hpp"
#include "command/files/output_file.hpp"
#include "command/interruption.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr const char* not_installed =
    "pictures are drawn by gnuplot, which is not installed; Debian's package is gnuplot-nox: "
    "apt-get install gnuplot-nox";

bool ends_with(std::string_view file, std::string_view ending) {
    return file.size() > ending.size() && catalogue::same_name(file.substr(file.size() - ending.size()), ending);
}

// ---- Looks

std::string_view terminal_of(PictureFormat format) {
    constexpr std::array<std::string_view, 3> terminals{
        "set terminal svg size 1000,640 dynamic noenhanced font 'sans-serif,14' background rgb 'white'\n",
        "set terminal pngcairo size 1000,640 noenhanced font 'sans-serif,11' background rgb 'white'\n",
        "set terminal dumb size 79,24 noenhanced\n"};
    return catalogue::item_of<PictureFormat::characters>(terminals, format);
}

constexpr std::string_view grid = "set grid linetype 1 linewidth 1 linecolor rgb '#dddddd'\n";

constexpr std::string_view looks =
    "set encoding utf8\n"
    "set border 3 linecolor rgb '#444444'\n"
    "set tics nomirror out\n"
    "set format '%.12g'\n"
    "set key outside center top horizontal reverse Left samplen 3 width 2\n"
    "set samples 2\n";

// ---- Files and processes

[[noreturn]] void fail(const std::string& what) { throw PictureError{what + ": " + std::strerror(errno)}; }

// Appends all that comes; whether its end was reached. An interruption reaches gnuplot, too: it ends then.
bool read_all(int descriptor, std::string& bytes) {
    std::array<char, 16'384> buffer;
    for (;;) {
        const ssize_t n = read(descriptor, buffer.data(), buffer.size());
        if (n == 0) return true;
        if (n < 0 && errno != EINTR) return false;
        if (n > 0) bytes.append(buffer.data(), static_cast<std::size_t>(n));
    }
}

struct Pipe {
    Descriptor reading, writing;
};

Pipe open_pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("gnuplot cannot be started");
    return {Descriptor{ends[0]}, Descriptor{ends[1]}};
}

// What a program started with these three files: its process.
pid_t start_gnuplot(int input, int output, int errors) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, errors, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t ignored;
    sigemptyset(&ignored);
    for (const int signal : {SIGPIPE, SIGXFSZ}) sigaddset(&ignored, signal);
    posix_spawnattr_setsigdefault(&attributes, &ignored);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    std::array<char, 8> name{"gnuplot"};
    std::array<char, 16> defaults{"-d"};  // no start-up file
    const std::array<char*, 3> arguments{name.data(), defaults.data(), nullptr};
    pid_t process = 0;
    errno = posix_spawnp(&process, name.data(), &files, &attributes, arguments.data(), environ);
    const int fault = errno;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    errno = fault;
    if (fault == ENOENT) throw PictureError{not_installed};
    if (fault != 0) fail("gnuplot cannot be started");
    return process;
}

bool ended_well(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string first_words(std::string text) {
    constexpr std::size_t enough = 300;
    for (char& c : text) c = c == '\n' || c == '\t' ? ' ' : c;
    return shown(std::string_view{text}.substr(std::min(text.find_first_not_of(' '), text.size())), enough);
}

// What gnuplot complained of; else what the system did.
std::string why(int errors, int fault) {
    std::string said;
    lseek(errors, 0, SEEK_SET);
    if (read_all(errors, said) && !first_words(said).empty()) return first_words(said);
    return fault != 0 ? std::strerror(fault) : "it does not say why";
}

// gnuplot calls every SVG by its own name, and curves by their data's.
std::string titled(std::string picture, std::span<const std::string> titles) {
    constexpr std::string_view begin = "<title>", end = "</title>";
    std::size_t at = 0;
    for (const std::string& title : titles) {
        at = picture.find(begin, at);
        if (at == std::string::npos) break;
        at += begin.size();
        const std::string text = xml_text(title);
        picture.replace(at, picture.find(end, at) - at, text);
        at += text.size();
    }
    return picture;
}

}  // namespace

std::string xml_text(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '<') {
            result += "&lt;";
        } else if (c == '>') {
            result += "&gt;";
        } else if (c == '&') {
            result += "&amp;";
        } else {
            result += c >= ' ' && c <= '~' ? c : '?';
        }
    }
    return result;
}

PictureFormat picture_format(std::string_view file) {
    if (ends_with(file, ".svg")) return PictureFormat::svg;
    if (ends_with(file, ".png")) return PictureFormat::png;
    throw UsageError{"a picture's file ends in .svg or .png: " + in_quotes(file), "FILE.svg or FILE.png"};
}

std::optional<std::string_view> picture_file(const OptionsGiven& given, std::string_view name) {
    const std::vector<std::string_view> files = given.values(name);
    if (files.empty()) return {};
    (void)picture_format(files.front());
    if (files.size() > 1) throw UsageError{std::string{name} + " is given twice", std::string{name} + " FILE.svg"};
    return files.front();
}

std::string gnuplot_string(std::string_view text) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789 .,:=()/+-_%";
    std::string result = "\"";
    for (const char c : text) {
        const char shown = c >= ' ' && c <= '~' ? c : '?';
        if (plain.find(shown) != std::string_view::npos) {
            result += shown;
            continue;
        }
        const auto octal_digit = [&](int shift) { return static_cast<char>('0' + ((shown >> shift) & 7)); };
        result.append({'\\', octal_digit(6), octal_digit(3), octal_digit(0)});
    }
    return result + '"';
}

std::string gnuplot_number(double value) { return std::isfinite(value) ? catalogue::shortest_text(value) : "NaN"; }

std::string data_block(std::string_view name, std::span<const std::vector<double>> rows) {
    std::string text = '$' + std::string{name} + " << end_of_data\n";
    for (const std::vector<double>& row : rows) {
        for (const double value : row) text.append(gnuplot_number(value)).append(" ");
        text += '\n';
    }
    return text + "end_of_data\n";
}

// gnuplot draws nothing before it has read the last line, so that it never waits for us to read while we write; what it
// complains of goes to a file.
std::string drawn(std::string_view script, PictureFormat format, std::span<const std::string> titles) {
    const Descriptor errors{memfd_create("gnuplot", MFD_CLOEXEC)};
    if (!errors.open()) fail("gnuplot cannot be started");
    Pipe input = open_pipe();
    Pipe output = open_pipe();
    const pid_t process = start_gnuplot(input.reading.number(), output.writing.number(), errors.number());
    input.reading.reset();
    output.writing.reset();
    const std::string head =
        std::string{terminal_of(format)}.append(looks).append(format != PictureFormat::characters ? grid : "");
    const int fault =
        write_bytes(input.writing.number(), head + std::string{script}) < head.size() + script.size() ? errno : 0;
    input.writing.reset();
    std::string picture;
    const int unread = read_all(output.reading.number(), picture) ? 0 : errno;
    output.reading.reset();
    if (ended_well(process) && fault == 0 && unread == 0 && !picture.empty()) {
        return format == PictureFormat::svg ? titled(std::move(picture), titles) : picture;
    }
    stop_if_interrupted();  // gnuplot was, too
    throw PictureError{"gnuplot could not draw the picture: " + why(errors.number(), std::max(fault, unread))};
}

void write_picture(const std::filesystem::path& file, std::string_view picture) {
    OutputFile output{file};
    if (output.write(picture) != picture.size()) output.fail(errno);
    output.keep();
}

}  // namespace finance::command
