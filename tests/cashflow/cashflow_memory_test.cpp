// Memory of the host's: what the cash flow calculations ask for, what they do without, that all of it goes back.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "abi/host_control.hpp"
#include "cashflow/irr.hpp"
#include "cashflow/work_pool.hpp"
#include "host/embedded_host.hpp"
#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"
#include "tests/cashflow/flow_lists.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr Status without_memory = 2147604497;
constexpr std::int64_t memory_flags = 8198;
constexpr std::uint64_t pool_flags = 0x80000000;

// Memory and pools of the host, which must be at the end what they were at the beginning.
class CashflowMemory : public testing::Test {
protected:
    CashflowMemory()
        : memory_{linked_host().memory()},
          toolkit_{linked_host().toolkit()},
          requests_{memory_.requests()},
          blocks_{memory_.blocks()},
          bytes_{memory_.bytes()},
          errors_{memory_.errors()},
          pools_created_{toolkit_.pools_created()},
          toolkit_errors_{toolkit_.errors()} {}
    ~CashflowMemory() override {
        memory_.fail_at(0);
        toolkit_.fail_pool_at(0);
        toolkit_.fail_block_at(0);
        toolkit_.take_shape(host::Toolkit::Shape::whole);
    }
    void TearDown() override { expect_all_given_back("at the end"); }

    void expect_all_given_back(const char* when) const {
        EXPECT_EQ(memory_.blocks(), blocks_) << when;
        EXPECT_EQ(memory_.bytes(), bytes_) << when;
        EXPECT_EQ(memory_.errors(), errors_) << when;
        EXPECT_EQ(toolkit_.pools(), 0) << when;
        EXPECT_EQ(toolkit_.blocks(), 0) << when;
        EXPECT_EQ(toolkit_.bytes(), 0) << when;
        EXPECT_EQ(toolkit_.errors(), toolkit_errors_) << when;
    }
    [[nodiscard]] std::uint64_t requests() const { return memory_.requests() - requests_; }
    [[nodiscard]] std::uint64_t pools() const { return toolkit_.pools_created() - pools_created_; }

    host::MemoryVector& memory_;
    host::Toolkit& toolkit_;

private:
    std::uint64_t requests_;
    std::int64_t blocks_;
    std::int64_t bytes_;
    std::uint64_t errors_;
    std::uint64_t pools_created_;
    std::uint64_t toolkit_errors_;
};

// ---- XNPV and XIRR: two arrays

const std::vector<std::pair<const char*, std::vector<Arg>>> dated_calls{
    {"XNPV", {0.1, -100, 50, 60, 0, 200, 365}},
    {"XIRR", {-100, 50, 60, 0, 200, 365}},
    {"XIRR", {-100, 50, 60, 0, 200, 365, 0.3}},
};

TEST_F(CashflowMemory, DatedFlowsTakeTwoArraysAndGiveThemBack) {
    std::uint64_t expected = 0;
    for (const auto& [name, arguments] : dated_calls) {
        EXPECT_EQ(Call(name, arguments).through_dispatcher().status, STATUS_SUCCESS) << name;
        expected += 2;
        EXPECT_EQ(requests(), expected) << name;
        EXPECT_EQ(memory_.last_flags(), memory_flags) << name;
        expect_all_given_back(name);
    }
}

TEST_F(CashflowMemory, DatedFlowsWithoutMemory) {
    for (const auto& [name, arguments] : dated_calls) {
        for (const std::uint64_t failing : {1U, 2U}) {
            memory_.fail_at(failing);
            const Outcome handler = Call(name, arguments).through_handler();
            EXPECT_EQ(handler.status, without_memory) << name << failing;
            EXPECT_FALSE(handler.written) << name << failing;
            EXPECT_TRUE(handler.flagged.empty()) << name << failing;
            EXPECT_TRUE(handler.host_bytes_kept) << name << failing;
            expect_all_given_back(name);
            memory_.fail_at(failing);
            Call call{name, arguments};
            const Outcome dispatcher = call.through_dispatcher();
            EXPECT_EQ(dispatcher.status, STATUS_INVALID_ARGUMENT) << name << failing;
            EXPECT_FALSE(dispatcher.written) << name << failing;
            EXPECT_TRUE(dispatcher.flagged.empty()) << name << failing;
            expect_all_given_back(name);
        }
        memory_.fail_at(3);  // nobody asks a third time
        EXPECT_EQ(Call(name, arguments).through_handler().status, STATUS_SUCCESS) << name;
        memory_.fail_at(0);
    }
}

