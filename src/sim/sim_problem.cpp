#include "sim/sim_problem.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/arithmetic.h"

namespace {

double ReducedMass(const SimParameters& p, double mass, double vbar) {
  const double omega = p.rpm * kRadiansPerSecondOfRpm;
  double s = 0.0;
  CheckArithmetic([&] {
    s = (1.0 - p.dens * vbar) * mass * (omega * omega) / ((kZeroCelsius + p.T) * kGasConstant);
  });
  return s;
}

int GridPoints(const SimParameters& p) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<int>(
      RoundHalfEven((p.Rb - p.Rm) / kRadialStep + 1.0, Limits::min(), Limits::max()));
}

std::vector<SimSpecies> SpeciesOf(int model, const SimParameters& p) {
  const auto [K1, K2, K3] = p.K;
  const SimSpecies freeA = {.a = 1};
  const SimSpecies freeB = {.b = 1};
  const SimSpecies nmer = {.a = p.N, .K = {K1, 1.0, 1.0}};
  const SimSpecies mmer = {.a = p.M, .K = {K2, 1.0, 1.0}};
  const SimSpecies ab = {.a = 1, .b = 1, .K = {K1, 1.0, 1.0}};
  const SimSpecies ab2 = {.a = 1, .b = 2, .K = {K1, K2, 1.0}};
  const SimSpecies ab3 = {.a = 1, .b = 3, .K = {K1, K2, K3}};
  const SimSpecies anb = {.a = p.N, .b = 1, .K = {K1, K2, 1.0}};
  switch (model) {
    case 2:
    case 4:
    case 5:
      return {freeA, nmer};
    case 3:
      return {freeA, nmer, mmer};
    case 6:
      return {freeA, freeB, ab};
    case 7:
      return {freeA, freeB, ab, ab2};
    case 8:
      return {freeA, freeB, ab, ab2, ab3};
    case 10:
      return {freeA, freeB, nmer, anb};
    default:
      return {};
  }
}

void FillExponentials(const SimProblem& problem, SimSpecies& species) {
  const SimParameters& p = problem.p;
  const GridArray<double>& r = problem.column->r;
  const double rref = r[0] + 2.0 * (r[p.n - 1] - r[0]) / 3.0;
  const double rate = species.a * p.sA + species.b * p.sB;
  species.exponential.reserve(static_cast<std::size_t>(p.n));
  for (int i = 0; i < p.n; ++i) {
    species.exponential.push_back(std::exp(rate * ((r[i] * r[i] - rref * rref) / 2.0)));
  }
}

}  // namespace

SimParameters ReadParameters(const SimInputs& inputs) {
  const auto number = [&](SimBox box) { return NumberIn(inputs, box); };
  SimParameters p = {.MWA = number(SimBox::kMW),
                     .MWB = number(SimBox::kMWB),
                     .vA = number(SimBox::kVbar),
                     .vB = number(SimBox::kVbarB),
                     .EA = number(SimBox::kExtCoeff),
                     .EB = number(SimBox::kExtCoeffB),
                     .LA = number(SimBox::kLoadC),
                     .LB = number(SimBox::kLoadCB),
                     .dens = number(SimBox::kDensity),
                     .T = number(SimBox::kTemp),
                     .rpm = number(SimBox::kSpeed),
                     .Rm = number(SimBox::kRmen),
                     .Rb = number(SimBox::kRbase),
                     .RMS = number(SimBox::kRMS),
                     .BM = number(SimBox::kNonId),
                     .alpha = number(SimBox::kAlpha),
                     .N = static_cast<int>(number(SimBox::kN1mer)),
                     .M = static_cast<int>(number(SimBox::kN2mer)),
                     .K = inputs.K};
  p.n = GridPoints(p);
  p.sA = ReducedMass(p, p.MWA, p.vA);
  p.sB = ReducedMass(p, p.MWB, p.vB);
  return p;
}

void BuildGrid(const SimParameters& p, SimColumn& column) {
  for (int i = 0; i < p.n; ++i) column.r[i] = i * kRadialStep + p.Rm;
}

double SimSpecies::AtReference(double cA, double cB) const {
  return std::pow(cA, a) * std::pow(cB, b) * K[0] * K[1] * K[2];
}

SimProblem MakeProblemOf(int model, const SimParameters& p, const SimColumn& column) {
  SimProblem problem = {p, &column, SpeciesOf(model, p)};
  CheckArithmetic([&] {
    for (SimSpecies& species : problem.species) FillExponentials(problem, species);
  });
  return problem;
}
