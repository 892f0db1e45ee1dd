// How an answer is printed, and where options ask for another form than all digits with a point.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/options.hpp"
#include "command/outcome.hpp"

namespace finance::command {

inline constexpr int most_digits = 17;

// Of jobs and of direct calls.
inline constexpr Option digits_option{
    "--digits", "N", "answers with N decimals; a tie goes to the even digit (0.125 is 0.12)", {0, most_digits}};

struct NumberForm {
    std::optional<int> decimals{};  // none: all digits
    char decimal = '.';

    [[nodiscard]] bool plain() const { return !decimals && decimal == '.'; }
};

// The exact value of the double, rounded to so many decimals as printf does; never -0.00. From 1e15 on, where decimals
// say nothing, and for infinities all digits.
std::string rounded_text(double value, int decimals);

// The double nearest to rounded_text.
double rounded(double value, int decimals);

// UsageError where the text is no number of decimals.
int read_digits(std::string_view text);
// The option's value, the last one given, or what was said before the job.
std::optional<int> digits_of(const OptionsGiven& given, std::optional<int> otherwise);

// Takes --digits N out of the words after a calculation's name. UsageError.
std::optional<int> take_digits(std::vector<std::string_view>& words);

// An answer that was printed with all its digits, and is no date, with so many decimals.
void round_answer(Outcome& outcome, int decimals);

// A value as the command prints it without options.
void append_value(std::string& output, const catalogue::Calculation& calculation, double value);

// Of a date the form changes nothing.
std::string value_text(const NumberForm& form, const catalogue::Calculation& calculation, double value);

}  // namespace finance::command
