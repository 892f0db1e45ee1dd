#include "command/tables/table_options.hpp"

#include "command/files/descriptors.hpp"
#include "command/options.hpp"
#include "command/tables/field_options.hpp"
#include "command/tables/table_format.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

TableOptions read_table_options(Words words, const Job& job, const Settings& settings) {
    const OptionsGiven given = read_options(job.options, words, {.job = job.word, .explains = true});
    TableOptions options{.by = given.values("--by"),
                         .where = given.values("--where"),
                         .digits = digits_of(given, settings.digits),
                         .skip = given.number("--skip", 0),
                         .header = !given.has("--no-header"),
                         .status = given.has("--status"),
                         .strict = given.has("--strict"),
                         .quiet = given.has("--quiet"),
                         .help = given.help,
                         .json = settings.json};
    for (const std::string_view text : given.values("--delimiter")) options.delimiter = read_delimiter(text);
    for (const std::string_view texts : given.values("--missing")) add_missing(options.fields, texts);
    for (const std::string_view word : given.values("--decimal")) set_decimal(options.fields, word);
    for (const std::string_view word : given.values("--numbers")) set_numbers(options.fields, word);
    for (const std::string_view form : given.values("--dates")) set_dates(options.fields, form);
    options.output = given.value("--output").value_or(standard_stream);
    const auto fail = [&](const std::string& message) {
        throw UsageError{std::string{job.word} + ": " + message, "finance help " + std::string{job.word}};
    };
    const std::vector<std::string_view>& places = given.places;
    if (places.size() > 2) fail("one table at a time, not " + in_quotes(places[2]) + " as well");
    if (places.empty() && !options.help) fail("the calls are missing, as in 'PMT(rate, nper, pv)'");
    if (!places.empty() && is_file(places[0]) && (places.size() == 1 || !is_file(places[1]))) {
        fail(in_quotes(places[0]) + " is a file: the calls come before the table");
    }
    if (!places.empty()) options.calls = places[0];
    if (places.size() > 1) options.input = places[1];
    return options;
}

std::string table_options_help(bool by) {
    return "Calls\n"
           "  rate               the column of that name; $1 is the first column\n"
           "  \"coupon rate\"      the same, for names with commas, brackets or equals signs, or that look like "
           "numbers\n"
           "  0.065, 5.75%       numbers; 2008-02-15 a date; 30/360, ACTUAL, ... a basis; . a missing value\n"
           "  'act/360'          a value that could be taken for a column\n"
           "  pv=loan            arguments by name come after those in order\n"
           "  rate/12, -pv       arithmetic: + - * / ^, brackets, min, max, round, abs; of columns, numbers, dates "
           "and\n"
           "                     earlier results. What is a value or a column as it stands stays that\n"
           "  ... as price       names the result; otherwise it is called as its calculation, in lower case\n"
           "  p*nper as paid     a formula alone is a result, too; p is the one named so before\n"
           "\n"
           "Conditions\n"
           "  < <= > >= = != between numbers or dates, or a column and a text in quotation marks; and, or, not,\n"
           "  brackets, arithmetic. kind = \"bond\" compares with the text unless there is a column bond; 'bond' is\n"
           "  always a text. rate = . holds where there is no value; any other comparison without a value does not.\n"
           "  A row of which nobody can say, since a field is no number, is refused.\n"
           "\n"
           "Tables\n"
           "  CSV or TSV in UTF-8, with quoted fields. An empty field is a missing value, and so is a dot; an empty\n"
           "  basis is 30/360. Dates are ISO dates or days since 1960-01-01. A record is at most 16 MiB long. Without\n"
           "  FILE, or with -, the table is read from standard input. What begins as gzip does is unpacked as it is\n"
           "  read.\n"
           "\n"
           "Options\n" +
           option_lines(std::span{table_options}.subspan(by ? 0 : 1)) +
           "\n"
           "Exit status\n"
           "  0 all answered, or without a value for lack of a value that is needed; 1 some refused, or the table\n"
           "  could not be read or written to its end; 2 wrong usage, nothing written. --output leaves the old FILE "
           "as\n"
           "  it was where the table does not come to its end, with --strict at a refusal; refused rows alone are "
           "part\n"
           "  of a whole one.\n";
}

}  // namespace finance::command
