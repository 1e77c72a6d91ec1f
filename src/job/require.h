// A refusal of the session as the fault of a job.
#pragma once

#include "core/page/refusal.h"
#include "job/toml_reader.h"

namespace quorvane {

// Refuses the job because of a key of `table` if a rule of the session does.
inline void Require(const TableReader& table, const char* key, const Refusal& refusal) {
  if (refusal) table.Fail(key, LineOf(refusal));
}

// The same for a value that was judged as it was read, when its key was at hand.
inline void Require(const Refusal& refusal) {
  if (refusal) throw JobFault(LineOf(refusal));
}

}  // namespace quorvane
