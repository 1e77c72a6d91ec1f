// Faults caught here: curves whose column does not hold the load or that the simulator does not
// share, information lost with the parameters of a cell, a parameter that is not determined and has
// an error all the same, a check that depends on the number of threads.
#include <cmath>

#include <gtest/gtest.h>

#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "fit/fit_statistics.h"
#include "fit/partials.h"
#include "fit/settled_fit.h"
#include "sim/plan_check.h"
#include "sim/plan_errors.h"
#include "sim_runs.h"
#include "support/planned_experiments.h"

using namespace quorvane;

namespace {

using Row = std::vector<long double>;

// Variances of the last `shared` parameters from the inverse of the whole J^T J, in long double.
std::vector<double> VariancesOfWhole(FitState& fit, std::size_t shared) {
  std::vector<int> fitted;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) fitted.push_back(l);
  }
  const std::size_t n = fitted.size();
  std::vector<Row> a(n, Row(2 * n));
  Array1<double> dyda(fit.FitMA);
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    PARTIALS(fit, fit.FitA, dyda, fit.FitMA, i);
    for (std::size_t j = 0; j < n; ++j) {
      const long double left = dyda(fitted[j]);
      for (std::size_t k = 0; k < n; ++k) a[j][k] += left * dyda(fitted[k]);
    }
  }
  for (std::size_t j = 0; j < n; ++j) a[j][n + j] = 1.0L;
  for (std::size_t j = 0; j < n; ++j) {  // positive definite: no pivoting
    const long double pivot = a[j][j];
    for (long double& value : a[j]) value /= pivot;
    for (std::size_t k = 0; k < n; ++k) {
      const long double factor = k == j ? 0.0L : a[k][j];
      for (std::size_t m = 0; m < 2 * n; ++m) a[k][m] -= factor * a[j][m];
    }
  }
  std::vector<double> variances;
  for (std::size_t j = n - shared; j < n; ++j)
    variances.push_back(static_cast<double>(a[j][n + j]));
  return variances;
}

// Mean over the sector of a planned scan, over its signal per concentration: by Simpson's rule in
// r^2, for points that stand even in r.
double MeanSignal(const PlannedScan& scan) {
  double sum = 0.0;
  const std::size_t last = scan.r.size() - 1;
  for (std::size_t k = 0; k <= last; ++k) {
    const double weight = k == 0 || k == last ? 1.0 : k % 2 == 1 ? 4.0 : 2.0;
    sum += weight * scan.signal[k] * scan.r[k];
  }
  const double step = scan.r[1] - scan.r[0];
  return sum * step / 3.0 / ((scan.r[last] * scan.r[last] - scan.r[0] * scan.r[0]) / 2.0);
}

PlanCheck CheckOn(const ExperimentPlan& plan, int threads, const StopFlag& stop) {
  QuietHost host;
  return CheckPlan(plan, PlanExperiment(plan), {.experiments = 40, .seed = 5, .threads = threads},
                   stop, host);
}

