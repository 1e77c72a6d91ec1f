// The table [solution] of a setup: what the session was told of its sample.
#pragma once

#include "job/toml_reader.h"
#include "job/toml_writer.h"
#include "solution/solution_entry.h"

namespace quorvane {

// Nothing for an entry in which nothing was entered.
void WriteSolution(const SolutionEntry& entry, TomlWriter& out);

// An empty entry if there is no table. Throws JobFault for what an entry cannot hold.
SolutionEntry ReadSolutionEntry(TableReader& root);

}  // namespace quorvane
