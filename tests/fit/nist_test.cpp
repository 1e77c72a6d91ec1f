// Faults caught here: a minimiser that ends beside the least sum of squares, and a covariance that
// is not that of the parameters. Source of data and certified values: NIST Statistical Reference
// Datasets, nonlinear regression, www.itl.nist.gov/div898/strd, the set named at each entry.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fit/fit_state.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

namespace {

using Real = long double;
using Values = std::vector<Real>;
using B = const Values&;

struct Plan {
  const char* name;
  Real (*curve)(B b, Real x);
  double scale;            // of y, see Problem
  double parameterDigits;  // required: a bit less than was reached, see SignificantDigits
  double deviationDigits;
};

struct NistSet {
  Plan plan;
  Values x;
  Values y;
  std::vector<Values> starts;  // Start 2 and, where it leads to the solution, before it Start 1
  Values certified;            // parameters
  Values deviations;           // their standard deviations
  Real sumOfSquares;           // residual
};

// The Misra1 sets are several models of the same measurement.
const Values kMisraX = {77.6,  114.9, 141.1, 190.8, 239.9, 289.0, 332.8,
                        378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0};
const Values kMisraY = {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02,
                        44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78};

// The curves; BoxBOD has that of Misra1a.
const auto kMisra1a = [](B b, Real x) { return b[0] * (1 - std::exp(-b[1] * x)); };
const auto kMisra1d = [](B b, Real x) { return b[0] * b[1] * x / (1 + b[1] * x); };
const auto kDanWood = [](B b, Real x) { return b[0] * std::pow(x, b[1]); };
const auto kMGH09 = [](B b, Real x) { return b[0] * x * (x + b[1]) / (x * x + x * b[2] + b[3]); };
const auto kMGH10 = [](B b, Real x) { return b[0] * std::exp(b[1] / (x + b[2])); };
const auto kRat42 = [](B b, Real x) { return b[0] / (1 + std::exp(b[1] - b[2] * x)); };
const auto kRat43 = [](B b, Real x) {
  return b[0] / std::pow(1 + std::exp(b[1] - b[2] * x), 1 / b[3]);
};

const std::vector<NistSet> kSets = {
    {{"Misra1a", kMisra1a, 1e4, 8.5, 6.5},
     kMisraX,
     kMisraY,
     {{500, 1e-4}, {250, 5e-4}},
     {2.3894212918e+02, 5.5015643181e-04},
     {2.7070075241e+00, 7.2668688436e-06},
     1.2455138894e-01},
    {{"Misra1d", kMisra1d, 1e4, 8.5, 6.5},
     kMisraX,
     kMisraY,
     {{500, 1e-4}, {450, 3e-4}},
     {4.3736970754e+02, 3.0227324449e-04},
     {3.6489174345e+00, 2.9334354479e-06},
     5.6419295283e-02},
    {{"DanWood", kDanWood, 1e4, 7.5, 5.7},
     {1.309, 1.471, 1.490, 1.565, 1.611, 1.680},
     {2.138, 3.421, 3.597, 4.340, 4.882, 5.660},
     {{1, 5}, {0.7, 4}},
     {7.6886226176e-01, 3.8604055871e+00},
     {1.8281973860e-02, 5.1726610913e-02},
     4.3173084083e-03},
    {{"BoxBOD", kMisra1a, 1e3, 6.8, 6.1},
     {1, 2, 3, 5, 7, 10},
     {109, 149, 149, 191, 213, 224},
     {{100, 0.75}},
     {2.1380940889e+02, 5.4723748542e-01},
     {1.2354515176e+01, 1.0455993237e-01},
     1.1680088766e+03},
    {{"MGH09", kMGH09, 1e6, 5.4, 5.4},
     {4, 2, 1, 0.5, 0.25, 0.167, 0.125, 0.1, 0.0833, 0.0714, 0.0625},
     {0.1957, 0.1947, 0.1735, 0.1600, 0.0844, 0.0627, 0.0456, 0.0342, 0.0323, 0.0235, 0.0246},
     {{25, 39, 41.5, 39}, {0.25, 0.39, 0.415, 0.39}},
     {1.9280693458e-01, 1.9128232873e-01, 1.2305650693e-01, 1.3606233068e-01},
     {1.1435312227e-02, 1.9633220911e-01, 8.0842031232e-02, 9.0025542308e-02},
     3.0750560385e-04},
    {{"MGH10", kMGH10, 1e3, 5.9, 3.4},
     {50, 55, 60, 65, 70, 75, 80, 85, 90, 95, 100, 105, 110, 115, 120, 125},
     {34780, 28610, 23650, 19630, 16370, 13720, 11540, 9744, 8261, 7030, 6005, 5147, 4427, 3820,
      3307, 2872},
     {{2, 400000, 25000}, {0.02, 4000, 250}},
     {5.6096364710e-03, 6.1813463463e+03, 3.4522363462e+02},
     {1.5687892471e-04, 2.3309021107e+01, 7.8486103508e-01},
     8.7945855171e+01},
    {{"Rat42", kRat42, 1e4, 7.2, 5.4},
     {9, 14, 21, 28, 42, 57, 63, 70, 79},
     {8.930, 10.800, 18.590, 22.330, 39.350, 56.110, 61.730, 64.620, 67.080},
     {{100, 1, 0.1}, {75, 2.5, 0.07}},
     {7.2462237576e+01, 2.6180768402e+00, 6.7359200066e-02},
     {1.7340283401e+00, 8.8295217536e-02, 3.4465663377e-03},
     8.0565229338e+00},
    {{"Rat43", kRat43, 1e2, 4.8, 4.6},
     {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
     {16.08, 33.83, 65.80, 97.20, 191.55, 326.20, 386.87, 520.53, 590.03, 651.92, 724.93, 699.56,
      689.96, 637.56, 717.41},
     {{100, 10, 1, 1}, {700, 5, 0.75, 1.3}},
     {6.9964151270e+02, 5.2771253025e+00, 7.5962938329e-01, 1.2792483859e+00},
     {1.6302297817e+01, 2.0828735829e+00, 1.9566123451e-01, 6.8761936385e-01},
     8.7864049080e+03}};

const NistSet* current = nullptr;

// The model reads the predictor from FitX.
void NistFuncs(FitState& fit, int i, const Array1<double>& a, double& result) {
  const Values b(a.data(), a.data() + a.size());
  result = static_cast<double>(current->plan.scale * current->plan.curve(b, fit.FitX(i)));
}
const Model kNistModel = {.funcsName = "NIST",
                          .partialsName = "NIST",
                          .funcs = NistFuncs,
                          .terms = nullptr,
                          .firstStep = 0.01,
                          .stepAtZero = 0.001,
                          .secondComponent = false,
                          .parameters = {}};

// The rule of the end is absolute, 0.001 in the sum of squares. Signal and curve are multiplied by
// `scale`, and the sum by its square, so that the rule asks for about eight digits of the sum.
// Parameters and standard deviations keep their values.
FitState Problem(const NistSet& set, const Values& start) {
  const auto scaled = [](const Values& values, double factor) {
    std::vector<double> result;
    for (const Real value : values) result.push_back(static_cast<double>(factor * value));
    return result;
  };
  return MakeCurveProblem(kNistModel, scaled(set.x, 1.0), scaled(set.y, set.plan.scale),
                          scaled(start, 1.0));
}

// Negative logarithm of the relative error, at most the 11 digits that are certified.
double SignificantDigits(double found, Real certified) {
  const Real error = std::fabs((found - certified) / certified);
  return static_cast<double>(std::fmin(11.0L, -std::log10(error + 1e-30L)));
}

}  // namespace

TEST(NistData, GivesTheCertifiedSumOfSquares) {
  for (const NistSet& set : kSets) {
    Real sum = 0;
    for (std::size_t k = 0; k < set.x.size(); ++k) {
      sum += std::pow(set.y[k] - set.plan.curve(set.certified, set.x[k]), 2.0);
    }
    EXPECT_NEAR(static_cast<double>(sum / set.sumOfSquares), 1.0, 1e-9) << set.plan.name;
  }
}

TEST(FitData, ReachesTheCertifiedValuesOfNist) {
  for (const NistSet& set : kSets) {
    current = &set;
    for (std::size_t start = 0; start < set.starts.size(); ++start) {
      FitState fit = Problem(set, set.starts[start]);
      RecordingHost host;
      host.onEvents = [&] { fit.FitKeepGoing = host.lastIteration < 20000; };
      int iterations = 0;
      FitData(fit, host, iterations);
      const double freedom = fit.FitNumPoints - fit.FitMA;
      double parameters = 11.0;
      double deviations = 11.0;
      for (int l = 1; l <= fit.FitMA; ++l) {
        const auto k = static_cast<std::size_t>(l - 1);
        const double deviation = std::sqrt(fit.FitChiSq / freedom * fit.FitCovar(l, l));
        parameters = std::min(parameters, SignificantDigits(fit.FitA(l), set.certified[k]));
        deviations = std::min(deviations, SignificantDigits(deviation, set.deviations[k]));
      }
      const std::size_t number = start + 3 - set.starts.size();
      std::cout << set.plan.name << ", start " << number << ": " << iterations << " iterations, "
                << parameters << " digits of the parameters, " << deviations
                << " of the deviations\n";
      EXPECT_GT(iterations, 0) << set.plan.name;
      EXPECT_GE(parameters, set.plan.parameterDigits) << set.plan.name;
      EXPECT_GE(deviations, set.plan.deviationDigits) << set.plan.name;
    }
  }
}
