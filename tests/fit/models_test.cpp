// Faults caught here: a wrong exponent, mass or extinction of a species, a column integral that is
// not the one over r^2/2, a lost link or K ratio, and a fault that goes unseen or is named wrongly.
#include "fit/models.h"

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "fit/fit_state.h"
#include "fit/levmarq.h"
#include "fit/model_pass.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

using Real = long double;

// A species of `a` molecules A and `b` molecules B; lnK is its overall constant.
struct Species {
  Real a;
  Real b;
  Real lnK;
};

// The mass action law in logarithms, by which the models are checked: one rule for all species.
class Reference {
 public:
  Reference(const FitState& fit, int d) : fit_(fit), d_(d) {
    const int n = fit.NumFitSets;
    const bool two = fit.TwoComponentModel;
    const int owner = two ? fit.RefLink[static_cast<std::size_t>(d - 1)] + 1 : d;
    lnA_ = fit.FitA(n + owner);
    lnB_ = two ? fit.FitA(2 * n + owner) : 0.0;
    rateA_ = Shared(1) * fit.SetOmegaTerm(d);
    rateB_ = two ? Shared(2) * fit.SetOmegaTerm(d) : 0.0L;
  }

  std::vector<Species> SpeciesOfModel() const {
    const Species a{1, 0, 0};
    const Species b{0, 1, 0};
    switch (fit_.FitModel->index) {
      case 0:
        return {a};
      case 3:
        return {a, {Shared(2), 0, Shared(3)}, {Shared(4), 0, Shared(5)}};
      case 6:
        return {a, b, {1, 1, Shared(3)}};
      case 7:
        return {a, b, {1, 1, Shared(3)}, {1, 2, Shared(3) + Shared(4)}};
      case 8: {
        const Real lnK2 = Shared(3) + Shared(4);
        return {a, b, {1, 1, Shared(3)}, {1, 2, lnK2}, {1, 3, lnK2 + Shared(5)}};
      }
      case 10:
        return {a, b, {Shared(3), 0, Shared(4)}, {Shared(3), 1, Shared(4) + Shared(5)}};
      default:  // monomer and n-mer
        return {a, {Shared(2), 0, Shared(3)}};
    }
  }

  Real Concentration(const Species& s, Real x) const {
    return std::exp(s.a * (lnA_ + rateA_ * x) + s.b * (lnB_ + rateB_ * x) + s.lnK);
  }

  // Mean of `value` over the column from meniscus to base, in r^2/2, by Simpson's rule.
  Real ColumnMean(const std::function<Real(Real)>& value) const {
    constexpr int kSteps = 2000;
    const Real r0 = fit_.SetRefRadius(d_);
    const Real low = (std::pow(Real{fit_.SetCellTopR(d_)}, 2) - r0 * r0) / 2;
    const Real high = (std::pow(Real{fit_.SetCellBottomR(d_)}, 2) - r0 * r0) / 2;
    Real sum = value(low) + value(high);
    for (int k = 1; k < kSteps; ++k) {
      sum += (k % 2 == 1 ? 4 : 2) * value(low + (high - low) * k / kSteps);
    }
    return sum / (3 * kSteps);
  }

  // Signal of the material that cannot associate: a fraction Alpha of all mass in the column.
  Real Incompetent(Real x) const {
    const Species form = SpeciesOfModel()[fit_.FitModel->index == 4 ? 0 : 1];
    const Real competent = ColumnMean([&](Real at) {
      Real mass = 0;
      for (const Species& s : SpeciesOfModel()) mass += s.a * Concentration(s, at);
      return mass;
    });
    const Real alpha = Shared(4);
    const Real shape = ColumnMean([&](Real at) { return Concentration(form, at); });
    const Real mass = competent * alpha / (1 - alpha) / shape * Concentration(form, x);
    return mass * fit_.SetEpsA(d_);
  }

  Real Nonideal(Real x, Real y) const {
    const Real weight = Shared(1) / (1 - Real{fit_.Density} * fit_.Vbar);
    const Real c = std::exp(lnA_);
    const Real observed = (y - fit_.FitA(d_)) / fit_.SetEpsA(d_);
    const Real gamma = -2 * Shared(2) * weight * (observed - c);
    return c * fit_.SetEpsA(d_) * std::exp(rateA_ * x) * std::exp(gamma);
  }

