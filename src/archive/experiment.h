// An experiment as its archive holds it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/byte_stream.h"
#include "fit/fit_page.h"
#include "scan/dataset.h"

namespace quorvane {

// An archive that cannot be understood or must not be written; what() says what is wrong and where.
class ArchiveFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Numbers of the layouts of datafile.bin, as they stand at its head. No order is to be read into
// them: the older layout has the higher number.
inline constexpr std::int32_t kCurrentLayout = 51916;
inline constexpr std::int32_t kOldLayout = 51919;

struct Experiment {
  std::int32_t layout = kCurrentLayout;
  FixedText<255> directory;  // current directory of the program that saved it
  struct FitPage FitPage;    // ln K2 and ln K3 absolute, ModelIndex set
  std::vector<Dataset> Datasets;
  std::vector<Bytes> GraphStreams;  // serialised Charts, or bytes of another program's charts
  std::string log;                  // the bytes of logfile.rtf
  std::string comment;              // of the ZIP file, as it stands there; see job/page_setup.h
};

}  // namespace quorvane
