// Faults caught here: a mistyped constant, a lost refusal line, and a well-meant replacement of the
// approximation.
#include "stats/quantiles.h"

#include <cmath>

#include <boost/math/distributions/fisher_f.hpp>

#include "base/arithmetic.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

TEST(FSTAT, IsAsNearTheExactQuantileAsTheApproximationIs) {
  struct Row {
    int n, m;
    double tolerance;  // relative, what the approximation is good for from 0.68 to 0.99
  };
  RecordingHost host;
  for (const Row& row :
       {Row{5, 5, 0.05}, Row{3, 100, 0.085}, Row{5, 20, 0.015}, Row{10, 10, 0.007},
        Row{20, 20, 0.0013}, Row{30, 100, 4e-4}, Row{100, 100, 1.1e-4}, Row{5000, 5000, 1.3e-5}}) {
    for (const double p : {0.6827, 0.9, 0.9546, 0.99}) {
      const double exact = boost::math::quantile(boost::math::fisher_f(row.n, row.m), p);
      EXPECT_NEAR(FSTAT(row.n, row.m, p, host) / exact, 1.0, row.tolerance)
          << row.n << ", " << row.m << " at " << p;
    }
  }
  EXPECT_NEAR(FSTAT(2, 10, 0.95, host), 5.38, 0.005);  // kept on purpose: the quantile is 4.10
  EXPECT_NEAR(FSTAT(12, 12, 0.5, host), 1.0, 1e-3);    // the median of F(n, n)
  EXPECT_TRUE(host.lines.empty());
}

TEST(FSTAT, RefusesWithALineForEachReason) {
  struct Row {
    int n, m;
    double p;
    const char* line;
  };
  for (const Row& row : {Row{5, 5, 1.0, " FSTAT-E P must be > 0.5 and < 1.0"},
                         Row{5, 5, 0.49, " FSTAT-E P must be > 0.5 and < 1.0"},
                         Row{5, 5, std::nan(""), " FSTAT-E P must be > 0.5 and < 1.0"},
                         Row{0, 5, 0.9, " FSTAT-F  n must be greater than zero"},
                         Row{5, 0, 0.9, " FSTAT-F m must be greater than zero"}}) {
    RecordingHost host;
    EXPECT_EQ(FSTAT(row.n, row.m, row.p, host), 0.0);
    ASSERT_EQ(host.lines.size(), 1U);
    EXPECT_EQ(host.lines[0], row.line);
  }
}

}  // namespace
