// The services, as a module reaches them: through its stubs, in a shared object that is not the real module.
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <string>
#include <vector>

#include "host/embedded_host.hpp"
#include "tests/host/fake_modules.hpp"

namespace finance::test {
namespace {

using host::Argument;
using host::EmbeddedHost;
using host::Evaluation;
using host::Note;

using Lines = std::vector<std::string>;

constexpr double inf = std::numeric_limits<double>::infinity();

// Around 256 characters the printed line leaves the buffer that holds most.
TEST(LogService, LinesOfAnyLength) {
    const EmbeddedHost host{fake_module("good")};
    int checked = 0;
    for (const std::size_t length : {0U, 1U, 100U, 249U, 250U, 251U, 252U, 253U, 254U, 5000U}) {
        const std::string text(length, 'x');
        const Evaluation got = host.evaluate("LOG", {text, -7, 2.5});
        EXPECT_EQ(got.log, Lines{text + "|-7|2.5"}) << length;
        EXPECT_TRUE(got.notes.empty());
        ++checked;
    }
    EXPECT_EQ(checked, 10);
    EXPECT_TRUE(host.log_outside_calls().empty());
}

TEST(LogService, AFormatThatCannotBePrintedIsTheLine) {
    const EmbeddedHost host{fake_module("good")};
    EXPECT_EQ(host.evaluate("LOG UNPRINTABLE", {}).log, Lines{"%ls"});
}

TEST(NoteService, SetAndNumber) {
    const EmbeddedHost host{fake_module("good")};
    const Evaluation got = host.evaluate("NOTE", {744, -2147483648.0});
    EXPECT_EQ(got.notes, (std::vector<Note>{{744, std::numeric_limits<std::int32_t>::min()}}));
    EXPECT_TRUE(got.log.empty());
    EXPECT_TRUE(host.notes_outside_calls().empty());
}

struct DateCase {
    const char* id;
    double month, day, year;
    double expected;
};

TEST(DateService, ThroughAModule) {
    const double missing = Argument::missing().number();
    const DateCase cases[] = {
        {"the epoch", 1, 1, 1960, 0},
        {"the day before", 12, 31, 1959, -1},
        {"fractions are dropped", 2.9, 29.9, 1960.9, 59},
        {"year 1", 1, 1, 1, -715509},
        {"NaN month", std::nan(""), 1, 1960, missing},
        {"NaN day", 1, std::nan(""), 1960, missing},
        {"NaN year", 1, 1, std::nan(""), missing},
        {"infinite", 1, 1, inf, missing},
        {"beyond 32 bits", 1, 2147483648.0, 1960, missing},
        {"below 32 bits", 1, 1, -2147483649.0, missing},
        {"the last day that fits", 1, 2147483647.5, 1960, 2147483646},
        {"the first day that fits", 1, -2147483648.5, 1960, -2147483649.0},
    };
    const EmbeddedHost host{fake_module("good")};
    for (const DateCase& row : cases) {
        const double got = host.evaluate("DATE", {row.month, row.day, row.year}).value;
        EXPECT_TRUE(got == row.expected || (std::isnan(got) && std::isnan(row.expected))) << row.id << ": " << got;
    }
}

TEST(TextServices, ThroughAModule) {
    EmbeddedHost host{fake_module("good")};
    const char* const text =
        "aBz\x81"
        "a{";
    EXPECT_EQ(host.evaluate("UPPER", {text}).log, Lines{"ABZ\x81"
                                                        "A{"});
    EXPECT_EQ(host.evaluate("LOWER", {"AbZ\x81"
                                      "A["})
                  .log,
              Lines{"abz\x81"
                    "a["});
    host.set_multibyte(true);
    EXPECT_EQ(host.evaluate("UPPER", {text}).log, Lines{"ABZ\x81"
                                                        "a{"})
        << "a belongs to the byte before it";
    EXPECT_EQ(host.evaluate("LOWER", {"AbZ\x81"
                                      "A["})
                  .log,
              Lines{"abz\x81"
                    "A["});

    EXPECT_EQ(host.evaluate("TRANSLATE", {"PMT", 8}).log, (Lines{"PMT#####", "PMT#####"}));
    EXPECT_EQ(host.evaluate("TRANSLATE", {"CUMPRINC", 3}).log, (Lines{"CUM#####", "CUM#####"}));

    EXPECT_EQ(host.evaluate("COMPARE", {"PV", "pv  "}).value, 0.0);
    host.set_case_blind(false);
    EXPECT_EQ(host.evaluate("COMPARE", {"PV", "pv  "}).value, -1.0);
    EXPECT_EQ(host.evaluate("COMPARE", {"PMT", "PMU"}).value, -3.0);
}

// A module that ends the process, or jumps where nothing is, takes the program with it and says why.
TEST(ServicesDeath, ExitOutsideRegistration) {
    const EmbeddedHost host{fake_module("good")};
    EXPECT_EXIT((void)host.evaluate("EXIT", {5, -6}), testing::KilledBySignal(SIGABRT),
                "the module ended the process with code 5, detail -6");
}

TEST(ServicesDeath, NoSuchService) {
    const EmbeddedHost host{fake_module("good")};
    EXPECT_EXIT((void)host.evaluate("UNOFFERED", {}), testing::KilledBySignal(SIGABRT),
                "unexpected service: vector 40, slot 7");
}

// ---- Whose line is it

// A record of one argument, the name, for modules that are called directly.
struct NameOnly {
    HostCallContext context{};
    ArgSlot slot{};
    CharacterDescriptor descriptor{};

