// That the draws of the fuzzer's call records, of hostile calls and of changes to them reach every class of hard days and
// counts.
#include "tests/support/reach.hpp"

#include <gtest/gtest.h>

#include <cstring>

#include "fuzz/call_record.hpp"
#include "hostile/call_draws.hpp"
#include "hostile/roles.hpp"

namespace finance::hostile {
namespace {

double no_answer(const Call&) { return std::nan(""); }

const std::vector<std::string> none;

// ---- Hostile calls, of slowest_calls and hostile_calls

struct Drawn {
    test::Reach days = test::Reach::of_days();
    test::Reach counts = test::Reach::of_counts();

    void add(const Call& call) {
        for (std::size_t i = 0; i < call.given.size(); ++i) {
            const Role role = role_of(call.calculation->parameters[i]);
            for (const double x : call.given[i]) {
                if (role == Role::day || role == Role::days) days.add(x);
                if (role == Role::count || role == Role::frequency) counts.add(x);
            }
        }
    }
};

TEST(Reach, HostileCalls) {
    Drawn drawn_calls;
    Random random{1};
    const Draw draw{random, {.list = 20}, no_answer};
    for (int i = 0; i < 500; ++i) {
        for (const catalogue::Calculation& calculation : catalogue::calculations()) {
            drawn_calls.add(drawn(calculation, draw));
        }
    }
    EXPECT_EQ(drawn_calls.days.drawn_less_than(10), none);
    EXPECT_EQ(drawn_calls.counts.drawn_less_than(10), none);
}

TEST(Reach, ChangesOfHostileCalls) {
    Drawn drawn_calls;
    Random random{2};
    const Draw draw{random, {.list = 20}, no_answer};
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        Call call;
        for (int i = 0; i < 1500; ++i) {
            call = changed(i % 25 == 0 ? drawn(calculation, draw) : std::move(call), draw);
            drawn_calls.add(call);
        }
    }
    EXPECT_EQ(drawn_calls.days.drawn_less_than(10), none);
    EXPECT_EQ(drawn_calls.counts.drawn_less_than(10), none);
}

// ---- Call records of the fuzzer, from bytes of no order

template <typename Visit>
void each_number(const fuzz::CallRecord& record, const catalogue::Calculation& calculation, Visit visit) {
    const std::size_t parameters = calculation.parameters.size();
    for (std::size_t i = 1; i < record.size() && i <= parameters; ++i) {
        const ArgSlot& slot = record.slots()[i];
        if ((slot.type & ZELKOVAN_TYPE_NUMERIC) == 0 || slot.value == nullptr) continue;
        double x;
        std::memcpy(&x, slot.value, sizeof x);
        visit(role_of(calculation.parameters[i - 1]), x);
    }
}

TEST(Reach, CallRecordsOfTheFuzzer) {
    test::Reach days = test::Reach::of_days();
    test::Reach counts = test::Reach::of_counts();
    Random random{3};
    fuzz::CallRecord record;
    for (int i = 0; i < 300'000; ++i) {
        std::array<std::uint64_t, 32> words;
        for (std::uint64_t& word : words) word = random.bits();
        fuzz::Bytes bytes{reinterpret_cast<const std::uint8_t*>(words.data()), sizeof words};
        record.fill(bytes);
        const catalogue::Calculation* calculation = catalogue::find(record.name());
        if (calculation == nullptr) continue;
        each_number(record, *calculation, [&](Role role, double x) {
            if (role == Role::day) days.add(x);
            if (role == Role::count || role == Role::frequency) counts.add(x);
        });
    }
    EXPECT_EQ(days.drawn_less_than(5), none);
    EXPECT_EQ(counts.drawn_less_than(5), none);
}

}  // namespace
}  // namespace finance::hostile