  // Chains of k monomers, k K^(k-1) u^k, until they no longer count.
  Real Isodesmic(Real x) const {
    const Real v = std::exp(Shared(2) + lnA_ + rateA_ * x);
    Real sum = 0;
    for (int k = 1; k < 3000; ++k) sum += k * std::exp(k * std::log(v) - Shared(2));
    return sum * fit_.SetEpsA(d_);
  }

  Real DataPoint(int i) const {
    const Real x = fit_.FitX(i);
    const Real baseline = fit_.FitA(d_);
    if (fit_.FitModel->index == 1) return baseline + Nonideal(x, fit_.FitY(i));
    if (fit_.FitModel->index == 9) return baseline + Isodesmic(x);
    Real sum = baseline;
    for (const Species& s : SpeciesOfModel()) {
      sum += (s.a * fit_.SetEpsA(d_) + s.b * fit_.SetEpsB(d_)) * Concentration(s, x);
    }
    return fit_.FitModel->cellEnds ? sum + Incompetent(x) : sum;
  }

  // Target times mean over load; the mean weighted with the sector width.
  Real MassPoint(int i) const {
    const bool isA = fit_.PointKind(i) == 1;
    Real weighted = 0;
    Real area = 0;
    for (int j = fit_.SetFirstPoint(d_); fit_.PointKind(j + 1) == 0; ++j) {
      const Real strip =
          (Real{fit_.FitR(j + 1)} - fit_.FitR(j)) * (fit_.FitF(j) + fit_.FitF(j + 1));
      for (const Species& s : SpeciesOfModel()) {
        const Real ends = Concentration(s, fit_.FitX(j)) + Concentration(s, fit_.FitX(j + 1));
        weighted += strip * (isA ? s.a : s.b) * ends / 2;
      }
      area += strip;
    }
    const Real load = isA ? fit_.SetALoad(d_) : fit_.SetBLoad(d_);
    return fit_.FitY(i) / load * (weighted / area);
  }

 private:
  Real Shared(int k) const { return fit_.FitA(fit_.SharedBase() + k); }
  const FitState& fit_;
  int d_;
  Real lnA_;
  Real lnB_;
  Real rateA_;
  Real rateB_;
};

FitState FilledProblem(const ProblemSize& size) {
  FitState fit = MakeProblem(size, TypicalShared(size.modelIndex));
  fit.SetEpsA(1) = 1.3;
  fit.FitA(2) = -0.02;
  FillSignal(fit, [](int i) { return 0.003 * std::sin(5.0 * i); });
  return fit;
}

double ValueAt(FitState& fit, int i) {
  double value = 0.0;
  fit.FitModel->funcs(fit, i, fit.FitA, value);
  return value;
}

// Relative, for sums of a few terms; a column integral loses digits by subtracting exponentials.
constexpr double kRounding = 1e-13;

void ExpectAgreesWithReference(FitState& fit) {
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    const Reference reference(fit, fit.FitSet(i));
    const bool mass = fit.PointKind(i) != 0;
    const auto expected =
        static_cast<double>(mass ? reference.MassPoint(i) : reference.DataPoint(i));
    EXPECT_NEAR(ValueAt(fit, i), expected, kRounding * std::fabs(expected) * 10)
        << "model " << fit.FitModel->index << ", point " << i;
    EXPECT_EQ(fit.CurrentProc, fit.FitModel->funcsName);
  }
}

}  // namespace

TEST(FUNCS, AgreeWithMassActionAndColumnIntegrals) {
  for (const int index : AllModels()) {
    FitState fit = FilledProblem({.modelIndex = index, .sets = 3, .massConservation = true});
    ExpectAgreesWithReference(fit);
    fit.RefLink = {2, 1, 2};
    ExpectAgreesWithReference(fit);
    for (std::size_t k = 0; k < fit.FitModel->parameters.size(); ++k) {
      // Stoichiometries need not be whole.
      const bool count = fit.FitModel->parameters[k].name.starts_with("N");
      if (count) fit.FitA(fit.SharedBase() + static_cast<int>(k) + 1) = 2.6;
    }
    ExpectAgreesWithReference(fit);
  }
}

