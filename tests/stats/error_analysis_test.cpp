// Faults caught here: a limit that is off, missing or ends by the wrong word; numbers that depend
// on the threads; a stop that loses what was done; replicates with the wrong noise.
#include "stats/error_analysis.h"

#include <array>
#include <cmath>

#include "fit/fit_statistics.h"
#include "fit/settled_fit.h"
#include "stats/error_plots.h"
#include "stats/error_tables.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

using Curve = double (*)(double x, const Array1<double>& a);

// y(x) of the parameters 3, 4 and 5; baseline and reference concentration are held.
template <Curve curve>
const Model& CurveModel() {
  static const Model model = {.name = "Curve",
                              .funcsName = "Curve",
                              .partialsName = "Curve",
                              .terms = nullptr,
                              .funcs = [](FitState& fit, int i, const Array1<double>& a,
                                          double& result) { result = curve(fit.FitX(i), a); },
                              .steps = {.firstStep = 1e-3, .stepAtZero = 1e-3}};
  return model;
}

double Line(double x, const Array1<double>& a) {
  return a(3) + a(4) * x;
}
double Misra(double x, const Array1<double>& a) {
  return a(3) * (1.0 - std::exp(-a(4) * x));
}
double Wave(double x, const Array1<double>& a) {
  return std::cos(a(3) * x);
}

FitState CurveFit(const Model& model, const std::vector<double>& x, const std::vector<double>& y,
                  std::vector<double> start) {
  start.insert(start.begin(), {0.0, 0.0});
  FitState fit = MakeCurveProblem(model, x, y, start);
  fit.FitIA(1) = fit.FitIA(2) = 0;
  for (int l = 1; l <= fit.FitMA; ++l) fit.FitParamNames.Append("p" + std::to_string(l));
  return fit;
}

// A straight line, and a fifth parameter that nothing depends on.
FitState LineFit(bool idle) {
  std::vector<double> x, y;
  for (int k = 0; k < 12; ++k) {
    x.push_back(0.5 * k);
    y.push_back(3.0 - 0.7 * x.back() + 0.1 * std::sin(12.9898 * k));
  }
  std::vector<double> start = {1.0, 1.0};
  if (idle) start.push_back(7.0);
  return CurveFit(CurveModel<Line>(), x, y, start);
}

ErrorAnalysis Analysed(const FitState& fit, ErrorRequest request) {
  RecordingHost host;
  if (request.parameters.empty()) request.parameters = FittedShared(fit);
  return AnalyseErrors(fit, request, kNoStop, host);
}

// 12 points, two parameters: t of 10 degrees of freedom, NIST handbook, table of critical values.
TEST(AnalyseErrors, LimitsOfALineAreStudentsT) {
  const std::array<double, 2> t = {1.812461, 2.228139};
  const ErrorAnalysis found = Analysed(LineFit(false), {.levels = {90.0, 95.0}});
  ASSERT_EQ(found.parameters.size(), 2U);
  EXPECT_EQ(found.freedom, 10);
  EXPECT_FALSE(found.better);
  for (const ParameterErrors& errors : found.parameters) {
    for (std::size_t k = 0; k < t.size(); ++k) {
      const ProfileLimits& limits = errors.profile->limits[k];
      EXPECT_EQ(limits.lower.end, SideEnd::kFound);
      EXPECT_NEAR((errors.value - limits.lower.limit) / errors.error, t[k], 1e-5);
      EXPECT_NEAR((limits.upper.limit - errors.value) / errors.error, t[k], 1e-5);
      EXPECT_NEAR(limits.ratio, 1.0 + t[k] * t[k] / 10.0, 1e-6);
    }
  }
}

// The sums of a linear problem are a quadratic form of the inverse covariance.
TEST(AnalyseErrors, TheSurfaceOfALineIsItsQuadraticForm) {
  const FitState fit = LineFit(false);
  const ErrorAnalysis found = Analysed(fit, {.surfaces = {{3, 4}}, .surfacePoints = 7});
  ASSERT_EQ(found.surfaces.size(), 1U);
  const ErrorSurface& surface = found.surfaces[0];
  double xx = 0.0, xy = 0.0, yy = 0.0;  // curvature
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    xx += 1.0;
    xy += fit.FitX(i);
    yy += fit.FitX(i) * fit.FitX(i);
  }
  for (std::size_t iy = 0; iy < surface.ys.size(); ++iy) {
    for (std::size_t ix = 0; ix < surface.xs.size(); ++ix) {
      const double u = surface.xs[ix] - found.values(3);
      const double v = surface.ys[iy] - found.values(4);
      const double rise = u * u * xx + 2.0 * u * v * xy + v * v * yy;
      EXPECT_NEAR(surface.sums[iy][ix], found.sum + rise, 1e-6 * (found.sum + rise));
    }
  }
  EXPECT_NEAR(surface.ratios[1].ratio, 1.0 + 2.0 / 10.0 * 4.2761491931,
              1e-9);  // F(2, 10), SciPy 1.10
}