    explicit NameOnly(std::string& name) {
        context.count = 1;
        descriptor.length = static_cast<std::uint32_t>(name.size());
        descriptor.text = name.data();
        slot.type = ZELKOVAN_TYPE_CHARACTER;
        slot.value = &descriptor;
    }
};

TEST(ServicesOutsideCalls, GoToTheHostMadeLast) {
    std::string name = "LOG UNPRINTABLE";
    NameOnly record{name};
    double result = 0.0;
    const EmbeddedHost fake{fake_module("good")};
    EXPECT_EQ(fake.dispatcher()(&record.context, &result), 0U);
    EXPECT_EQ(fake.log_outside_calls(), Lines{"%ls"});
    {
        const EmbeddedHost real{real_module()};
        EXPECT_EQ(fake.dispatcher()(&record.context, &result), 0U);
        EXPECT_EQ(fake.log_outside_calls().size(), 1U);
        EXPECT_EQ(real.log_outside_calls(), Lines{"%ls"});
        EXPECT_EQ(fake.evaluate("LOG", {"a", 1, 2}).log, Lines{"a|1|2"}) << "in an evaluation each has its own";
    }
    EXPECT_EQ(fake.dispatcher()(&record.context, &result), 0U);
    EXPECT_EQ(fake.log_outside_calls().size(), 2U) << "the later host has gone";
}

TEST(ServicesOutsideCalls, ARecordOfTheCallersOwn) {
    std::string name = "LOG UNPRINTABLE";
    NameOnly record{name};
    const EmbeddedHost host{fake_module("good")};
    double result = 9.0;
    const Evaluation got = host.evaluate(&record.context, &result);
    EXPECT_TRUE(got.answered());
    EXPECT_EQ(got.value, 0.0);
    EXPECT_EQ(got.log, Lines{"%ls"});
    EXPECT_TRUE(host.log_outside_calls().empty());
    EXPECT_TRUE(std::isnan(host.evaluate(&record.context, nullptr).value)) << "no place for a result";
    name[0] = 'X';
    result = 9.0;
    const Evaluation refused = host.evaluate(&record.context, &result);
    EXPECT_EQ(refused.flagged, 0);
    EXPECT_TRUE(std::isnan(refused.value));
    EXPECT_EQ(result, 9.0) << "not preset";
}

}  // namespace
}  // namespace finance::test
