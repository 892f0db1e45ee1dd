// zelkovan.so itself, loaded as any program loads it.
#include <gtest/gtest.h>

#include <bit>
#include <cctype>
#include <cmath>
#include <cstring>
#include <map>
#include <string>

#include "host/control_block.hpp"
#include "host/memory_vector.hpp"
#include "host/module_loader.hpp"
#include "host/services.hpp"
#include "module/financial_list.hpp"
#include "tests/host/fake_modules.hpp"
#include "tests/host/sample_calls.hpp"
#include "tests/support/call.hpp"
#include "tests/support/example_calls.hpp"

namespace finance::test {
namespace {

using host::EmbeddedHost;
using host::Evaluation;
using host::ExitRequest;
using host::LoadError;
using host::Options;

using Lines = std::vector<std::string>;

std::string in_lower_case(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

struct LoadedCase {
    const char* id;
    const char* name;
    std::vector<host::Argument> arguments;
    double expected;
    const char* source;
    double ulps = 0.0;
};

const std::vector<LoadedCase> loaded_cases{
    {"annuity", "PMT", {1.0, 3, 7}, -8.0, "7 r (1+r)^3 / ((1+r)^3 - 1) = 7 * 8/7", 4},
    {"growth", "FV", {1.0, 2, host::Argument::missing(), -100}, 400.0, "100 doubled twice", 2},
    {"flows", "NPV", {1.0, 2, 4}, 2.0, "2/2 + 4/4"},
    {"schedule of rates", "FVSCHEDULE", {100, 0.5, 1}, 300.0, "100 * 1.5 * 2"},
    {"workspace from a pool", "IRR", {-100, 150}, 0.5, "150/100 - 1", 8},
    {"workspace from memory", "XIRR", {-100, 110, 0, 365}, 0.1, "110/100 - 1, a year", 64},
    {"depreciation", "SLN", {10000, 1000, 5}, 1800.0, "9000 / 5"},
    {"digits", "SYD", {10000, 1000, 5, 1}, 3000.0, "9000 * 5/15", 1},
    {"thirty-seconds", "DOLLARDE", {99.28, 32}, 99.875, "99 + 28/32", 2},
    {"bill", "TBILLPRICE", {1, 181, 0.08}, 96.0, "100 (1 - 0.08 * 180/360)", 1},
    {"basis by keyword", "YEARFRAC", {0, 90, "ACT/360"}, 0.25, "90/360"},
    {"keyword in lower case", "YEARFRAC", {0, 90, "act/360 "}, 0.25, "90/360"},
    {"basis by code", "YEARFRAC", {0, 73, 3}, 0.2, "73/365"},
    {"a date from the host",
     "COUPNCD",
     {host_day(2025, 1, 20), host_day(2030, 11, 15), 2},
     host_day(2025, 5, 15),
     "15 May and 15 November"},
    {"a date before",
     "COUPPCD",
     {host_day(2025, 1, 20), host_day(2030, 11, 15), 2},
     host_day(2024, 11, 15),
     "15 May and 15 November"},
    {"a leap day",
     "COUPPCD",
     {host_day(2024, 3, 1), host_day(2025, 2, 28), 2},
     host_day(2024, 2, 29),
     "month ends stay month ends"},
};

void check_loaded_cases(const EmbeddedHost& host) {
    ASSERT_FALSE(loaded_cases.empty());
    for (const LoadedCase& row : loaded_cases) {
        const Evaluation got = host.evaluate(row.name, row.arguments);
        EXPECT_TRUE(got.answered()) << row.id;
        EXPECT_LE(units_in_last_place(got.value, row.expected), row.ulps) << row.id << ": " << got.value;
        EXPECT_EQ(got.flagged, -1) << row.id;
        EXPECT_TRUE(got.log.empty() && got.notes.empty()) << row.id;
    }
}

TEST(RealModule, Evaluates) {
    check_loaded_cases(EmbeddedHost{real_module()});
    check_loaded_cases(EmbeddedHost{real_module(), {.multibyte = true}});
    check_loaded_cases(EmbeddedHost{real_module(), {.junk_in_host_bits = true}});
    check_loaded_cases(EmbeddedHost{real_module(), {.note_mode = 136, .junk_in_host_bits = true, .toolkit = false}});
}

TEST(RealModule, LinkedIntoTheProgram) { check_loaded_cases(EmbeddedHost{mcn_main}); }

TEST(RealModule, RecordsOfTheLoadedOne) {
    const EmbeddedHost host{real_module()};
    EXPECT_STREQ(host.item().name, "FINANCE");
    EXPECT_STREQ(host.image().tag, "ZOT_Image_Information=");
    EXPECT_NE(&host.image(), &vi_mcn) << "not the module linked into this program";
    EXPECT_NE(host.dispatcher(), &fncfin);
}

// ---- Names

TEST(RealModule, EveryNameInBothCases) {
    EmbeddedHost host{real_module()};
    for (const bool multibyte : {false, true}) {
        for (const bool case_blind : {false, true}) {
            host.set_multibyte(multibyte);
            host.set_case_blind(case_blind);
            for (const FinancialRow& row : FinancialList) {
                const Lines too_few{"Not enough arguments for " + std::string{row.name} + " "};
                EXPECT_EQ(host.evaluate(row.name, {}).log, too_few) << row.name;
                const Evaluation lower = host.evaluate(in_lower_case(row.name), {});
                EXPECT_EQ(lower.log == too_few, case_blind) << row.name;
                EXPECT_EQ(lower.flagged, case_blind ? -1 : 0) << row.name;
            }
        }
    }
}

TEST(RealModule, UnknownNamesListTheKnownOnes) {
    Lines expected{"The First argument of the Finance function can be ", "one of the following"};
    for (const FinancialRow& row : FinancialList) expected.push_back("    " + std::string{row.name});
    expected.insert(expected.end(), {" ", " "});
    const EmbeddedHost host{real_module()};
    for (const char* name : {"PMTS", "PM", "", "  ", " PMT", "P\xC4T"}) {
        const Evaluation got = host.evaluate(name, {0.005, 360, 200000});
        EXPECT_EQ(got.status, ZELKOVAN_STATUS_INVALID_ARGUMENT) << name;
        EXPECT_EQ(got.flagged, 0) << name;
        EXPECT_TRUE(std::isnan(got.value)) << name;
        EXPECT_EQ(got.log, expected) << name;
    }
}

TEST(RealModule, WrongCounts) {
    const EmbeddedHost host{real_module()};
    const Evaluation few = host.evaluate("pmt", {0.005, 360});
    EXPECT_EQ(few.log, Lines{"Not enough arguments for PMT "});
    const Evaluation many = host.evaluate("SLN", {10000, 1000, 5, 1});
    EXPECT_EQ(many.log, Lines{"Too many arguments for SLN "});
    for (const Evaluation& got : {few, many}) {
        EXPECT_EQ(got.status, ZELKOVAN_STATUS_INVALID_ARGUMENT);
        EXPECT_EQ(got.flagged, -1);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(got.value), ZELKOVAN_MISSING_VALUE_BITS);
    }
}

// ---- Loading again, and without memory

TEST(RealModule, OneHostAtATime) {
    for (int time = 1; time <= 3; ++time) {
        const EmbeddedHost host{real_module()};
        EXPECT_THROW(EmbeddedHost{real_module()}, LoadError) << "time " << time;
        EXPECT_THROW(EmbeddedHost{real_module().parent_path() / "." / real_module().filename()}, LoadError);
        EXPECT_EQ(host.evaluate("SLN", {10000, 1000, 5}).value, 1800.0) << "time " << time;
    }
}

TEST(RealModule, WithoutMemoryForARequest) {
    for (const std::uint64_t request : {1U, 2U}) {
        try {
            const EmbeddedHost host{real_module(), {.failing_request = request}};
            ADD_FAILURE() << "loaded without memory for request " << request;
        } catch (const LoadError& error) {
            EXPECT_EQ(error.exit_request(), (ExitRequest{1016, 0})) << error.what();
        }
    }
    EmbeddedHost host{real_module(), {.failing_request = 3}};
    EXPECT_EQ(host.memory().requests(), 2U) << "there is no third one";
    void* block = host.memory().allocate(1, 0);
    EXPECT_NE(block, nullptr) << "the fault does not outlive the registration";
    host.memory().release(block, 1, 0);
}

// Two blocks of 16 bytes while it lasts, none afterwards, whichever request found no memory.
TEST(RealModule, RegistrationGivesBackItsMemory) {
    for (const std::uint64_t failing : {0U, 1U, 2U}) {
        host::MemoryVector memory;
        host::ControlBlock control_block{memory.entry_points(), nullptr};
        host::ServiceDesk desk{control_block};
        const host::SharedObject object{real_module()};
        memory.fail_at(failing);
        try {
            const host::Registration registration{{desk, memory, control_block, "zelkovan"}, object.entry_point()};
            EXPECT_EQ(failing, 0U);
            EXPECT_EQ(memory.blocks(), 2);
            EXPECT_EQ(memory.bytes(), 32);
            EXPECT_EQ(memory.last_flags(), 0x2006);
        } catch (const LoadError&) {
            EXPECT_NE(failing, 0U);
        }
        EXPECT_EQ(memory.blocks(), 0) << failing;
        EXPECT_EQ(memory.bytes(), 0) << failing;
        EXPECT_EQ(memory.errors(), 0U) << failing;
    }
}

// ---- Every calculation

TEST(RealModule, TheSamplesNameEveryCalculation) {
    std::map<std::string, int> samples;
    for (const SampleCall& call : answered_calls()) ++samples[call.name];
    for (const FinancialRow& row : FinancialList) EXPECT_GE(samples[row.name], 2) << row.name;
    EXPECT_EQ(samples.size(), calculation_count);
}

// What is left out, and what it stands for: the value that the catalogue tells.
TEST(RealModule, AUsualCallAndAFullOneHaveTheExamplesAnswer) {
    const EmbeddedHost host{real_module()};
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const double answer = usual_answer(calculation);
        EXPECT_EQ(host.evaluate(calculation.name, usual_call(calculation)).value, answer) << calculation.name;
        EXPECT_EQ(host.evaluate(calculation.name, full_call(calculation)).value, answer) << calculation.name;
    }
}

TEST(RealModule, TheOtherSamplesHaveNoValue) {
    const EmbeddedHost host{real_module()};
    for (const SampleCall& call : other_calls()) {
        const Evaluation got = host.evaluate(call.name, call.arguments);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(got.value), ZELKOVAN_MISSING_VALUE_BITS) << call.name;
        EXPECT_EQ(got.answered(), !got.notes.empty()) << call.name << ": a rate not found is an answer, with a note";
    }
    EXPECT_EQ(other_calls().size(), 13U);
}

// Neither junk in host-owned bits nor multibyte mode changes a bit of an answer.
TEST(RealModule, SameBitsInEveryMode) {
    std::vector<Evaluation> plain;
    {
        const EmbeddedHost host{real_module()};
        for (const SampleCall& call : answered_calls()) plain.push_back(host.evaluate(call.name, call.arguments));
    }
    for (const Options& options : {Options{.multibyte = true}, Options{.note_mode = 72, .junk_in_host_bits = true},
                                   Options{.multibyte = true, .junk_in_host_bits = true, .toolkit = false}}) {
        const EmbeddedHost host{real_module(), options};
        std::size_t i = 0;
        for (const SampleCall& call : answered_calls()) {
            const Evaluation got = host.evaluate(call.name, call.arguments);
            EXPECT_TRUE(plain[i].answered() && got.answered() && std::isfinite(got.value)) << call.name;
            EXPECT_EQ(bits(got.value), bits(plain[i].value)) << call.name;
            ++i;
        }
        EXPECT_EQ(i, plain.size());
    }
}

}  // namespace
}  // namespace finance::test
