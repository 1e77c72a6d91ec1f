#include "sim/sim_problem.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "base/arithmetic.h"
#include "base/units.h"

namespace quorvane {

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

std::vector<SimSpecies> SpeciesOf(const SimModel& model, const SimParameters& p) {
  std::vector<SimSpecies> species;
  for (const SimModelSpecies& entry : model.species) {
    if (entry.apart) continue;
    SimSpecies one = {.a = DegreeOf(entry.a, p), .b = entry.b};
    for (std::size_t k = 0; k < one.K.size(); ++k) {
      if (entry.constants[k]) one.K[k] = p.K[k];
    }
    species.push_back(std::move(one));
  }
  return species;
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

int DegreeOf(SimDegree degree, const SimParameters& p) {
  switch (degree) {
    case SimDegree::kNone:
      return 0;
    case SimDegree::kOne:
      return 1;
    case SimDegree::kNmer:
      return p.N;
    case SimDegree::kMmer:
      break;
  }
  return p.M;
}

double SimSpecies::AtReference(double cA, double cB) const {
  return std::pow(cA, a) * std::pow(cB, b) * K[0] * K[1] * K[2];
}

SimProblem MakeProblemOf(const SimModel& model, const SimParameters& p, const SimColumn& column) {
  SimProblem problem = {p, &column, SpeciesOf(model, p)};
  CheckArithmetic([&] {
    for (SimSpecies& species : problem.species) FillExponentials(problem, species);
  });
  return problem;
}

}  // namespace quorvane
