// `finance plot`: a calculation drawn over a range of one of its arguments.
#pragma once

#include "command/job.hpp"

namespace finance::command {

extern const Job plot_job;

}  // namespace finance::command
