#include "hostile/call.hpp"

#include <algorithm>

#include "catalogue/text.hpp"

namespace finance::hostile {

std::vector<host::Argument> Call::arguments() const {
    std::vector<host::Argument> all;
    for (const std::vector<double>& values : given) all.insert(all.end(), values.begin(), values.end());
    return all;
}

std::string Call::text(bool whole) const {
    constexpr std::size_t most_shown = 12;
    std::string text = "finance " + std::string{calculation->name};
    for (const std::vector<double>& values : given) {
        const std::size_t shown = whole || values.size() <= most_shown ? values.size() : 3;
        for (std::size_t i = 0; i < shown; ++i) {
            text += ' ';
            catalogue::append_plain(text, values[i]);
        }
        if (shown < values.size()) text += " ... (" + std::to_string(values.size()) + " values)";
    }
    return text;
}

double Call::bound() const {
    constexpr double values_a_second = 100'000.0;
    std::size_t longest = 0;
    for (const std::vector<double>& values : given) longest = std::max(longest, values.size());
    return std::max(1.0, static_cast<double>(longest) / values_a_second);
}

}  // namespace finance::hostile