// Misra1a of NIST; limits by scipy.optimize.brentq over least_squares, SciPy 1.10.
TEST(AnalyseErrors, LimitsOfACurveAgreeWithSciPy) {
  const std::vector<double> x = {77.6,  114.9, 141.1, 190.8, 239.9, 289.0, 332.8,
                                 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0};
  const std::vector<double> y = {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02,
                                 44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78};
  const FitState fit = CurveFit(CurveModel<Misra>(), x, y, {230.0, 5e-4});
  const ErrorAnalysis found = Analysed(fit, {.levels = {68.27, 95.45, 99.73}});
  const std::array<std::array<double, 2>, 6> limits = {{{236.15058, 241.80896},
                                                        {233.06057, 245.16815},
                                                        {229.20511, 249.66092},
                                                        {0.00054256694, 0.00055775402},
                                                        {0.00053393679, 0.0005664131},
                                                        {0.00052281557, 0.00057760266}}};
  ASSERT_EQ(found.parameters.size(), 2U);
  for (std::size_t k = 0; k < limits.size(); ++k) {
    const ParameterErrors& errors = found.parameters[k / 3];
    const ProfileLimits& ours = errors.profile->limits[k % 3];
    EXPECT_NEAR(ours.lower.limit, limits[k][0], 1e-3 * errors.error);
    EXPECT_NEAR(ours.upper.limit, limits[k][1], 1e-3 * errors.error);
  }
}

// Data of one model, fitted by another that they cannot tell from it.
struct EndCase {
  const char* what;
  int truth;  // model index
  std::vector<double> trueShared;
  int model;
  std::vector<double> start;
  std::vector<int> held;        // shared parameters, from 1
  int looked;                   // likewise
  std::array<SideEnd, 2> ends;  // lower, upper
};

using enum SideEnd;
const std::vector<EndCase> kEnds = {
    {"no association", 0, {7500.0}, 2, {7500.0, 2.0, -3.0}, {1, 2}, 3, {kOpen, kFound}},
    {"all dimer", 0, {15000.0}, 2, {7500.0, 2.0, 8.0}, {1, 2}, 3, {kFound, kOpen}},
    {"nothing incompetent",
     2,
     {7500.0, 2.0, 1.0},
     4,
     {7500.0, 2.0, 1.0, 0.01},
     {1, 2},
     4,
     {kBound, kFound}},
    {"a virial coefficient of 0", 0, {7500.0}, 1, {7500.0, 0.0}, {}, 2, {kFound, kFound}},
    {"a stoichiometry near 1", 0, {7500.0}, 2, {7500.0, 1.05, 0.0}, {1, 3}, 2, {kBound, kFound}},
};

TEST(AnalyseErrors, EverySideHasItsEnd) {
  for (const EndCase& one : kEnds) {
    SCOPED_TRACE(one.what);
    FitState truth =
        MakeProblem({.modelIndex = one.truth, .sets = 3, .points = 60}, one.trueShared);
    NormalNoise noise(11, 0.004);
    FillSignal(truth, [&](int) { return noise(); });
    FitState fit = MakeProblem({.modelIndex = one.model, .sets = 3, .points = 60}, one.start);
    fit.FitY = truth.FitY;
    for (const int k : one.held) fit.FitIA(fit.SharedBase() + k) = 0;
    if (one.model == 1) fit.FitIA(1) = fit.FitIA(2) = fit.FitIA(3) = 0;  // baselines
    const int l = fit.SharedBase() + one.looked;
    const ErrorAnalysis found = Analysed(fit, {.parameters = {l}});
    ASSERT_EQ(found.parameters.size(), 1U) << found.error;
    const ProfileLimits& limits = found.parameters[0].profile->limits[1];
    EXPECT_EQ(limits.lower.end, one.ends[0]);
    EXPECT_EQ(limits.upper.end, one.ends[1]);
    for (const SideLimit* side : {&limits.lower, &limits.upper}) {
      if (side->end == SideEnd::kOpen) {
        EXPECT_LT(side->plateau, found.sum * limits.ratio);
        EXPECT_GT(side->plateau, found.sum * (1.0 - 1e-6));
      }
      if (side->end == SideEnd::kBound) {
        EXPECT_EQ(side->limit, one.looked == 2 ? 1.0 : 0.0);
      }
    }
  }
}

