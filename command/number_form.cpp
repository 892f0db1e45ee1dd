#include "command/number_form.hpp"

#include <algorithm>
#include <cmath>

#include "command/argument_text.hpp"

namespace finance::command {

std::string value_text(const NumberForm& form, const catalogue::Calculation& calculation, double value) {
    std::string text;
    append_value(text, calculation, value);
    if (std::isfinite(value)) std::ranges::replace(text, '.', form.decimal);
    return text;
}

}  // namespace finance::command
