// A call of a calculation, its values by parameter.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::hostile {

struct Call {
    const catalogue::Calculation* calculation = nullptr;
    std::vector<std::vector<double>> given{};  // one value, or those of a list, or none where it is left out

    [[nodiscard]] std::vector<host::Argument> arguments() const;
    // As typed; a list of many values only by its first ones where `whole` is not asked for.
    [[nodiscard]] std::string text(bool whole) const;
    // Processor time that it may take: a second, and for lists a second for each 100,000 of their values.
    [[nodiscard]] double bound() const;
};

}  // namespace finance::hostile
