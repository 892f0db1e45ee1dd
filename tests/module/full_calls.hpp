// For every calculation that takes a limited number of arguments: arguments in full number, all of them accepted, so
// that the handler reads to the last. A calculation that is new to the module's table belongs here too.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace finance::test {

struct FullCall {
    std::string_view name;
    std::vector<double> arguments;
};

inline constexpr double issued = 17820;        // 15 October 2008
inline constexpr double settled = 17847;       // 11 November 2008
inline constexpr double first_coupon = 17957;  // 1 March 2009
inline constexpr double matures = 22340;       // 1 March 2021
inline constexpr double last_coupon = 17454;   // 15 October 2007
inline constexpr double settled_late = 17569;  // 7 February 2008
inline constexpr double matures_soon = 17698;  // 15 June 2008

inline std::span<const FullCall> full_calls() {
    static const std::vector<FullCall> calls{
        {"ACCRINT", {issued, first_coupon, settled, 0.05, 1000, 2, 0}},
        {"ACCRINTM", {issued, settled, 0.05, 1000, 0}},
        {"AMORDEGRC", {2400, issued, first_coupon, 300, 1, 0.15, 0}},
        {"AMORLINC", {2400, issued, first_coupon, 300, 1, 0.15, 0}},
        {"COUPDAYBS", {settled, matures, 2, 0}},
        {"COUPDAYS", {settled, matures, 2, 0}},
        {"COUPDAYSNC", {settled, matures, 2, 0}},
        {"COUPNCD", {settled, matures, 2, 0}},
        {"COUPNUM", {settled, matures, 2, 0}},
        {"COUPPCD", {settled, matures, 2, 0}},
        {"CUMIPMT", {0.1, 5, 100, 1, 3, 1}},
        {"CUMPRINC", {0.1, 5, 100, 1, 3, 1}},
        {"DB", {10000, 1000, 6, 2, 7}},
        {"DDB", {10000, 1000, 6, 2, 2}},
        {"DISC", {settled, first_coupon, 97, 100, 0}},
        {"DOLLARDE", {1.02, 16}},
        {"DOLLARFR", {1.125, 16}},
        {"DURATION", {settled, matures, 0.08, 0.09, 2, 0}},
        {"EFFECT", {0.05, 4}},
        {"FV", {0.1, 5, 100, 50, 1}},
        {"INTRATE", {settled, first_coupon, 1000, 1010, 0}},
        {"IPMT", {0.1, 2, 5, 100, 50, 1}},
        {"ISPMT", {0.1, 2, 5, 100}},
        {"MDURATION", {settled, matures, 0.08, 0.09, 2, 0}},
        {"NOMINAL", {0.05, 4}},
        {"NPER", {0.01, -100, 1000, 0, 1}},
        {"ODDFPRICE", {settled, matures, issued, first_coupon, 0.08, 0.09, 100, 2, 0}},
        {"ODDFYIELD", {settled, matures, issued, first_coupon, 0.08, 95, 100, 2, 0}},
        {"ODDLPRICE", {settled_late, matures_soon, last_coupon, 0.04, 0.05, 100, 2, 0}},
        {"ODDLYIELD", {settled_late, matures_soon, last_coupon, 0.04, 99, 100, 2, 0}},
        {"PMT", {0.1, 5, 100, 50, 1}},
        {"PPMT", {0.1, 2, 5, 100, 50, 1}},
        {"PRICE", {settled, matures, 0.08, 0.09, 100, 2, 0}},
        {"PRICEDISC", {settled, first_coupon, 0.05, 100, 0}},
        {"PRICEMAT", {settled, first_coupon, issued, 0.05, 0.06, 0}},
        {"PV", {0.1, 5, 100, 50, 1}},
        {"RATE", {48, -200, 8000, 0, 1}},
        {"RECEIVED", {settled, first_coupon, 1000, 0.05, 0}},
        {"SLN", {10000, 1000, 6}},
        {"SYD", {10000, 1000, 6, 2}},
        {"TBILLEQ", {settled, first_coupon, 0.05}},
        {"TBILLPRICE", {settled, first_coupon, 0.05}},
        {"TBILLYIELD", {settled, first_coupon, 98}},
        {"VDB", {10000, 1000, 6, 1, 2, 2, 1}},
        {"YEARFRAC", {settled, matures, 0}},
        {"YIELD", {settled, matures, 0.08, 95, 100, 2, 0}},
        {"YIELDDISC", {settled, first_coupon, 97, 100, 0}},
        {"YIELDMAT", {settled, first_coupon, issued, 0.05, 99, 0}},
    };
    return calls;
}

}  // namespace finance::test
