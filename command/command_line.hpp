// `finance`: its options, and which of its jobs the words ask for.
#pragma once

#include "command/outcome.hpp"

namespace finance::command {

Outcome run(int argc, const char* const* argv);

// Writes both texts; an output that cannot be written makes the run fail, with a sentence unless it is a pipe that
// nobody reads any more.
int deliver(const Outcome& outcome);

}  // namespace finance::command
