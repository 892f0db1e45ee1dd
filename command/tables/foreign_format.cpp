#include "command/tables/foreign_format.hpp"

#include <algorithm>
#include <array>

namespace finance::command {

namespace {

using namespace std::string_view_literals;

struct Format {
    std::string_view mark;
    std::string_view sentence;
};

constexpr std::array formats{
    Format{"PK\x03\x04"sv,
           "is a zip archive, as .xlsx and .ods workbooks are: export the sheet as CSV, or unpack the archive"},
    Format{"PK\x05\x06"sv, "is an empty zip archive"},
    Format{"\xD0\xCF\x11\xE0"sv, "is an old workbook (.xls): export the sheet as CSV"},
    Format{"PAR1\x15"sv, "is a Parquet file: write it as CSV first, or use the functions inside DuckDB or NumPy"},
    Format{"ARROW1\0"sv, "is an Arrow file: write it as CSV first, or use the functions inside DuckDB or NumPy"},
    Format{"\x28\xB5\x2F\xFD"sv, "is packed by zstd: unpack it first, as in zstd -dc FILE | finance map ..."},
    Format{"\xFD\x37zXZ\0"sv, "is packed by xz: unpack it first, as in xz -dc FILE | finance map ..."},
    Format{"BZh91AY&SY"sv, "is packed by bzip2: unpack it first, as in bzip2 -dc FILE | finance map ..."},
    Format{"SQLite format 3\0"sv, "is an SQLite database: use the functions inside SQLite, or export a table as CSV"},
};

constexpr std::string_view json =
    "is JSON: write its objects as CSV first, a line each, as in jq -r '.[] | [.rate, .nper] | @csv'";

std::string_view after_blanks(std::string_view text) {
    return text.substr(std::min(text.size(), text.find_first_not_of(" \t\r\n")));
}

// An object begins with a name or ends at once, an array of rows with an object, an array or a text. What a header could
// begin with is none: [rate], {rate}.
bool is_json(std::string_view text) {
    const std::string_view begin = after_blanks(text);
    if (begin.empty() || (begin[0] != '{' && begin[0] != '[')) return false;
    const std::string_view inner = after_blanks(begin.substr(1));
    const std::string_view firsts = begin[0] == '{' ? R"("})"sv : R"({["])"sv;
    return !inner.empty() && firsts.find(inner[0]) != std::string_view::npos;
}

}  // namespace

std::string_view foreign_format(std::string_view beginning) {
    const auto* const found =
        std::ranges::find_if(formats, [&](const Format& format) { return beginning.starts_with(format.mark); });
    if (found != formats.end()) return found->sentence;
    return is_json(beginning) ? json : std::string_view{};
}

}  // namespace finance::command
