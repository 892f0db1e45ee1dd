#include "command/outcome.hpp"

#include <cerrno>
#include <cstring>

#include "command/files/descriptors.hpp"

namespace finance::command {

bool write_text(std::FILE* stream, std::string_view text) {
    return std::fflush(stream) == 0 && write_bytes(fileno(stream), text) == text.size();
}

Outcome unwritten() {
    if (errno == EPIPE) return {exit_closed_pipe, "", ""};
    return {exit_refused, "", std::string{"finance: the output cannot be written: "} + std::strerror(errno) + '\n'};
}

}  // namespace finance::command
