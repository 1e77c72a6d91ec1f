// The sets of tests/fit/nist_sets.txt, nonlinear regression with certified values, as fit problems.
#pragma once

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "base/quiet_host.h"
#include "fit/levmarq.h"
#include "support/fit_problem.h"

namespace quorvane {

using NistValues = std::vector<long double>;

struct NistSet {
  std::string name;
  std::string level;  // of difficulty
  // x, y, certified, deviations, sum; set: scale of y, digits required.
  std::map<std::string, NistValues> rows;
  std::vector<NistValues> starts;     // that lead to the solution
  std::vector<NistValues> elsewhere;  // that do not

  double Scale() const { return static_cast<double>(rows.at("set")[0]); }
};

// `folder`: of the sources.
inline std::vector<NistSet> ReadNistSets(const std::string& folder) {
  std::ifstream in(folder + "/tests/fit/nist_sets.txt");
  std::vector<NistSet> sets;
  for (std::string line, key; std::getline(in, line);) {
    std::istringstream words(line);
    if (!(words >> key) || key[0] == '#') continue;
    if (key == "set") words >> sets.emplace_back().name >> sets.back().level;
    NistValues values;
    for (long double value; words >> value;) values.push_back(value);
    if (key == "start") sets.back().starts.push_back(values);
    if (key == "elsewhere") sets.back().elsewhere.push_back(values);
    sets.back().rows[key] = values;
  }
  return sets;
}

inline long double NistCurve(const std::string& set, const NistValues& b, long double x) {
  if (set == "Misra1d") return b[0] * b[1] * x / (1 + b[1] * x);
  if (set == "DanWood") return b[0] * std::pow(x, b[1]);
  if (set == "MGH09") return b[0] * x * (x + b[1]) / (x * x + x * b[2] + b[3]);
  if (set == "MGH10") return b[0] * std::exp(b[1] / (x + b[2]));
  if (set == "Rat42") return b[0] / (1 + std::exp(b[1] - b[2] * x));
  if (set == "Rat43") return b[0] / std::pow(1 + std::exp(b[1] - b[2] * x), 1 / b[3]);
  return b[0] * (1 - std::exp(-b[1] * x));  // Misra1a and BoxBOD
}

// Of the set that is fitted; the routine of a model is a plain function. It reads the predictor
// from FitX.
struct NistCurrent {
  const NistSet* set = nullptr;
  double scale = 1.0;
};
inline NistCurrent nistCurrent;
inline void NistFuncs(FitState& fit, int i, const Array1<double>& a, double& result) {
  const NistValues b(a.data(), a.data() + a.size());
  result =
      static_cast<double>(nistCurrent.scale * NistCurve(nistCurrent.set->name, b, fit.FitX(i)));
}
inline const Model kNistModel = {.name = "NIST",
                                 .funcsName = "NIST",
                                 .partialsName = "NIST",
                                 .terms = nullptr,
                                 .funcs = NistFuncs};

// Negative logarithm of the relative error: at most the 11 digits that are certified, 0 if none
// agrees.
inline double NistDigits(double found, long double certified) {
  const long double error = std::fabs((found - certified) / certified);
  const long double digits = std::fmin(11.0L, -std::log10(error + 1e-30L));
  return static_cast<double>(std::fmax(0.0L, digits));
}

// What a fit of a set came to, in digits; the worst of the parameters, and of the deviations.
struct NistAgreement {
  int iterations = 0;  // 0: still running at the limit
  double parameters = 11.0;
  double deviations = 11.0;
  double sum = 11.0;  // of squares
};

// Fits with FitData. Its rule of the end is absolute, 0.001 in the sum of squares, so signal and
// curve are multiplied by `scale`; parameters and standard deviations keep their values.
inline NistAgreement FitNist(const NistSet& set, const NistValues& start, double scale) {
  constexpr int kMostIterations = 20000;
  class PatientHost : public QuietHost {
   public:
    void ReportProgress(const Progress& progress) override {
      if (progress.iteration >= kMostIterations) stop.Raise();
    }
    StopFlag stop;
  };
  nistCurrent = {&set, scale};
  std::vector<double> y;
  for (const long double value : set.rows.at("y")) y.push_back(static_cast<double>(scale * value));
  const NistValues& x = set.rows.at("x");
  FitState fit =
      MakeCurveProblem(kNistModel, {x.begin(), x.end()}, y, {start.begin(), start.end()});
  PatientHost host;
  fit.Stop = &host.stop;
  NistAgreement agreement;
  FitData(fit, host, agreement.iterations);
  const double variance = fit.FitChiSq / (fit.FitNumPoints - fit.FitMA);
  for (int l = 1; l <= fit.FitMA; ++l) {
    const auto k = static_cast<std::size_t>(l - 1);
    const double deviation = std::sqrt(variance * fit.FitCovar(l, l));
    agreement.parameters =
        std::min(agreement.parameters, NistDigits(fit.FitA(l), set.rows.at("certified")[k]));
    agreement.deviations =
        std::min(agreement.deviations, NistDigits(deviation, set.rows.at("deviations")[k]));
  }
  agreement.sum = NistDigits(fit.FitChiSq / (scale * scale), set.rows.at("sum")[0]);
  return agreement;
}

}  // namespace quorvane
