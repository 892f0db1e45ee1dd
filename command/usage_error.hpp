// A command line that says nothing that could be evaluated: exit status 2.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace finance::command {

class UsageError : public std::runtime_error {
public:
    // hint: what to type to get further.
    UsageError(const std::string& message, std::string hint) : std::runtime_error{message}, hint_{std::move(hint)} {}
    [[nodiscard]] const std::string& hint() const { return hint_; }

private:
    std::string hint_;
};

}  // namespace finance::command
