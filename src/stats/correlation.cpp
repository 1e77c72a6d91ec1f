#include "stats/correlation.h"

#include <cmath>
#include <string>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "fit/fit_state.h"

namespace quorvane {

namespace {

constexpr std::size_t kField = 11;

std::string Centred(std::string_view text) {
  const std::size_t blanks = text.size() < kField ? kField - text.size() : 0;
  return std::string(blanks / 2, ' ') + std::string(text) + std::string(blanks - blanks / 2, ' ');
}

std::string RightAligned(std::string_view text) {
  return std::string(text.size() < kField ? kField - text.size() : 0, ' ') + std::string(text);
}

double Coefficient(const Matrix1<double>& covar, int i, int j) {
  if (covar(i, j) == 0.0 || covar(i, i) == 0.0 || covar(j, j) == 0.0) return 0.0;
  return covar(i, j) / std::sqrt(covar(i, i) * covar(j, j));
}

}  // namespace

Matrix1<double> CrossCorrelation(const FitState& fit) {
  Matrix1<double> coefficients(fit.FitMA, fit.FitMA);
  CheckArithmetic([&] {
    for (int i = 1; i <= fit.FitMA; ++i) {
      for (int j = 1; j <= fit.FitMA; ++j) coefficients(i, j) = Coefficient(fit.FitCovar, i, j);
    }
  });
  return coefficients;
}

std::string CoefficientText(double coefficient) {
  return FormatNumber(coefficient, "  0.000; -0.000");
}

bool IsCritical(const Matrix1<double>& coefficients, int i, int j, double critical) {
  const double magnitude = std::fabs(coefficients(i, j));
  return i != j && critical < magnitude && magnitude < 1.0;
}

void LogCrossCorrelation(const FitState& fit, Host& host) {
  const Matrix1<double> coefficients = CrossCorrelation(fit);
  const std::string rule(30, '=');
  host.PrintIt(" ");
  host.PrintIt(rule);
  host.PrintIt("Cross-Correlation Coefficients");
  host.PrintIt(rule);
  std::string head(kField, ' ');
  for (int i = 1; i <= fit.FitMA; ++i) head += Centred(ParameterName(fit, i));
  host.PrintIt(head);
  for (int i = 1; i <= fit.FitMA; ++i) {
    std::string row = RightAligned(ParameterName(fit, i));
    for (int j = 1; j <= fit.FitMA; ++j) {
      row += FormatNumber(coefficients(i, j), "   0.000   ;  -0.000   ");
    }
    host.PrintIt(row);
  }
  host.PrintIt(" ");
}

}  // namespace quorvane
