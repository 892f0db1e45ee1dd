// Every request for memory that a calculation makes fails once: its first answered call of the corpus, again and again,
// the first request failing, then the second, until the call succeeds.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "host/embedded_host.hpp"
#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"
#include "module/financial_list.hpp"
#include "tests/corpus/corpus.hpp"

namespace finance::test {
namespace {

constexpr Status without_memory = 2147604497;

Draw first_answered(const std::string& name) {
    for (Draw& draw : corpus_of(name, 100)) {
        if (draw.status == STATUS_SUCCESS) return draw;
    }
    ADD_FAILURE() << name << ": none of the first calls is answered";
    return {};
}

// What may fail, and how it is told to: n is the request that fails, 0 none.
struct Source {
    const char* name;
    host::Toolkit::Shape shape;
    std::function<void(std::uint64_t n)> fail;
};

class Faults : public testing::Test {
protected:
    ~Faults() override { toolkit_.take_shape(host::Toolkit::Shape::whole); }

    void expect_all_given_back(const std::string& where) const {
        EXPECT_EQ(memory_.blocks(), blocks_) << where;
        EXPECT_EQ(memory_.bytes(), bytes_) << where;
        EXPECT_EQ(toolkit_.pools() + toolkit_.blocks() + toolkit_.bytes(), 0) << where;
        EXPECT_EQ(memory_.errors() + toolkit_.errors(), errors_) << where;
    }

    // How many requests failed before the call succeeded.
    int fail_each(const Draw& draw, const Source& source) {
        toolkit_.take_shape(source.shape);
        for (std::uint64_t n = 1;; ++n) {
            const std::string where = draw.name + ", " + source.name + ' ' + std::to_string(n);
            source.fail(n);
            const Outcome got = Call{draw.name, draw.arguments}.through_handler();
            source.fail(0);
            expect_all_given_back(where);
            EXPECT_TRUE(got.host_bytes_kept && got.flagged.empty()) << where;
            if (got.status == STATUS_SUCCESS) {
                EXPECT_EQ(bits(got.value), std::stoull(draw.result, nullptr, 16)) << where;
                return static_cast<int>(n - 1);
            }
            // The dated flows leave the result alone; the internal rate has none.
            EXPECT_EQ(got.status, got.written ? STATUS_INVALID_ARGUMENT : without_memory) << where;
            EXPECT_TRUE(!got.written || bits(got.value) == bits(missing)) << where;
        }
    }

    host::MemoryVector& memory_ = linked_host().memory();
    host::Toolkit& toolkit_ = linked_host().toolkit();

private:
    std::int64_t blocks_ = memory_.blocks();
    std::int64_t bytes_ = memory_.bytes();
    std::uint64_t errors_ = memory_.errors() + toolkit_.errors();
};

TEST_F(Faults, EveryRequestOfEveryCalculation) {
    using Shape = host::Toolkit::Shape;
    const Source sources[] = {
        {"memory", Shape::whole, [&](std::uint64_t n) { memory_.fail_at(n); }},
        {"pool", Shape::whole, [&](std::uint64_t n) { toolkit_.fail_pool_at(n); }},
        {"block", Shape::whole, [&](std::uint64_t n) { toolkit_.fail_block_at(n); }},
        {"memory without pools", Shape::without_table, [&](std::uint64_t n) { memory_.fail_at(n); }},
    };
    std::map<std::string, int> failed;
    for (const FinancialRow& row : FinancialList) {
        const Draw draw = first_answered(row.name);
        for (const Source& source : sources) {
            if (const int n = fail_each(draw, source); n > 0) failed[draw.name + ' ' + source.name] = n;
        }
    }
    const std::map<std::string, int> expected{
        {"IRR pool", 1},
        {"IRR block", 1},
        {"IRR memory without pools", 1},
        {"XIRR memory", 2},
        {"XNPV memory", 2},
        {"XIRR memory without pools", 2},
        {"XNPV memory without pools", 2},
    };
    EXPECT_EQ(failed, expected) << "nobody else asks for memory";
}

}  // namespace
}  // namespace finance::test
