// Faults caught here: a minimiser that ends beside the least sum of squares, and a covariance that
// is not that of the parameters. Data and certified values stand in nist_sets.txt.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "fit/levmarq.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

namespace {

using Values = std::vector<long double>;

struct NistSet {
  std::string name;
  std::map<std::string, Values> rows;  // x, y, certified, deviations, sum; scale and digits in set
  std::vector<Values> starts;
};

std::vector<NistSet> ReadSets() {
  std::ifstream in(std::string(QUORVANE_SOURCE_DIR) + "/tests/fit/nist_sets.txt");
  std::vector<NistSet> sets;
  for (std::string line, key; std::getline(in, line);) {
    std::istringstream words(line);
    if (!(words >> key) || key[0] == '#') continue;
    if (key == "set") words >> sets.emplace_back().name;
    Values values;
    for (long double value; words >> value;) values.push_back(value);
    if (key == "start") sets.back().starts.push_back(values);
    sets.back().rows[key] = values;
  }
  return sets;
}

long double Curve(const std::string& set, const Values& b, long double x) {
  if (set == "Misra1d") return b[0] * b[1] * x / (1 + b[1] * x);
  if (set == "DanWood") return b[0] * std::pow(x, b[1]);
  if (set == "MGH09") return b[0] * x * (x + b[1]) / (x * x + x * b[2] + b[3]);
  if (set == "MGH10") return b[0] * std::exp(b[1] / (x + b[2]));
  if (set == "Rat42") return b[0] / (1 + std::exp(b[1] - b[2] * x));
  if (set == "Rat43") return b[0] / std::pow(1 + std::exp(b[1] - b[2] * x), 1 / b[3]);
  return b[0] * (1 - std::exp(-b[1] * x));  // Misra1a and BoxBOD
}

// The rule of the end is absolute, 0.001 in the sum of squares. Signal and curve are multiplied by
// the scale of the set, so that the rule asks for about eight digits of the sum; parameters and
// standard deviations keep their values. The model reads the predictor from FitX.
const NistSet* current = nullptr;
void NistFuncs(FitState& fit, int i, const Array1<double>& a, double& result) {
  const Values b(a.data(), a.data() + a.size());
  result = static_cast<double>(current->rows.at("set")[0] * Curve(current->name, b, fit.FitX(i)));
}
const Model kNistModel = {"NIST", "NIST", NistFuncs, nullptr, 0.01, 0.001, false, {}};

FitState Problem(const NistSet& set, const Values& start) {
  std::vector<double> y;
  for (const long double value : set.rows.at("y")) {
    y.push_back(static_cast<double>(set.rows.at("set")[0] * value));
  }
  const Values& x = set.rows.at("x");
  return MakeCurveProblem(kNistModel, {x.begin(), x.end()}, y, {start.begin(), start.end()});
}

// Negative logarithm of the relative error, at most the 11 digits that are certified.
double Digits(double found, long double certified) {
  const long double error = std::fabs((found - certified) / certified);
  return static_cast<double>(std::fmin(11.0L, -std::log10(error + 1e-30L)));
}

TEST(NistData, GivesTheCertifiedSumOfSquares) {
  for (const NistSet& set : ReadSets()) {
    long double sum = 0;
    for (std::size_t k = 0; k < set.rows.at("x").size(); ++k) {
      const auto curve = Curve(set.name, set.rows.at("certified"), set.rows.at("x")[k]);
      sum += std::pow(set.rows.at("y")[k] - curve, 2.0L);
    }
    EXPECT_NEAR(static_cast<double>(sum / set.rows.at("sum")[0]), 1.0, 1e-9) << set.name;
  }
}

TEST(FitData, ReachesTheCertifiedValuesOfNist) {
  const std::vector<NistSet> sets = ReadSets();
  ASSERT_EQ(sets.size(), 8U);
  for (const NistSet& set : sets) {
    current = &set;
    for (const Values& start : set.starts) {
      FitState fit = Problem(set, start);
      RecordingHost host;
      host.onEvents = [&] { fit.FitKeepGoing = host.lastIteration < 20000; };
      int iterations = 0;
      FitData(fit, host, iterations);
      double parameters = 11.0;
      double deviations = 11.0;
      for (int l = 1; l <= fit.FitMA; ++l) {
        const auto k = static_cast<std::size_t>(l - 1);
        const double variance = fit.FitChiSq / (fit.FitNumPoints - fit.FitMA);
        const double deviation = std::sqrt(variance * fit.FitCovar(l, l));
        parameters = std::min(parameters, Digits(fit.FitA(l), set.rows.at("certified")[k]));
        deviations = std::min(deviations, Digits(deviation, set.rows.at("deviations")[k]));
      }
      std::cout << set.name << ": " << iterations << " iterations, " << parameters
                << " digits of the parameters, " << deviations << " of the deviations\n";
      EXPECT_GT(iterations, 0) << set.name;
      EXPECT_GE(parameters, static_cast<double>(set.rows.at("set")[1])) << set.name;
      EXPECT_GE(deviations, static_cast<double>(set.rows.at("set")[2])) << set.name;
    }
  }
}

}  // namespace
