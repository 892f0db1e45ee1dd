#include "command/pictures/gnuplot.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
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

// An open descriptor.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_{number} {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : number_{std::exchange(other.number_, -1)} {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        reset(std::exchange(other.number_, -1));
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return number_; }
    // Whether it could be closed: some file systems tell only then that there was no room.
    bool reset(int number = -1) {
        const int old = std::exchange(number_, number);
        return old < 0 || close(old) == 0;
    }

private:
    int number_;
};

[[noreturn]] void fail(const std::string& what) { throw PictureError{what + ": " + std::strerror(errno)}; }

bool write_all(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::string read_all(int descriptor) {
    std::string bytes;
    std::array<char, 16'384> buffer;
    for (;;) {
        const ssize_t n = read(descriptor, buffer.data(), buffer.size());
        if (n == 0 || (n < 0 && errno != EINTR)) return bytes;
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

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// What a program started with these three files: its process.
pid_t start_gnuplot(int input, int output, int errors) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, errors, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t broken_pipe;
    sigemptyset(&broken_pipe);
    sigaddset(&broken_pipe, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &broken_pipe);
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
    const File errors{std::tmpfile(), std::fclose};
    if (errors == nullptr) fail("no temporary file for gnuplot");
    Pipe input = open_pipe();
    Pipe output = open_pipe();
    const pid_t process = start_gnuplot(input.reading.number(), output.writing.number(), fileno(errors.get()));
    input.reading.reset();
    output.writing.reset();
    const std::string head =
        std::string{terminal_of(format)}.append(looks).append(format != PictureFormat::characters ? grid : "");
    const bool given = write_all(input.writing.number(), head) && write_all(input.writing.number(), script);
    input.writing.reset();
    std::string picture = read_all(output.reading.number());
    if (ended_well(process) && given && !picture.empty()) {
        return format == PictureFormat::svg ? titled(std::move(picture), titles) : picture;
    }
    stop_if_interrupted();  // gnuplot was, too
    lseek(fileno(errors.get()), 0, SEEK_SET);
    throw PictureError{"gnuplot could not draw the picture: " + first_words(read_all(fileno(errors.get())))};
}

void write_picture(const std::filesystem::path& file, std::string_view picture) {
    const std::string what = shown(file.string()) + " cannot be written";
    Descriptor descriptor{open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)};
    if (descriptor.number() < 0) fail(what);
    const bool written = write_all(descriptor.number(), picture);
    if (descriptor.reset() && written) return;
    const int fault = errno;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(file, ignored)) std::filesystem::remove(file, ignored);
    errno = fault;
    fail(what);
}

}  // namespace finance::command
