// What the members of an archive do not hold of a session: the parameter page as it was set up, the
// choice of datasets, and the settings of a load, as the text that the comment of the archive
// keeps.
#pragma once

#include <string>
#include <string_view>

#include "core/program_state.h"

namespace quorvane {

// Whether the comment of an archive is ours: it begins with the line "quorvane setup 1".
bool IsSetupText(std::string_view comment);

// The setup of the session: that line, then TOML with keys of a job. Rows of the page are written
// whole, of other datasets what differs from a load.
std::string SetupText(const QuorvaneModule& module);

// A text for the comment of an archive.
struct ArchiveText {
  std::string text;     // empty if not even the setup has room
  int fitsLeftOut = 0;  // of the finished fits, the oldest, for want of room
};

// The setup with the finished fits of the session behind it, at most `longest` bytes.
ArchiveText SetupWithFits(const QuorvaneModule& module, std::size_t longest);

// Brings the setup in `text`, which IsSetupText, back to a session that has just taken up the
// members of its archive, and its finished fits to module.Fits behind those that are there: all of
// it, or nothing. A cell geometry that this machine does not have
// leaves the default one; the text returned says so, and is empty otherwise.
// Throws JobFault, naming `source`, line and key, for a text that is damaged or of other datasets.
std::string TakeSetup(std::string_view text, const std::string& source, QuorvaneModule& module);

}  // namespace quorvane
