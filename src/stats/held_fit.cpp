#include "stats/held_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "base/quiet_host.h"

namespace quorvane {

FitRest SettleAll(FitState& fit, int mostSteps) {
  constexpr int kRounds = 3;
  constexpr double kLower = 1e-9;  // relative
  QuietHost host;
  RestEnd end = BringToRest(fit, host, mostSteps);
  for (int round = 0; round < kRounds && SumStandsStill(end.rest); ++round) {
    std::vector<int> loose = end.undetermined;
    if (end.runaway != 0) loose.push_back(end.runaway);
    if (loose.empty()) break;
    const double sum = fit.FitChiSq;
    const Array1<std::int16_t> fitted = fit.FitIA;
    for (const int l : loose) fit.FitIA(l) = 0;
    SettleFit(fit, host, mostSteps);
    fit.FitIA = fitted;
    const bool lower = fit.FitChiSq < sum * (1.0 - kLower);
    end = BringToRest(fit, host, mostSteps);
    if (!lower) break;
  }
  return end.rest;
}

HeldFit::HeldFit(const FitState& fit, const std::vector<int>& held, const StopFlag& stop)
    : fit_(fit) {
  for (const int l : held) fit_.FitIA(l) = 0;
  fit_.Stop = &stop;
  freedom_ = std::max(1, fit.FitNumPoints - fit.NumFitted());
}

std::optional<RestPoint> HeldFit::Rest(const Array1<double>& start) {
  fit_.FitA = start;
  try {
    if (!Descend()) return std::nullopt;
  } catch (const ArithmeticFault&) {
    return std::nullopt;
  }
  if (!std::isfinite(fit_.FitChiSq)) return std::nullopt;
  return RestPoint{fit_.FitA, fit_.FitChiSq};
}

// Steps in rounds, until a round comes to rest or has next to nothing left to gain.
bool HeldFit::Descend() {
  constexpr int kRounds = 6;
  constexpr int kMostSteps = 120;    // of a round; a descent that is no creeping ends well before
  constexpr double kNothing = 1e-4;  // of the variance: two thousandths of a standard error at most
  double before = std::numeric_limits<double>::infinity();
  for (int round = 0; round < kRounds; ++round) {
    const FitRest rest = SettleAll(fit_, kMostSteps);
    if (SumStandsStill(rest)) return true;
    if (rest == FitRest::kStopped) return false;
    const double sum = fit_.FitChiSq;
    if (before - sum <= kNothing * sum / freedom_) return true;
    before = sum;
  }
  return false;
}

Array1<double> OnLine(const Array1<double>& from, const Array1<double>& to, double share) {
  Array1<double> values = from;
  for (int l = 1; l <= values.size(); ++l) values(l) += share * (to(l) - from(l));
  return values;
}

}  // namespace quorvane
