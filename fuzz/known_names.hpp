// The calculations by family with the arguments that each takes, as the reference pages have them. Nothing here comes
// from the module's own table, and a name is found by looking at all of them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace finance::fuzz {

struct KnownName {
    std::string_view name;
    std::int32_t required;        // arguments after the name
    std::int32_t optional;        // more that may follow; any_number: no end
    std::array<double, 9> usual;  // arguments of a call that makes sense; dates are days since 1960-01-01
};

inline constexpr std::int32_t any_number = -1;

inline constexpr std::array known_names{
    // annuities
    KnownName{"PMT", 3, 2, {0.005, 360, 200000, 0, 0}},
    KnownName{"IPMT", 4, 2, {0.005, 12, 360, 200000, 0, 0}},
    KnownName{"PPMT", 4, 2, {0.005, 12, 360, 200000, 0, 0}},
    KnownName{"ISPMT", 4, 0, {0.1, 1, 3, 8000}},
    KnownName{"CUMIPMT", 5, 1, {0.005, 360, 200000, 13, 24, 0}},
    KnownName{"CUMPRINC", 5, 1, {0.005, 360, 200000, 13, 24, 0}},
    KnownName{"NPER", 3, 2, {0.01, -100, 5000, 0, 0}},
    KnownName{"RATE", 3, 2, {48, -200, 8000, 0, 0}},
    KnownName{"PV", 3, 2, {0.005, 240, 500, 0, 0}},
    KnownName{"FV", 3, 2, {0.005, 10, -200, -500, 0}},
    // rates
    KnownName{"EFFECT", 2, 0, {0.0525, 4}},
    KnownName{"NOMINAL", 2, 0, {0.053543, 4}},
    // flows
    KnownName{"FVSCHEDULE", 1, any_number, {1, 0.09, 0.11, 0.1}},
    KnownName{"IRR", 1, any_number, {-100, 230, -132, 40, 60}},
    KnownName{"MIRR", 1, any_number, {-120, 39, 30, 21, 37, 0.1, 0.12}},
    KnownName{"NPV", 1, any_number, {0.1, -100, 30, 42, 68}},
    KnownName{"XIRR", 1, any_number, {-100, 27, 85, 17532, 17592, 17943, 0.1}},
    KnownName{"XNPV", 1, any_number, {0.09, -100, 27, 85, 17532, 17592, 17943}},
    // bonds
    KnownName{"PRICE", 6, 1, {17577, 21138, 0.0575, 0.065, 100, 2, 0}},
    KnownName{"YIELD", 6, 1, {17577, 20773, 0.0575, 95.04, 100, 2, 0}},
    KnownName{"DURATION", 5, 1, {17532, 20454, 0.08, 0.09, 2, 1}},
    KnownName{"MDURATION", 5, 1, {17532, 20454, 0.08, 0.09, 2, 1}},
    KnownName{"PRICEMAT", 5, 1, {17577, 17635, 17481, 0.061, 0.061, 0}},
    KnownName{"YIELDMAT", 5, 1, {17606, 17839, 17478, 0.0625, 100.0123, 0}},
    KnownName{"ODDFPRICE", 8, 1, {17847, 22340, 17820, 17957, 0.0785, 0.0625, 100, 2, 1}},
    KnownName{"ODDFYIELD", 8, 1, {17847, 22340, 17820, 17957, 0.0575, 84.5, 100, 2, 0}},
    KnownName{"ODDLPRICE", 7, 1, {17569, 17698, 17454, 0.0375, 0.0405, 100, 2, 0}},
    KnownName{"ODDLYIELD", 7, 1, {17642, 17698, 17524, 0.0375, 99.875, 100, 2, 0}},
    // accrued interest, coupon dates
    KnownName{"ACCRINT", 6, 1, {17592, 17775, 17653, 0.1, 1000, 2, 0}},
    KnownName{"ACCRINTM", 4, 1, {17623, 17698, 0.1, 1000, 3}},
    KnownName{"COUPDAYBS", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"COUPDAYS", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"COUPDAYSNC", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"COUPNCD", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"COUPNUM", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"COUPPCD", 3, 1, {18652, 18946, 2, 1}},
    KnownName{"YEARFRAC", 2, 1, {18993, 19204, 0}},
    // discount securities, bills, quotes
    KnownName{"DISC", 4, 1, {17191, 17332, 97.975, 100, 1}},
    KnownName{"INTRATE", 4, 1, {17577, 17667, 1000000, 1014420, 2}},
    KnownName{"PRICEDISC", 4, 1, {17578, 17592, 0.0525, 100, 2}},
    KnownName{"RECEIVED", 4, 1, {17577, 17667, 1000000, 0.0575, 2}},
    KnownName{"YIELDDISC", 4, 1, {17578, 17592, 99.795, 100, 2}},
    KnownName{"TBILLEQ", 3, 0, {17622, 17867, 0.0914}},
    KnownName{"TBILLPRICE", 3, 0, {17622, 17684, 0.09}},
    KnownName{"TBILLYIELD", 3, 0, {17622, 17684, 98.45}},
    KnownName{"DOLLARDE", 2, 0, {1.02, 16}},
    KnownName{"DOLLARFR", 2, 0, {1.125, 16}},
    // depreciation
    KnownName{"AMORDEGRC", 6, 1, {2400, 17763, 17897, 300, 1, 0.15, 1}},
    KnownName{"AMORLINC", 6, 1, {2400, 17763, 17897, 300, 1, 0.15, 1}},
    KnownName{"DB", 4, 1, {1000000, 100000, 6, 3, 7}},
    KnownName{"DDB", 4, 1, {2400, 300, 10, 2, 2}},
    KnownName{"SLN", 3, 0, {30000, 7500, 10}},
    KnownName{"SYD", 4, 0, {30000, 7500, 10, 3}},
    KnownName{"VDB", 5, 2, {2400, 300, 10, 0.5, 3.5, 2, 0}},
};
static_assert(known_names.size() == 54);

constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The calculation that a text names, or null: trailing blanks do not count, case does not where the host is blind to
// it, and nothing else is forgiven.
inline const KnownName* find_name(std::string_view text, bool case_blind) {
    while (text.ends_with(' ')) text.remove_suffix(1);
    const auto same = [&](char a, char b) { return case_blind ? upper(a) == b : a == b; };
    for (const KnownName& known : known_names) {
        if (std::ranges::equal(text, known.name, same)) return &known;
    }
    return nullptr;
}

}  // namespace finance::fuzz
