// A table that cannot be read on, or written on: exit status 1.
#pragma once

#include <stdexcept>

namespace finance::command {

class TableError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace finance::command
