// The dispatcher: the table, and the names that find its rows.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "abi/arguments.hpp"
#include "tests/module/dispatched.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

std::string lower_case(std::string text) {
    for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return text;
}

// ---- Names

TEST_F(Dispatcher, EveryNameFindsItsRow) {
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        EXPECT_EQ(found_by(host, name), name);
        EXPECT_EQ(found_by(host, name + "  "), name) << "trailing blanks";
        EXPECT_EQ(found_by(host, name + std::string(300, ' ')), name) << "many of them";
    }
}

TEST_F(Dispatcher, UnknownNames) {
    const std::vector<std::string> names{
        "",
        " ",
        "                 ",
        " PV",
        "  PMT ",
        "P",
        "PVX",
        "XPV",
        "PV X",
        "PV\t",
        "PV\0"s,
        "\0"s,
        "PMT PMT",
        "0",
        "\xFF\xFF",
        "\x01",
        "CUMPRINCX",
        "CUMPRIN",
        "FINANCE",
        "pmt",
        "Pmt",
        "ZZZZZZZZ",
        "AAAA",
        "PMTPMTPMTPMTPMTP",
        "PMTPMTPMTPMTPMTPM",
        std::string(400, 'P'),
        "PMT             X",
    };
    for (const std::string& name : names) EXPECT_EQ(found_by(host, name), "") << '"' << name << '"';
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        EXPECT_EQ(found_by(host, std::string(1, ' ').append(name)), "") << "a leading blank";
        EXPECT_EQ(found_by(host, name + "$"), "");
        EXPECT_EQ(found_by(host, lower_case(name)), "") << "a plain collating table";
    }
}

// 16 characters and more are compared whole: only blanks may follow a name.
TEST_F(Dispatcher, LongNames) {
    EXPECT_EQ(found_by(host, "PMT             "), "PMT") << "16";
    EXPECT_EQ(found_by(host, "PMT              "), "PMT") << "17";
    EXPECT_EQ(found_by(host, "PMT                                     "), "PMT") << "40";
    EXPECT_EQ(found_by(host, "PMT             P"), "") << "17, the last one no blank";
    EXPECT_EQ(found_by(host, "CUMPRINCCUMPRINCC"), "");
}

TEST_F(Dispatcher, CaseIsAMatterOfTheCollatingTable) {
    host.collating = folding_table();
    for (const FinancialRow& row : FinancialList) {
        const std::string name = row.name;
        EXPECT_EQ(found_by(host, lower_case(name)), name) << "the table's name is printed";
        EXPECT_EQ(found_by(host, name.substr(0, 1) + lower_case(name.substr(1)) + " "), name);
        EXPECT_EQ(found_by(host, std::string(1, ' ').append(lower_case(name))), "");
    }
    EXPECT_EQ(found_by(host, "pmtx"), "");
    EXPECT_EQ(found_by(host, "PM"), "");
}

TEST_F(Dispatcher, NamesWithoutText) {
    Call null_descriptor{"PMT", {0.1, 5, 100}};
    slots_of(null_descriptor.context())[0].value = nullptr;
    Call null_text{"PMT", {0.1, 5, 100}};
    static_cast<CharacterDescriptor*>(slots_of(null_text.context())[0].value)->text = nullptr;
    for (Call* call : {&null_descriptor, &null_text}) {
        const Dispatched got = dispatch(host, *call);
        EXPECT_EQ(got.log, usage_lines());
        EXPECT_EQ(got.outcome.flagged, std::vector<int>{0});
        EXPECT_EQ(got.outcome.status, STATUS_INVALID_ARGUMENT);
        EXPECT_FALSE(got.outcome.written);
    }
}

// The name is taken to be character: nobody looks at its type.
TEST_F(Dispatcher, TypeOfTheNameIsNotChecked) {
    for (const int type : {0, 1, 2, 3, 4, 0xFF}) {
        Call call{"PMT", {1, 1, 5}};
        slots_of(call.context())[0].type = static_cast<std::uint8_t>(type);
        const Dispatched got = dispatch(host, call);
        EXPECT_EQ(got.outcome.status, STATUS_SUCCESS) << type;
        EXPECT_EQ(got.outcome.value, -10.0) << type;
    }
}

// By a linear search: equal to a table name once trailing blanks are gone (and case, where the table folds it).
std::string linear_search(std::string name, bool folding) {
    while (!name.empty() && name.back() == ' ') name.pop_back();
    for (const FinancialRow& row : FinancialList) {
        if (folding ? lower_case(name) == lower_case(row.name) : name == row.name) return row.name;
    }
    return {};
}

TEST_F(Dispatcher, SearchIsALinearSearch) {
    std::mt19937_64 draw{20240604};
    int found = 0;
    for (int i = 0; i < 8000; ++i) {
        const bool folding = i % 2 == 0;
        host.collating = folding ? folding_table() : plain_table();
        std::string name = FinancialList[draw() % FinancialList.size()].name;
        for (std::uint64_t changes = draw() % 3; changes > 0; --changes) {
            const std::size_t place = draw() % (name.size() + 1);
            const char c = "ABCIMNPRTUVZaimptv   \x01\x1F\x7F\xFF"[draw() % 25];
            switch (draw() % 5) {
                case 0:
                    name.insert(place, 1, c);
                    break;
                case 1:
                    if (place < name.size()) name[place] = c;
                    break;
                case 2:
                    name.erase(place);
                    break;
                case 3:
                    name += std::string(draw() % 20, ' ');
                    break;
                default:
                    name = lower_case(name);
            }
        }
        const std::string expected = linear_search(name, folding);
        ASSERT_EQ(found_by(host, name), expected) << '"' << name << '"' << (folding ? " folding" : " plain");
        if (!expected.empty()) ++found;
    }
    EXPECT_GT(found, 2000);
}

// ---- Where the host keeps its records

// Descriptors of texts and numbers may lie at any address. (A read as of an aligned record is for sanitizers to see.)
TEST_F(Dispatcher, DescriptorsAtOddAddresses) {
    const std::vector<Arg> arguments{0, 90, "ACT/360"};
    for (std::size_t offset = 0; offset < 8; ++offset) {
        Call call{"YEARFRAC", arguments};
        ArgSlot* slots = slots_of(call.context());
        std::array<std::array<std::byte, sizeof(CharacterDescriptor) + 8>, 2> moved{};
        for (const std::size_t i : {0U, 3U}) {
            std::byte* place = moved[i == 0 ? 0 : 1].data() + offset;
            std::memcpy(place, slots[i].value, sizeof(CharacterDescriptor));
            slots[i].value = place;
        }
        host.answer = 0;
        const Outcome got = call.through_dispatcher();
        EXPECT_EQ(got.status, STATUS_SUCCESS) << offset;
        EXPECT_EQ(got.value, 0.25) << offset;
        double missing_values = -1.0;
        EXPECT_EQ(fnccmis(call.context(), &missing_values), 0U);
        EXPECT_EQ(missing_values, 0.0) << offset;
    }
}

}  // namespace
}  // namespace finance::test