TEST(AnalyseErrors, AParameterWithoutInfluenceIsOpenOnBothSides) {
  const ErrorAnalysis found = Analysed(LineFit(true), {});
  ASSERT_EQ(found.parameters.size(), 3U) << found.error;
  const ProfileLimits& limits = found.parameters[2].profile->limits[0];
  EXPECT_EQ(limits.lower.end, SideEnd::kOpen);
  EXPECT_EQ(limits.upper.end, SideEnd::kOpen);
  EXPECT_NEAR(limits.lower.plateau, found.sum, 1e-9 * found.sum);
  EXPECT_EQ(found.parameters[0].profile->limits[0].lower.end, SideEnd::kFound);
}

FitState Dimer() {
  FitState fit = MakeProblem({.modelIndex = 7, .sets = 3, .points = 40, .massConservation = true},
                             TypicalShared(7));
  NormalNoise noise(5, 0.004);
  FillSignal(fit, [&](int) { return noise(); });
  TakeTrueLoads(fit);
  RecordingHost host;
  SettleFit(fit, host, 500);
  return fit;
}

void ExpectSame(const ParameterReplicates& a, const ParameterReplicates& b) {
  EXPECT_EQ(a.values, b.values);
  EXPECT_EQ(a.failed, b.failed);
  EXPECT_EQ(a.limits[1].upper, b.limits[1].upper);
}

TEST(AnalyseErrors, DoesNotDependOnTheThreads) {
  const FitState fit = Dimer();
  const int l = fit.SharedBase();
  ErrorRequest request{.parameters = AllFitted(fit), .monteCarlo = true, .bootstrap = true};
  request.replicates = 30;
  request.seed = 7;
  request.surfaces = {{l + 1, l + 3}};
  request.surfacePoints = 5;
  request.threads = 1;
  const ErrorAnalysis one = Analysed(fit, request);
  request.threads = 4;
  const ErrorAnalysis many = Analysed(fit, request);
  ASSERT_EQ(one.parameters.size(), many.parameters.size());
  for (std::size_t k = 0; k < one.parameters.size(); ++k) {
    const ParameterProfile& a = *one.parameters[k].profile;
    const ParameterProfile& b = *many.parameters[k].profile;
    ASSERT_EQ(a.curve.size(), b.curve.size());
    for (std::size_t i = 0; i < a.curve.size(); ++i) EXPECT_EQ(a.curve[i].sum, b.curve[i].sum);
    for (std::size_t i = 0; i < a.limits.size(); ++i) {
      EXPECT_EQ(a.limits[i].lower.limit, b.limits[i].lower.limit);
      EXPECT_EQ(a.limits[i].upper.limit, b.limits[i].upper.limit);
    }
    ExpectSame(*one.parameters[k].monteCarlo, *many.parameters[k].monteCarlo);
    ExpectSame(*one.parameters[k].bootstrap, *many.parameters[k].bootstrap);
  }
  EXPECT_EQ(one.surfaces[0].sums, many.surfaces[0].sums);
  request.seed = 8;
  EXPECT_NE(Analysed(fit, request).parameters[0].monteCarlo->values,
            many.parameters[0].monteCarlo->values);
}

TEST(AnalyseErrors, AStopKeepsWhatWasDone) {
  const FitState fit = Dimer();
  for (const int turns : {1, 12}) {  // before the profiles, and among the replicates
    StopFlag stop;
    RecordingHost host;
    host.onEvents = [&] {
      if (host.eventRuns >= turns) stop.Raise();
    };
    ErrorRequest request{.parameters = FittedShared(fit), .monteCarlo = true};
    request.replicates = 1'000'000;
    const ErrorAnalysis found = AnalyseErrors(fit, request, stop, host);
    EXPECT_TRUE(found.stopped);
    EXPECT_TRUE(found.error.empty());
    for (const ParameterErrors& errors : found.parameters) {
      ASSERT_TRUE(errors.profile);
      if (errors.monteCarlo) {
        EXPECT_LT(errors.monteCarlo->done, request.replicates);
      }
    }
    EXPECT_EQ(found.parameters.empty(), turns == 1);
  }
}

