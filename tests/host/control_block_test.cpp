// The control block, read the way a module reads it: words, tables, bytes.
#include "host/control_block.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "host/embedded_host.hpp"
#include "host/services.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::ControlBlock;

struct Block {
    void* memory_vector[2]{};
    int toolkit = 0;
    ControlBlock block{memory_vector, &toolkit};

    template <typename T>
    T* word(std::size_t i) {
        return static_cast<T*>(block.words()[i]);
    }
};

TEST(ControlBlock, SevenWordsMeanSomething) {
    Block made;
    const std::set<std::size_t> used{0, 1, 6, 10, 13, 27, 82};
    for (std::size_t i = 0; i < 128; ++i) {
        const auto word = reinterpret_cast<std::uintptr_t>(made.block.words()[i]);
        EXPECT_EQ(word == (0xA5A5A5A5A5A50000U | i), !used.contains(i)) << i;
    }
    EXPECT_EQ(made.block.words()[10], made.memory_vector);
    EXPECT_EQ(made.block.words()[82], &made.toolkit);
    ControlBlock without{made.memory_vector, nullptr};
    EXPECT_EQ(without.words()[82], nullptr);
    EXPECT_NE(made.block.process_block(), nullptr);
}

// vector, slot: nine services, and everywhere else the routine that names what was asked for.
TEST(ControlBlock, Services) {
    const std::set<std::pair<std::size_t, std::size_t>> expected{{0, 330}, {0, 331}, {4, 7},   {4, 39},  {4, 65},
                                                                 {39, 4},  {39, 70}, {39, 89}, {164, 11}};
    Block made;
    std::set<std::pair<std::size_t, std::size_t>> found;
    for (std::size_t vector = 0; vector < 256; ++vector) {
        void** routines = made.word<void**>(0)[vector];
        ASSERT_NE(routines, nullptr) << vector;
        for (std::size_t slot = 0; slot < 512; ++slot) {
            ASSERT_NE(routines[slot], nullptr) << vector << ", " << slot;
            if (routines[slot] != host::unexpected_service()) found.emplace(vector, slot);
        }
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(host::offered_services().size(), expected.size());
}

TEST(ControlBlock, MarksAreUntouched) {
    Block made;
    const auto* marks = made.word<unsigned char>(1);
    EXPECT_EQ(std::count(marks, marks + 256, 0xFF), 256);
}

// A module marks the vectors that it enters, and those alone.
TEST(ControlBlock, MarksOfALoadedModule) {
    const auto marked = [](host::EmbeddedHost& host) {
        std::set<int> found;
        const auto* marks = static_cast<unsigned char*>(host.control_block()[1]);
        for (int i = 0; i < 256; ++i) {
            if (marks[i] != 0xFF) found.insert(i);
        }
        return found;
    };
    host::EmbeddedHost host{real_module()};
    EXPECT_TRUE(host.evaluate("SLN", {10000, 1000, 5}).answered());
    EXPECT_EQ(marked(host), std::set<int>{}) << "a calculation enters no service";
    EXPECT_FALSE(host.evaluate("SLN", {}).answered());
    EXPECT_EQ(marked(host), std::set<int>{39}) << "a log line";
    EXPECT_TRUE(host.evaluate("COUPNCD", {0, 1000, 2}).answered());
    EXPECT_EQ(marked(host), (std::set<int>{39, 164})) << "a date";
    host.set_multibyte(true);
    EXPECT_TRUE(host.evaluate("SLN", {10000, 1000, 5}).answered());
    EXPECT_EQ(marked(host), (std::set<int>{0, 4, 39, 164})) << "texts";
}

// ---- Tables

// In the C locale these are the ASCII letters' own.
int upper(int byte) { return std::toupper(byte); }
int lower(int byte) { return std::tolower(byte); }
int same(int byte) { return byte; }

void expect_table(const unsigned char* table, int (*mapping)(int), const char* id) {
    ASSERT_NE(table, nullptr) << id;
    for (int byte = 0; byte < 256; ++byte) EXPECT_EQ(table[byte], mapping(byte)) << id << ", byte " << byte;
}

TEST(ControlBlock, TranslationTables) {
    Block made;
    auto* tables = made.word<const unsigned char*>(27);
    EXPECT_GT(reinterpret_cast<std::uintptr_t>(tables[0]), 0xA5A5A5A500000000U) << "no table";
    EXPECT_GT(reinterpret_cast<std::uintptr_t>(tables[1]), 0xA5A5A5A500000000U) << "no table";
    expect_table(tables[2], same, "mode 0");
    expect_table(tables[3], same, "mode 1");
    expect_table(tables[4], upper, "mode 2");
    expect_table(tables[5], lower, "mode 3");
    expect_table(tables[6], same, "mode 4");
}

TEST(ControlBlock, CollatingTable) {
    Block made;
    expect_table(made.word<unsigned char>(6), same, "at first");
    made.block.set_case_blind(true);
    expect_table(made.word<unsigned char>(6), upper, "case blind");
    EXPECT_EQ(made.block.collating_table(), ControlBlock::case_blind_table());
    made.block.set_case_blind(false);
    expect_table(made.word<unsigned char>(6), same, "again");
    unsigned char own[256]{};
    made.block.words()[6] = own;
    EXPECT_EQ(made.block.collating_table(), own) << "whoever wrote the word";
}

TEST(ControlBlock, MultibyteMode) {
    Block made;
    auto** locale = made.word<unsigned char*>(13);
    EXPECT_EQ(locale[3], nullptr);
    EXPECT_FALSE(made.block.multibyte());
    made.block.set_multibyte(true);
    ASSERT_NE(locale[3], nullptr);
    EXPECT_NE(locale[3][72], 0);
    EXPECT_TRUE(made.block.multibyte());
    locale[3][72] = 0;
    EXPECT_FALSE(made.block.multibyte()) << "a record that is not active";
    made.block.set_multibyte(true);
    made.block.set_multibyte(false);
    EXPECT_EQ(locale[3], nullptr);
    made.block.words()[13] = nullptr;
    EXPECT_FALSE(made.block.multibyte()) << "no locale block";
}

}  // namespace
}  // namespace finance::test
