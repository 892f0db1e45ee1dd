// The load protocol: the records byte for byte, the requests, memory that cannot be had, the version record.
#include "module/registration.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cctype>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "abi/host_control.hpp"
#include "host/embedded_host.hpp"
#include "host/memory_vector.hpp"
#include "tests/abi/bare_host.hpp"

namespace finance::test {
namespace {

using namespace std::string_literals;

template <typename T>
T field(const void* record, std::size_t offset) {
    T value;
    std::memcpy(&value, static_cast<const unsigned char*>(record) + offset, sizeof value);
    return value;
}

std::string bytes_at(const void* record, std::size_t offset, std::size_t size) {
    return {static_cast<const char*>(record) + offset, size};
}

std::string padded(std::string text, std::size_t size) {
    text.resize(size, '\0');
    return text;
}

// A text field: some characters, then NULs up to its end.
std::string text_field(const void* record, std::size_t offset, std::size_t size) {
    const std::string bytes = bytes_at(record, offset, size);
    const std::string text = bytes.c_str();
    EXPECT_LT(text.size(), size) << "offset " << offset << " has no NUL";
    EXPECT_EQ(bytes, padded(text, size)) << "offset " << offset;
    return text;
}

// ---- Entry

TEST(EntryPoint, KeepsBothAnchorsAndTheToolkit) {
    BareHost host;
    host.words[82] = 0x0123456789ABCDEF;
    const std::array<std::uint64_t, 128> before = host.words;
    v_global_gcb_anchor = nullptr;
    char process_block[8];
    EXPECT_EQ(mcn_main(host.words.data(), process_block), &vi_mcn);
    EXPECT_EQ(v_global_gcb_anchor, host.words.data());
    EXPECT_EQ(v_global_pidb_anchor, process_block);
    EXPECT_EQ(Exported_KXHandle, 0x0123456789ABCDEFU);
    EXPECT_EQ(host.words, before);
    EXPECT_TRUE(host.marked_vectors().empty());
    EXPECT_TRUE(host.requests.empty());
    host.words[82] = 7;
    EXPECT_EQ(Exported_KXHandle, 0x0123456789ABCDEFU) << "copied, not read again";
    EXPECT_EQ(mcn_main(host.words.data(), nullptr), &vi_mcn);
    EXPECT_EQ(Exported_KXHandle, 7U);
    EXPECT_EQ(v_global_pidb_anchor, nullptr);
}

// ---- Records

TEST(Records, ImageInformation) {
    const void* record = &vi_mcn;
    EXPECT_EQ(bytes_at(record, 0, 24), padded("ZOT_Image_Information=", 24));
    EXPECT_EQ(field<std::uint32_t>(record, 24), 0xB0BDEBEDU);
    EXPECT_EQ(field<std::uint32_t>(record, 28), 0U);
    EXPECT_EQ(field<std::uint64_t>(record, 32), 8U);
    const std::string short_version = text_field(record, 40, 6);
    const std::string release = text_field(record, 46, 20);
    EXPECT_FALSE(short_version.empty());
    EXPECT_TRUE(release.starts_with(short_version)) << release;
    const std::string date = text_field(record, 66, 30);
    ASSERT_EQ(date.size(), 11U) << date;
    constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    EXPECT_EQ(months.find(date.substr(0, 3)) % 3, 0U) << date;
    for (const std::size_t digit : {4U, 5U, 7U, 8U, 9U, 10U}) {
        EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(date[digit]))) << date;
    }
    EXPECT_EQ(date[3], ' ');
    EXPECT_EQ(date[6], ' ');
    EXPECT_EQ(field<const void*>(record, 96), &mcn_pcns);
    EXPECT_GT(std::strlen(field<const char*>(record, 104)), 0U);
    EXPECT_EQ(bytes_at(record, 112, 8), padded("001", 8));
}

TEST(Records, ProgramControl) {
    EXPECT_EQ(mcn_pcns[0], &pcn_ZELKOVAN);
    EXPECT_EQ(mcn_pcns[1], nullptr);
    const void* record = &pcn_ZELKOVAN;
    EXPECT_EQ(bytes_at(record, 0, 8), "\0\0\xFF\xFF\xFF\xFF\xFF\xFF"s);
    EXPECT_EQ(field<std::uint64_t>(record, 8), 1024U);
    EXPECT_EQ(field<std::uint64_t>(record, 16), 1024U);
    EXPECT_EQ(bytes_at(record, 24, 8), "zelkovan");
    EXPECT_EQ(field<std::uint64_t>(record, 32), 0U);
    EXPECT_EQ(field<void*>(record, 40), reinterpret_cast<void*>(&zelkovan));
    EXPECT_EQ(field<std::uint64_t>(record, 48), 1U);
    EXPECT_NE(field<std::uint64_t>(record, 56), 0U);
    EXPECT_NE(field<std::uint64_t>(record, 64), 0U);
    EXPECT_EQ(field<std::uint64_t>(record, 72), 15U);
}

