// The host's toolkit, called as a module calls it: through the tables behind the handle.
#include "host/toolkit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace finance::test {
namespace {

using host::Toolkit;

void** operations(void* object) { return *static_cast<void***>(object); }

void* create_pool(Toolkit& toolkit, const char* name, std::uint64_t flags = 0) {
    using Create = void* (*)(void* toolkit, const char* name, std::uint64_t flags);
    void* handle = toolkit.object();
    return reinterpret_cast<Create>(operations(handle)[0])(handle, name, flags);
}

unsigned char* allocate(void* pool, std::int64_t bytes, std::uint64_t flags = 0) {
    using Allocate = void* (*)(void* pool, std::int64_t bytes, std::uint64_t flags);
    return static_cast<unsigned char*>(reinterpret_cast<Allocate>(operations(pool)[0])(pool, bytes, flags));
}

void release(void* pool) {
    using Release = void (*)(void* pool);
    reinterpret_cast<Release>(operations(pool)[1])(pool);
}

TEST(Toolkit, PoolsAndBlocksAreCounted) {
    Toolkit toolkit;
    void* a = create_pool(toolkit, "FIRST", 0x80000000);
    EXPECT_EQ(toolkit.last_name(), "FIRST");
    EXPECT_EQ(toolkit.last_pool_flags(), 0x80000000U);
    void* b = create_pool(toolkit, "SECOND", 1);
    ASSERT_TRUE(a != nullptr && b != nullptr && a != b);
    EXPECT_EQ(toolkit.last_name(), "SECOND");
    EXPECT_NE(allocate(a, 64, 0x80000000), nullptr);
    EXPECT_EQ(toolkit.last_block_flags(), 0x80000000U);
    EXPECT_NE(allocate(b, 8), nullptr);
    EXPECT_NE(allocate(a, 0), nullptr);
    EXPECT_EQ(toolkit.pools(), 2);
    EXPECT_EQ(toolkit.blocks(), 3);
    EXPECT_EQ(toolkit.bytes(), 72);
    release(a);
    EXPECT_EQ(toolkit.pools(), 1);
    EXPECT_EQ(toolkit.blocks(), 1);
    EXPECT_EQ(toolkit.bytes(), 8);
    release(b);
    EXPECT_EQ(toolkit.pools() + toolkit.blocks() + toolkit.bytes(), 0);
    EXPECT_EQ(toolkit.pools_created(), 2U);
    EXPECT_EQ(toolkit.blocks_created(), 3U);
    EXPECT_EQ(toolkit.errors(), 0U);
}

TEST(Toolkit, BlocksAreAlignedAndFilled) {
    Toolkit toolkit;
    void* pool = create_pool(toolkit, "POOL");
    for (std::int64_t bytes = 1; bytes <= 100; ++bytes) {
        unsigned char* block = allocate(pool, bytes);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U) << bytes;
        EXPECT_EQ(std::count(block, block + bytes, Toolkit::fresh_byte), bytes);
        std::fill(block, block + bytes, static_cast<unsigned char>(0));
    }
    release(pool);
    EXPECT_EQ(toolkit.blocks(), 0);
}

TEST(Toolkit, WhatCannotBeHad) {
    Toolkit toolkit;
    toolkit.fail_pool_at(2);
    void* pool = create_pool(toolkit, "POOL");
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(create_pool(toolkit, "REFUSED"), nullptr);
    EXPECT_EQ(toolkit.last_name(), "REFUSED");
    EXPECT_EQ(toolkit.pools_created(), 1U);
    toolkit.fail_block_at(2);
    EXPECT_NE(allocate(pool, 8), nullptr);
    EXPECT_EQ(allocate(pool, 8), nullptr);
    EXPECT_NE(allocate(pool, 8), nullptr);
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t bytes : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(), most, most - 15}) {
        EXPECT_EQ(allocate(pool, bytes), nullptr) << bytes;
    }
    EXPECT_EQ(toolkit.blocks(), 2);
    release(pool);
    EXPECT_EQ(toolkit.pools() + toolkit.blocks() + toolkit.bytes(), 0);
    EXPECT_EQ(toolkit.errors(), 0U);
}

TEST(Toolkit, Errors) {
    Toolkit toolkit;
    void* pool = create_pool(toolkit, nullptr);
    ASSERT_NE(pool, nullptr) << "a pool without a name is one, though an error";
    EXPECT_EQ(toolkit.errors(), 1U);
    EXPECT_EQ(toolkit.last_name(), "");
    // What only looks like a pool: its words, but not its mark.
    void* look_alike[4] = {static_cast<void**>(pool)[0], static_cast<void**>(pool)[1], nullptr, nullptr};
    EXPECT_EQ(allocate(look_alike, 8), nullptr);
    EXPECT_EQ(toolkit.errors(), 2U);
    release(look_alike);
    EXPECT_EQ(toolkit.errors(), 3U);
    EXPECT_EQ(toolkit.pools(), 1);
    release(pool);
    EXPECT_EQ(toolkit.pools(), 0);
}

TEST(Toolkit, Shapes) {
    Toolkit toolkit;
    toolkit.take_shape(Toolkit::Shape::without_table);
    EXPECT_EQ(operations(toolkit.object()), nullptr);
    toolkit.take_shape(Toolkit::Shape::without_operation);
    ASSERT_NE(operations(toolkit.object()), nullptr);
    EXPECT_EQ(operations(toolkit.object())[0], nullptr);
    toolkit.take_shape(Toolkit::Shape::whole);
    void* pool = create_pool(toolkit, "POOL");
    ASSERT_NE(pool, nullptr);
    release(pool);
}

}  // namespace
}  // namespace finance::test
