// What calls of the real module take from the host while they last: pools, memory, notes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "host/embedded_host.hpp"
#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using host::EmbeddedHost;
using host::Evaluation;
using host::Note;
using host::Toolkit;

using Notes = std::vector<Note>;

constexpr std::int64_t registration_blocks = 2;

Evaluation rate_of_return(const EmbeddedHost& host) { return host.evaluate("IRR", {-100, 60, 90}); }
Evaluation dated_rate(const EmbeddedHost& host) { return host.evaluate("XIRR", {-100, 110, 0, 365}); }

// -100 z^0 + 60 z + 90 z^2 = 0: z = (-60 + sqrt(3600 + 36000)) / 180, rate = 1/z - 1
const double rate_by_hand = 180.0 / (std::sqrt(39600.0) - 60.0) - 1.0;

TEST(Workspace, APoolForTheRateOfReturn) {
    EmbeddedHost host{real_module()};
    EXPECT_LE(units_in_last_place(rate_of_return(host).value, rate_by_hand), 16.0);
    const Toolkit& toolkit = host.toolkit();
    EXPECT_EQ(toolkit.pools_created(), 1U);
    EXPECT_EQ(toolkit.blocks_created(), 1U);
    EXPECT_EQ(toolkit.last_name(), "WORKPOOL");
    EXPECT_EQ(toolkit.last_pool_flags(), 0x80000000U);
    EXPECT_EQ(toolkit.last_block_flags(), 0x80000000U);
    EXPECT_EQ(toolkit.pools() + toolkit.blocks() + toolkit.bytes(), 0) << "all released";
    EXPECT_EQ(toolkit.errors(), 0U);
    EXPECT_EQ(host.memory().requests(), 2U) << "none but those of the registration";
}

TEST(Workspace, NoPoolToBeHad) {
    EmbeddedHost host{real_module()};
    host.toolkit().fail_pool_at(2);
    EXPECT_TRUE(rate_of_return(host).answered());
    EXPECT_FALSE(rate_of_return(host).answered()) << "the second pool is refused";
    EXPECT_TRUE(rate_of_return(host).answered());
    host.toolkit().fail_block_at(1);
    EXPECT_FALSE(rate_of_return(host).answered()) << "the pool has no block";
    EXPECT_EQ(host.toolkit().pools(), 0) << "the pool without a block is released, too";
    EXPECT_TRUE(rate_of_return(host).answered());
}

// A host without a usable toolkit: the workspace comes from the memory vector and goes back there.
void expect_memory_instead(EmbeddedHost& host, const char* id) {
    const std::uint64_t before = host.memory().requests();
    EXPECT_LE(units_in_last_place(rate_of_return(host).value, rate_by_hand), 16.0) << id;
    EXPECT_EQ(host.memory().requests(), before + 1) << id;
    EXPECT_EQ(host.memory().blocks(), registration_blocks) << id;
    host.memory().fail_at(1);
    EXPECT_FALSE(rate_of_return(host).answered()) << id;
    EXPECT_EQ(host.memory().errors(), 0U) << id;
    EXPECT_EQ(host.toolkit().pools_created(), 0U) << id;
}

TEST(Workspace, WithoutAToolkit) {
    {
        EmbeddedHost host{real_module(), {.toolkit = false}};
        EXPECT_EQ(host.control_block()[82], nullptr);
        expect_memory_instead(host, "no toolkit");
    }
    EmbeddedHost host{real_module()};
    EXPECT_EQ(host.control_block()[82], host.toolkit().object());
    host.toolkit().take_shape(Toolkit::Shape::without_table);
    expect_memory_instead(host, "no table");
    host.toolkit().take_shape(Toolkit::Shape::without_operation);
    expect_memory_instead(host, "no operation");
    host.toolkit().take_shape(Toolkit::Shape::whole);
    EXPECT_TRUE(rate_of_return(host).answered());
    EXPECT_EQ(host.toolkit().pools_created(), 1U);
}

