// How an answer is printed where options ask for another form than all digits with a point.
#pragma once

#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::command {

struct NumberForm {
    char decimal = '.';

    [[nodiscard]] bool plain() const { return decimal == '.'; }
};

// Of a date the form changes nothing.
std::string value_text(const NumberForm& form, const catalogue::Calculation& calculation, double value);

}  // namespace finance::command
