// Sessions for tests: datasets made from closed forms, ready for "Setup Fit".
#pragma once

#include <cmath>
#include <string>

#include "core/program_state.h"
#include "scan/cell_geometry.h"

namespace quorvane {

// Shape of a made scan.
struct MadeScan {
  const char* name = "made.dat";
  int points = 60;
  int speed = 20000;  // rpm
  double first = 6.40;
  double last = 6.60;  // cm
};

// Deterministic stand-in for noise, of amplitude about 1: no generator, so that reports stay the
// same for ever.
inline double Ripple(int k) {
  return std::sin(12.9898 * k + 0.5 * k * k);
}

// Adds a dataset whose signal at (x, k), x = (r^2 - R0^2)/2 in cm^2 and k from 0, is
// `signal(x, omega)` + 0.002 Ripple(k); omega = speed^2 1.319007e-10 / 293.15.
template <class Signal>
Dataset& AddScan(QuorvaneModule& module, const MadeScan& scan, Signal&& signal) {
  Dataset dataset = EmptyDataset();
  dataset.FileName.SetBytes(scan.name);
  dataset.NumPoints = static_cast<std::int16_t>(scan.points);
  dataset.Speed = scan.speed;
  dataset.Temperature = 20.0F;
  dataset.Wavelength = 280;
  for (int k = 0; k < scan.points; ++k) {
    const auto place = static_cast<std::size_t>(k);
    dataset.R[place] = scan.first + (scan.last - scan.first) * k / (scan.points - 1);
    dataset.Err[place] = 1.0;
    dataset.Good[place] = kTrue;
  }
  dataset.Rmen = scan.first;
  dataset.Rbase = scan.last;
  dataset.RefRadius = CalcRefRadius(dataset);
  const double omega = 1.319007e-10 * scan.speed * scan.speed / 293.15;
  for (int k = 0; k < scan.points; ++k) {
    const auto place = static_cast<std::size_t>(k);
    const double r = dataset.R[place];
    const double x = (r * r - dataset.RefRadius * dataset.RefRadius) / 2.0;
    dataset.C[place] = signal(x, omega) + 0.002 * Ripple(k);
  }
  module.Store.Datasets.push_back(dataset);
  module.Store.UseData.push_back(true);
  return module.Store.Datasets.back();
}

}  // namespace quorvane
