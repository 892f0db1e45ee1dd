#include "command/tables/call_expression.hpp"

#include "catalogue/text.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

class ExpressionReader {
public:
    explicit ExpressionReader(std::string_view text) : text_{text} {}

    std::vector<CallExpression> calls();
    std::vector<Operand> columns();

private:
    CallExpression call();
    NamedOperand argument();
    Operand operand();
    Operand quoted(char mark, Operand::Kind kind);
    std::string result_name();
    std::string_view word(std::string_view stops);

    [[nodiscard]] bool at_end() const { return at_ == text_.size(); }
    [[nodiscard]] char here() const { return at_end() ? '\0' : text_[at_]; }
    void skip_blanks() {
        while (here() == ' ' || here() == '\t' || here() == '\n') ++at_;
    }
    bool take(char c) {
        skip_blanks();
        if (at_end() || here() != c) return false;
        ++at_;
        return true;
    }
    [[noreturn]] void fail(const std::string& what) const {
        const std::string rest{text_.substr(at_)};
        throw UsageError{what + (rest.empty() ? " at the end" : " at '" + rest + '\'') + " of the calls",
                         "finance help map"};
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

// Up to one of the stops, without the blanks around it.
std::string_view ExpressionReader::word(std::string_view stops) {
    const std::size_t begin = at_;
    at_ = std::min(text_.size(), text_.find_first_of(stops, at_));
    std::string_view found = trimmed(text_.substr(begin, at_ - begin));
    while (found.ends_with('\n')) found = trimmed(found.substr(0, found.size() - 1));
    return found;
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
    if (here() == '"') return quoted('"', Operand::Kind::column);
    if (here() == '\'') return quoted('\'', Operand::Kind::text);
    const std::string_view found = word(",()=");
    if (here() == '(') fail("a call cannot stand within a call: '('");
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

CallExpression ExpressionReader::call() {
    skip_blanks();
    CallExpression call{.calculation = std::string{word("(),=")}};
    if (call.calculation.empty()) fail("the name of a calculation is expected");
    if (!take('(')) fail("'(' is expected after " + call.calculation);
    if (!take(')')) {
        do {
            call.arguments.push_back(argument());
        } while (take(','));
        if (!take(')')) fail("',' or ')' is expected");
    }
    call.result = result_name();
    return call;
}

std::vector<CallExpression> ExpressionReader::calls() {
    std::vector<CallExpression> calls;
    do {
        calls.push_back(call());
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
