// Typed lines and the words in them. Expected words: by hand from the rules in command/words.hpp.
#include "command/words.hpp"

#include <gtest/gtest.h>

#include "command/usage_error.hpp"

namespace finance::test {
namespace {

using command::split_words;
using Words = std::vector<std::string>;

struct SplitCase {
    const char* line;
    Words words;
};

const SplitCase splits[] = {
    {"", {}},
    {" \t ", {}},
    {"PMT 0.005 360 200000", {"PMT", "0.005", "360", "200000"}},
    {"  PMT\t 0.005   360\t", {"PMT", "0.005", "360"}},
    {"PMT 0.005\r", {"PMT", "0.005"}},
    {"\r", {}},

    // quotation marks
    {"NPV 0.1 'a b' \"c d\"", {"NPV", "0.1", "a b", "c d"}},
    {"map 'PMT(a, \"b c\")' x", {"map", "PMT(a, \"b c\")", "x"}},
    {"flows=\"1 2\"3", {"flows=1 23"}},
    {"\"it's\"", {"it's"}},
    {"'' \"\" x", {"", "", "x"}},
    {"'a#b' c", {"a#b", "c"}},

    // comments
    {"# all of it", {}},
    {"   #", {}},
    {"PMT 1 # 2 '", {"PMT", "1"}},
    {"a#b c", {"a#b", "c"}},
    {"'#' x", {"#", "x"}},

    // everything else stands for itself
    {R"(a\ b\t)", {"a\\", "b\\t"}},
    {"naïve =", {"naïve", "="}},
};

TEST(Words, AreSeparatedByBlanks) {
    for (const SplitCase& row : splits) {
        SCOPED_TRACE(row.line);
        EXPECT_EQ(split_words(row.line), row.words);
    }
}

TEST(Words, AQuotationMarkNeedsAPartner) {
    for (const char* line : {"'", "PMT \"1", "a'b", "'a' 'b", R"(\')", "'\""}) {
        SCOPED_TRACE(line);
        EXPECT_THROW(split_words(line), command::UsageError);
    }
}

struct CursorCase {
    const char* line;
    Words words;
    const char* last;
};

const CursorCase cursors[] = {
    {"", {}, ""},
    {"PM", {}, "PM"},
    {"PMT ", {"PMT"}, ""},
    {"PMT\tra", {"PMT"}, "ra"},
    {"  PMT 1 'a b' basis=A", {"PMT", "1", "a b"}, "basis=A"},
    {"PMT 'a b", {}, ""},
};

TEST(Words, TheOneBeforeTheCursorIsBeingTyped) {
    for (const CursorCase& row : cursors) {
        SCOPED_TRACE(row.line);
        const command::TypedLine typed = command::split_at_cursor(row.line);
        EXPECT_EQ(typed.words, row.words);
        EXPECT_EQ(typed.last, row.last);
    }
}

}  // namespace
}  // namespace finance::test
