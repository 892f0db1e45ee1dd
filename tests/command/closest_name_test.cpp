#include <gtest/gtest.h>

#include <vector>

#include "command/usage_error.hpp"

namespace finance::test {
namespace {

TEST(ClosestName, EditDistance) {
    EXPECT_EQ(command::edit_distance("", ""), 0U);
    EXPECT_EQ(command::edit_distance("", "PMT"), 3U);
    EXPECT_EQ(command::edit_distance("PMT", ""), 3U);
    EXPECT_EQ(command::edit_distance("pmt", "PMT"), 0U);
    EXPECT_EQ(command::edit_distance("PTM", "PMT"), 1U) << "neighbours swapped";
    EXPECT_EQ(command::edit_distance("IPMT", "PPMT"), 1U);
    EXPECT_EQ(command::edit_distance("kitten", "sitting"), 3U);  // the textbook pair
}

TEST(ClosestName, Suggestion) {
    const std::vector<std::string_view> names{"CUMPRINC", "FV", "IPMT", "PMT", "PV"};
    EXPECT_EQ(command::suggestion("PNT", names), " (did you mean PMT?)");
    EXPECT_EQ(command::suggestion("cumprincipal", names), "");
    EXPECT_EQ(command::suggestion("CUMPRNC", names), " (did you mean CUMPRINC?)");
    EXPECT_EQ(command::suggestion("XV", names), " (did you mean FV?)") << "the first among equals";
    EXPECT_EQ(command::suggestion("AB", names), "");
    EXPECT_EQ(command::suggestion("PMT", {}), "");
}

}  // namespace
}  // namespace finance::test
