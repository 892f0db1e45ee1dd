#include "command/tables/call_expression.hpp"

#include <algorithm>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "command/formulas/formula_text.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

constexpr std::string_view operators = "+-*/^";

constexpr bool is_one_of(std::string_view characters, char c) { return characters.find(c) != std::string_view::npos; }
constexpr bool is_blank(char c) { return is_one_of(" \t\r\n", c); }

class ExpressionReader {
public:
    explicit ExpressionReader(std::string_view text) : text_{text} {}

    std::vector<CallExpression> calls();
    std::vector<Operand> columns();

private:
    CallExpression item();
    CallExpression call();
    CallExpression formula();
    [[nodiscard]] bool at_call();
    [[nodiscard]] bool at_as(std::size_t begin) const;
    NamedOperand argument();
    Operand operand();
    Operand quoted(char mark, Operand::Kind kind);
    std::string result_name();
    std::string_view word(std::string_view stops);
    template <typename Ends>
    std::string_view nested(Ends ends);
    void pass_quoted();

    [[nodiscard]] bool at_end() const { return at_ == text_.size(); }
    [[nodiscard]] char here() const { return at_end() ? '\0' : text_[at_]; }
    void skip_blanks() {
        while (!at_end() && is_blank(here())) ++at_;
    }
    bool take(char c) {
        skip_blanks();
        if (at_end() || here() != c) return false;
        ++at_;
        return true;
    }
    [[noreturn]] void fail(const std::string& what) const {
        const std::string_view rest = text_.substr(at_);
        throw UsageError{what + (rest.empty() ? " at the end" : " at " + in_quotes(rest)) + " of the calls",
                         "finance help map"};
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

// Without the blanks around it.
std::string_view without_blanks(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

// Up to one of the stops.
std::string_view ExpressionReader::word(std::string_view stops) {
    const std::size_t begin = at_;
    at_ = std::min(text_.size(), text_.find_first_of(stops, at_));
    return without_blanks(text_.substr(begin, at_ - begin));
}

// To the mark that closes, or to the end where none does.
void ExpressionReader::pass_quoted() {
    const char mark = here();
    do {
        at_ = text_.find(mark, at_ + 1);
        if (at_ == std::string_view::npos) at_ = text_.size() - 1;
        const bool doubled = at_ + 1 < text_.size() && text_[at_ + 1] == mark;
        if (!doubled) return;
        ++at_;
    } while (at_ + 1 < text_.size());
}

// Up to where ends(at) says so outside brackets and quotation marks. A mark opens where a value may begin: o'neil has
// none.
template <typename Ends>
std::string_view ExpressionReader::nested(Ends ends) {
    const std::size_t begin = at_;
    std::size_t depth = 0;
    bool value_may_begin = true;
    for (; !at_end() && (depth > 0 || !ends(at_)); ++at_) {
        const char c = here();
        if (c == '(') ++depth;
        if (c == ')' && depth > 0) --depth;
        if (value_may_begin && (c == '"' || c == '\'')) pass_quoted();
        if (!is_blank(c)) value_may_begin = is_one_of("+-*/^(,", c);
    }
    return without_blanks(text_.substr(begin, at_ - begin));
}

Operand ExpressionReader::quoted(char mark, Operand::Kind kind) {
    Operand operand{.kind = kind};
    const std::size_t begin = at_++;
    for (;; ++at_) {
        if (at_end()) {
            at_ = begin;
            fail("a quotation mark is not closed");
        }
        if (here() == mark) {
            ++at_;
            if (here() != mark) return operand;
        }
        operand.text += here();
    }
}

Operand ExpressionReader::operand() {
    skip_blanks();
    const std::size_t begin = at_;
    if (here() == '"' || here() == '\'') {
        const bool column = here() == '"';
        Operand whole = quoted(here(), column ? Operand::Kind::column : Operand::Kind::text);
        skip_blanks();
        if (at_end() || !is_one_of(operators, here())) return whole;
        at_ = begin;
    }
    const std::string_view found = nested([this](std::size_t at) { return is_one_of(",)=", text_[at]); });
    if (found.empty()) return {};
    return {.kind = Operand::Kind::word, .text = std::string{found}};
}

NamedOperand ExpressionReader::argument() {
    NamedOperand argument{.operand = operand()};
    if (!take('=')) return argument;
    if (argument.operand.kind != Operand::Kind::word) fail("no name before '='");
    argument.name = argument.operand.text;
    argument.operand = operand();
    return argument;
}

std::string ExpressionReader::result_name() {
    skip_blanks();
    const std::size_t begin = at_;
    const std::string_view as = word(" \t\n,\"");
    if (as.empty()) return {};
    skip_blanks();
    std::string name;
    if (catalogue::same_name(as, "as")) name = here() == '"' ? quoted('"', Operand::Kind::column).text : word(",");
    if (!name.empty()) return name;
    at_ = begin;
    fail("'as name' or a comma is expected");
}

// A name and a bracket, but no function's.
bool ExpressionReader::at_call() {
    const std::size_t begin = at_;
    const std::string_view name = word("(),=+-*/^\"'");
    const bool call = !name.empty() && here() == '(' && !is_function(name);
    at_ = begin;
    return call;
}

CallExpression ExpressionReader::call() {
    CallExpression call{.calculation = std::string{word("(),=")}};
    if (!take('(')) fail("'(' is expected after " + shown(call.calculation));
    if (!take(')')) {
        do {
            call.arguments.push_back(argument());
        } while (take(','));
        if (!take(')')) fail("',' or ')' is expected");
    }
    return call;
}

bool ExpressionReader::at_as(std::size_t begin) const {
    const bool after = begin > 0 && (is_blank(text_[begin - 1]) || is_one_of(")\"", text_[begin - 1]));
    const bool before = begin + 2 == text_.size() || is_blank(text_[std::min(begin + 2, text_.size() - 1)]);
    return after && before && catalogue::same_name(text_.substr(begin, 2), "as");
}

// The name of a calculation alone is half a call.
CallExpression ExpressionReader::formula() {
    const std::string_view text = nested([this](std::size_t at) { return text_[at] == ',' || at_as(at); });
    if (text.empty()) fail("a calculation or a formula is expected");
    const std::string_view first = text.substr(0, text.find_first_of(" \t\r\n"));
    const catalogue::Calculation* half = catalogue::find(first);
    if (half != nullptr && half->name == first && !looks_like_formula(text)) {
        fail("'(' is expected after " + shown(text));
    }
    return {.formula = std::string{text}};
}

CallExpression ExpressionReader::item() {
    skip_blanks();
    CallExpression item = at_call() ? call() : formula();
    skip_blanks();
    if (!at_end() && is_one_of(operators, here())) {
        fail("a calculation cannot stand within a formula (name its result, and go on with the name)");
    }
    item.result = result_name();
    return item;
}

std::vector<CallExpression> ExpressionReader::calls() {
    std::vector<CallExpression> calls;
    do {
        calls.push_back(item());
    } while (take(','));
    skip_blanks();
    if (!at_end()) fail("a comma is expected");
    return calls;
}

std::vector<Operand> ExpressionReader::columns() {
    std::vector<Operand> columns;
    do {
        columns.push_back(operand());
        if (columns.back().text.empty()) fail("the name of a column is expected");
    } while (take(','));
    skip_blanks();
    if (!at_end()) fail("a comma is expected");
    return columns;
}

}  // namespace

std::vector<CallExpression> read_calls(std::string_view text) { return ExpressionReader{text}.calls(); }

std::vector<Operand> read_columns(std::string_view text) { return ExpressionReader{text}.columns(); }

}  // namespace finance::command
