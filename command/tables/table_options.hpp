// What follows `map` and `fold`.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/files/descriptors.hpp"
#include "command/number_form.hpp"
#include "command/options.hpp"
#include "reading/field_form.hpp"

namespace finance::command {

struct TableOptions {
    std::string_view calls{};
    std::string input{standard_stream};
    std::string output{standard_stream};
    std::optional<char> delimiter{};
    std::vector<std::string_view> by{};
    std::vector<std::string_view> where{};  // the rows that are taken hold to all of them
    reading::FieldForm fields{};
    std::optional<int> digits{};  // decimals of results; none: all
    std::size_t skip = 0;         // lines before the table
    bool header = true;
    bool status = false;
    bool strict = false;
    bool quiet = false;
    bool help = false;
    bool json = false;  // results as objects; said before the first word, or anywhere
};

// Of both jobs, but for the first one, which is fold's.
inline constexpr std::array table_options{
    Option{"--by", "COLUMN,...", "the columns that tell groups apart"},
    Option{"--where", "CONDITION",
           "only rows of which it holds, as in 'kind = \"bond\" and rate > 2%'; the others are left out"},
    Option{"--output",
           "FILE",
           "instead of standard output; the new FILE takes the old one's place once it is whole, which may\n"
           "be the table that is read",
           {},
           "-o"},
    Option{"--delimiter",
           "CHAR",
           "what separates fields: comma, tab, semicolon or any one character; otherwise told by\n"
           "the file's extension, or by the header",
           {},
           "-d"},
    Option{"--no-header", "", "the first line is a row; columns are called $1, $2, ..."},
    Option{"--skip", "N", "lines above the header, titles say, that are passed over", {0, 1'000'000}},
    Option{"--dates", "FORM",
           "how fields write dates: ymd, dmy (15.01.2024), mdy (01/15/2024); sheet: numbers are a sheet's\n"
           "serial numbers (45292); days: they count from 1960-01-01, as without the option"},
    Option{"--missing", "TEXT,...", "fields that are missing values, whatever their case: NA,NULL,#N/A"},
    Option{"--decimal", "comma",
           "fields write numbers with a decimal comma, and may group digits: 1.234,56 or 1 234,56; so\n"
           "are results written (1234,56)"},
    Option{"--numbers", "loose",
           "fields may group digits (1,234.56), have a currency's sign or code before or after ($, EUR),\n"
           "and brackets for a minus: (1,000)"},
    digits_option,
    Option{"--status", "", "adds a column NAME_status to each result that says why there is no value"},
    Option{"--strict", "", "stops at the first refusal"},
    Option{"--quiet", "", "neither progress nor summary on standard error", {}, "-q"},
    json_option("each result as an object on a line: row or group, value, status, argument at fault, rule"),
};

// UsageError.
TableOptions read_table_options(Words words, const Job& job, const Settings& settings);

// The help on what both jobs have.
// by: --by among them.
std::string table_options_help(bool by);

}  // namespace finance::command
