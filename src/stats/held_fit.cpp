#include "stats/held_fit.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/quiet_host.h"
#include "fit/settled_fit.h"

namespace quorvane {

HeldFit::HeldFit(const FitState& fit, const std::vector<int>& held, const StopFlag& stop)
    : fit_(fit) {
  for (const int l : held) fit_.FitIA(l) = 0;
  fit_.Stop = &stop;
}

std::optional<RestPoint> HeldFit::Rest(const Array1<double>& start) {
  constexpr int kMostSteps = 1500;
  fit_.FitA = start;
  QuietHost host;
  try {
    if (!SumStandsStill(SettleFit(fit_, host, kMostSteps))) return std::nullopt;
  } catch (const ArithmeticFault&) {
    return std::nullopt;
  }
  if (!std::isfinite(fit_.FitChiSq)) return std::nullopt;
  return RestPoint{fit_.FitA, fit_.FitChiSq};
}

Array1<double> OnLine(const Array1<double>& from, const Array1<double>& to, double share) {
  Array1<double> values = from;
  for (int l = 1; l <= values.size(); ++l) values(l) += share * (to(l) - from(l));
  return values;
}

}  // namespace quorvane
