// The words of a figure: what its axes measure, and what its datasets are called.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fit/figure_choices.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"

namespace quorvane {

// The title of an axis that bears the signals of `datasets` as measured: by the letter of their
// header lines, "Absorbance at 280 nm" (with the common wavelength if there is one), "Fringes",
// "Fluorescence", "Intensity"; "Signal" where there is none or they differ.
std::string SignalTitle(const std::vector<const Dataset*>& datasets);

// The same for ln(signal - baseline): "ln(absorbance - baseline)", with a true minus sign.
std::string LogSignalTitle(const std::vector<const Dataset*>& datasets);

// The wavelength in nm at which all of `datasets` were measured, nothing if they differ or it is
// not known. Headers state what the monochromator came to: up to 2 nm apart count as one setting,
// and the most frequent value stands for it.
std::optional<int> CommonWavelength(const std::vector<const Dataset*>& datasets);

// "Radius (cm)", "(r² − r₀²)/2 (cm²)"
std::string RadialTitle(FigureAbscissa abscissa);

// "10,000 rpm"
std::string SpeedText(int rpm);

// Where it was measured: "channel A", "cell 2, channel A" `withCell`; the name of a dataset whose
// channel is not known.
std::string ChannelText(const Dataset& dataset, bool withCell);

// Of the dataset at position d of the fit, from 1: "5.1 µM", the mean concentration if the fit
// calculated the loads, else "5.1 µM at r₀", the model's concentration at the reference radius if
// that lies between the points of the fit. Empty where it has no meaning: no extinction coefficient
// (it is 1), a second component, a value that is not above 0.
std::string ConcentrationText(const FitState& fit, int d);

}  // namespace quorvane
