// Nothing is read beyond what a call holds: records, names and tables of slots that end where readable memory ends.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "abi/arguments.hpp"
#include "abi/basis.hpp"
#include "module/financial_list.hpp"
#include "tests/support/call.hpp"
#include "tests/support/example_calls.hpp"

namespace finance::test {
namespace {

constexpr std::size_t page = 4096;

// Bytes that end at a page that can be neither read nor written.
class GuardedBytes {
public:
    explicit GuardedBytes(std::size_t size)
        : pages_{::mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)}, size_{size} {
        if (pages_ == MAP_FAILED || ::mprotect(static_cast<char*>(pages_) + 2 * page, page, PROT_NONE) != 0 ||
            size > 2 * page) {
            throw std::runtime_error{"no guard page"};
        }
    }
    ~GuardedBytes() { ::munmap(pages_, 3 * page); }
    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    [[nodiscard]] char* data() { return static_cast<char*>(pages_) + 2 * page - size_; }

private:
    void* pages_;
    std::size_t size_;
};

// A record of just so many slots; what they point to is kept elsewhere.
struct GuardedCall {
    GuardedCall(const std::vector<host::Argument>& given, std::int64_t count)
        : arguments{given}, texts(given.size()), bytes{sizeof(HostCallContext) + (given.size() + 1) * sizeof(ArgSlot)} {
        std::memset(bytes.data(), 0xA5, sizeof(HostCallContext));
        context()->count = count;
        slots_of(context())[0] = {ZELKOVAN_TYPE_CHARACTER, 0, {}, nullptr};
        for (std::size_t i = 0; i < arguments.size(); ++i) slots_of(context())[i + 1] = slot(i);
    }
    HostCallContext* context() { return reinterpret_cast<HostCallContext*>(bytes.data()); }

    ArgSlot slot(std::size_t i) {
        const host::Argument& argument = arguments[i];
        if (argument.kind() == host::Argument::Kind::number) {
            return {ZELKOVAN_TYPE_NUMERIC, 0, {}, const_cast<double*>(&argument.number())};
        }
        texts[i].length = static_cast<std::uint32_t>(argument.text().size());
        texts[i].text = const_cast<char*>(argument.text().data());
        return {ZELKOVAN_TYPE_CHARACTER, 0, {}, &texts[i]};
    }

    std::vector<host::Argument> arguments;
    std::vector<CharacterDescriptor> texts;
    GuardedBytes bytes;
};

std::vector<host::Argument> full_arguments_of(const FinancialRow& row) {
    const catalogue::Calculation* calculation = catalogue::find(row.name);
    return calculation != nullptr ? full_call(*calculation) : std::vector<host::Argument>{};
}

// All but those that take lists.
std::ptrdiff_t bounded_rows() {
    return std::ranges::count(catalogue::calculations(), std::size_t{0}, catalogue::list_count);
}

TEST(GuardPages, NoSlotBeyondARowsMaximumIsRead) {
    ensure_host();
    int checked = 0;
    for (std::size_t i = 0; i < FinancialList.size(); ++i) {
        const FinancialRow& row = FinancialList[i];
        if (row.maximum_count == 0) continue;
        const std::vector<host::Argument> full = full_arguments_of(row);
        ASSERT_EQ(full.size() + 1, static_cast<std::size_t>(row.maximum_count)) << row.name;
        GuardedCall call{full, row.maximum_count + 5};
        double result = 1234.5;
        EXPECT_EQ(row.handler(call.context(), &result, row.maximum_count + 5, static_cast<std::int32_t>(i)),
                  STATUS_SUCCESS)
            << row.name;
        EXPECT_NE(result, 1234.5) << row.name;
        ++checked;
    }
    EXPECT_EQ(checked, bounded_rows());
}

// With fewer arguments, no slot beyond the count is.
TEST(GuardPages, NoSlotBeyondTheCountIsRead) {
    ensure_host();
    int checked = 0;
    for (std::size_t i = 0; i < FinancialList.size(); ++i) {
        const FinancialRow& row = FinancialList[i];
        if (row.maximum_count == 0) continue;
        std::vector<host::Argument> arguments = full_arguments_of(row);
        ASSERT_EQ(arguments.size() + 1, static_cast<std::size_t>(row.maximum_count)) << row.name;
        for (std::int64_t count = row.maximum_count; count >= row.minimum_count; --count) {
            arguments.erase(arguments.begin() + (count - 1), arguments.end());
            GuardedCall call{arguments, count};
            double result = 1234.5;
            EXPECT_EQ(row.handler(call.context(), &result, count, static_cast<std::int32_t>(i)), STATUS_SUCCESS)
                << row.name << ' ' << count;
            ++checked;
        }
    }
    EXPECT_GT(checked, bounded_rows());
}

struct GuardedText {
    explicit GuardedText(const std::string& text) : bytes{text.size()} {
        std::memcpy(bytes.data(), text.data(), text.size());
        descriptor.length = static_cast<std::uint32_t>(text.size());
        descriptor.text = bytes.data();
    }
    GuardedBytes bytes;
    CharacterDescriptor descriptor{};
};

TEST(GuardPages, NoByteBeyondANameIsRead) {
    ensure_host();
    const std::vector<std::string> names{
        "PMT", "PMT ", "P", "CUMPRINCX", "", " ", "PMT              ", "ABCDEFGHIJKLMNOP", "ABCDEFGHIJKLMNOPQ"};
    for (const std::string& name : names) {
        GuardedText text{name};
        GuardedCall call{{0.1, 5, 100}, 4};
        slots_of(call.context())[0].value = &text.descriptor;
        double result = 1234.5;
        const bool known = name == "PMT" || name == "PMT " || name.starts_with("PMT   ");
        EXPECT_EQ(fncfin(call.context(), &result), known ? STATUS_SUCCESS : STATUS_INVALID_ARGUMENT) << name;
    }
}

TEST(GuardPages, NothingBeyondAnEmptyRecordIsTouched) {
    ensure_host();
    for (const std::int64_t count : {0LL, -1LL, 1LL << 32, 0xFFFFFFFFLL, 5LL << 31}) {
        GuardedBytes head{sizeof(HostCallContext)};
        auto* context = reinterpret_cast<HostCallContext*>(head.data());
        context->count = count;
        double result = 1234.5;
        EXPECT_EQ(fncfin(context, &result), STATUS_INVALID_ARGUMENT);
        EXPECT_EQ(result, 1234.5);
        EXPECT_EQ(fncnmis(context, &result), 0U);
        EXPECT_EQ(fnccmis(context, &result), 0U);
    }
}

TEST(GuardPages, NoByteBeyondABasisIsRead) {
    ensure_host();
    for (const std::string& name : {std::string{"ACTUAL"}, std::string{"act / 360"}, std::string(255, ' '),
                                    std::string(256, 'A'), std::string{"A"}}) {
        GuardedText text{name};
        ArgSlot slot{ZELKOVAN_TYPE_CHARACTER, 0, {}, &text.descriptor};
        std::int32_t basis = 99;
        EXPECT_EQ(read_basis(slot, basis), name[0] == 'a' || name == "ACTUAL") << name;
    }
}

}  // namespace
}  // namespace finance::test
