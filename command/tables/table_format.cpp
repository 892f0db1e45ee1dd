#include "command/tables/table_format.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <span>

#include "catalogue/text.hpp"
#include "command/formulas/formula_text.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr const char* delimiter_hint = "--delimiter comma, tab, semicolon, or one character";

bool has_extension(std::string_view name, std::string_view extension) {
    return name.size() > extension.size() &&
           catalogue::same_name(name.substr(name.size() - extension.size()), extension);
}

// Which of the characters stand in the first line outside quotation marks.
std::string delimiters_in(std::string_view line, std::string_view candidates) {
    std::string found;
    bool quoted = false;
    for (const char c : line) {
        if (c == '\n' && !quoted) break;
        if (c == '"') quoted = !quoted;
        const bool new_one = candidates.find(c) != std::string_view::npos && found.find(c) == std::string::npos;
        if (!quoted && new_one) found += c;
    }
    return found;
}

[[noreturn]] void fail(const std::string& message) { throw UsageError{message, "finance help map"}; }

std::optional<std::size_t> numbered(std::string_view name) {
    std::size_t number = 0;
    if (!name.starts_with('$')) return {};
    const auto [stop, fault] = std::from_chars(name.data() + 1, name.data() + name.size(), number);
    if (fault != std::errc{} || stop != name.data() + name.size() || number == 0) return {};
    return number - 1;
}

}  // namespace

char read_delimiter(std::string_view text) {
    struct Word {
        std::string_view word;
        char delimiter;
    };
    constexpr std::array words{Word{"comma", ','}, Word{"tab", '\t'}, Word{"semicolon", ';'}, Word{"\\t", '\t'}};
    const auto* const word = std::ranges::find(words, text, &Word::word);
    if (word != words.end()) return word->delimiter;
    const bool letter = text.size() == 1 && (text[0] & 0x80) == 0 && std::isalnum(text[0]) != 0;
    if (text.size() == 1 && !letter && text.find_first_of("\"\r\n.+-%$") == std::string_view::npos) {
        return text.front();
    }
    throw UsageError{"fields cannot be separated by " + in_quotes(text), delimiter_hint};
}

char guessed_delimiter(std::string_view file_name, std::string_view first_line) {
    constexpr std::string_view packed = ".gz";
    if (has_extension(file_name, packed)) file_name.remove_suffix(packed.size());
    if (has_extension(file_name, ".tsv") || has_extension(file_name, ".tab")) return '\t';
    const std::string found = delimiters_in(first_line, ",\t;");
    if (has_extension(file_name, ".csv")) return found.find_first_of(",\t") == 0 || found != ";" ? ',' : ';';
    if (found.empty()) return ',';
    if (found.size() == 1) return found.front();
    throw UsageError{"the first line has more than one of comma, tab and semicolon", delimiter_hint};
}

Header read_header(const Record& first, char delimiter, bool named, const std::string& source) {
    if (first.text.find('\r') != std::string_view::npos && !first.quoted) {
        throw TableError{source + ": lines end in carriage returns alone; convert them to line feeds first"};
    }
    Header header{.source = source, .named = named};
    std::string scratch;
    for (const std::string_view raw : all_fields(first, delimiter)) {
        const std::string number = '$' + std::to_string(header.names.size() + 1);
        header.names.push_back(named ? std::string{trimmed(field_text(raw, scratch))} : number);
    }
    if (first.line_end == "\r\n") header.line_end = "\r\n";
    return header;
}

std::optional<std::size_t> Header::exact(std::string_view name) const {
    const IndexedNames::Found found = names.exact(name);
    if (!found) return {};
    if (found.count > 1) {
        fail(source + " has more than one column " + in_quotes(name) + "; say which by its place, as in $1");
    }
    return found.first;
}

std::optional<std::size_t> Header::find(const Operand& operand) const {
    if (const auto found = exact(operand.text)) return *found;
    if (const auto place = numbered(operand.text); place && operand.kind == Operand::Kind::word) {
        if (*place < names.size()) return *place;
        fail(source + " has no column " + shown(operand.text) + ": it has " + std::to_string(names.size()));
    }
    const IndexedNames::Found alike = names.alike(operand.text);
    return alike.count == 1 ? std::optional{alike.first} : std::nullopt;
}

std::size_t Header::column(const Operand& operand) const {
    if (const auto found = find(operand)) return *found;
    const std::vector<std::string_view> known{names.begin(), names.end()};
    fail(source + " has no column " + in_quotes(operand.text) +
         (named ? suggestion(operand.text, known) : "; without a header columns are called $1, $2 and so on"));
}

}  // namespace finance::command
