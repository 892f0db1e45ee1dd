// The table: lookup, counts, and that it names what the module has.
#include "catalogue/catalogue.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "module/financial_list.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

TEST(Catalogue, HasTheModulesRowsWithTheirCounts) {
    const auto rows = catalogue::calculations();
    ASSERT_EQ(rows.size(), FinancialList.size());
    ASSERT_FALSE(rows.empty());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(FinancialList[i].name);
        EXPECT_EQ(rows[i].name, FinancialList[i].name);
        EXPECT_EQ(catalogue::minimum_count(rows[i]), static_cast<std::size_t>(FinancialList[i].minimum_count));
        EXPECT_EQ(catalogue::maximum_count(rows[i]), static_cast<std::size_t>(FinancialList[i].maximum_count));
    }
}

TEST(Catalogue, FindsNamesInEitherCase) {
    for (const char* name : {"PMT", "pmt", "Pmt"}) {
        ASSERT_NE(catalogue::find(name), nullptr) << name;
        EXPECT_EQ(catalogue::find(name)->name, "PMT");
    }
    for (const char* name : {"", "PM", "PMTT", " PMT", "PMT ", "LIST"}) {
        EXPECT_EQ(catalogue::find(name), nullptr) << '\'' << name << '\'';
    }
}

TEST(Catalogue, FindsParametersInEitherCase) {
    const catalogue::Calculation& ipmt = *catalogue::find("IPMT");
    EXPECT_EQ(catalogue::find_parameter(ipmt, "per"), 1U);
    EXPECT_EQ(catalogue::find_parameter(ipmt, "NPER"), 2U);
    EXPECT_EQ(catalogue::find_parameter(ipmt, "pmt"), ipmt.parameters.size());
}

TEST(Catalogue, FamiliesHoldEveryRowOnce) {
    std::size_t sum = 0;
    for (const catalogue::Family& family : catalogue::families()) {
        sum += family.calculations.size();
        for (const auto& calculation : family.calculations) {
            EXPECT_EQ(catalogue::family_of(*catalogue::find(calculation.name)).title, family.title);
        }
    }
    EXPECT_EQ(sum, catalogue::calculations().size());
}

// From the calculations of these shapes in the module's table: NPV, IRR, MIRR, XNPV, XIRR and PRICE-like rows.
TEST(Catalogue, CountsOfEveryShape) {
    for (const auto* lists : {&one_list_after, &one_list, &one_list_before, &two_lists_after, &two_lists_before}) {
        EXPECT_EQ(catalogue::minimum_count(*lists), 2U) << lists->name;
        EXPECT_EQ(catalogue::maximum_count(*lists), 0U) << lists->name;
    }
    EXPECT_EQ(catalogue::minimum_count(bond), 5U);
    EXPECT_EQ(catalogue::maximum_count(bond), 6U);
    EXPECT_EQ(catalogue::minimum_count(periods), 3U);
    EXPECT_EQ(catalogue::maximum_count(periods), 5U);
}

TEST(Catalogue, SearchesSayThatTheySearch) {
    const auto tells = [](std::string_view text) { return text.find("search") != std::string_view::npos; };
    for (const catalogue::Calculation& row : catalogue::calculations()) {
        EXPECT_EQ(row.searches, tells(row.formula) || tells(row.failure)) << row.name;
    }
}

TEST(Catalogue, Costs) {
    const auto cost = [](std::string_view name) { return cost_of(*catalogue::find(name)); };
    for (const char* name : {"RATE", "IRR", "XIRR", "YIELD", "ODDFYIELD"}) {
        EXPECT_EQ(cost(name), catalogue::Cost::search) << name;
    }
    for (const char* name : {"PRICE", "XNPV", "TBILLEQ", "AMORLINC"}) {
        EXPECT_EQ(cost(name), catalogue::Cost::dates) << name;
    }
    for (const char* name : {"PMT", "NPV", "VDB"}) EXPECT_EQ(cost(name), catalogue::Cost::arithmetic) << name;
}

}  // namespace
}  // namespace finance::test