TEST(Records, FunctionItem) {
    const void* record = &fncitems;
    EXPECT_EQ(bytes_at(record, 0, 24), padded("FINANCE", 24));
    EXPECT_EQ(field<std::uint32_t>(record, 24), 0U);
    EXPECT_EQ(field<std::uint32_t>(record, 28), 2U);
    EXPECT_EQ(field<std::uint64_t>(record, 32), 66U);
    EXPECT_EQ(field<std::uint64_t>(record, 40), 512U);
    EXPECT_EQ(field<std::uint64_t>(record, 48), 202U);
}

TEST(Records, Version) {
    std::vector<std::uint64_t> words(28, 0x5C5C5C5C5C5C5C5C);
    kxvercn1(&words[1]);
    EXPECT_EQ(words.front(), 0x5C5C5C5C5C5C5C5CU) << "nothing before the buffer";
    EXPECT_EQ(words.back(), 0x5C5C5C5C5C5C5C5CU) << "nothing behind its 208 bytes";
    const auto text = [&](std::size_t word) { return std::string{std::bit_cast<const char*>(words[word + 1])}; };
    EXPECT_EQ(text(0), text_field(&vi_mcn, 46, 20)) << "the release";
    EXPECT_FALSE(text(1).empty()) << "source branch";
    const std::uint64_t seconds = words[3 + 1];
    EXPECT_GT(seconds, 0U);
    EXPECT_LT(seconds, std::uint64_t{1} << 33) << "a number of seconds, not an address";
    EXPECT_EQ(text(4), "base");
    EXPECT_FALSE(text(5).empty()) << "build identifier";
    EXPECT_EQ(text(6), "fnc");
    EXPECT_FALSE(text(7).empty()) << "build hash";
    EXPECT_EQ(text(9), "version");
    EXPECT_EQ(text(10), "::");
    for (const std::size_t empty : {2U, 8U, 11U, 13U}) EXPECT_EQ(text(empty), "") << empty;
    for (const std::size_t patched : {12U, 14U}) {
        const std::string key_and_blanks = text(patched);
        const std::size_t equals = key_and_blanks.find('=');
        ASSERT_NE(equals, std::string::npos) << key_and_blanks;
        EXPECT_GT(key_and_blanks.size(), equals + 8) << "room for a patch";
        EXPECT_EQ(key_and_blanks.find_first_not_of(' ', equals + 1), std::string::npos);
    }
    EXPECT_TRUE(text(12).starts_with("ZOT_VERSION_HOTFIX_NUMBER="));
    EXPECT_FALSE(text(15).empty()) << "build host";
    const std::string date = text_field(&vi_mcn, 66, 30);
    const std::string when = text(16);  // weekday, month, day, time, zone, year
    ASSERT_EQ(when.size(), 28U) << when;
    EXPECT_EQ(when.substr(4, 6), date.substr(0, 6)) << when;
    EXPECT_EQ(when.substr(24), date.substr(7)) << when;
    for (std::size_t word = 17; word < 26; ++word) EXPECT_EQ(words[word + 1], 0U) << word;
}

// ---- Requests

constexpr std::uint64_t fresh_word = 0xC3C3C3C3C3C3C3C3;
static_assert(BareHost::fresh_byte == 0xC3);

TEST(Requests, FunctionItems) {
    BareHost host;
    const void* block = zelkovan(1);
    ASSERT_NE(block, nullptr);
    void* const vector = std::bit_cast<void*>(host.words[10]);
    EXPECT_EQ(host.requests, (std::vector<MemoryRequest>{{vector, nullptr, 16, 0x2006}}));
    EXPECT_EQ(field<std::uint32_t>(block, 0), 1U);
    EXPECT_EQ(field<std::uint32_t>(block, 4), static_cast<std::uint32_t>(fresh_word)) << "left alone";
    EXPECT_EQ(field<const void*>(block, 8), &fncitems);
    EXPECT_TRUE(host.calls.empty());
}

