// The short way to a name: which texts are names by their letters, which tables have the letters in order; and a list of
// names without a slot for each is refused.
#include "module/find_by_letters.hpp"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "module/financial_list.hpp"
#include "tests/abi/bare_host.hpp"
#include "tests/module/collating_tables.hpp"

namespace finance::test {
namespace {

using namespace std::string_view_literals;

int by_letters(const ByteTable& table, std::string_view text) {
    return find_by_letters(table.data(), text.data(), static_cast<std::int64_t>(text.size()));
}

std::string small(std::string text) {
    for (char& c : text) c = static_cast<char>(c - 'A' + 'a');
    return text;
}

TEST(FindByLetters, NamesInCapitals) {
    for (const NamedTable& one : tables_that_ascend()) {
        for (std::size_t i = 0; i < FinancialList.size(); ++i) {
            EXPECT_EQ(by_letters(one.table, FinancialList[i].name), static_cast<int>(i))
                << FinancialList[i].name << ", table " << one.name;
        }
    }
}

TEST(FindByLetters, OtherCasesWhereTheTableFoldsThem) {
    for (std::size_t i = 0; i < FinancialList.size(); ++i) {
        const std::string name = FinancialList[i].name;
        for (const std::string& other :
             {small(name), name.substr(0, 1) + small(name.substr(1)), small(name.substr(0, 1)) + name.substr(1)}) {
            EXPECT_EQ(by_letters(folding_table(), other), static_cast<int>(i)) << other;
            EXPECT_EQ(by_letters(plain_table(), other), -1) << other;
        }
    }
}

TEST(FindByLetters, OneLetterThatIsNotFolded) {
    int open = 0;
    for (char c = 'a'; c <= 'z'; ++c) {
        ByteTable table = folding_table();
        table[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c);
        for (std::size_t i = 0; i < FinancialList.size(); ++i) {
            const std::string name = small(FinancialList[i].name);
            const bool has_it = name.find(c) != std::string::npos;
            EXPECT_EQ(by_letters(table, name), has_it ? -1 : static_cast<int>(i)) << name << ' ' << c;
            EXPECT_EQ(by_letters(table, FinancialList[i].name), static_cast<int>(i)) << c;
            open += has_it ? 1 : 0;
        }
    }
    EXPECT_GT(open, 200);
}

TEST(FindByLetters, OtherTexts) {
    for (const std::string_view text : {""sv, "P"sv, "PM"sv, "PMTX"sv, "PMT "sv, "\0"sv, "PV\0"sv, "PV\0\0"sv, "XXXX"sv,
                                        "CUMPRINCX"sv, "FVSCHEDULEFVSCHEDULE"sv, "P\rT"sv, "0mt"sv}) {
        EXPECT_EQ(by_letters(folding_table(), text), -1) << text;
    }
}

// ---- The table

// Sixteen letters at a time, and as other processors are asked.
bool ascend(const ByteTable& table) {
    const bool found = letters_ascend(table.data());
    EXPECT_EQ(found, letters_ascend_one_by_one(table.data()));
    return found;
}

TEST(LettersAscend, WhereEachIsAboveWhatPadsAText) {
    for (const NamedTable& one : tables_that_ascend()) {
        EXPECT_EQ(ascend(one.table), one.table['A'] > 0x20) << one.name;
    }
}

// Two neighbours that are equal, or in turned order, are enough.
TEST(LettersAscend, NotWithOneLetterOutOfOrder) {
    for (char c = 'A'; c < 'Z'; ++c) {
        const auto place = static_cast<std::size_t>(c);
        ByteTable equal = plain_table();
        equal[place] = equal[place + 1];
        EXPECT_FALSE(ascend(equal)) << c;
        ByteTable turned = plain_table();
        std::swap(turned[place], turned[place + 1]);
        EXPECT_FALSE(ascend(turned)) << c;
    }
}

TEST(LettersAscend, WhateverOtherBytesAre) {
    for (const bool high : {false, true}) {
        ByteTable table = plain_table();
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (i < 'A' || i > 'Z') table[i] = high ? 0xFF : 0;
        }
        EXPECT_TRUE(ascend(table)) << high;
    }
}

// ---- Keys

// Each length from 2 to 16: no byte of a text can change and leave its key.
TEST(KnownNames, AKeyIsTheWholeText) {
    const std::string letters = "ABCDEFGHIJKLMNOP";
    std::set<std::string> keys;
    std::size_t texts = 0;
    for (std::size_t length = 2; length <= letters.size(); ++length) {
        for (std::size_t changed = 0; changed <= length; ++changed, ++texts) {
            std::string text = letters.substr(0, length);
            if (changed < length) text[changed] = 'Z';
            const NameKey key = key_of(text.data(), static_cast<std::int64_t>(length));
            EXPECT_EQ(key.length, static_cast<std::int64_t>(length));
            EXPECT_FALSE(has_lower_case(key)) << text;
            EXPECT_TRUE(has_lower_case(in_lower_case(key))) << text;
            keys.insert(std::to_string(key.first) + " " + std::to_string(key.last) + " " + std::to_string(key.length));
        }
    }
    EXPECT_EQ(keys.size(), texts);
    EXPECT_EQ(texts, 15U * (3 + 17) / 2) << "for each length one more than it has bytes";
}

// The ends of "ABC" are AB and BC, the first byte lowest.
TEST(KnownNames, EndsOfATextByHand) {
    EXPECT_EQ(key_of("ABC", 3), (NameKey{0x4241, 0x4342, 3}));
    EXPECT_EQ(key_of("ABCDE", 5), (NameKey{0x44434241, 0x45444342, 5}));
    EXPECT_EQ(key_of("ABCDEFGHI", 9), (NameKey{0x4847464544434241, 0x4948474645444342, 9}));
}

TEST(KnownNames, KeysAreOneWhereAllPartsAre) {
    const NameKey key{1, 2, 3};
    EXPECT_TRUE(key == (NameKey{1, 2, 3}));
    for (const NameKey& other : {NameKey{0, 2, 3}, NameKey{1, 3, 3}, NameKey{1, 2, 2}, NameKey{2, 1, 3}}) {
        EXPECT_FALSE(key == other);
    }
}

// (Not of constants, from which the compiler would make the answer: the routine itself runs.)
TEST(KnownNames, EachLeadsToItself) {
    std::array names{"NO"sv, "ONE"sv, "AA"sv, "AAA"sv, "AAAA"sv, "AAAAA"sv};
    const KnownNames known = known_names(names);
    ASSERT_TRUE(known.are_apart);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const NameKey key = in_lower_case(key_of(names[i].data(), static_cast<std::int64_t>(names[i].size())));
        EXPECT_EQ(known.candidate(key), i);
        EXPECT_EQ(known.keys[i], key);
    }
}

TEST(KnownNames, NoSlotsForANameThatIsThereTwice) {
    std::array names{"ONE"sv, "TWO"sv, "ONE"sv};
    EXPECT_FALSE(known_names(names).are_apart);
}

TEST(KnownNames, WhatAListMayHave) {
    for (const std::string_view name : {"DB"sv, "ABCDEFGHIJKLMNOP"sv, "AZ"sv}) EXPECT_TRUE(may_be_known(name)) << name;
    for (const std::string_view name : {""sv, "A"sv, "ABCDEFGHIJKLMNOPQ"sv, "DOLLAR1"sv, "pmt"sv, "A@"sv, "A["sv}) {
        EXPECT_FALSE(may_be_known(name)) << name;
    }
}

}  // namespace
}  // namespace finance::test
