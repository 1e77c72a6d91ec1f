// Several datasets and their fit in one figure, for a paper or for comparison.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "base/figure.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// Which datasets share a cell of the figure.
enum class FigurePanels { kByChannel, kBySpeed, kOne };
inline constexpr std::size_t kMostFigureCells = 30;

enum class FigureAbscissa { kRadius, kPsi };        // (r^2 - r0^2)/2, r0 being the reference radius
enum class FigureSignal { kMeasured, kLogarithm };  // ln(signal - baseline)

// What tells datasets apart: colour and stroke their speed and the symbol their channel; or each
// dataset has a look of its own, which it keeps whatever else is shown.
enum class FigureLooks { kBySpeed, kByDataset };

struct FigureChoices {
  FigurePanels panels = FigurePanels::kByChannel;
  FigureAbscissa abscissa = FigureAbscissa::kRadius;
  FigureSignal signal = FigureSignal::kMeasured;
  FigureLooks looks = FigureLooks::kBySpeed;
  bool curves = true;
  bool residuals = true;
  bool leftOut = false;                           // show points that are left out
  std::string title = {};                         // of the figure
  std::map<std::string, std::string> texts = {};  // what stands in place of a text of the figure
};

// One dataset of a figure.
struct FigureSet {
  const Dataset* dataset = nullptr;
  std::size_t number = 0;  // its own, from 0, by which it has a look of its own
  int fitted = 0;          // position in the fit, from 1; 0: it is shown without one
};

// The look of a dataset by its own number: no two of the first 112 are alike. The colours are those
// of M. Okabe and K. Ito, Color Universal Design, 2002, which colour-blind readers tell apart, but
// for their yellow, which is too pale for thin marks on white.
FigureLook FigureLookOf(std::size_t number);

// Points in use, curves and residuals of `sets` with `fit` (null: there is none). Signals are as
// measured, baselines included; residuals are data minus curve whatever the signal. The logarithm
// takes the fitted baseline off, without a fit that of the dataset, and leaves out points that are
// then not above 0; how many is a remark.
// Cells stand by rising cell, channel and speed; more than kMostFigureCells become one cell. The
// legend is in words ("10,000 rpm, channel A, 5.1 µM"); above 24 datasets it lists speeds and
// channels instead, where these are at most 24 and tell datasets apart. A text of the legend that
// the user has emptied takes its entry away.
Figure MakeFigure(const std::vector<FigureSet>& sets, const FitState* fit,
                  const FigureChoices& choices);

}  // namespace quorvane
