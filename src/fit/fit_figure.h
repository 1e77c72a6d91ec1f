// Several datasets and their fit in one figure, for a paper or for comparison.
#pragma once

#include <cstddef>
#include <vector>

#include "base/figure.h"
#include "fit/figure_choices.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

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
// legend is in words ("10,000 rpm, channel A, 5.1 µM"); above 24 datasets it lists instead the
// speeds and channels that no panel is called by, where these are at most 24 and tell datasets
// apart. A text of the legend that the user has emptied takes its entry away. Up to 24 datasets of
// which two would look alike in their cell have looks of their own, whatever was chosen.
// What is not shown, and what is done otherwise than chosen, is a remark.
Figure MakeFigure(const std::vector<FigureSet>& sets, const FitState* fit,
                  const FigureChoices& choices);

}  // namespace quorvane
