// Faults caught here: a minimiser that ends beside the least sum of squares, and a covariance that
// is not that of the parameters. Data and certified values stand in nist_sets.txt.
#include <gtest/gtest.h>

#include "support/nist_sets.h"

using namespace quorvane;

namespace {

TEST(NistData, GivesTheCertifiedSumOfSquares) {
  for (const NistSet& set : ReadNistSets(QUORVANE_SOURCE_DIR)) {
    long double sum = 0;
    for (std::size_t k = 0; k < set.rows.at("x").size(); ++k) {
      const auto curve = NistCurve(set.name, set.rows.at("certified"), set.rows.at("x")[k]);
      sum += std::pow(set.rows.at("y")[k] - curve, 2.0L);
    }
    EXPECT_NEAR(static_cast<double>(sum / set.rows.at("sum")[0]), 1.0, 1e-9) << set.name;
  }
}

TEST(FitData, ReachesTheCertifiedValuesOfNist) {
  const std::vector<NistSet> sets = ReadNistSets(QUORVANE_SOURCE_DIR);
  ASSERT_EQ(sets.size(), 8U);
  for (const NistSet& set : sets) {
    for (const NistValues& start : set.starts) {
      const NistAgreement reached = FitNist(set, start, set.Scale());
      EXPECT_GT(reached.iterations, 0) << set.name;
      EXPECT_GE(reached.parameters, static_cast<double>(set.rows.at("set")[1])) << set.name;
      EXPECT_GE(reached.deviations, static_cast<double>(set.rows.at("set")[2])) << set.name;
      EXPECT_GE(reached.sum, 7.0) << set.name;
    }
  }
}

}  // namespace
