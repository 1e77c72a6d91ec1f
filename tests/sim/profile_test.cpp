// Faults caught here: a load that is not in the column, a species in the wrong proportion, a grid
// that is off by one.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "sim_runs.h"

using namespace quorvane;

namespace {

// The complex A_a B_b and its overall constant.
struct Species {
  int a;
  int b;
  double lnK;
  bool apart = false;  // takes no part in the equilibrium
};

struct Mixture {
  int model;
  Entries entries;
  std::vector<Species> species;  // in the order of the columns; empty where there are none
  // The grid rules weigh with one end of each interval and have a step of 0.001 cm.
  double massTolerance = 3.0e-4;
};

const Entries kTwoSizes = {{SimBox::kMW, "90000"},       {SimBox::kMWB, "30000"},
                           {SimBox::kLoadCB, "2.5E-06"}, {SimBox::kExtCoeffB, "41000"},
                           {SimBox::kLnK1, "13"},        {SimBox::kLnK2, "12.5"},
                           {SimBox::kLnK3, "11"},        {SimBox::kVbarB, "0.72"}};
const Entries kTetramer = {{SimBox::kN1mer, "4"}, {SimBox::kLnK1, "40"}, {SimBox::kAlpha, "0.3"}};

const std::vector<Mixture> kMixtures = {
    {0, {}, {}, 1.0e-6},
    {1, {{SimBox::kNonId, "2"}}, {}, 3.0e-3},  // the march takes points up to 0.0002 cm early
    {2, kTetramer, {{1, 0, 0}, {4, 0, 40}}},
    {3, {{SimBox::kN1mer, "4"}, {SimBox::kLnK1, "40"}}, {{1, 0, 0}, {4, 0, 40}, {3, 0, 12}}},
    {4, kTetramer, {{1, 0, 0}, {4, 0, 40}, {1, 0, 0, true}}},
    {5, kTetramer, {{1, 0, 0}, {4, 0, 40}, {4, 0, 0, true}}, 1.0e-3},
    {6, kTwoSizes, {{1, 0, 0}, {0, 1, 0}, {1, 1, 13}}},
    // The entry for K2 replaces K1.
    {7, kTwoSizes, {{1, 0, 0}, {0, 1, 0}, {1, 1, 12.5}, {1, 2, 25}}},
    {8, kTwoSizes, {{1, 0, 0}, {0, 1, 0}, {1, 1, 13}, {1, 2, 25.5}, {1, 3, 36.5}}},
    {9, {{SimBox::kLnK1, "14"}}, {}, 1.0e-3},  // steep towards the base
    {10, kTwoSizes, {{1, 0, 0}, {0, 1, 0}, {2, 0, 13}, {2, 1, 25.5}}},
};

SimulatedRun NoiseFree(const Mixture& mixture) {
  Entries entries = mixture.entries;
  entries[SimBox::kRMS] = "0";
  return RunOf(mixture.model, entries);
}

// Molar concentration of species k at point i; with a component B the column holds its signal.
double Molar(const SimulatedRun& run, const Mixture& mixture, int i, std::size_t k) {
  const double value = run.Column().species[i][k];
  if (!SimModelOf(mixture.model).secondComponent) return value;
  const Species& species = mixture.species[k];
  return value /
         (species.a * run.Number(SimBox::kExtCoeff) + species.b * run.Number(SimBox::kExtCoeffB));
}

// Mean over the sector of `value(i)`, by Simpson's rule on an even number of intervals.
template <class Value>
double SectorMean(const SimulatedRun& run, Value&& value) {
  const int last = run.simulator.GridPoints - 1;
  double sum = 0.0;
  double width = 0.0;
  for (int i = 0; i <= last; ++i) {
    const double weight = (i == 0 || i == last ? 1 : i % 2 == 1 ? 4 : 2) * run.Column().r[i];
    sum += weight * value(i);
    width += weight;
  }
  return sum / width;
}

}  // namespace

