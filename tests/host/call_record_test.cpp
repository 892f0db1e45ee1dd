// The record of a call: what the module finds in it, and that a module which writes where it may not is found out.
#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/embedded_host.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::EmbeddedHost;
using host::Evaluation;
using host::Options;

using Lines = std::vector<std::string>;

const std::vector<Argument> one_of_each{
    Argument{2.5}, Argument{-3},       Argument{"text"},        Argument{std::string_view{}},
    Argument{""},  Argument::absent(), Argument::absent_text(), Argument{static_cast<const char*>(nullptr)},
};

// type byte / flag byte, then what is behind: 1 numeric, 2 character
TEST(CallRecord, KindsOfArguments) {
    const EmbeddedHost host{fake_module("good")};
    const Evaluation got = host.evaluate("DESCRIBE", one_of_each);
    EXPECT_EQ(got.log, (Lines{"1/0 2.5", "1/0 -3", "2/0 'text'", "2/0 no text", "2/0 ''", "1/0 no value",
                              "2/0 no value", "2/0 no value"}));
    EXPECT_EQ(got.value, 0.0) << "mode byte";
}

// The host's mark in every type, all flags but the module's own.
TEST(CallRecord, KindsOfArgumentsAmongJunk) {
    const EmbeddedHost host{fake_module("good"), {.note_mode = 88, .junk_in_host_bits = true}};
    const Evaluation got = host.evaluate("DESCRIBE", one_of_each);
    EXPECT_EQ(got.log, (Lines{"5/254 2.5", "5/254 -3", "6/254 'text'", "6/254 no text", "6/254 ''", "5/254 no value",
                              "6/254 no value", "6/254 no value"}));
    EXPECT_EQ(got.value, 88.0) << "mode byte";
}

// Where notes are counted the counter starts at 0; elsewhere it is as much junk as the rest.
TEST(CallRecord, NoteCounter) {
    for (const int mode : {0, 72, 73, 88, 104, 136}) {
        const EmbeddedHost host{fake_module("good"),
                                {.note_mode = static_cast<std::uint8_t>(mode), .junk_in_host_bits = true}};
        EXPECT_EQ(host.evaluate("NOTE COUNTER", {}).value == 0.0, mode != 0 && mode != 73) << mode;
    }
}

TEST(CallRecord, TheFirstFlagCounts) {
    for (const bool junk : {false, true}) {
        const EmbeddedHost host{fake_module("good"), {.junk_in_host_bits = junk}};
        EXPECT_EQ(host.evaluate("SUM", {1, 2}).flagged, -1);
        EXPECT_EQ(host.evaluate("SUM", {1, Argument::absent(), Argument::absent()}).flagged, 2);
        EXPECT_EQ(host.evaluate("SUM", {1, Argument::absent_text()}).flagged, 2);
        EXPECT_EQ(host.evaluate("NO SUCH COMMAND", {1}).flagged, 0);
        EXPECT_EQ(host.evaluate(std::string_view{}, {}).flagged, 0);
    }
}

// ---- Bits that are not the module's

constexpr std::size_t slots = 3;  // FLIP, byte, bits
constexpr std::size_t record_bytes = sizeof(HostCallContext) + slots * (sizeof(ArgSlot) + sizeof(CharacterDescriptor));

bool is_slot_flags(std::size_t byte) {
    return byte >= sizeof(HostCallContext) && byte < sizeof(HostCallContext) + slots * sizeof(ArgSlot) &&
           (byte - sizeof(HostCallContext)) % sizeof(ArgSlot) == offsetof(ArgSlot, flags);
}

bool is_note_counter(std::size_t byte) {
    return byte >= offsetof(HostCallContext, notes_written) && byte < offsetof(HostCallContext, count);
}

bool found_out(const EmbeddedHost& host, std::size_t byte, int bits) {
    try {
        (void)host.evaluate("FLIP", {byte, bits});
        return false;
    } catch (const std::logic_error&) {
        return true;
    }
}

TEST(JunkMode, EveryBitIsWatched) {
    int allowed = 0;
    const EmbeddedHost host{fake_module("good"), {.junk_in_host_bits = true}};
    for (std::size_t byte = 0; byte < record_bytes; ++byte) {
        for (int bits = 1; bits <= 0x80; bits *= 2) {
            const bool may = is_slot_flags(byte) && bits == ZELKOVAN_FLAG_INVALID;
            EXPECT_EQ(found_out(host, byte, bits), !may) << "byte " << byte << ", bits " << bits;
            if (may) ++allowed;
        }
    }
    EXPECT_EQ(allowed, 3);
}

TEST(JunkMode, TheNoteCounterIsTheModulesInFourModes) {
    for (const int mode : {0, 71, 72, 73, 88, 104, 136, 255}) {
        const bool counts = mode == 72 || mode == 88 || mode == 104 || mode == 136;
        const EmbeddedHost host{fake_module("good"),
                                {.note_mode = static_cast<std::uint8_t>(mode), .junk_in_host_bits = true}};
        for (std::size_t byte = 0; byte < sizeof(HostCallContext); ++byte) {
            EXPECT_EQ(found_out(host, byte, 0x40), !(counts && is_note_counter(byte))) << mode << ", byte " << byte;
        }
    }
}

TEST(JunkMode, OffMeansUnwatched) {
    const EmbeddedHost host{fake_module("good")};
    EXPECT_FALSE(found_out(host, 0, 1));
    EXPECT_EQ(host.evaluate("FLIP", {sizeof(HostCallContext) + sizeof(ArgSlot) + offsetof(ArgSlot, flags), 1}).flagged,
              1);
}

}  // namespace
}  // namespace finance::test
