#include "tests/host/sample_calls.hpp"

namespace finance::test {
namespace {

using host::Argument;

constexpr double settlement = host_day(2025, 1, 20);
constexpr double maturity = host_day(2030, 11, 15);
constexpr double bill_maturity = host_day(2025, 7, 14);
constexpr double first_flow = host_day(2023, 1, 1);

}  // namespace

const std::vector<SampleCall>& answered_calls() {
    static const std::vector<SampleCall> calls{
        {"ACCRINT", {host_day(2025, 3, 1), host_day(2025, 9, 1), host_day(2025, 6, 15), 0.06, 1000, 2}},
        {"ACCRINTM", {host_day(2025, 3, 1), host_day(2025, 6, 15), 0.06, 1000, "ACT/365"}},
        {"AMORDEGRC", {2400, host_day(2025, 8, 19), host_day(2025, 12, 31), 300, 1, 0.15, "ACTUAL"}},
        {"AMORLINC", {2400, host_day(2025, 8, 19), host_day(2025, 12, 31), 300, 1, 0.15, "ACTUAL"}},
        {"COUPDAYBS", {settlement, maturity, 2, "ACTUAL"}},
        {"COUPDAYS", {settlement, maturity, 2, "ACTUAL"}},
        {"COUPDAYSNC", {settlement, maturity, 2, "ACTUAL"}},
        {"COUPNCD", {settlement, maturity, 2}},
        {"COUPNUM", {settlement, maturity, 2}},
        {"COUPPCD", {settlement, maturity, 2}},
        {"CUMIPMT", {0.005, 360, 200000, 1, 12}},
        {"CUMPRINC", {0.005, 360, 200000, 1, 12}},
        {"DB", {10000, 1000, 5, 2, 7}},
        {"DDB", {10000, 1000, 10, 3}},
        {"DISC", {settlement, bill_maturity, 97.5, 100, "ACT/360"}},
        {"DOLLARDE", {99.28, 32}},
        {"DOLLARFR", {99.875, 32}},
        {"DURATION", {settlement, maturity, 0.05, 0.06, 2}},
        {"EFFECT", {0.12, 12}},
        {"FV", {0.01, 12, -100}},
        {"FVSCHEDULE", {1000, 0.05, 0.03, 0.04}},
        {"INTRATE", {settlement, bill_maturity, 1000000, 1020000, "ACT/360"}},
        {"IPMT", {0.005, 13, 360, 200000}},
        {"IRR", {-1000, 300, 400, 500, 200}},
        {"IRR", {-1000, 3600, -4310, 1716}},
        {"ISPMT", {0.01, 3, 12, 1200}},
        {"MDURATION", {settlement, maturity, 0.05, 0.06, 2}},
        {"MIRR", {-1000, 300, 400, 500, 200, 0.1, 0.05}},
        {"NOMINAL", {0.1268, 12}},
        {"NPER", {0.005, -400, 20000}},
        {"NPV", {0.1, -1000, 300, 400, 500, 200}},
        {"ODDFPRICE", {settlement, maturity, host_day(2024, 12, 10), host_day(2025, 11, 15), 0.05, 0.06, 100, 2}},
        {"ODDFYIELD", {settlement, maturity, host_day(2024, 12, 10), host_day(2025, 11, 15), 0.05, 95, 100, 2}},
        {"ODDLPRICE", {settlement, host_day(2025, 8, 31), host_day(2024, 11, 15), 0.05, 0.06, 100, 2}},
        {"ODDLYIELD", {settlement, host_day(2025, 8, 31), host_day(2024, 11, 15), 0.05, 99.25, 100, 2}},
        {"PMT", {0.005, 360, 200000}},
        {"PPMT", {0.005, 13, 360, 200000}},
        {"PRICE", {settlement, maturity, 0.05, 0.06, 100, 2}},
        {"PRICEDISC", {settlement, bill_maturity, 0.05, 100, "ACT/360"}},
        {"PRICEMAT", {settlement, host_day(2025, 11, 15), host_day(2024, 11, 15), 0.05, 0.06}},
        {"PV", {0.01, 12, -100}},
        {"RATE", {60, -400, 20000}},
        {"RECEIVED", {settlement, bill_maturity, 1000000, 0.05, "ACT/360"}},
        {"SLN", {10000, 1000, 5}},
        {"SYD", {10000, 1000, 5, 1}},
        {"TBILLEQ", {settlement, bill_maturity, 0.05}},
        {"TBILLPRICE", {settlement, bill_maturity, 0.05}},
        {"TBILLYIELD", {settlement, bill_maturity, 97.5}},
        {"VDB", {10000, 500, 10, 6, 10, 1.5, 0}},
        {"XIRR", {-1000, 600, 600, first_flow, host_day(2024, 1, 1), host_day(2025, 1, 1)}},
        {"XNPV", {0.1, -1000, 600, 600, first_flow, host_day(2024, 1, 1), host_day(2025, 1, 1)}},
        {"YEARFRAC", {host_day(2024, 1, 15), host_day(2024, 7, 31), "ACTUAL"}},
        {"YIELD", {settlement, maturity, 0.05, 95, 100, 2}},
        {"YIELDDISC", {settlement, bill_maturity, 97.5, 100, "ACT/365"}},
        {"YIELDMAT", {settlement, host_day(2025, 11, 15), host_day(2024, 11, 15), 0.05, 99.25}},
    };
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
