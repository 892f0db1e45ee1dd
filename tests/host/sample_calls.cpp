#include "tests/host/sample_calls.hpp"

#include "tests/support/example_calls.hpp"

namespace finance::test {
namespace {

using host::Argument;

constexpr double first_flow = host_day(2023, 1, 1);

std::vector<SampleCall> calls_of_all() {
    std::vector<SampleCall> calls{{"IRR", {-1000, 3600, -4310, 1716}}};  // 10, 20 and 30 %
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::string name{calculation.name};
        calls.push_back({name, usual_call(calculation)});
        calls.push_back({name, full_call(calculation)});
    }
    return calls;
}

}  // namespace

const std::vector<SampleCall>& answered_calls() {
    static const std::vector<SampleCall> calls = calls_of_all();
    return calls;
}

const std::vector<SampleCall>& other_calls() {
    static const std::vector<SampleCall> calls{
        {"NO SUCH CALCULATION", {1, 2}},                     // the list of names in the log
        {"", {}},                                            // the same
        {"PMT", {}},                                         // a log line
        {"PMT", {1, 2, 3, 4, 1, 6}},                         // a log line
        {"PMT", {0.005, Argument::absent(), 200000}},        // flagged
        {"PMT", {0.005, 360, Argument::missing()}},          // flagged
        {"YEARFRAC", {0, 100, "ACT/366"}},                   // flagged
        {"YEARFRAC", {0, 100, Argument::absent_text(), 1}},  // a log line
        {"FV", {1, 1024, 1}},                                // fails, nothing flagged
        {"IRR", {1, 2, 3}},                                  // no rate
        {"XIRR", {1, 1, first_flow, host_day(2024, 1, 1)}},  // missing, a note
        {"XIRR", {1, -3, first_flow, first_flow}},           // missing, another note
        {"XNPV", {0.1, 1, 2, 3}},                            // an odd count
    };
    return calls;
}

}  // namespace finance::test