TEST(Requests, EntryPoints) {
    BareHost host;
    const void* block = zelkovan(2);
    ASSERT_NE(block, nullptr);
    void* const vector = std::bit_cast<void*>(host.words[10]);
    EXPECT_EQ(host.requests, (std::vector<MemoryRequest>{{vector, nullptr, 16, 0x2006}}));
    EXPECT_EQ(field<std::uint64_t>(block, 0), fresh_word) << "left alone";
    EXPECT_EQ(field<void*>(block, 8), reinterpret_cast<void*>(&fncfin));
}

TEST(Requests, OthersGetNothing) {
    BareHost host;
    for (const std::int32_t request : {3, 0, -1, 4, 1000, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(zelkovan(request), nullptr) << request;
        EXPECT_EQ(xfmuent(request, 1, &fncitems, nullptr), nullptr) << request;
    }
    EXPECT_TRUE(host.requests.empty());
    EXPECT_TRUE(host.calls.empty());
    EXPECT_TRUE(host.marked_vectors().empty());
}

// Addresses that are never called: only their bits travel.
std::vector<EntryPointAddress> any_entries(std::size_t count) {
    std::vector<EntryPointAddress> entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(std::bit_cast<EntryPointAddress>(std::uint64_t{0x1000000000000001} * (i + 1)));
    }
    return entries;
}

TEST(Requests, AnyNumberOfEntryPoints) {
    for (const std::uint32_t count : {0U, 1U, 2U, 3U, 11U, 12U, 13U, 14U, 100U}) {
        BareHost host;
        const std::vector<EntryPointAddress> entries = any_entries(count);
        const void* block = xfmuent(2, count, nullptr, entries.data());
        ASSERT_NE(block, nullptr) << count;
        ASSERT_EQ(host.requests.size(), 1U) << count;
        EXPECT_EQ(host.requests[0].bytes, 8 + 8 * std::int64_t{count});
        EXPECT_EQ(host.requests[0].flags, 0x2006);
        EXPECT_EQ(field<std::uint64_t>(block, 0), fresh_word) << count;
        for (std::uint32_t i = 0; i < count; ++i) {
            EXPECT_EQ(field<EntryPointAddress>(block, 8 + 8 * std::size_t{i}), entries[i]) << count << ' ' << i;
        }
    }
}

TEST(Requests, AnyNumberOfItems) {
    for (const std::uint32_t count : {0U, 1U, 13U, 0xFFFFFFFFU}) {
        BareHost host;
        const void* block = xfmuent(1, count, &fncitems, nullptr);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(host.requests[0].bytes, 16);
        EXPECT_EQ(field<std::uint32_t>(block, 0), count);
        EXPECT_EQ(field<std::uint32_t>(block, 4), static_cast<std::uint32_t>(fresh_word));
        EXPECT_EQ(field<const void*>(block, 8), &fncitems);
    }
}

// ---- Without memory

TEST(WithoutMemory, TheExitServiceIsAsked) {
    for (const std::int32_t request : {1, 2}) {
        BareHost host;
        host.memory_is_out = true;
        EXPECT_EQ(zelkovan(request), nullptr) << "where the exit comes back, against its promise";
        ASSERT_EQ(host.requests.size(), 1U);
        ASSERT_EQ(host.calls.size(), 1U);
        EXPECT_EQ(host.calls[0].r10, service_exit);
        EXPECT_EQ(host.calls[0].integers[0], 1016U);
        EXPECT_EQ(host.calls[0].integers[1], 0U);
        EXPECT_EQ(host.calls[0].stack_pointer % 16, 8U);
        EXPECT_EQ(host.marked_vectors(), std::vector<int>{39});
    }
}

// The built module under the embedded host, whose exit does not return.
TEST(WithoutMemory, TheEmbeddedHostSeesTheExit) {
    for (const std::uint64_t failing : {1U, 2U}) {
        std::optional<host::ExitRequest> seen;
        try {
            const host::EmbeddedHost refused{ZELKOVAN_MODULE, {.failing_request = failing}};
        } catch (const host::LoadError& error) {
            seen = error.exit_request();
        }
        ASSERT_TRUE(seen.has_value()) << failing;
        EXPECT_EQ(*seen, (host::ExitRequest{1016, 0})) << failing;
    }
    host::EmbeddedHost loaded{ZELKOVAN_MODULE};
    EXPECT_EQ(loaded.memory().requests(), 2U);
    EXPECT_EQ(loaded.memory().last_flags(), 0x2006);
    EXPECT_EQ(loaded.evaluate("PMT", {1.0, 1.0, 5.0}).value, -10.0);
    EXPECT_EQ(loaded.memory().requests(), 2U) << "no call takes memory";
}

}  // namespace
}  // namespace finance::test
