// The report of a fit as lines of the log.
#pragma once

#include <vector>

#include "fit/fit_page.h"
#include "fit/fit_state.h"
#include "scan/cell_geometry.h"
#include "scan/dataset.h"

class Host;

// What the report computes from a finished fit.
struct FitStatistics {
  int fitted = 0;         // nFit: fitted parameters
  int freedom = 0;        // NDF: flat points less fitted parameters
  double variance = 0.0;  // sum of squares over NDF
  int maxSpeed = 0;       // highest rotor speed of the fit, rpm; 0 if none is above 0
};

// From FitChiSq, as the lines of the log take it, or another sum of squares of the fit.
// Throws ArithmeticFault for NDF of 0.
FitStatistics CalcFitStatistics(const FitState& fit);
FitStatistics CalcFitStatistics(const FitState& fit, double sum);

// Standard error of FitA(k): square root of the variance times FitCovar(k, k).
// Throws ArithmeticFault for a negative one.
double StandardError(const FitState& fit, const FitStatistics& statistics, int k);

struct ValueAndError {
  double value = 0.0;
  double error = 0.0;
};

// A reference concentration, whose logarithm is FitA(k), with its error towards the low side.
// Throws ArithmeticFault.
ValueAndError ReferenceConcentration(const FitState& fit, const FitStatistics& statistics, int k);

// Sigma at the highest speed of the fit of the buoyant weight FitA(k), 1/cm^2.
// Throws ArithmeticFault.
double SigmaAtMaxSpeed(const FitState& fit, const FitStatistics& statistics, int k);

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
