// What can be chosen about a figure of datasets and their fit.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "base/figure.h"

namespace quorvane {

// What a figure shows of its datasets.
enum class FigureContent {
  kData,          // signals with curves and residuals
  kLocalWeights,  // local average weights against concentration (local_weights.h)
  kResiduals,     // residuals of all datasets together against the abscissa
  kQuantiles,     // residuals over their rms against the quantiles of a normal distribution
};

// Which datasets share a cell of the figure.
enum class FigurePanels { kByChannel, kBySpeed, kOne };
inline constexpr std::size_t kMostFigureCells = 30;

enum class FigureAbscissa { kRadius, kPsi };        // (r^2 - r0^2)/2, r0 being the reference radius
enum class FigureSignal { kMeasured, kLogarithm };  // ln(signal - baseline)

// What tells datasets apart: colour and stroke their speed and the symbol their channel; or each
// dataset has a look of its own, which it keeps whatever else is shown.
enum class FigureLooks { kBySpeed, kByDataset };

struct FigureChoices {
  FigureContent content = FigureContent::kData;
  FigurePanels panels = FigurePanels::kByChannel;
  FigureAbscissa abscissa = FigureAbscissa::kRadius;
  FigureSignal signal = FigureSignal::kMeasured;
  FigureLooks looks = FigureLooks::kBySpeed;
  bool curves = true;
  bool residuals = true;
  bool leftOut = false;      // show points that are left out
  bool species = false;      // show the species of the curves
  int every = 1;             // one mark in so many is shown, of data, residuals and local weights
  int window = 0;            // points of a local weight; 0: chosen to suit
  bool trueWeights = false;  // local weights M, by vbar and density, not buoyant ones
  std::string title = {};    // of the figure
  std::map<std::string, std::string> texts = {};  // what stands in place of a text of the figure
  double width = kFigurePageWidth;                // on paper, mm
  std::optional<double> height = {};              // mm; absent: what suits
};

}  // namespace quorvane
