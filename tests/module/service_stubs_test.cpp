// Service stubs and memory adapters at register level: every register and stack word that can carry an argument arrives
// as it was, the service identifier comes in r10, and one byte of the marks is zeroed.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <vector>

#include "abi/host_services.hpp"
#include "abi/zelkovan.h"
#include "tests/abi/bare_host.hpp"

namespace finance::test {
namespace {

Registers distinct_registers() {
    Registers registers{};
    std::uint64_t next = 0x0101010101010101;
    for (std::uint64_t& integer : registers.integers) integer = 0xF000000000000000 + (next += 0x11);
    registers.rax = 0x1122334455667700 + 0x5B;
    for (std::uint64_t& word : registers.stack) word = 0xE000000000000000 + (next += 0x11);
    for (auto& vector : registers.vectors) {
        for (double& half : vector) half = static_cast<double>(next += 0x11);
    }
    return registers;
}

bool same_arguments(const Registers& a, const Registers& b) {
    return std::memcmp(a.integers, b.integers, sizeof a.integers) == 0 && (a.rax & 0xFF) == (b.rax & 0xFF) &&
           std::memcmp(a.stack, b.stack, sizeof a.stack) == 0 &&
           std::memcmp(a.vectors, b.vectors, sizeof a.vectors) == 0;
}

struct Stub {
    const char* name;
    void* address;
    std::uint32_t vector;
    std::uint32_t slot;
};

const std::vector<Stub> stubs{
    {"xexit", reinterpret_cast<void*>(&xexit), 39, 4},      {"xpmlog", reinterpret_cast<void*>(&xpmlog), 39, 70},
    {"xpslog", reinterpret_cast<void*>(&xpslog), 39, 89},   {"wzstrlo", reinterpret_cast<void*>(&wzstrlo), 0, 330},
    {"wzstrup", reinterpret_cast<void*>(&wzstrup), 0, 331}, {"wzsxcch", reinterpret_cast<void*>(&wzsxcch), 4, 7},
    {"wzsxrch", reinterpret_cast<void*>(&wzsxrch), 4, 39},  {"wzsxcmn", reinterpret_cast<void*>(&wzsxcmn), 4, 65},
    {"zmdy", reinterpret_cast<void*>(&zmdy), 164, 11},
};

// A host of one service: every other place of every vector is null, every vector but one too.
class OneService {
public:
    explicit OneService(BareHost& host, std::uint32_t vector, std::uint32_t slot) {
        slots_[slot] = reinterpret_cast<void*>(&registers_record);
        vectors_[vector] = slots_.data();
        host.words[0] = std::bit_cast<std::uint64_t>(vectors_.data());
    }

private:
    std::array<void*, 512> slots_{};
    std::array<void*, 256> vectors_{};
};

TEST(ServiceStubs, ArgumentsIdentifierAndMark) {
    ASSERT_EQ(stubs.size(), 9U);
    for (const Stub& stub : stubs) {
        BareHost host;
        const OneService only{host, stub.vector, stub.slot};
        const std::array<std::uint64_t, 128> words = host.words;
        Registers given = distinct_registers();
        char text[] = "AbC";  // where a recorder works on a text
        given.integers[0] = std::bit_cast<std::uint64_t>(&text[0]);
        given.integers[1] = stub.vector == 39 ? std::bit_cast<std::uint64_t>(&text[0]) : 3;
        host.answer = 0x0123456789ABCDEF;
        EXPECT_EQ(registers_call(stub.address, &given), host.answer) << stub.name << " hands the answer back";
        ASSERT_EQ(host.calls.size(), 1U) << stub.name;
        EXPECT_TRUE(same_arguments(host.calls[0], given)) << stub.name;
        EXPECT_EQ(host.calls[0].r10, std::uint64_t{stub.vector} << 32 | stub.slot) << stub.name;
        EXPECT_EQ(host.calls[0].stack_pointer % 16, 8U) << stub.name << " jumps, it does not call";
        EXPECT_EQ(host.marks[stub.vector], 0) << stub.name;
        EXPECT_EQ(host.marked_vectors(), std::vector<int>{static_cast<int>(stub.vector)}) << stub.name;
        EXPECT_EQ(host.words, words) << stub.name;
    }
}

// As the module calls them: an answer in a vector register, and a control block that is read anew each time.
TEST(ServiceStubs, AsTheModuleCallsThem) {
    BareHost first;
    first.answer = std::bit_cast<std::uint64_t>(-3653.0);
    EXPECT_EQ(zmdy(1, 1, 1950), -3653.0);
    EXPECT_EQ(first.calls[0].vectors[0][0], 1.0);
    EXPECT_EQ(first.calls[0].vectors[2][0], 1950.0);
    EXPECT_EQ(first.marked_vectors(), std::vector<int>{164});
    xpmlog(1, 2);
    EXPECT_EQ(static_cast<std::uint32_t>(first.calls[1].integers[0]), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(first.calls[1].integers[1]), 2U);
    {
        BareHost second;
        xpmlog(3, 4);
        EXPECT_EQ(second.calls.size(), 1U);
    }
    EXPECT_EQ(first.calls.size(), 2U);
    xpslog("%s and %s", "one", "two");
    EXPECT_EQ(first.calls.size(), 3U);
    xpslog("%d %f", 1, 2.5);
    EXPECT_EQ(first.calls[3].rax & 0xFF, 1U) << "one vector register in use";
    EXPECT_EQ(first.calls[3].vectors[0][0], 2.5);
}

// ---- Memory adapters

struct Adapter {
    const char* name;
    void* address;
    std::size_t slot;
    std::size_t widened;  // argument, from 0
};

const std::vector<Adapter> adapters{
    {"vmalloc_handler", reinterpret_cast<void*>(&vmalloc_handler), 0, 2},
    {"vmalcp_handler", reinterpret_cast<void*>(&vmalcp_handler), 0, 2},
    {"vmfree_handler", reinterpret_cast<void*>(&vmfree_handler), 1, 3},
};

TEST(MemoryAdapters, OneArgumentIsWidened) {
    struct Row {
        std::uint64_t given;
        std::uint64_t expected;
    };
    const std::vector<Row> rows{
        {0, 0},
        {0x2006, 0x2006},
        {0x7FFFFFFF, 0x7FFFFFFF},
        {0x80000000, 0xFFFFFFFF80000000},
        {0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF},
        {0x7777777700000010, 0x10},
        {0x77777777FFFFFFF0, 0xFFFFFFFFFFFFFFF0},
        {0xFFFFFFFF00000001, 1},
    };
    ASSERT_EQ(adapters.size(), 3U);
    for (const Adapter& adapter : adapters) {
        for (const Row& row : rows) {
            BareHost host;
            void* vector[2] = {nullptr, nullptr};
            vector[adapter.slot] = reinterpret_cast<void*>(&registers_record);
            Registers given = distinct_registers();
            given.integers[0] = std::bit_cast<std::uint64_t>(&vector[0]);
            given.integers[adapter.widened] = row.given;
            host.answer = 0xABCDEF;
            EXPECT_EQ(registers_call(adapter.address, &given), host.answer) << adapter.name;
            ASSERT_EQ(host.calls.size(), 1U) << adapter.name;
            Registers expected = given;
            expected.integers[adapter.widened] = row.expected;
            EXPECT_TRUE(same_arguments(host.calls[0], expected)) << adapter.name << ' ' << row.given;
            EXPECT_EQ(host.calls[0].stack_pointer % 16, 8U) << adapter.name << " jumps, it does not call";
            EXPECT_TRUE(host.marked_vectors().empty()) << adapter.name << " is no service";
        }
    }
}

}  // namespace
}  // namespace finance::test
