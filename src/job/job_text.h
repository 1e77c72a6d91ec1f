// Writing a session as a job that `quorvane-cli analyze` runs to the same report.
#pragma once

#include <filesystem>
#include <string>

#include "core/program_state.h"

namespace quorvane {

// A job, or why there is none.
struct JobText {
  std::string text;
  std::string reason;  // one sentence; empty if there is a text
};

// The session as a job in `folder` that loads its scans from their files, each still where it was
// loaded from and unchanged. The text was read back and carried out, and gave the same datasets and
// the same page. Paths of files in `folder` or below it are relative.
JobText JobFromScans(const QuorvaneModule& module, const std::filesystem::path& folder);

// The same beginning from `archive`, where the session was saved: its comment keeps the page.
std::string JobFromArchive(const QuorvaneModule& module, const std::filesystem::path& archive,
                           const std::filesystem::path& folder);

}  // namespace quorvane
