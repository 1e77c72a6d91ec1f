// The report of a fit as lines of the log.
#pragma once

#include <cstdint>
#include <vector>

#include "fit/fit_page.h"
#include "fit/fit_state.h"
#include "fit/fit_statistics.h"
#include "scan/cell_geometry.h"
#include "scan/dataset.h"

namespace quorvane {

class Host;

// All that the lines of a report are made from; the references outlive it.
struct ReportSource {
  const FitState& fit;
  const FitStatistics& statistics;
  const FitPage& page;
  const std::vector<Dataset>& datasets;
  const std::vector<CellGeometry>& geometries;
  const std::vector<std::int16_t>& cellChannels;  // by position in the fit
};

// The table of datasets: file, baseline, reference concentrations, distances and coefficients.
void LogDatasetTable(const ReportSource& source, Host& host);

// Molecular weights, sigma, and the lines of the Model; the mass conservation table where it was
// in use. Throws ArithmeticFault, part of the lines being written.
void LogModelLines(const ReportSource& source, Host& host);

// The table of calculated loading concentrations; needs CalcLoadConcs.
void LogLoadingConcs(const ReportSource& source, Host& host);

// Iterations, points, degrees of freedom, rms deviation, held parameters.
void LogFitCounts(const ReportSource& source, int iterations, Host& host);

}  // namespace quorvane