TEST(Workspace, TwoArraysForDatedFlows) {
    EmbeddedHost host{real_module()};
    EXPECT_LE(units_in_last_place(dated_rate(host).value, 0.1), 64.0) << "110/100 - 1, a year";
    EXPECT_EQ(host.memory().requests(), 4U);
    EXPECT_EQ(host.memory().last_flags(), 0x2006);
    for (const std::uint64_t failing : {1U, 2U}) {
        host.memory().fail_at(failing);
        const Evaluation got = dated_rate(host);
        EXPECT_EQ(got.status, ZELKOVAN_STATUS_INVALID_ARGUMENT) << failing;
        EXPECT_EQ(got.flagged, -1) << failing;
        EXPECT_TRUE(got.notes.empty()) << failing;
        EXPECT_EQ(host.memory().blocks(), registration_blocks) << failing;
    }
    host.memory().fail_at(0);
    EXPECT_TRUE(dated_rate(host).answered());
    EXPECT_EQ(host.memory().blocks(), registration_blocks);
    EXPECT_EQ(host.memory().errors(), 0U);
}

// ---- Notes

constexpr Note no_convergence{744, 321};
constexpr Note no_usable_flows{744, 322};
constexpr Note no_more_notes{744, 323};

TEST(Notes, OfRatesThatAreNotFound) {
    const EmbeddedHost host{real_module()};
    for (int time = 1; time <= 10; ++time) {
        const Evaluation one_sign = host.evaluate("XIRR", {1, 1, 0, 365});
        EXPECT_TRUE(one_sign.answered() && std::isnan(one_sign.value));
        EXPECT_EQ(one_sign.notes, Notes{no_convergence}) << "time " << time;
        const Evaluation one_day = host.evaluate("XIRR", {1, -3, 5, 5});
        EXPECT_TRUE(one_day.answered() && std::isnan(one_day.value));
        EXPECT_EQ(one_day.notes, Notes{no_usable_flows}) << "time " << time;
    }
    EXPECT_TRUE(dated_rate(host).notes.empty());
    EXPECT_TRUE(host.notes_outside_calls().empty());
}

// A context that is kept from call to call: XIRR without a flow, its guess alone.
struct KeptContext {
    HostCallContext head{};
    ArgSlot slots[2]{};
    CharacterDescriptor descriptor{};
    double guess = 0.1;
    char name[4] = {'X', 'I', 'R', 'R'};

    explicit KeptContext(std::uint8_t mode) {
        head.mode = mode;
        head.count = 2;
        descriptor.length = sizeof name;
        descriptor.text = name;
        slots[0].type = ZELKOVAN_TYPE_CHARACTER;
        slots[0].value = &descriptor;
        slots[1].type = ZELKOVAN_TYPE_NUMERIC;
        slots[1].value = &guess;
    }
};

TEST(Notes, AreLimitedInFourModes) {
    const EmbeddedHost host{real_module()};
    for (const int mode : {0, 72, 88, 89, 104, 136}) {
        const bool limited = mode != 0 && mode != 89;
        KeptContext kept{static_cast<std::uint8_t>(mode)};
        for (int call = 1; call <= 9; ++call) {
            double result = 0.0;
            const Evaluation got = host.evaluate(&kept.head, &result);
            EXPECT_TRUE(got.answered() && std::isnan(result));
            const Notes expected = !limited || call <= 5 ? Notes{no_usable_flows}
                                   : call == 6           ? Notes{no_more_notes}
                                                         : Notes{};
            EXPECT_EQ(got.notes, expected) << "mode " << mode << ", call " << call;
        }
        EXPECT_EQ(kept.head.notes_written, limited ? 9 : 0) << "mode " << mode;
    }
}

TEST(Notes, EachEvaluationStartsAnew) {
    const EmbeddedHost host{real_module(), {.note_mode = 88}};
    for (int time = 1; time <= 8; ++time) {
        EXPECT_EQ(host.evaluate("XIRR", {0.1}).notes, Notes{no_usable_flows}) << "time " << time;
    }
}

}  // namespace
}  // namespace finance::test
