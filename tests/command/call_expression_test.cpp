// Calls as text, and what their words mean on a table. Expected by hand; shown as name(operands) as result.
#include "command/tables/call_expression.hpp"

#include <gtest/gtest.h>

#include "catalogue/text.hpp"
#include "command/tables/call_plan.hpp"
#include "command/usage_error.hpp"

namespace finance::test {
namespace {

using command::CallExpression;
using command::Operand;
using command::UsageError;

std::string shown(const Operand& operand) {
    switch (operand.kind) {
        case Operand::Kind::nothing:
            return "-";
        case Operand::Kind::column:
            return "\"" + operand.text + "\"";
        case Operand::Kind::text:
            return "'" + operand.text + "'";
        case Operand::Kind::word:
            break;
    }
    return operand.text;
}

std::string shown(const std::vector<CallExpression>& calls) {
    std::string text;
    for (const CallExpression& call : calls) {
        text.append(text.empty() ? "" : " ; ").append(call.calculation);
        if (!call.formula.empty()) text.append("[").append(call.formula).append("]");
        for (const auto& argument : call.arguments) {
            text += '|' + argument.name + (argument.name.empty() ? "" : "=") + shown(argument.operand);
        }
        if (!call.result.empty()) text += " as " + call.result;
    }
    return text;
}

struct ReadCase {
    const char* text;
    const char* expected;
};

constexpr ReadCase reads[] = {
    {"PMT(rate,nper,pv)", "PMT|rate|nper|pv"},
    {"  PMT ( rate , nper ,\n pv ) ", "PMT|rate|nper|pv"},
    {"PMT()", "PMT"},
    {"PMT(coupon rate, 5.75%, -1e5, ., 30/360, 2008-02-15)", "PMT|coupon rate|5.75%|-1e5|.|30/360|2008-02-15"},
    {"PMT(\"a, (b) = \"\"c\"\"\", 'it''s')", "PMT|\"a, (b) = \"c\"\"|'it's'"},
    {"PMT(rate, nper=n, pv = \"p v\")", "PMT|rate|nper=n|pv=\"p v\""},
    {"PMT(rate,,pv,fv=)", "PMT|rate|-|pv|fv=-"},
    {"PMT($1, $22)", "PMT|$1|$22"},
    {"PMT(a) as p", "PMT|a as p"},
    {"PMT(a) AS \"my, result\", PV(b)", "PMT|a as my, result ; PV|b"},
    {"PMT(a),PV(b) as monthly value,FV(c)", "PMT|a ; PV|b as monthly value ; FV|c"},
    // arithmetic
    {"PMT(rate/12, nper * (12+b), -pv)", "PMT|rate/12|nper * (12+b)|-pv"},
    {"PMT(max(a, b), pv=min(c,d))", "PMT|max(a, b)|pv=min(c,d)"},
    {"PMT(\"a, b\"*2, 2*\"c)\", \"d\" )", "PMT|\"a, b\"*2|2*\"c)\"|\"d\""},
    {"PMT(2*\"a \"\", b\")", "PMT|2*\"a \"\", b\""},
    {"PMT(o'neil, 5\" pipe)", "PMT|o'neil|5\" pipe"},
    {"p*nper as paid, max(a,b) , (a+b)/2 AS \"m, n\"", "[p*nper] as paid ; [max(a,b)] ; [(a+b)/2] as m, n"},
    {"\"x as y\"*2 as z", "[\"x as y\"*2] as z"},
    {"as*basis as b", "[as*basis] as b"},
    {"Round(a, 2)", "[Round(a, 2)]"},
    {"PMT(a) as p, p", "PMT|a as p ; [p]"},
};

TEST(CallExpression, Reads) {
    for (const ReadCase& row : reads) {
        try {
            EXPECT_EQ(shown(command::read_calls(row.text)), row.expected) << row.text;
        } catch (const UsageError& error) {
            ADD_FAILURE() << row.text << ": " << error.what();
        }
    }
}

constexpr ReadCase wrongs[] = {
    {"", "a calculation or a formula is expected at the end of the calls"},
    {"PMT", "'(' is expected after PMT at the end of the calls"},
    {"PMT rate", "'(' is expected after PMT rate at the end of the calls"},
    {"PMT(a", "',' or ')' is expected at the end of the calls"},
    {"PMT(a))", "'as name' or a comma is expected at ')' of the calls"},
    {"PMT(a) p", "'as name' or a comma is expected at 'p' of the calls"},
    {"PMT(a) as", "'as name' or a comma is expected at 'as' of the calls"},
    {"PMT(a),", "a calculation or a formula is expected at the end of the calls"},
    {"PMT(a)*12",
     "a calculation cannot stand within a formula (name its result, and go on with the name) at '*12' of the calls"},
    {"PMT((a)", "',' or ')' is expected at the end of the calls"},
    {"PMT(\"a)", "a quotation mark is not closed at '\"a)' of the calls"},
    {"PMT('a)", "a quotation mark is not closed at ''a)' of the calls"},
    {"PMT(\"a\" b)", "',' or ')' is expected at 'b)' of the calls"},
    {"PMT(=a)", "no name before '=' at 'a)' of the calls"},
    {"PMT(a=b=c)", "',' or ')' is expected at '=c)' of the calls"},
};

TEST(CallExpression, WrongUsage) {
    for (const ReadCase& row : wrongs) {
        try {
            ADD_FAILURE() << row.text << " was read as " << shown(command::read_calls(row.text));
        } catch (const UsageError& error) {
            EXPECT_STREQ(error.what(), row.expected) << row.text;
        }
    }
}

// ---- On a table

const command::Header header{.source = "t.csv",
                             .names = {"rate", "Nper", "pv", "ACTUAL", "2024", "twice", "twice", "pmt", "x y"}};

std::string plan_text(const char* text) {
    const auto calls = command::read_calls(text);
    auto plan = command::plan_calls(calls, header);
    command::name_results(plan, calls, header.names, false);
    std::string shown;
    for (const auto& call : plan.calls) {
        shown.append(shown.empty() ? "" : " ; ").append(call.result);
        for (const auto& argument : call.arguments) {
            shown += ' ';
            if (argument.input != command::no_input) {
                shown += '$' + std::to_string(plan.inputs[argument.input].column + 1);
            } else if (argument.constant.kind() == host::Argument::Kind::number) {
                shown += catalogue::plain_text(argument.constant.number());
            } else if (argument.constant.kind() == host::Argument::Kind::text) {
                shown.append("'").append(argument.constant.text()).append("'");
            } else {
                shown += '-';
            }
        }
    }
    return shown;
}

constexpr ReadCase plans[] = {
    {"PMT(rate, nper, pv)", "pmt2 $1 $2 $3"},
    {"PMT(RATE, Nper, $3)", "pmt2 $1 $2 $3"},
    {"PMT(5%, 12, \"x y\") as p", "p 0.05 12 $9"},
    {"PMT(0.05, 12, x y), PMT(.,12,pv), PV(rate,1,1)", "pmt2 0.05 12 $9 ; pmt3 . 12 $3 ; pv2 $1 1 1"},
    {"PMT(pv=pv, nper=2024, rate=\"2024\")", "pmt2 $5 2024 $3"},
    {"PMT(rate, nper, pv, type=1)", "pmt2 $1 $2 $3 - 1"},
    {"YEARFRAC(2024-01-01, pv, ACTUAL)", "yearfrac 23376 $3 $4"},
    {"YEARFRAC(0, pv, act/360)", "yearfrac 0 $3 'act/360'"},
    {"YEARFRAC(0, pv, 'ACTUAL')", "yearfrac 0 $3 'ACTUAL'"},
    {"YEARFRAC(0, pv, 30/360)", "yearfrac 0 $3 '30/360'"},
    {"YEARFRAC(0, pv, 2)", "yearfrac 0 $3 2"},
    {"NPV(rate, pv, Nper, -5)", "npv $1 $3 $2 -5"},
    {"NPV(rate, flows=pv, flows=Nper)", "npv $1 $3 $2"},
    {"XNPV(rate, 1, pv, 2024-01-01, Nper)", "xnpv $1 1 $3 23376 $2"},
};

TEST(CallPlan, Finds) {
    for (const ReadCase& row : plans) {
        try {
            EXPECT_EQ(plan_text(row.text), row.expected) << row.text;
        } catch (const UsageError& error) {
            ADD_FAILURE() << row.text << ": " << error.what();
        }
    }
}

constexpr ReadCase lost[] = {
    {"PMT(rat, nper, pv)", "t.csv has no column 'rat' (did you mean rate?)"},
    {"PMT(\"5\", nper, pv)", "t.csv has no column '5'"},
    {"PMT(5x, nper, pv)", "t.csv has no column '5x'"},
    {"PMT($10, nper, pv)", "t.csv has no column $10: it has 9"},
    {"PMT($0, nper, pv)", "t.csv has no column '$0'"},
    {"PMT(twice, nper, pv)", "t.csv has more than one column 'twice'; say which by its place, as in $1"},
    {"PMT('x', nper, pv)", "PMT: rate: 'x' is not a number"},
    {"PMT(rate, nper)", "PMT: too few arguments: no pv"},
    {"PMT(1,2,3,4,1,rate)", "PMT: too many arguments, from 'argument 6' on"},
    {"PMT(rate, nper, pv, typ=1)", "PMT: no argument is called 'typ' (did you mean type?)"},
    {"PTM(rate, nper, pv)", "no calculation is called 'PTM' (did you mean PMT?)"},
    {"PMT(rate, nper, pv) as pv", "there is a column 'pv' already; name the result otherwise"},
    {"PMT(rate, nper, pv) as p, PV(rate,1,1) as p", "there is a column 'p' already; name the result otherwise"},
};

TEST(CallPlan, WrongUsage) {
    for (const ReadCase& row : lost) {
        try {
            ADD_FAILURE() << row.text << " was planned as " << plan_text(row.text);
        } catch (const UsageError& error) {
            EXPECT_STREQ(error.what(), row.expected) << row.text;
        }
    }
}

struct DelimiterCase {
    const char* file;
    const char* line;
    char expected;  // 0: cannot be known
};

constexpr DelimiterCase delimiters[] = {
    {"a.csv", "a,b\n", ','},
    {"a.CSV", "a;b\n", ';'},
    {"a.csv", "a,b;c\n", ','},
    {"a.csv", "a\n", ','},
    {"a.tsv", "a,b\n", '\t'},
    {"a.tab", "a\n", '\t'},
    {"-", "a,b\n", ','},
    {"-", "a\tb\n", '\t'},
    {"-", "a;b\n", ';'},
    {"-", "a\n", ','},
    {"-", "\"a,b\"\tc\n", '\t'},
    {"-", "a,b\tc\n", 0},
    {"a.txt", "a;b\n1,5;2\n", ';'},
};

TEST(TableFormat, Delimiters) {
    for (const DelimiterCase& row : delimiters) {
        if (row.expected == 0) {
            EXPECT_THROW(command::guessed_delimiter(row.file, row.line), UsageError) << row.line;
        } else {
            EXPECT_EQ(command::guessed_delimiter(row.file, row.line), row.expected) << row.file << ' ' << row.line;
        }
    }
    EXPECT_EQ(command::read_delimiter("tab"), '\t');
    EXPECT_EQ(command::read_delimiter("|"), '|');
    for (const char* wrong : {"", "x", "5", "\"", ".", "ab", "\n"}) {
        EXPECT_THROW(command::read_delimiter(wrong), UsageError) << wrong;
    }
}

}  // namespace
}  // namespace finance::test