TEST(Simulate, PutsTheLoadIntoTheColumn) {
  for (const Mixture& mixture : kMixtures) {
    const SimulatedRun run = NoiseFree(mixture);
    ASSERT_TRUE(run.outcome.ok) << "model " << mixture.model;
    const bool two = SimModelOf(mixture.model).secondComponent;
    const auto total = [&](int i, int Species::*degree) {
      if (!two && degree == &Species::a) return run.Column().conc[i];
      double sum = 0.0;
      for (std::size_t k = 0; k < mixture.species.size(); ++k) {
        sum += mixture.species[k].*degree * Molar(run, mixture, i, k);
      }
      return sum;
    };
    const double meanA = SectorMean(run, [&](int i) { return total(i, &Species::a); });
    EXPECT_NEAR(meanA / run.Number(SimBox::kLoadC), 1.0, mixture.massTolerance)
        << "A of model " << mixture.model;
    if (!two) continue;
    const double meanB = SectorMean(run, [&](int i) { return total(i, &Species::b); });
    EXPECT_NEAR(meanB / run.Number(SimBox::kLoadCB), 1.0, mixture.massTolerance)
        << "B of model " << mixture.model;
  }
}

TEST(Simulate, KeepsMassActionAndTheSumOfTheSpecies) {
  for (const Mixture& mixture : kMixtures) {
    if (mixture.species.empty()) continue;
    const SimulatedRun run = NoiseFree(mixture);
    const bool two = SimModelOf(mixture.model).secondComponent;
    for (int i = 0; i < run.simulator.GridPoints; i += 20) {
      double signal = 0.0;
      for (std::size_t k = 0; k < mixture.species.size(); ++k) {
        const Species& species = mixture.species[k];
        signal +=
            run.Column().species[i][k] * (two ? 1.0 : species.a * run.Number(SimBox::kExtCoeff));
        if (species.apart) continue;
        const double product = std::pow(Molar(run, mixture, i, 0), species.a) *
                               std::pow(Molar(run, mixture, i, 1), two ? species.b : 0);
        EXPECT_NEAR(std::log(Molar(run, mixture, i, k) / product), species.lnK, 1.0e-9)
            << "model " << mixture.model << ", species " << k << ", point " << i;
      }
      EXPECT_NEAR(run.Column().signal[i] / signal, 1.0, 1.0e-12) << "model " << mixture.model;
    }
  }
}

TEST(Simulate, RoundsTheNumberOfGridPoints) {
  struct Case {
    const char* meniscus;
    const char* base;
    int points;
    double last;  // cm
  };
  for (const Case& c : {Case{"6.350", "6.650", 301, 6.650}, Case{"6.35", "6.6504", 301, 6.650},
                        Case{"6.35", "6.6506", 302, 6.651}, Case{"5.8", "7.2", 1401, 7.2},
                        Case{"6.35", "6.3504", 1, 6.35}}) {
    const SimulatedRun run = RunOf(0, {{SimBox::kRmen, c.meniscus}, {SimBox::kRbase, c.base}});
    EXPECT_EQ(run.simulator.WrittenPoints, c.points) << c.base;
    EXPECT_NEAR(run.Column().r[c.points - 1], c.last, 1.0e-12) << c.base;
  }
}

// What the entries of a new simulator give without noise, solved by a program of its own. The mass
// balance and mass action above hold for any solver that converges; this also holds its end rules.
TEST(Simulate, SolvesItsDefaults) {
  constexpr double kDigits = 1.0e-10;  // relative
  const struct {
    int model;
    double a, b;
  } cases[] = {{0, 9.824331285572407e-08, 0.0},
               {1, 9.844875807706756e-08, 0.0},
               {2, 7.599518543742847e-07, 0.0},
               {3, 7.599513937482382e-07, 0.0},
               {4, 7.005537620995405e-07, 0.0},
               {5, 7.005537620995405e-07, 0.0},
               {6, 8.727073448371087e-07, 8.727073448371087e-07},
               {7, 8.442929713613488e-07, 7.884166099030905e-07},
               {8, 8.409051418193033e-07, 7.570860055186747e-07},
               {9, 6.070849137980176e-08, 0.0},
               {10, 7.009811023644215e-07, 1.0364380024469348e-06}};
  for (const auto& test : cases) {
    const SimOutcome outcome = RunOf(test.model, {{SimBox::kRMS, "0"}}).outcome;
    EXPECT_NEAR(outcome.reference.a, test.a, kDigits * test.a) << test.model;
    if (test.b != 0.0) {
      EXPECT_NEAR(outcome.reference.b, test.b, kDigits * test.b) << test.model;
    }
  }
  const SimulatedRun march = RunOf(1, {{SimBox::kNonId, "2"}, {SimBox::kRMS, "0"}});
  EXPECT_NEAR(march.Column().conc[1], 1.4282176952742332e-07, kDigits * 1.4e-7);
  EXPECT_NEAR(march.Column().conc[150], 7.390021922502183e-07, kDigits * 7.4e-7);
}
