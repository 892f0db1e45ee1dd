// Numbers as sheets and statements show them, rewritten as a call takes them (reading/argument_text.hpp).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace finance::reading {

struct NumberSigns {
    char decimal = '.';
    bool groups = false;  // of digits
    bool money = false;   // a currency, and brackets for a minus
};

// "1.234,5 %" as "1234.5%". Nothing where the text has no digit or does not follow the rules of reading/field_form.hpp.
std::optional<std::string> rewritten_number(std::string_view text, const NumberSigns& signs);

bool has_digit(std::string_view text);

}  // namespace finance::reading
