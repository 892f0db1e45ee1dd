// XIRR without a rate: a missing result, no failure, and a note, whose number four modes limit.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "host/embedded_host.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr host::Note no_convergence{744, 321};
constexpr host::Note no_usable_flows{744, 322};
constexpr host::Note no_more_notes{744, 323};

struct Unsolved {
    const char* id;
    std::vector<Arg> arguments;
    host::Note note;
};

const std::vector<Unsolved> unsolved{
    {"one sign", {100, 110, 0, 365}, no_convergence},
    {"one sign, negative", {-100, -110, 0, 365}, no_convergence},
    {"one sign, with a guess", {100, 110, 0, 365, 0.2}, no_convergence},
    {"no rate for both signs", {1, -1, 1, 0, 365, 730}, no_convergence},
    {"a third start out of range", {1, 1e300, 0, 1}, no_convergence},
    {"one flow", {-100, 50}, no_usable_flows},
    {"one date", {-100, 50, 77, 77}, no_usable_flows},
    {"one date for all that counts", {100, 50, 1e-9, 77, 77, 900}, no_usable_flows},
    {"nothing counts", {1e-9, 2e-9, 0, 365}, no_usable_flows},
    {"just below what counts", {1.053671212772350e-08, 1.053671212772350e-08, 0, 365}, no_usable_flows},
    {"just what counts", {1.053671212772351e-08, 1.053671212772351e-08, 0, 365}, no_convergence},
    {"a guess alone", {0.1}, no_usable_flows},
};

host::Evaluation evaluate(Call& call) { return linked_host().evaluate(call.context(), call.result()); }

TEST(XirrNotes, EachReasonHasItsOwn) {
    for (const Unsolved& row : unsolved) {
        const Outcome through_handler = Call{"XIRR", row.arguments}.through_handler();
        EXPECT_EQ(through_handler.status, STATUS_SUCCESS) << row.id;
        EXPECT_EQ(bits(through_handler.value), bits(MISSING_VALUE)) << row.id;
        EXPECT_TRUE(through_handler.flagged.empty()) << row.id;
        EXPECT_TRUE(through_handler.host_bytes_kept) << row.id;
        Call call{"XIRR", row.arguments};
        const host::Evaluation got = evaluate(call);
        EXPECT_EQ(got.status, STATUS_SUCCESS) << row.id;
        EXPECT_EQ(bits(got.value), bits(MISSING_VALUE)) << row.id;
        EXPECT_EQ(got.notes, std::vector{row.note}) << row.id;
        EXPECT_TRUE(got.log.empty()) << row.id;
    }
}

TEST(XirrNotes, NoneForAnAnswerOrAFault) {
    for (const std::vector<Arg>& arguments :
         {std::vector<Arg>{-100, 110, 0, 365}, {-100, missing, 0, 365}, {100, 110, 0, 0.5}}) {
        Call call{"XIRR", arguments};
        call.set_mode(72);
        EXPECT_TRUE(evaluate(call).notes.empty());
        EXPECT_EQ(call.context()->notes_written, 0);
    }
}

struct Limited {
    std::int32_t before;
    std::int32_t after;
    std::vector<host::Note> notes;
};

// A counter at its largest wraps, and a negative one is below the limit.
const std::vector<Limited> limited{
    {0, 1, {no_convergence}},
    {3, 4, {no_convergence}},
    {4, 5, {no_convergence}},
    {5, 6, {no_more_notes}},
    {6, 7, {}},
    {1000000, 1000001, {}},
    {2147483646, 2147483647, {}},
    {2147483647, -2147483647 - 1, {no_convergence}},
    {-2147483647 - 1, -2147483647, {no_convergence}},
    {-1, 0, {no_convergence}},
};

TEST(XirrNotes, FourModesLimitThem) {
    for (const int mode : {72, 88, 104, 136}) {
        for (const Limited& row : limited) {
            Call call{"XIRR", {100, 110, 0, 365}};
            call.set_mode(static_cast<std::uint8_t>(mode));
            call.context()->notes_written = row.before;
            EXPECT_EQ(evaluate(call).notes, row.notes) << mode << ' ' << row.before;
            EXPECT_EQ(call.context()->notes_written, row.after) << mode << ' ' << row.before;
        }
    }
}

TEST(XirrNotes, FiveThenTheLastThenNone) {
    Call call{"XIRR", {-100, 50}};
    call.set_mode(88);
    std::vector<host::Note> notes;
    for (int i = 0; i < 9; ++i) {
        for (const host::Note& note : evaluate(call).notes) notes.push_back(note);
    }
    std::vector<host::Note> expected(5, no_usable_flows);
    expected.push_back(no_more_notes);
    EXPECT_EQ(notes, expected);
    EXPECT_EQ(call.context()->notes_written, 9);
}

TEST(XirrNotes, OtherModesWriteAllAndCountNothing) {
    for (int mode = 0; mode < 256; ++mode) {
        if (mode == 72 || mode == 88 || mode == 104 || mode == 136) continue;
        for (const std::int32_t before : {0, 5, 6, 2147483647}) {
            Call call{"XIRR", {100, 110, 0, 365}};
            call.set_mode(static_cast<std::uint8_t>(mode));
            call.context()->notes_written = before;
            EXPECT_EQ(evaluate(call).notes, std::vector{no_convergence}) << mode;
            EXPECT_EQ(call.context()->notes_written, before) << mode;
        }
    }
}

}  // namespace
}  // namespace finance::test
