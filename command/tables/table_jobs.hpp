// `finance map`: calls over the rows of a table, their results as further columns.
// `finance fold`: calls over lists whose values stand one below the other, one result a group of rows.
#pragma once

#include "command/job.hpp"

namespace finance::command {

extern const Job map_job;
extern const Job fold_job;

}  // namespace finance::command
