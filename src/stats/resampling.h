// How the parameters of a fit scatter when the experiment is made again: Monte Carlo with normal
// noise, and the bootstrap of the residuals.
// Source: Straume & Johnson, Methods in Enzymology 210 (1992) 117; Efron & Tibshirani, An
// Introduction to the Bootstrap (1993), chapters 9 and 13.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "fit/fit_state.h"

namespace quorvane {

class StopFlag;

enum class ReplicateKind : std::uint32_t { kMonteCarlo = 1, kBootstrap = 2 };

// Signals of replicates: the curve of the fit at rest, with new noise at the data points. Mass
// conservation points keep their targets.
class ReplicateSource {
 public:
  // `fit` is at rest and has its model values in FitYCalc.
  explicit ReplicateSource(const FitState& fit);

  // Fills the data points of fit.FitY with replicate `index`:
  //   kMonteCarlo: the curve plus normal noise, its standard deviation the rms of the residuals of
  //                the dataset over its n data points;
  //   kBootstrap:  the curve plus residuals drawn with replacement within the dataset.
  // The numbers depend on kind, seed and index alone.
  void Fill(FitState& fit, ReplicateKind kind, std::uint64_t seed, std::uint64_t index) const;

 private:
  struct Set {
    int first = 0;  // flat index
    std::vector<double> curve;
    std::vector<double> residuals;
    double rms = 0.0;
  };
  std::vector<Set> sets_;
};

// Fits replicate after replicate from the values of the fit at rest, on one thread.
class ReplicateFit {
 public:
  ReplicateFit(const FitState& fit, const ReplicateSource& source, const StopFlag& stop);

  // The parameters at rest; nothing if it met a fault or came to none within 500 steps, or after
  // a stop.
  std::optional<Array1<double>> Run(ReplicateKind kind, std::uint64_t seed, std::uint64_t index);

 private:
  const ReplicateSource& source_;
  const FitState& rest_;
  FitState fit_;
};

// What replicates say of one parameter.
struct PercentileLimits {
  double level = 0.0;  // percent
  double lower = 0.0;
  double upper = 0.0;
};

// The limits of which `percent` of the sorted values lie inside and half of the rest on each side,
// between order statistics by linear interpolation: of n values, place 1 + (n - 1) p.
// `sorted` is not empty.
// Source: Hyndman & Fan, The American Statistician 50 (1996) 361, definition 7.
PercentileLimits PercentilesOf(const std::vector<double>& sorted, double percent);

}  // namespace quorvane
