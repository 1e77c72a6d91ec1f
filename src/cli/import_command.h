// quorvane-cli import: delimited text as a scan file.
#pragma once

#include <optional>
#include <string>

#include "cli/command_line.h"

namespace quorvane {

struct ImportArguments {
  std::string file;
  std::optional<int> radius;  // columns from 1
  std::optional<int> signal;
  std::optional<int> error;
  std::optional<int> reference;
  std::optional<int> skip;  // lines
  std::optional<int> cell;
  std::optional<double> speed;        // rpm
  std::optional<double> wavelength;   // nm
  std::optional<double> temperature;  // deg C
  std::optional<std::string> comment;
  std::string separator;  // a word; empty: found out
  std::string decimal;
  std::string output;  // the scan file
  std::string json;    // empty: none
};

// Throws JobFault for what cannot be asked, and FileFault.
ExitStatus RunImport(const ImportArguments& arguments, const CommandStreams& streams);

}  // namespace quorvane
