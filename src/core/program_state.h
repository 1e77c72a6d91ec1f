// QuorvaneModule: all that a session holds. main makes one, windows and commands refer to it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "base/k_display.h"
#include "base/stop_flag.h"
#include "core/figure_setup.h"
#include "core/finished_fit.h"
#include "core/fit_history.h"
#include "fit/fit_page.h"
#include "fit/fit_plots.h"
#include "fit/fit_setup.h"
#include "scan/cell_geometry.h"
#include "scan/dataset_store.h"
#include "scan/loading.h"
#include "solution/solution_entry.h"

namespace quorvane {

// Colours of series by position, as 0x00BBGGRR; entry 12 has all bits set on purpose.
inline constexpr std::array<std::uint32_t, 16> GraphColors = {
    0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF,   0xFF00FF, 0xFFFF00, 0x7F7F7F,
    0x9F003F, 0x00005F, 0x005F00, 0xDFDF00, 0xFFFFFFFF, 0xDF00DF, 0x9F3F00, 0x007F00};

// What the user prefers, kept from one session to the next.
struct Preferences {
  bool SaveGraphs = true;
  bool LogGraphs = true;
  PlotOptions Plots;
  bool ShowNIWarning = true;
  bool ShowHints = true;
  bool UseBuoyantMW = true;
  KDisplay KFormat = KDisplay::kLn;
  std::uint32_t DeletedColor = 255;
  std::uint32_t GoodColor = 0xFF0000;
  double DefaultVbar = 0.73;
  double DefaultVbarB = 0.73;
  double DefaultDensity = 1.0;
  double CriticalCCCValue = 0.95;
  double MCTolerance = 0.25;
  bool PreviewAxes = false;      // whether the preview of a file has axes
  bool AlwaysFitToRest = false;  // "Fit" brings the start values to rest first
};

struct QuorvaneModule {
  DatasetStore Store;
  struct FitPage FitPage;
  struct ConstantsSet ConstantsSet;
  const Model* ChosenModel = &FirstModel();  // in the list; Setup holds that of the page
  FitSetup Setup;
  std::shared_ptr<const FinishedFit> LastFit;  // null: there is none
  FitHistory Fits;                             // all that were finished, the last one among them
  std::optional<FigureSetup> Figure;           // as set up for this experiment; absent: not yet
  StopFlag Stop;                               // of the calculation that runs
  bool ExperimentOpen = false;
  ScanLoadSettings LoadSettings;  // of the next load
  SolutionEntry Solution;         // of the sample, for vbar, density and extinction

  // Levels of the confidence search in percent: 1 and 2 standard deviations, and the user's own,
  // which repeats the first until it is set.
  std::array<double, 3> ConfidenceLevels = {68.27, 95.46, 68.27};

  std::filesystem::path ChannelFile;
  bool HaveChannelFile = false;
  std::vector<CellGeometry> CellGeometries;

  std::vector<std::vector<std::byte>> GraphStreams;  // serialised Charts, "Graph #1" first
  int NumGraphs() const { return static_cast<int>(GraphStreams.size()); }

  struct Preferences Preferences;
};

// "1.0.0"
const char* ProgramVersion();

// The two lines that head a new log: program and version, date and time.
void LogHead(Host& host);

}  // namespace quorvane
