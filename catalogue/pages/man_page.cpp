#include <array>
#include <string_view>

#include "catalogue/pages/pages.hpp"
#include "catalogue/wording.hpp"

namespace finance::catalogue::pages {

namespace {

std::string_view escaped(char c) {
    switch (c) {
        case '\\':
            return "\\e";
        case '-':
            return "\\-";
        case '\'':
            return "\\(aq";
        case '`':
            return "\\(ga";
        case '^':
            return "\\(ha";
        case '~':
            return "\\(ti";
        case '"':
            return "\\(dq";
        default:
            return {};
    }
}

// Text that shows as it stands; a dot that begins a line is no request.
std::string roff(std::string_view text) {
    std::string result;
    bool line_begins = true;
    for (const char c : text) {
        if (line_begins && c == '.') result += "\\&";
        const std::string_view escape = escaped(c);
        if (escape.empty()) {
            result += c;
        } else {
            result += escape;
        }
        line_begins = c == '\n';
    }
    return result;
}

std::string bold(std::string_view text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + roff(text) + "\\fR"; }

std::string section(std::string_view title) { return ".SH " + std::string{title} + '\n'; }

std::string entry(const std::string& tag, std::string_view text) { return ".TP\n" + tag + '\n' + roff(text) + '\n'; }

std::string verbatim(std::string_view text) { return ".PP\n.nf\n.RS 4\n" + roff(text) + "\n.RE\n.fi\n"; }

std::string_view blank_before(std::string_view text) { return text.empty() ? "" : " "; }

// ---- Sections

std::string title(std::string_view version) {
    return ".\\\" Made from the catalogue by scripts/refresh-pages.\n.TH FINANCE 1 \"\" \"zelkovan " +
           std::string{version} + "\" \"User Commands\"\n";
}

std::string synopsis(const CommandWords& command) {
    std::string text = section("SYNOPSIS") + bold("finance") + " [" + italic("OPTION") + "]... " + italic("NAME") +
                       ' ' + italic("ARGUMENT") + "...\n";
    for (const Word& word : command.words) {
        text += ".br\n" + bold("finance") + " [" + italic("OPTION") + "]... " + bold(word.word) +
                std::string{blank_before(word.usage)} + roff(word.usage) + '\n';
    }
    return text + ".br\n" + bold("finance") + " [" + italic("OPTION") + "]...\n";
}

std::string description(const CommandWords& command) {
    constexpr std::string_view purpose =
        "Evaluates financial calculations: accrued interest and coupon dates, bond prices and yields, annuities, "
        "internal rates, depreciation, Treasury bills. The answer is one line: the shortest text that reads back to "
        "the same double, or a date. A refused call says on standard error which argument is at fault, and why.";
    std::string text = section("DESCRIPTION") + roff(purpose) + "\n.PP\n" + bold("finance help") + ' ' +
                       italic("WORD") + " tells all about one of the following.\n";
    for (const Word& word : command.words) {
        std::string tag = bold(word.word);
        if (!word.usage.empty()) tag += ' ' + roff(word.usage);
        text += entry(tag, word.purpose);
    }
    return text;
}

std::string option_entries(std::span<const Option> options) {
    std::string text;
    for (const Option& option : options) {
        std::string tag = option.short_name.empty() ? "" : bold(option.short_name) + ", ";
        tag += bold(option.name);
        if (!option.value.empty()) tag += ' ' + italic(option.value);
        text += entry(tag, option.help);
    }
    return text;
}

std::string options(const CommandWords& command) {
    std::string text = section("OPTIONS") + "They stand before the first word.\n" + option_entries(command.options);
    for (const Word& word : command.words) {
        if (word.options.empty()) continue;
        text += ".SS \"After " + roff(word.word) + "\"\n" + option_entries(word.options);
    }
    return text;
}

std::string arguments() {
    return section("ARGUMENTS") +
           roff(
               "Arguments stand in order, or as name=value after those in order. What is left out at the end stands "
               "for its default.") +
           '\n' + entry(bold("numbers"), "200000, -1e5; 5.75% is 0.0575.") +
           entry(bold("dates"), "2008-02-15, or days since 1960-01-01.") +
           entry(bold("basis"), std::string{basis_words} + ".") +
           entry(bold("lists"), "One value after the other, or separated by commas.") +
           entry(bold("."), "A missing value.") + entry(bold("name="), "An argument left out.");
}

std::string prompt() {
    constexpr std::string_view purpose =
        "Without words the command is a prompt on a terminal, and reads the lines of a script from standard input "
        "elsewhere. A line is what would follow finance; # starts a comment. Errors of a script are told with the "
        "number of their line, the lines after it are still run, and the exit status is that of the worst. In a "
        "script map and fold need the name of a file.";
    return section("PROMPT AND SCRIPTS") + roff(purpose) + '\n' +
           entry(bold("_"), "The last answer, as a value of an argument or alone.") +
           entry(bold("?") + italic("NAME"), "What a calculation answers, its arguments, formula, an example.") +
           entry(bold("quit") + ", " + bold("exit"),
                 "Leave; so does Ctrl-D. Ctrl-C abandons the line, or stops the job that runs.") +
           entry(bold("Tab"), "Completes names, arguments, and the keywords after basis=.");
}

std::string files() {
    return section("FILES") + entry(italic("$XDG_STATE_HOME/finance/history"),
                                    "The latest lines typed at the prompt, readable by their owner alone. Where the "
                                    "variable is not set: ~/.local/state/finance/history.");
}

std::string exit_status() {
    return section("EXIT STATUS") + entry(bold("0"), "Answered; the answer may be a missing value, printed as a dot.") +
           entry(bold("1"), "Refused; also: no module, no place to write to.") + entry(bold("2"), "Wrong usage.") +
           entry(bold("141"), "As a shell tells it: nobody reads the output any more (SIGPIPE).");
}

std::string examples() {
    constexpr std::array<std::string_view, 5> shown{"PMT", "PRICE", "COUPNCD", "IRR", "DDB"};
    std::string text = section("EXAMPLES");
    for (const std::string_view name : shown) {
        const Calculation* calculation = find(name);
        if (calculation == nullptr) continue;
        text += ".PP\n" + roff(calculation->answers) + ":\n" +
                verbatim("$ finance " + std::string{name} + ' ' + std::string{calculation->example.arguments} + '\n' +
                         std::string{calculation->example.result});
    }
    return text;
}

std::string calculation_entry(const Calculation& calculation) {
    const std::string call = call_words(calculation);
    const std::size_t end = calculation.name.size();
    return entry(bold(calculation.name) + roff(call.substr(end)), std::string{calculation.answers} + ".");
}

std::string calculations(std::span<const Family> families) {
    std::string text = section("CALCULATIONS") +
                       "What the arguments must be, the formula and an example of each: " + bold("finance help") + ' ' +
                       italic("NAME") + ".\n";
    for (const Family& family : families) {
        text += ".SS \"" + roff(family.title) + "\"\n";
        for (const Calculation& calculation : family.calculations) text += calculation_entry(calculation);
    }
    return text;
}

std::string license(std::string_view line) {
    return section("COPYRIGHT") + roff(line) + " There is no warranty, to the extent permitted by law.\n";
}

}  // namespace

std::string man_page(std::span<const Family> families, const CommandWords& command) {
    return title(command.version) + section("NAME") + "finance \\- financial calculations\n" + synopsis(command) +
           description(command) + options(command) + arguments() + prompt() + exit_status() + files() + examples() +
           calculations(families) + license(command.license);
}

}  // namespace finance::catalogue::pages
