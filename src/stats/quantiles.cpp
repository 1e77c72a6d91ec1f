#include "stats/quantiles.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/host.h"

namespace quorvane {

namespace {

double FQuantile(int n, int m, double P) {
  constexpr double kFiveSixths = 0.8333333333;  // in these truncated forms
  constexpr double kTwoThirds = 0.66666667;
  const double x = NormalDeviate(std::sqrt(-2.0 * std::log(1.0 - P)));
  const double a = 1.0 / (m - 1);
  const double b = 1.0 / (n - 1);
  const double h = 2.0 / (a + b);
  const double lambda = (x * x - 3.0) / 6.0;
  const double w =
      x * std::sqrt(h + lambda) / h - (b - a) * (lambda + kFiveSixths - kTwoThirds / h);
  return std::exp(2.0 * w);
}

}  // namespace

double NormalDeviate(double t) {
  const double numerator = 2.515517 + t * (0.802853 + t * 0.010328);
  const double denominator = 1.0 + t * (1.432788 + t * (0.189269 + t * 0.001308));
  return t - numerator / denominator;
}

double FSTAT(int n, int m, double P, Host& host) {
  if (!(P >= 0.5 && P < 1.0)) {
    host.PrintIt(" FSTAT-E P must be > 0.5 and < 1.0");
    return 0.0;
  }
  if (n < 1) {
    host.PrintIt(" FSTAT-F  n must be greater than zero");
    return 0.0;
  }
  if (m < 1) {
    host.PrintIt(" FSTAT-F m must be greater than zero");
    return 0.0;
  }
  double result = 0.0;
  CheckArithmetic([&] { result = FQuantile(n, m, P); });
  return result;
}

}  // namespace quorvane
