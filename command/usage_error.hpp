// A command line that says nothing that could be evaluated: exit status 2. And help for mistyped names.
#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "catalogue/text.hpp"

namespace finance::command {

// Whatever a sentence quotes that was typed, read or said by another program goes through one of these.
using catalogue::in_quotes;
using catalogue::shown;

// What a usage error is about; each may be unknown.
struct UsageSubject {
    std::string calculation{};
    std::size_t position = 0;  // of the argument, 1 the first after the name
    std::string argument{};
};

class UsageError : public std::runtime_error {
public:
    // hint: what to type to get further.
    UsageError(const std::string& message, std::string hint, UsageSubject subject = {})
        : std::runtime_error{message}, hint_{std::move(hint)}, subject_{std::move(subject)} {}
    [[nodiscard]] const std::string& hint() const { return hint_; }
    [[nodiscard]] const UsageSubject& subject() const { return subject_; }

private:
    std::string hint_;
    UsageSubject subject_;
};

// The fewest insertions, deletions, replacements and swaps of neighbours that make one of the other, case aside; 3 where
// it takes more than two. Of as many steps as the shorter has letters, whatever the other is.
std::size_t near_distance(std::string_view a, std::string_view b);

// " (did you mean PMT?)" where one of the names is near, the nearest, the first among equals; else empty.
std::string suggestion(std::string_view mistyped, std::span<const std::string_view> names);

}  // namespace finance::command
