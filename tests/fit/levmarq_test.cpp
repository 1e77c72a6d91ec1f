// Faults caught here: a tidied quirk of the minimiser (lambda in single precision, singular
// matrices that are only logged), a wrong limit of parameters, and memory taken in a pass. Rejected
// steps and the count of passes are the business of literal_pass_test.cpp.
#include "fit/levmarq.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "fit/fit_state.h"
#include "fit/model_pass.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {
long allocations = 0;
void (*volatile release)(void*) = std::free;  // volatile: the compiler shall not pair it with new
}  // namespace

// All memory of this program comes through here and is counted.
void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t& /*plain*/) noexcept {
  ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  release(memory);
}

namespace {

Matrix1<double> Filled(const std::vector<std::vector<double>>& rows) {
  Matrix1<double> m(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()));
  for (int i = 1; i <= m.rows(); ++i) {
    for (int j = 1; j <= m.cols(); ++j) {
      m(i, j) = rows[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
    }
  }
  return m;
}

// A fit of the ideal model a little off its solution.
FitState IdealProblem() {
  FitState fit = MakeProblem({.modelIndex = 0}, {7500.0});
  NormalNoise noise(7, 0.004);
  FillSignal(fit, [&](int) { return noise(); });
  fit.FitA(5) = 6900.0;
  return fit;
}

}  // namespace

TEST(GAUSSJ, InvertsTheHilbertMatrixAndSolvesForSeveralColumns) {
  // 5 x 5 Hilbert matrix; its inverse has whole elements (Choi, Amer. Math. Monthly 90 (1983) 301).
  const std::vector<std::vector<double>> inverse = {{25, -300, 1050, -1400, 630},
                                                    {-300, 4800, -18900, 26880, -12600},
                                                    {1050, -18900, 79380, -117600, 56700},
                                                    {-1400, 26880, -117600, 179200, -88200},
                                                    {630, -12600, 56700, -88200, 44100}};
  constexpr double kCondition = 4.8e5;
  Matrix1<double> a(6, 6, 99.0);  // larger than n: the border stays
  Matrix1<double> b(6, 3, 99.0);
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) a(i, j) = 1.0 / (i + j - 1);
    b(i, 1) = i == 2 ? 1.0 : 0.0;
    b(i, 2) = a(i, 1) - 3.0 * a(i, 4);
  }
  RecordingHost host;
  std::string proc;
  GAUSSJ(a, 5, b, 2, proc, host);
  EXPECT_EQ(proc, "GAUSSJ");
  EXPECT_TRUE(host.lines.empty());
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) {
      const double expected =
          inverse[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
      EXPECT_NEAR(a(i, j), expected, kCondition * 1e-15 * std::fabs(expected));
    }
    EXPECT_DOUBLE_EQ(b(i, 1), a(i, 2));
    EXPECT_NEAR(b(i, 2), i == 1 ? 1.0 : i == 4 ? -3.0 : 0.0, 1e-9);
    EXPECT_EQ(b(i, 3), 99.0);
    EXPECT_EQ(a(6, i), 99.0);
  }
}

// The index in the line is the column of the zero pivot. Of equal elements the later one is the
// pivot, so the 1 at (2, 2) goes first and the zero is met in column 1.
TEST(GAUSSJ, LogsASingularMatrixAndReturns) {
  struct Case {
    std::vector<std::vector<double>> a;
    std::string column;
  };
  const std::vector<Case> cases = {
      {{{1, 1}, {1, 1}}, "1"},
      {{{0, 0}, {0, 0}}, "2"},
      {{{4, 0, 0}, {0, 5, 0}, {0, 0, 1e-46}}, "3"},  // zero in single precision
      {{{3, 0}, {0, 0}}, "2"}};
  for (const Case& c : cases) {
    Matrix1<double> a = Filled(c.a);
    Matrix1<double> b(a.rows(), 1, 1.0);
    RecordingHost host;
    std::string proc;
    GAUSSJ(a, a.rows(), b, 1, proc, host);
    ASSERT_EQ(host.lines.size(), 1u);
    EXPECT_EQ(host.lines[0],
              "GAUSSJ - aa(" + c.column + "," + c.column + ")=0 :: Singular matrix.");
  }
}

TEST(MRQMIN1, LambdaBelowSinglePrecisionCloses) {
  for (const double small : {1e-46, 1e-44, -1e-46}) {
    const bool closes = small != 1e-44;
    FitState fit = IdealProblem();
    fit.FitIA(1) = 0;
    PreparePass(fit);
    fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
    Matrix1<double> alpha = fit.FitCovar;
    RecordingHost host;
    double lambda = -1.0;
    MRQMIN1(fit, host, alpha, lambda);
    const double sum = fit.FitChiSq;
    const Array1<double> before = fit.FitA;
    lambda = small;
    MRQMIN1(fit, host, alpha, lambda);
    EXPECT_EQ(fit.CurrentProc, closes ? "COVSRT" : "FUNCS0");
    EXPECT_EQ(lambda == small, closes);
    EXPECT_EQ(fit.FitCovar(1, 1) == 0.0 && alpha(1, 1) == 0.0, closes);
    EXPECT_EQ(fit.FitChiSq == sum && fit.FitA == before, closes);
  }
}

TEST(FitData, Fits256ParametersAndNoMore) {
  for (const int shared : {2, 3}) {
    FitState fit = MakeProblem({.modelIndex = 1, .sets = 127, .points = 10}, TypicalShared(1));
    if (shared == 3) {
      fit.FitModel = FindModel(2);
      fit.FitA.Append(1.0);
      fit.FitIA.Append(0);
      ++fit.FitMA;
      fit.FitA(fit.SharedBase() + 2) = 2.0;
    }
    fit.FitIA(fit.SharedBase() + 2) = 0;
    FillSignal(fit, [](int i) { return 0.002 * std::sin(7.0 * i); });
    fit.FitA(fit.SharedBase() + 1) = 7000.0;
    RecordingHost host;
    int iterations = 0;
    if (shared == 3) {
      EXPECT_THROW(FitData(fit, host, iterations), SubscriptFault);
      EXPECT_EQ(fit.CurrentProc, "MRQMIN1");
    } else {
      FitData(fit, host, iterations);
      EXPECT_EQ(fit.FitMA, kMaxParameters);
      EXPECT_NEAR(fit.FitA(fit.SharedBase() + 1), 7500.0, 100.0);
    }
  }
}

TEST(MRQCOF, TakesNoMemoryAfterPreparation) {
  for (const int index : AllModels()) {
    FitState fit = MakeProblem({.modelIndex = index, .sets = 3, .massConservation = true},
                               TypicalShared(index));
    FillSignal(fit, [](int i) { return 0.002 * std::sin(7.0 * i); });
    fit.FitA(2) = -0.01;
    PreparePass(fit);
    Matrix1<double> alpha(fit.FitMA, fit.FitMA);
    Matrix1<double> beta(kMaxParameters, 1);
    double chisq = 0.0;
    MRQCOF(fit, fit.FitA, alpha, beta, chisq);
    const long before = allocations;
    for (int k = 0; k < 20; ++k) MRQCOF(fit, fit.FitA, alpha, beta, chisq);
    EXPECT_EQ(allocations, before) << index;
  }
}
