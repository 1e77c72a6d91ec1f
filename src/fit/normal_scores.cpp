#include "fit/normal_scores.h"

#include <boost/math/distributions/normal.hpp>

namespace quorvane {

std::vector<double> NormalScores(std::size_t n) {
  const boost::math::normal standard;
  const double count = static_cast<double>(n);
  std::vector<double> scores;
  scores.reserve(n);
  for (std::size_t k = 1; k <= n; ++k) {
    scores.push_back(
        boost::math::quantile(standard, (static_cast<double>(k) - 0.375) / (count + 0.25)));
  }
  return scores;
}

}  // namespace quorvane