TEST_F(CashflowMemory, NoNoteWithoutMemory) {
    memory_.fail_at(2);
    Call call{"XIRR", {100, 110, 0, 365}};
    call.set_mode(72);
    const host::Evaluation got = linked_host().evaluate(call.context(), call.result());
    EXPECT_EQ(got.status, STATUS_INVALID_ARGUMENT);
    EXPECT_TRUE(got.notes.empty());
    EXPECT_EQ(call.context()->notes_written, 0);
}

TEST_F(CashflowMemory, DatedFlowsGiveBackAfterFaultsAndWithoutARate) {
    const std::vector<std::pair<const char*, std::vector<Arg>>> calls{
        {"XNPV", {0.1, missing, 60, 0, 365}},
        {"XNPV", {0.1, -100, 60, 0, 0.5}},
        {"XIRR", {absent, 60, 0, 365}},
        {"XIRR", {-100, 60, 0, missing}},
        {"XIRR", {-100, 60, 0, 365, absent}},
        {"XIRR", {100, 60, 0, 365}},
        {"XIRR", {100, 60, 7, 7}},
    };
    for (const auto& [name, arguments] : calls) {
        const std::uint64_t before = requests();
        static_cast<void>(Call(name, arguments).through_handler());
        EXPECT_EQ(requests(), before + 2) << name;
        expect_all_given_back(name);
    }
}

TEST_F(CashflowMemory, DatedFlowsThatAskForNone) {
    EXPECT_EQ(Call("XNPV", {0.1, 1, 2, 3}).through_handler().status, 1U);                      // an odd count
    EXPECT_EQ(Call("XNPV", {missing, 1, 2}).through_handler().status, STATUS_MISSING_RESULT);  // the rate comes first
    EXPECT_EQ(Call("XNPV", {0.1}).through_handler().status, STATUS_SUCCESS);
    EXPECT_EQ(Call("XIRR", {0.1}).through_handler().status, STATUS_SUCCESS);
    EXPECT_EQ(requests(), 0U);
}

// ---- IRR: a pool

const std::vector<Arg> flows{-100, 60, 60};

void expect_solved(const char* when) {
    const Outcome got = Call("IRR", flows).through_dispatcher();
    EXPECT_EQ(got.status, STATUS_SUCCESS) << when;
    EXPECT_NEAR(got.value, (3.0 + std::sqrt(69.0)) / 10.0 - 1.0, 1e-14) << when;  // 5 u^2 = 3 u + 3, u = 1 + rate
}

void expect_refused(const char* when) {
    const Outcome handler = Call("IRR", flows).through_handler();
    EXPECT_EQ(handler.status, STATUS_INVALID_ARGUMENT) << when;
    EXPECT_TRUE(handler.written) << when;
    EXPECT_EQ(bits(handler.value), bits(MISSING_VALUE)) << when;
    EXPECT_TRUE(handler.flagged.empty()) << when;
    EXPECT_TRUE(handler.host_bytes_kept) << when;
}

TEST_F(CashflowMemory, IrrTakesOneBlockFromOnePool) {
    expect_solved("whole toolkit");
    EXPECT_EQ(pools(), 1U);
    EXPECT_EQ(toolkit_.last_name(), "WORKPOOL");
    EXPECT_EQ(toolkit_.last_pool_flags(), pool_flags);
    EXPECT_EQ(toolkit_.last_block_flags(), pool_flags);
    EXPECT_EQ(requests(), 0U);
}

