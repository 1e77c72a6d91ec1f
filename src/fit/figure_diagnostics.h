// The contents of a figure that judge a fit: local weights and residuals.
#pragma once

#include <string>
#include <vector>

#include "base/figure.h"
#include "fit/figure_choices.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// The titles of the axes of a content other than kData; `datasets` are those that are shown.
struct DiagnosticTitles {
  std::string left;
  std::string bottom;
};
DiagnosticTitles TitlesOf(const FigureChoices& choices, const FitState& fit,
                          const std::vector<const Dataset*>& datasets);

// Fills data and curve of `series` with the local weights of the dataset at position d, from 1.
// Concentrations are molar where every extinction coefficient is given, else signals. How many
// windows of the data have no weight is returned.
int ShowLocalWeights(FigureSeries& series, const FitState& fit, int d,
                     const FigureChoices& choices);

// Turns residuals of several datasets, which stand in y, into a normal-quantile plot of all: each
// over the rms of its dataset, at the quantile of its rank among all.
void RankResiduals(std::vector<FigureSeries>& series);

// What the points of a cell with a content other than kData are compared with: the line of a model
// that is right. None for local weights, which have curves.
std::vector<FigurePoints> GuidesOf(FigureContent content, const std::vector<FigureSeries>& series);

}  // namespace quorvane
