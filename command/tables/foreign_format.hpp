// Files that hold tables but are no text tables, told by their first bytes.
#pragma once

#include <string_view>

namespace finance::command {

// What such a file is and what to do with it, "is a Parquet file: ..."; empty for anything else.
std::string_view foreign_format(std::string_view beginning);

}  // namespace finance::command
