#include "command/tables/table_options.hpp"

#include "command/closest_name.hpp"
#include "command/tables/table_format.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

class OptionReader {
public:
    OptionReader(Words words, std::string_view job, bool groups) : words_{words}, job_{job}, groups_{groups} {}

    TableOptions read() {
        for (; at_ < words_.size(); ++at_) take(words_[at_]);
        if (!options_.help && places_ == 0) fail("the calls are missing, as in 'PMT(rate, nper, pv)'");
        return options_;
    }

private:
    void take(std::string_view word) {
        if (word == "-h" || word.starts_with("--")) return option(word);
        if (places_ == 0) options_.calls = word;
        if (places_ == 1) options_.input = word;
        if (++places_ > 2) fail("one table at a time, not '" + std::string{word} + "' as well");
    }

    void option(std::string_view word) {
        const std::size_t equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        if (equals != std::string_view::npos) value_ = word.substr(equals + 1);
        const bool known = flag(name) || setting(name);
        if (!known) {
            std::vector<std::string_view> names{"--output", "--delimiter", "--no-header",
                                                "--status", "--strict",    "--quiet"};
            if (groups_) names.emplace_back("--by");
            fail("no option is called " + std::string{name} + suggestion(name, names));
        }
        if (value_) fail(std::string{name} + " takes no value");
    }

    bool flag(std::string_view name) {
        if (name == "--no-header") return !(options_.header = false);
        if (name == "--status") return options_.status = true;
        if (name == "--strict") return options_.strict = true;
        if (name == "--quiet") return options_.quiet = true;
        if (name == "--help" || name == "-h") return options_.help = true;
        return false;
    }

    bool setting(std::string_view name) {
        if (name == "--output") {
            options_.output = value(name);
        } else if (name == "--delimiter") {
            options_.delimiter = read_delimiter(value(name));
        } else if (name == "--by" && groups_) {
            options_.by.push_back(value(name));
        } else {
            return false;
        }
        return true;
    }

    std::string_view value(std::string_view name) {
        if (!value_ && at_ + 1 < words_.size()) value_ = words_[++at_];
        if (!value_ || value_->empty()) fail(std::string{name} + " needs a value");
        const std::string_view taken = *value_;
        value_.reset();
        return taken;
    }

    [[noreturn]] void fail(const std::string& message) const {
        throw UsageError{std::string{job_} + ": " + message, "finance help " + std::string{job_}};
    }

    Words words_;
    std::string_view job_;
    bool groups_;
    TableOptions options_{};
    std::optional<std::string_view> value_{};  // of the option at hand, until it is taken
    std::size_t at_ = 0;
    int places_ = 0;
};

}  // namespace

TableOptions read_table_options(Words words, std::string_view job, bool groups, bool json) {
    TableOptions options = OptionReader{words, job, groups}.read();
    options.json = json;
    return options;
}

std::string_view table_options_help() {
    return "Calls\n"
           "  rate               the column of that name; $1 is the first column\n"
           "  \"coupon rate\"      the same, for names with commas, brackets or equals signs, or that look like "
           "numbers\n"
           "  0.065, 5.75%       numbers; 2008-02-15 a date; 30/360, ACTUAL, ... a basis; . a missing value\n"
           "  'act/360'          a value that could be taken for a column\n"
           "  pv=loan            arguments by name come after those in order\n"
           "  ... as price       names the result; otherwise it is called as its calculation, in lower case\n"
           "\n"
           "Tables\n"
           "  CSV or TSV in UTF-8, with quoted fields. An empty field is a missing value, and so is a dot. Dates are\n"
           "  ISO dates or days since 1960-01-01. A record is at most 16 MiB long. Without FILE, or with -, the table\n"
           "  is read from standard input.\n"
           "\n"
           "Options\n"
           "  --output FILE      instead of standard output\n"
           "  --delimiter CHAR   what separates fields: comma, tab, semicolon or any one character; otherwise told by\n"
           "                     the file's extension, or by the header\n"
           "  --no-header        the first line is a row; columns are called $1, $2, ...\n"
           "  --status           adds a column NAME_status to each result that says why there is no value\n"
           "  --strict           stops at the first refusal\n"
           "  --quiet            neither progress nor summary on standard error\n"
           "  --json             each result as an object on a line, with value, status, argument at fault and rule\n"
           "\n"
           "Exit status\n"
           "  0 all answered, or without a value for lack of a value that is needed; 1 some refused, or the table\n"
           "  could not be read or written to its end; 2 wrong usage, nothing written\n";
}

}  // namespace finance::command
