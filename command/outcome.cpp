#include "command/outcome.hpp"

#include <cerrno>
#include <cstring>

namespace finance::command {

bool write_text(std::FILE* stream, std::string_view text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    return std::fflush(stream) == 0 && written;
}

Outcome unwritten() {
    if (errno == EPIPE) return {exit_closed_pipe, "", ""};
    return {exit_refused, "", std::string{"finance: the output cannot be written: "} + std::strerror(errno) + '\n'};
}

}  // namespace finance::command
