#include "sim/plan_traps.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"
#include "fit/figure_words.h"

namespace quorvane {

namespace {

std::string NameOf(const ExpectedError& error) {
  return std::string(error.parameter->shared->name);
}

// "A", "A and B", "A, B and C".
std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (k > 0) text += k + 1 == names.size() ? " and " : ", ";
    text += names[k];
  }
  return text;
}

// "10,000 rpm, load 2.000E-6".
std::string ScanText(const ExperimentPlan& plan, const PlannedScan& scan) {
  std::string text = SpeedText(static_cast<int>(scan.speed)) + ", load " + FormatParam(scan.load);
  if (plan.extCoeff.size() > 1) text += ", wavelength " + std::to_string(scan.wavelength + 1);
  return text;
}

void SayUndetermined(const PlanResult& result, std::vector<std::string>& remarks) {
  std::vector<std::string> names;
  for (const ExpectedError& error : result.errors) {
    if (!error.sd) names.push_back(NameOf(error));
  }
  if (names.empty()) return;
  remarks.push_back("The plan cannot determine " + Listed(names) +
                    (names.size() == 1
                         ? ": other parameters make up for any change of it."
                         : ": each can change with the others, and no scan would show it."));
}

// An error that leaves next to nothing known; in words, empty if it is smaller.
std::string LittleKnown(const ExpectedError& error) {
  constexpr double kOfTheValue = 0.5;
  constexpr double kOfLnK = 1.0;
  constexpr double kOfFraction = 0.25;
  const double sd = *error.sd;
  switch (error.parameter->shared->kind) {
    case ParameterKind::kLnK:
      if (sd <= kOfLnK) return "";
      return "expected standard error " + FormatParam(sd) + ", the constant within a factor of " +
             FormatParam(std::exp(std::min(sd, 100.0)));
    case ParameterKind::kFraction:
      return sd <= kOfFraction ? "" : "expected standard error " + FormatParam(sd);
    default:
      break;
  }
  if (!error.relative || *error.relative <= kOfTheValue) return "";
  return "expected standard error " + FormatNumber(100.0 * *error.relative, "0") +
         " % of the value";
}

void SayWeak(const PlanResult& result, std::vector<std::string>& remarks) {
  for (const ExpectedError& error : result.errors) {
    if (!error.sd) continue;
    const std::string why = LittleKnown(error);
    if (!why.empty()) {
      remarks.push_back("The plan hardly determines " + NameOf(error) + ": " + why + ".");
    }
  }
}

void SayCorrelated(const PlanResult& result, std::vector<std::string>& remarks) {
  constexpr double kAlike = 0.99;
  for (std::size_t i = 0; i < result.errors.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const std::optional<double>& value = result.correlations[i][j];
      if (!value || !result.errors[i].sd || !result.errors[j].sd || std::fabs(*value) < kAlike) {
        continue;
      }
      remarks.push_back(NameOf(result.errors[j]) + " and " + NameOf(result.errors[i]) +
                        " can hardly be told apart: correlation " +
                        FormatNumber(*value, "+0.0000;-0.0000") + ".");
    }
  }
}

// A speed each at which columns are flat, with the least sigma there.
void SayFlat(const PlanResult& result, std::vector<std::string>& remarks) {
  for (const double speed : result.speeds) {
    int flat = 0;
    int all = 0;
    double least = kFlatSigma;
    for (const PlannedScan& scan : result.scans) {
      if (scan.speed != speed) continue;
      ++all;
      if (scan.sigma >= kFlatSigma) continue;
      ++flat;
      least = std::min(least, scan.sigma);
    }
    if (flat == 0) continue;
    remarks.push_back("At " + SpeedText(static_cast<int>(speed)) + " " +
                      (flat == all ? "the columns are flat" : "some columns are flat") +
                      ": sigma is down to " + FormatNumber(least, "0.00") +
                      " 1/cm^2; below 1 a scan tells little but its mean.");
  }
}

void SayLeftOut(const PlanResult& result, std::vector<std::string>& remarks) {
  if (result.leftOut.empty()) return;
  std::vector<std::string> speeds;
  for (const double speed : result.leftOut) speeds.push_back(SpeedText(static_cast<int>(speed)));
  remarks.push_back(
      speeds.size() == 1
          ? "The candidate " + Listed(speeds) + " leads beyond all numbers and was left out."
          : "The candidates " + Listed(speeds) + " lead beyond all numbers and were left out.");
}

void SayLost(const ExperimentPlan& plan, const PlanResult& result,
             std::vector<std::string>& remarks) {
  constexpr std::size_t kMostNamed = 4;
  std::vector<const PlannedScan*> lost;
  int points = 0;
  for (const PlannedScan& scan : result.scans) {
    if (scan.points == plan.points) continue;
    lost.push_back(&scan);
    points += plan.points - scan.points;
  }
  if (lost.empty()) return;
  const std::string most = FormatParam(plan.mostSignal);
  if (lost.size() > kMostNamed) {
    remarks.push_back("The detector loses points above a signal of " + most + " in " +
                      std::to_string(lost.size()) + " of " + std::to_string(result.scans.size()) +
                      " scans, " + std::to_string(points) + " in all.");
    return;
  }
  for (const PlannedScan* scan : lost) {
    remarks.push_back("The detector loses " + std::to_string(plan.points - scan->points) + " of " +
                      std::to_string(plan.points) + " points above a signal of " + most + " at " +
                      ScanText(plan, *scan) + (scan->points == 0 ? ": nothing is left." : "."));
  }
}

}  // namespace

std::vector<std::string> TrapsOf(const ExperimentPlan& plan, const PlanResult& result) {
  std::vector<std::string> remarks;
  SayUndetermined(result, remarks);
  SayWeak(result, remarks);
  SayCorrelated(result, remarks);
  SayLeftOut(result, remarks);
  SayFlat(result, remarks);
  SayLost(plan, result, remarks);
  return remarks;
}

}  // namespace quorvane
