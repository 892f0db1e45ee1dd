// The host's memory, called as a module calls it: through the vector's two slots.
#include "host/memory_vector.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace finance::test {
namespace {

using host::MemoryVector;

constexpr std::int64_t flags = 0x2006;

unsigned char* allocate(MemoryVector& memory, std::int64_t bytes) {
    using Allocate = void* (*)(void** vector, std::int64_t bytes, std::int64_t flags);
    void** vector = memory.entry_points();
    return static_cast<unsigned char*>(reinterpret_cast<Allocate>(vector[0])(vector, bytes, flags));
}

void* release(MemoryVector& memory, void* block, std::int64_t bytes, std::int64_t release_flags = flags) {
    using Release = void* (*)(void** vector, void* block, std::int64_t bytes, std::int64_t flags);
    void** vector = memory.entry_points();
    return reinterpret_cast<Release>(vector[1])(vector, block, bytes, release_flags);
}

TEST(MemoryVector, Accounts) {
    MemoryVector memory;
    EXPECT_EQ(memory.requests(), 0U);
    unsigned char* a = allocate(memory, 80);
    unsigned char* b = allocate(memory, 0);
    ASSERT_TRUE(a != nullptr && b != nullptr);
    EXPECT_EQ(memory.requests(), 2U);
    EXPECT_EQ(memory.blocks(), 2);
    EXPECT_EQ(memory.bytes(), 80);
    EXPECT_EQ(memory.last_flags(), flags);
    EXPECT_EQ(release(memory, a, 80), nullptr);
    EXPECT_EQ(memory.blocks(), 1);
    EXPECT_EQ(memory.bytes(), 0);
    EXPECT_EQ(release(memory, b, 0), nullptr);
    EXPECT_EQ(memory.blocks(), 0);
    EXPECT_EQ(memory.requests(), 2U);
    EXPECT_EQ(memory.errors(), 0U);
}

TEST(MemoryVector, BlocksAreAlignedAndFilled) {
    MemoryVector memory;
    for (std::int64_t bytes = 1; bytes <= 100; ++bytes) {
        unsigned char* block = allocate(memory, bytes);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U) << bytes;
        EXPECT_EQ(std::count(block, block + bytes, MemoryVector::fresh_byte), bytes);
        std::fill(block, block + bytes, static_cast<unsigned char>(0));
        release(memory, block, bytes);
    }
    EXPECT_EQ(memory.errors(), 0U);
}

TEST(MemoryVector, RequestsThatCannotBeMet) {
    MemoryVector memory;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t bytes : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(), most, most - 47}) {
        EXPECT_EQ(allocate(memory, bytes), nullptr) << bytes;
    }
    EXPECT_EQ(memory.requests(), 4U) << "refused ones count";
    EXPECT_EQ(memory.blocks(), 0);
    EXPECT_EQ(memory.bytes(), 0);
}

TEST(MemoryVector, FaultsComeOnceAndWhereAskedFor) {
    for (std::uint64_t failing = 0; failing <= 4; ++failing) {
        MemoryVector memory;
        memory.fail_at(failing);
        for (std::uint64_t n = 1; n <= 6; ++n) {
            void* block = allocate(memory, 8);
            EXPECT_EQ(block == nullptr, n == failing) << failing << ", request " << n;
            release(memory, block, 8);
        }
        EXPECT_EQ(memory.blocks(), 0);
        EXPECT_EQ(memory.errors(), 0U);
    }
    MemoryVector memory;
    memory.fail_at(1);
    memory.fail_at(0);
    void* block = allocate(memory, 8);
    EXPECT_NE(block, nullptr) << "the fault was taken back";
    release(memory, block, 8);
}

// ---- Releases that are errors

struct BadRelease {
    const char* id;
    std::int64_t bytes;
    std::int64_t flags;
    int spoiled_byte = -1;  // of the block and what follows it
};

TEST(MemoryVector, MismatchedReleases) {
    constexpr BadRelease cases[] = {
        {"more bytes", 25, flags},
        {"fewer bytes", 23, flags},
        {"no bytes", 0, flags},
        {"other flags", 24, flags + 1},
        {"flags' high half", 24, flags | (std::int64_t{1} << 40)},
        {"one byte too far", 24, flags, 24},
        {"the guard's last", 24, flags, 39},
    };
    MemoryVector memory;
    std::uint64_t errors = 0;
    for (const BadRelease& row : cases) {
        unsigned char* block = allocate(memory, 24);
        if (row.spoiled_byte >= 0) block[row.spoiled_byte] ^= 1U;
        release(memory, block, row.bytes, row.flags);
        EXPECT_EQ(memory.errors(), ++errors) << row.id;
        EXPECT_EQ(memory.blocks(), 0) << row.id << ": released all the same";
        EXPECT_EQ(memory.bytes(), 0) << row.id;
    }
    EXPECT_EQ(errors, 7U);
}

TEST(MemoryVector, BlocksOfOthersAreLeftAlone) {
    MemoryVector memory;
    MemoryVector another;
    unsigned char* block = allocate(another, 8);
    release(memory, block, 8);
    EXPECT_EQ(memory.errors(), 1U);
    EXPECT_EQ(another.blocks(), 1);
    release(another, block, 8);
    EXPECT_EQ(another.blocks(), 0);
    EXPECT_EQ(another.errors(), 0U);

    alignas(16) unsigned char nobodys[64]{};
    release(memory, nobodys + 32, 8);
    EXPECT_EQ(memory.errors(), 2U);
    EXPECT_EQ(memory.blocks(), 0);
    release(memory, nullptr, 8);
    EXPECT_EQ(memory.errors(), 2U) << "a null block is no error";
}

}  // namespace
}  // namespace finance::test
