// Writing to standard output and standard error.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace finance::command {

// At once; whether all of it could be written.
bool write_text(std::FILE* stream, std::string_view text);

// The sentence for an output that refused the last write.
std::string unwritable();

}  // namespace finance::command
