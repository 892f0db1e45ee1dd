#include "tests/model/draws.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <sstream>

namespace finance::test {

namespace {

// What a shell command prints, line by line. One that cannot be run, or does not end well once all is read, is a failure:
// what it printed until then is not all that it had to say.
class CommandOutput {
public:
    explicit CommandOutput(const std::string& command) : command_{command}, stream_{popen(command.c_str(), "r")} {
        EXPECT_NE(stream_, nullptr) << command_;
    }
    ~CommandOutput() {
        std::free(line_);
        if (stream_ == nullptr) return;
        const int status = pclose(stream_);
        if (read_to_end_) {
            EXPECT_EQ(status, 0) << "how this ended: " << command_;
        }
    }
    CommandOutput(const CommandOutput&) = delete;
    CommandOutput& operator=(const CommandOutput&) = delete;

    bool next(std::string& line) {
        if (stream_ == nullptr) return false;
        if (getline(&line_, &room_, stream_) <= 0) {
            read_to_end_ = true;
            return false;
        }
        line = line_;
        if (line.back() == '\n') line.pop_back();
        return true;
    }

private:
    std::string command_;
    std::FILE* stream_;
    bool read_to_end_ = false;
    char* line_ = nullptr;
    std::size_t room_ = 0;
};

double double_of(const std::string& hexadecimal) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(hexadecimal, nullptr, 16)));
}

std::string text_of(const std::string& hexadecimal) {
    std::string text;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
        text.push_back(static_cast<char>(std::stoi(hexadecimal.substr(i, 2), nullptr, 16)));
    }
    return text;
}

Arg argument_of(const std::string& word) {
    const std::string value = word.substr(2);
    if (word[0] == 'n') return value == "null" ? absent : Arg{double_of(value)};
    return value == "null" ? absent_text : Arg{text_of(value)};
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream{text};
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

void check(const Draw& draw, const std::string& line) {
    const Outcome handled = Call{draw.name, draw.arguments}.through_handler();
    const Outcome dispatched = Call{draw.name, draw.arguments}.through_dispatcher();
    char got[64];
    std::snprintf(got, sizeof got, "%u %016lx %.17g", handled.status, bits(handled.value), handled.value);
    EXPECT_EQ(handled.status, draw.status) << line;
    EXPECT_EQ(handled.flagged, draw.flagged) << line;
    EXPECT_TRUE(same_result(draw, handled.written, handled.value)) << line << "\n  got " << got;
    EXPECT_TRUE(handled.host_bytes_kept) << line;
    EXPECT_EQ(dispatched.status, draw.status == STATUS_SUCCESS ? STATUS_SUCCESS : STATUS_INVALID_ARGUMENT) << line;
    EXPECT_EQ(bits(dispatched.value), bits(handled.value)) << line;
}

}  // namespace

bool same_result(const Draw& draw, bool written, double value) {
    if (draw.result == "untouched") return !written;
    const double expected = double_of(draw.result);
    return written &&
           (bits(expected) == bits(value) || (expected != expected && value != value &&
                                              bits(expected) != bits(missing) && bits(value) != bits(missing)));
}

Draw draw_of(const std::string& line) {
    const std::vector<std::string> fields = split(line, '\t');
    Draw draw;
    draw.name = fields.at(0);
    for (const std::string& word : split(fields.at(1), ' ')) draw.arguments.push_back(argument_of(word));
    draw.status = static_cast<Status>(std::stoul(fields.at(2)));
    if (fields.at(3) != "-") {
        for (const std::string& slot : split(fields.at(3), ',')) draw.flagged.push_back(std::stoi(slot));
    }
    draw.result = fields.at(4);
    return draw;
}

std::vector<Draw> read_draws(const std::string& command) {
    std::vector<Draw> draws;
    CommandOutput output{command};
    for (std::string line; output.next(line);) draws.push_back(draw_of(line));
    return draws;
}

DrawCounts check_draws(const std::string& command) {
    DrawCounts counts;
    CommandOutput output{command};
    for (std::string line; output.next(line);) {
        const Draw draw = draw_of(line);
        check(draw, line);
        ++counts.checked;
        if (draw.status == STATUS_SUCCESS) ++counts.answered;
        if (testing::Test::HasFailure() && counts.checked > 5000) break;
    }
    return counts;
}

}  // namespace finance::test
