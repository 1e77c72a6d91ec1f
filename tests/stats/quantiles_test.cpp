// Faults caught here: a mistyped constant, a lost refusal line, and a well-meant replacement of the
// approximation.
#include "stats/quantiles.h"

#include <cmath>

#include "base/arithmetic.h"
#include "support/recording_host.h"

namespace {

TEST(FSTAT, IsNearThePublishedTableAtManyDegreesOfFreedom) {
  struct Row {
    int n, m;
    double quantile;   // upper 5 % points, NIST/SEMATECH e-Handbook, 1.3.6.7.3
    double tolerance;  // what the approximation is good for there
  };
  RecordingHost host;
  for (const Row& row : {Row{10, 10, 2.978, 0.02}, Row{20, 20, 2.124, 0.005},
                         Row{10, 100, 1.927, 0.005}, Row{5, 50, 2.400, 0.03}}) {
    EXPECT_NEAR(FSTAT(row.n, row.m, 0.95, host), row.quantile, row.tolerance)
        << row.n << ", " << row.m;
  }
  EXPECT_NEAR(FSTAT(2, 10, 0.95, host), 5.38, 0.005);  // kept on purpose: tables say 4.10
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