// Around a minimum that is not the best one the walk meets the better, and says so.
TEST(AnalyseErrors, TellsOfALowerSum) {
  std::vector<double> x, y;
  for (int k = 0; k < 100; ++k) {
    x.push_back(0.02 * k);
    y.push_back(std::cos(10.0 * x.back()) + 0.01 * std::sin(12.9898 * k));
  }
  const FitState fit = CurveFit(CurveModel<Wave>(), x, y, {14.2});
  const ErrorAnalysis found = Analysed(fit, {.levels = {99.9999}});
  ASSERT_EQ(found.parameters.size(), 1U) << found.error;
  EXPECT_GT(std::fabs(found.parameters[0].value - 10.0), 2.0);
  const ErrorAnalysis best = Analysed(CurveFit(CurveModel<Wave>(), x, y, {10.2}), {});
  EXPECT_FALSE(best.better);
  ASSERT_TRUE(found.better);
  EXPECT_LT(found.better->sum, found.sum);
  EXPECT_GE(found.better->sum, best.sum * (1.0 - 1e-6));
}

// With a normal spread the replicates repeat the standard error, to their own noise of 1/sqrt(2 n).
TEST(AnalyseErrors, ReplicatesScatterAsTheStandardErrorSays) {
  FitState fit = MakeProblem({.modelIndex = 0, .sets = 3, .points = 80}, {7500.0});
  NormalNoise noise(3, 0.004);
  FillSignal(fit, [&](int) { return noise(); });
  ErrorRequest request{.parameters = {fit.FitMA}, .monteCarlo = true, .bootstrap = true};
  const ErrorAnalysis found = Analysed(fit, request);
  const ParameterErrors& errors = found.parameters[0];
  for (const ParameterReplicates* one : {&*errors.monteCarlo, &*errors.bootstrap}) {
    EXPECT_EQ(one->done, 1000);
    EXPECT_NEAR(one->deviation / errors.error, 1.0, 0.08);
    EXPECT_NEAR(one->mean, errors.value, 0.12 * errors.error);
    EXPECT_NEAR((one->limits[1].upper - one->limits[1].lower) / errors.error, 4.0, 0.4);
  }
}

// Place 1 + (n - 1) p: numpy.percentile of 1 .. 5 gives these.
TEST(PercentilesOf, InterpolatesBetweenOrderStatistics) {
  const PercentileLimits limits = PercentilesOf({1.0, 2.0, 3.0, 4.0, 5.0}, 90.0);
  EXPECT_NEAR(limits.lower, 1.2, 1e-12);
  EXPECT_NEAR(limits.upper, 4.8, 1e-12);
}

TEST(ReplicateSource, KeepsTheTargetsOfMassConservation) {
  const FitState fit = Dimer();
  const ReplicateSource source(fit);
  for (const ReplicateKind kind : {ReplicateKind::kMonteCarlo, ReplicateKind::kBootstrap}) {
    FitState replicate = fit;
    source.Fill(replicate, kind, 1, 0);
    for (int i = 1; i <= fit.FitNumPoints; ++i) {
      const bool kept = replicate.FitY(i) == fit.FitY(i);
      const bool data = fit.PointKind(i) == 0;
      EXPECT_TRUE(data || kept) << i;
      EXPECT_FALSE(data && kept && kind == ReplicateKind::kMonteCarlo) << i;
    }
  }
}

TEST(AnalyseErrors, SaysWhyThereIsNothing) {
  const FitState fit = CurveFit(CurveModel<Line>(), {0.0, 1.0}, {1.0, 2.0}, {0.0, 0.0});
  const std::string error = Analysed(fit, {}).error;
  EXPECT_TRUE(error.starts_with("There are no degrees of freedom")) << error;
}