TEST(FUNCS, RatiosOfConstantsStandForTheConstants) {
  for (const int index : {7, 8}) {
    FitState plain = FilledProblem({.modelIndex = index, .massConservation = true});
    FitState constrained = plain;
    constrained.ConstrainKRatios = true;
    const int base = plain.SharedBase();
    for (int k = base + 4; k <= plain.FitMA; ++k) {
      constrained.FitA(k) = std::exp(plain.FitA(k) - plain.FitA(base + 3));
    }
    for (int i = 1; i <= plain.FitNumPoints; ++i) {
      const double expected = ValueAt(plain, i);
      EXPECT_NEAR(ValueAt(constrained, i), expected, kRounding * std::fabs(expected));
    }
  }
}

namespace {

struct FaultCase {
  const char* what;
  int modelIndex;
  std::function<void(FitState&)> spoil;
  FaultKind kind;
  const char* proc;
};

std::vector<FaultCase> FaultCases() {
  const auto shared = [](int k, double value) {
    return [=](FitState& fit) { fit.FitA(fit.SharedBase() + k) = value; };
  };
  const auto ratio = [&](int k, double value) {
    return [=](FitState& fit) {
      fit.ConstrainKRatios = true;
      for (int l = fit.SharedBase() + 4; l <= fit.FitMA; ++l) fit.FitA(l) = 0.5;
      fit.FitA(fit.SharedBase() + k) = value;
    };
  };
  using Fit = FitState&;
  constexpr auto kZero = FaultKind::kDivisionByZero;
  constexpr auto kInvalid = FaultKind::kInvalidOperation;
  constexpr auto kOver = FaultKind::kOverflow;
  return {{"K u of exactly 1", 9,
           [](Fit f) {
             f.FitA(3) = f.FitA(6) = 0.0;
             f.FitX(7) = 0.0;
           },
           kZero, "FUNCS10"},
          {"alpha of 1", 4, shared(4, 1.0), kZero, "FUNCS5"},
          {"alpha of 1", 5, shared(4, 1.0), kZero, "FUNCS6"},
          {"no buoyancy", 1, [](Fit f) { f.Vbar = f.Density = 1.0; }, kZero, "FUNCS1"},
          {"no load of A", 6, [](Fit f) { f.SetALoad(2) = 0.0; }, kZero, "FUNCS7"},
          {"no load of B", 10, [](Fit f) { f.SetBLoad(1) = 0.0; }, kZero, "FUNCS11"},
          {"widths of 0", 7, [](Fit f) { f.FitF = Array1<double>(f.FitNumPoints); }, kInvalid,
           "FUNCS8"},
          {"K2/K1 of 0", 7, ratio(4, 0.0), kInvalid, "FUNCS8"},
          {"K3/K1 below 0", 8, ratio(5, -1.0), kInvalid, "FUNCS9"},
          {"concentration too large", 0, [](Fit f) { f.FitA(4) = 720.0; }, kOver, "FUNCS0"},
          {"exponent too large", 2, shared(1, 1e10), kOver, "FUNCS2"},
          {"derivative too large", 3, shared(5, 704.0), kOver, "FUNCS3"},
          {"square of a residual before a pole", 9,
           [](Fit f) {
             f.FitA(3) = f.FitA(6) = 0.0;
             f.FitX(7) = 0.0;
             f.FitY(2) = 1e200;
           },
           kOver, "FUNCS10"},
          {"square of a residual", 0, [](Fit f) { f.FitA(1) = 1e200; }, kOver, "FUNCS0"}};
}

}  // namespace

TEST(MRQCOF, FaultsOfAModelAreSeenAndNamed) {
  for (const FaultCase& c : FaultCases()) {
    FitState fit = FilledProblem({.modelIndex = c.modelIndex, .massConservation = true});
    c.spoil(fit);
    PreparePass(fit);
    Matrix1<double> alpha(fit.FitMA, fit.FitMA);
    Matrix1<double> beta(kMaxParameters, 1);
    double chisq = 0.0;
    try {
      MRQCOF(fit, fit.FitA, alpha, beta, chisq);
      ADD_FAILURE() << c.what << ": no fault in " << c.proc;
    } catch (const ArithmeticFault& fault) {
      EXPECT_EQ(fault.what(), std::string(DescribeFault(c.kind))) << c.what << ", " << c.proc;
    }
    EXPECT_EQ(fit.CurrentProc, c.proc) << c.what;
    RecordingHost host;
    int iterations = 0;
    EXPECT_THROW(FitData(fit, host, iterations), ArithmeticFault) << c.what;
    EXPECT_EQ(fit.CurrentProc, c.proc) << c.what;
  }
}