bool Says(const PlanResult& result, const std::string& text) {
  for (const std::string& remark : result.remarks) {
    if (remark.find(text) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

TEST(Plan, ReducedCellsTellWhatTheWholeInverseTells) {
  for (const PlannedModel& planned : kPlannedModels) {
    SCOPED_TRACE(planned.modelIndex);
    const ExperimentPlan plan = PlanOf(planned);
    const PlanResult result = PlanExperiment(plan);
    FitState whole = FitOf(plan, plan.speeds);
    const auto variances = VariancesOfWhole(whole, result.errors.size());
    for (std::size_t k = 0; k < variances.size(); ++k) {
      ASSERT_TRUE(result.errors[k].sd);
      const double expected = plan.noise * std::sqrt(variances[k]);
      EXPECT_NEAR(*result.errors[k].sd / expected, 1.0, 1e-10) << k;
    }
    // The fit itself: at rest where it stands, and with these standard errors.
    QuietHost host;
    EXPECT_EQ(SettleFit(whole, host, 20), FitRest::kSettled);
    std::size_t k = 0;
    for (int l = whole.SharedBase() + 1; l <= whole.FitMA; ++l) {
      if (whole.FitIA(l) == 0) continue;
      const ExpectedError& error = result.errors[k++];
      EXPECT_NEAR(plan.noise * std::sqrt(whole.FitCovar(l, l)) / *error.sd, 1.0, 1e-5);
      EXPECT_NEAR(whole.FitA(l), error.value, 1e-6 * std::fabs(error.value));
    }
  }
}

TEST(Plan, ColumnsHoldTheirLoads) {
  for (const PlannedModel& planned : kPlannedModels) {
    ExperimentPlan plan = PlanOf(planned);
    plan.points = 401;
    if (plan.TwoComponents()) {
      plan.extCoeff = {40000, 0};
      plan.extCoeffB = {0, 30000};
    }
    for (const PlannedScan& scan : PlanExperiment(plan).scans) {
      const bool ofB = scan.wavelength == 1;
      const double load = ofB ? *scan.loadB : scan.load;
      const double extinction = ofB ? 30000 : plan.extCoeff[0];
      EXPECT_NEAR(MeanSignal(scan) / (load * extinction), 1.0, 1e-6) << planned.modelIndex;
    }
  }
}

// Where both can make a column, simulator and plan make the same one: the simulator's sums run over
// a grid of 0.001 cm, and its constant of the rotor differs in the fifth digit.
TEST(Plan, CurvesAreThoseOfTheSimulator) {
  const struct {
    int model;
    int simulated;
    Entries entries;
  } cases[] = {
      {0, 0, {}},
      {1, 1, {{SimBox::kNonId, "0.05"}, {SimBox::kLoadC, "1.2e-4"}, {SimBox::kExtCoeff, "5000"}}},
      {2, 2, {{SimBox::kN1mer, "2"}, {SimBox::kLnK1, "11.5"}}},
      {3, 3, {{SimBox::kLnK1, "11.5"}, {SimBox::kN2mer, "4"}, {SimBox::kLnK2, "35"}}},
      {4, 4, {{SimBox::kN1mer, "4"}, {SimBox::kLnK1, "36"}, {SimBox::kAlpha, "0.2"}}},
      {5, 5, {{SimBox::kN1mer, "4"}, {SimBox::kLnK1, "36"}, {SimBox::kAlpha, "0.2"}}},
      {6, 6, {{SimBox::kLnK1, "13"}, {SimBox::kLoadCB, "1e-5"}, {SimBox::kExtCoeffB, "5000"}}},
      {9, 9, {{SimBox::kLnK1, "11.5"}}},
      {10,
       10,
       {{SimBox::kLnK1, "12"},
        {SimBox::kLnK2, "13"},
        {SimBox::kLoadCB, "1e-5"},
        {SimBox::kExtCoeffB, "5000"}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.model);
    Entries entries = {{SimBox::kMW, "30000"},       {SimBox::kMWB, "20000"},
                       {SimBox::kExtCoeff, "40000"}, {SimBox::kLoadC, "1.5e-5"},
                       {SimBox::kRmen, "5.85"},      {SimBox::kRbase, "6.05"},
                       {SimBox::kSpeed, "20000"},    {SimBox::kRMS, "0"}};
    for (const auto& [box, text] : test.entries) entries[box] = text;
    const SimulatedRun run = RunOf(test.simulated, entries);
    ASSERT_TRUE(run.outcome.ok);
    ExperimentPlan plan = PlanOf(kPlannedModels[static_cast<std::size_t>(test.model)]);
    plan.points = 201;
    plan.speeds = {20000};
    const std::vector<PlannedScan> scans = PlanExperiment(plan).scans;
    const PlannedScan& scan = scans[2 * plan.extCoeff.size()];  // the third load, first wavelength
    for (int i = 2; i < 201; i += 33) {
      const auto place = static_cast<std::size_t>(i);
      EXPECT_NEAR(run.Column().signal[i] / scan.signal[place], 1.0, 3e-3) << i;
    }
  }
}

TEST(Plan, SaysWhatStandsInTheWay) {
  const ExperimentPlan dimer = PlanOf(kPlannedModels[2]);
  ExperimentPlan plan = dimer;
  plan.truth.ModelLnK1 = -60.0;  // no dimer anywhere
  PlanResult result = PlanExperiment(plan);
  EXPECT_FALSE(result.errors[1].sd);
  EXPECT_TRUE(result.errors[0].sd);
  EXPECT_TRUE(Says(result, "The plan cannot determine LnK1: "));
  EXPECT_FALSE(result.correlations[0][1]);

  plan = PlanOf(kPlannedModels[6]);  // B and AB are seen at no wavelength apart from A
  plan.extCoeff = {40000};
  plan.extCoeffB = {0};
  plan.truth.ModelMWB = plan.truth.ModelMW;
  plan.fitted[PlaceOf(shared::kMWB)] = false;
  result = PlanExperiment(plan);
  EXPECT_FALSE(result.errors[1].sd);
  EXPECT_TRUE(Says(result, "cannot determine"));

  plan = dimer;
  plan.speeds = {6000, 20000};
  plan.mostSignal = 0.5;
  plan.loads = {2e-6, 1.5e-5};
  result = PlanExperiment(plan);
  EXPECT_TRUE(Says(result, "At 6,000 rpm the columns are flat: sigma is down to 0.1"));
  EXPECT_TRUE(Says(result, "points above a signal of 0.5000 at 20,000 rpm, load 1.500E-5."));
  const PlannedScan& full = result.scans[1];  // 6000 rpm, the greater load
  EXPECT_LT(full.points, 200);
  EXPECT_LE(full.highest, 0.5);
  plan.mostSignal = 1e-3;  // nothing is left at all
  result = PlanExperiment(plan);
  EXPECT_EQ(result.scans[0].points, 0);
  EXPECT_FALSE(result.errors[0].sd);
  const StopFlag stop;
  EXPECT_TRUE(CheckOn(plan, 1, stop).parameters.empty());
}

TEST(Plan, LeavesOutCandidatesBeyondAllNumbers) {
  ExperimentPlan plan = PlanOf(kPlannedModels[2]);
  plan.truth.ModelMW = 4e6;
  plan.speeds.clear();
  plan.candidates = {1000, 60000, 1500};
  plan.choose = 2;
  const PlanResult result = PlanExperiment(plan);
  EXPECT_EQ(result.choices, 1U);
  EXPECT_EQ(result.speeds, (std::vector<double>{1000, 1500}));
  EXPECT_TRUE(Says(result, "The candidate 60,000 rpm leads beyond all numbers and was left out."));
  plan.choose = 3;
  try {
    PlanExperiment(plan);
    FAIL();
  } catch (const ArithmeticFault& fault) {
    EXPECT_EQ(std::string(fault.what()).find("Overflow at 60,000 rpm, load "), 0U) << fault.what();
  }
}

TEST(Plan, RanksChoicesByWhatEachAloneWouldGive) {
  ExperimentPlan plan = PlanOf(kPlannedModels[2]);
  plan.candidates = {26000, 8000, 20000, 14000, 11000};
  plan.speeds.clear();
  plan.choose = 2;
  const PlanResult ranked = PlanExperiment(plan);
  EXPECT_EQ(ranked.choices, 10U);
  ASSERT_EQ(ranked.ranking.size(), 10U);
  EXPECT_EQ(ranked.speeds, ranked.ranking.front().speeds);
  double before = 0.0;
  for (const SpeedChoice& choice : ranked.ranking) {
    ExperimentPlan alone = plan;
    alone.candidates.clear();
    alone.speeds = choice.speeds;
    const PlanResult result = PlanExperiment(alone);
    const double score =
        std::pow(*result.errors[0].relative, 2) + std::pow(*result.errors[1].sd, 2);
    ASSERT_TRUE(choice.score);
    EXPECT_NEAR(*choice.score / score, 1.0, 1e-10);
    EXPECT_GE(*choice.score, before);
    before = *choice.score;
    for (std::size_t k = 0; k < 2; ++k) {
      EXPECT_NEAR(*choice.sd[k] / *result.errors[k].sd, 1.0, 1e-10);
    }
  }
}

TEST(Plan, MovesOneSpeedOrLoadWithAllElseFixed) {
  const ExperimentPlan plan = PlanOf(kPlannedModels[6]);
  for (const auto kind : {PlanAxis::Kind::kSpeed, PlanAxis::Kind::kLoad, PlanAxis::Kind::kLoadB}) {
    const bool speed = kind == PlanAxis::Kind::kSpeed;
    const double value = speed ? 17000 : 3e-6;
    const auto errors = ErrorsAlong(plan, {kind, 1}, {value, -1.0});
    ExperimentPlan moved = plan;
    (speed ? moved.speeds : kind == PlanAxis::Kind::kLoad ? moved.loads : moved.loadsB)[1] = value;
    const PlanResult result = PlanExperiment(moved);
    for (std::size_t k = 0; k < result.errors.size(); ++k) {
      EXPECT_NEAR(*errors[0][k] / *result.errors[k].sd, 1.0, 1e-10);
      EXPECT_FALSE(errors[1][k]);
    }
  }
}

TEST(CheckPlan, IsTheSameOnAnyNumberOfThreadsAndStops) {
  const ExperimentPlan plan = PlanOf(kPlannedModels[2]);
  StopFlag stop;
  const PlanCheck one = CheckOn(plan, 1, stop);
  const PlanCheck many = CheckOn(plan, 4, stop);
  EXPECT_EQ(one.experiments, 40);
  EXPECT_EQ(one.failed, 0);
  for (std::size_t k = 0; k < 2; ++k) {
    EXPECT_EQ(one.parameters[k].scatter, many.parameters[k].scatter);
    EXPECT_EQ(one.parameters[k].mean, many.parameters[k].mean);
    EXPECT_NEAR(*one.parameters[k].ratio, 1.0, 0.4);
  }
  stop.Raise();
  const PlanCheck stopped = CheckOn(plan, 2, stop);
  EXPECT_TRUE(stopped.stopped);
  EXPECT_EQ(stopped.experiments, 0);
}