// What follows from one parameter with limits 1.0 below and 2.0 above.
TEST(DerivedQuantities, LimitsFollowTheirTransformation) {
  struct Case {
    int model;
    int shared;  // from 1
    double extinction;
    const char* name;
    const char* unit;
    double value, lower, upper;
  };
  // M = M_b / (1 - 0.73); K = exp(ln K); -R T = -2.4373847 kJ/mol at 293.15 K.
  const std::vector<Case> cases = {
      {0, 1, 1.0, "M", "Da", 7500.0 / 0.27, 7499.0 / 0.27, 7502.0 / 0.27},
      {6, 2, 1.0, "M(B)", "Da", 5200.0 / 0.3, 5199.0 / 0.3, 5202.0 / 0.3},
      {2, 3, 4e4, "log10 K1", "", 1.0 / 2.302585093, 0.0, 3.0 / 2.302585093},
      {2, 3, 4e4, "K1", "1/M", 2.718281828, 1.0, 20.08553692},
      {2, 3, 1.0, "Kd1", "signal", 0.3678794412, 0.04978706837, 1.0},
      {3, 5, 4e4, "Kd2", "M^3", 0.04978706837, 0.006737946999, 0.1353352832},
      {10, 5, 4e4, "K2", "1/M", 1.8221188, 0.670320046, 13.46373804},
      {2, 3, 4e4, "dG1", "kJ/mol", -2.4373847, -7.3121541, 0.0}};
  for (const Case& one : cases) {
    FitState fit = MakeProblem({.modelIndex = one.model, .sets = 1}, TypicalShared(one.model));
    fit.SetEpsA(1) = one.extinction;
    const int l = fit.SharedBase() + one.shared;
    ErrorAnalysis analysis;
    ParameterErrors errors{.parameter = l, .name = "p", .value = fit.FitA(l)};
    const auto found = [&](double limit) { return SideLimit{SideEnd::kFound, limit, 0.0}; };
    errors.profile =
        ParameterProfile{{{95.0, 1.0, found(errors.value - 1.0), found(errors.value + 2.0)},
                          {99.0, 1.0, {.end = SideEnd::kOpen}, found(errors.value + 2.0)}},
                         {}};
    analysis.parameters.push_back(errors);
    const std::vector<DerivedQuantity> all = DerivedQuantities(fit, {.VbarB = 0.7}, analysis);
    const auto quantity = std::find_if(
        all.begin(), all.end(), [&](const DerivedQuantity& q) { return q.name == one.name; });
    ASSERT_NE(quantity, all.end()) << one.name;
    EXPECT_EQ(quantity->unit, one.unit) << one.name;
    EXPECT_NEAR(quantity->value, one.value, 1e-6 * std::fabs(one.value)) << one.name;
    ASSERT_TRUE(quantity->limits[0].lower && quantity->limits[0].upper) << one.name;
    EXPECT_NEAR(*quantity->limits[0].lower, one.lower, 1e-6 * (1e-3 + std::fabs(one.lower)));
    EXPECT_NEAR(*quantity->limits[0].upper, one.upper, 1e-6 * (1e-3 + std::fabs(one.upper)));
    const bool falls = std::string(one.name).starts_with("Kd") || one.name[0] == 'd';
    EXPECT_EQ(quantity->limits[1].lower.has_value(), falls) << one.name;
    EXPECT_EQ(quantity->limits[1].upper.has_value(), !falls) << one.name;
    const bool scale = ScaleRemark(fit, analysis).empty();
    EXPECT_EQ(scale, one.extinction != 1.0 || one.name[0] == 'M') << one.name;
  }
}

// The numbers of pictures and tables are those of the analysis.
TEST(ErrorTables, HoldALineForEachLimitAndReplicate) {
  ErrorRequest request{.levels = {90.0}, .monteCarlo = true, .surfaces = {{3, 4}}};
  request.replicates = 9;
  request.surfacePoints = 3;
  const ErrorAnalysis found = Analysed(LineFit(false), request);
  const auto lines = [](const std::string& table) {
    return std::count(table.begin(), table.end(), '\n');
  };
  const std::string limits = ErrorLimitsTable(found);
  EXPECT_EQ(lines(limits), 1 + 2 * 2);
  EXPECT_NE(limits.find(",found,"), std::string::npos) << limits;
  EXPECT_EQ(lines(ErrorReplicatesTable(found)), 1 + 9);
  EXPECT_EQ(lines(ErrorSurfaceTable(found.surfaces[0])), 1 + 9);
  EXPECT_EQ(
      static_cast<std::size_t>(lines(ErrorCurvesTable(found))),
      1 + found.parameters[0].profile->curve.size() + found.parameters[1].profile->curve.size());
}

TEST(PlotProfile, TheParabolaOfALineIsItsProfile) {
  const ErrorAnalysis found = Analysed(LineFit(false), {.monteCarlo = true});
  const ParameterErrors& errors = found.parameters[1];
  const ChartPanel panel = PlotProfile(found, errors).panels[0];
  ASSERT_EQ(panel.series.size(), 5U);  // curve, trials, parabola, two levels
  EXPECT_EQ(panel.marks.size(), 4U);
  const ChartSeries& parabola = panel.series[2];
  for (std::size_t k = 0; k < parabola.x.size(); ++k) {
    const double off = (parabola.x[k] - errors.value) / errors.error;
    EXPECT_NEAR(parabola.y[k], found.sum * (1.0 + off * off / 10.0), 1e-12);
  }
  const ChartSeries stairs = PlotReplicates(errors, *errors.monteCarlo, "").panels[0].series[0];
  double area = 0.0;  // each step of the stairs twice
  for (std::size_t k = 1; k < stairs.x.size(); ++k) {
    if (stairs.x[k] > stairs.x[k - 1]) area += stairs.y[k];
  }
  EXPECT_EQ(area, 1000.0);
}

}  // namespace
