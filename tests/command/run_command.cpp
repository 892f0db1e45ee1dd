#include "tests/command/run_command.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace finance::test {

namespace {

std::string read_all(std::FILE* stream) {
    std::string text;
    std::array<char, 4096> buffer;
    for (std::size_t n = 0; (n = std::fread(buffer.data(), 1, buffer.size(), stream)) > 0;) {
        text.append(buffer.data(), n);
    }
    return text;
}

std::string read_file(const std::filesystem::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

}  // namespace

std::string program() {
    const char* told = std::getenv("FINANCE_COMMAND");
    return told != nullptr ? told : FINANCE_COMMAND;
}

CommandRun run_command(const std::string& arguments, const std::string& environment) {
    const auto errors = std::filesystem::temp_directory_path() / ("finance_errors_" + std::to_string(getpid()));
    const std::string line = environment + " '" + program() + "' 2>'" + errors.string() + "' " + arguments;
    std::FILE* pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error{"the shell cannot be started"};
    CommandRun run;
    run.output = read_all(pipe);
    const int status = pclose(pipe);
    run.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.error = read_file(errors);
    std::filesystem::remove(errors);
    return run;
}

}  // namespace finance::test
