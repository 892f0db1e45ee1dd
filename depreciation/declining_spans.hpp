// Declining balance over spans of more periods than are walked one by one.
#pragma once

#include <cstdint>

namespace finance {

struct DecliningAsset {
    double cost;
    double depreciable;  // cost - salvage
    double life;         // periods
    double factor;       // of the straight-line rate; q = factor / life is what a period takes of the rest
};

// Depreciation of the periods s .. e - 1, by what is left after i periods: cost (1 - q)^i, but no less than salvage.
double closed_declining(const DecliningAsset& a, std::int32_t s, std::int32_t e);

// The same with the switch to straight line: the declining balance up to the first period in which the straight line
// gives more, or in which salvage is reached; equal amounts from there until salvage is reached.
double closed_switching(const DecliningAsset& a, std::int32_t s, std::int32_t e);

}  // namespace finance