TEST_F(CashflowMemory, IrrWithoutPoolOrBlock) {
    toolkit_.fail_pool_at(1);
    expect_refused("no pool");
    expect_all_given_back("no pool");
    toolkit_.fail_block_at(1);
    expect_refused("no block");
    expect_all_given_back("no block");
    toolkit_.fail_pool_at(1);
    EXPECT_EQ(solve_periodic({-100, 110}).code, IRR_NO_ROOT);
    toolkit_.fail_block_at(1);
    EXPECT_EQ(solve_periodic({-100, 110}).code, IRR_NO_ROOT);
    EXPECT_EQ(requests(), 0U);  // where there is a toolkit, nothing stands in for it
    toolkit_.fail_block_at(2);
    expect_solved("the second block");
}

TEST_F(CashflowMemory, IrrDestroysItsPoolOnEveryPath) {
    const std::vector<std::vector<double>> lists{
        {-100, 110},        // solved
        {-100, 230, -132},  // solved, several changes
        {0, 0},             // nothing but zeros
        {1, 2},             // one sign
        {1, -1, 1},         // no root
        {-1e300, 1e-300},   // not settled
        {-1e-300, 1e300},   // no rate
    };
    for (const std::vector<double>& list : lists) {
        const std::uint64_t before = pools();
        static_cast<void>(solve_periodic(list));
        EXPECT_EQ(pools(), before + 1);
        expect_all_given_back("after a list");
    }
}

TEST_F(CashflowMemory, IrrMakesNoPoolForWhatItRefusesAtOnce) {
    EXPECT_EQ(solve_periodic({-100}).code, IRR_BAD_REQUEST);
    EXPECT_EQ(Call("IRR", {-100, missing}).through_handler().status, STATUS_MISSING_RESULT);
    EXPECT_EQ(pools(), 0U);
}

// ---- IRR without a toolkit: the memory vector

// No toolkit handle while it lives.
class NoToolkit {
public:
    NoToolkit() : handle_{std::exchange(Exported_KXHandle, 0)} {}
    ~NoToolkit() { Exported_KXHandle = handle_; }
    NoToolkit(const NoToolkit&) = delete;
    NoToolkit& operator=(const NoToolkit&) = delete;

private:
    std::uint64_t handle_;
};

TEST_F(CashflowMemory, IrrWithoutAToolkit) {
    const NoToolkit none;
    expect_solved("no handle");
    EXPECT_EQ(requests(), 1U);
    EXPECT_EQ(memory_.last_flags(), memory_flags);
    expect_all_given_back("no handle");
    memory_.fail_at(1);
    expect_refused("no handle, no memory");
    EXPECT_EQ(pools(), 0U);
}

TEST_F(CashflowMemory, IrrWithAToolkitThatMakesNoPools) {
    std::uint64_t expected = 0;
    for (const auto shape : {host::Toolkit::Shape::without_table, host::Toolkit::Shape::without_operation}) {
        toolkit_.take_shape(shape);
        expect_solved("no operation");
        EXPECT_EQ(requests(), ++expected);
        memory_.fail_at(1);
        expect_refused("no operation, no memory");
        EXPECT_EQ(requests(), ++expected);
        expect_all_given_back("no operation");
    }
    EXPECT_EQ(pools(), 0U);
}

// ---- A host that gives no place for the answer

TEST_F(CashflowMemory, WithoutAPlaceForTheAnswer) {
    for (const auto& [name, arguments] : dated_calls) {
        Call call{name, arguments};
        EXPECT_EQ(linked_host().dispatcher()(call.context(), nullptr), STATUS_SUCCESS) << name;
        expect_all_given_back(name);
    }
    Call payment{"PMT", {0.01, 5, 100}};
    EXPECT_EQ(linked_host().dispatcher()(payment.context(), nullptr), STATUS_SUCCESS);
    Call refused{"PMT", {missing, 5, 100}};
    EXPECT_EQ(linked_host().dispatcher()(refused.context(), nullptr), STATUS_INVALID_ARGUMENT);
}

}  // namespace
}  // namespace finance::test
