// Tables of cases, and the loops that run them. A row says where its expectation comes from.
#pragma once

#include <string>
#include <vector>

#include "tests/support/call.hpp"

namespace finance::test {

struct ValueCase {
    std::string id;
    std::string name;
    std::vector<Arg> arguments;
    double expected;
    std::string source;
    double ulps = 0.0;  // distance allowed, in units in the last place of the expected value; 0 asks for equal values
};

struct RefusalCase {
    std::string id;
    std::string name;
    std::vector<Arg> arguments;
    Status status;             // of the handler; the dispatcher reports STATUS_INVALID_ARGUMENT for all
    std::vector<int> flagged;  // slots, the first argument being 1
    bool written = true;       // the result becomes the missing value; otherwise it is left alone
};

// Each row through the handler and through the dispatcher; fails when the table is empty.
void check_values(const std::vector<ValueCase>& cases);
void check_refusals(const std::vector<RefusalCase>& cases);

// For each argument in order: absent, missing, and then every bad value listed for it refuses the call and flags it.
struct ArgumentRules {
    bool required;                // absent and missing are refused
    std::vector<Arg> bad_values;  // each is refused with STATUS_INVALID_ARGUMENT
};
// good: arguments that are all accepted. Returns the number of calls made.
int check_argument_rules(const std::string& name, const std::vector<Arg>& good,
                         const std::vector<ArgumentRules>& rules);

}  // namespace finance::test
