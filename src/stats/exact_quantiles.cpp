#include "stats/exact_quantiles.h"

#include <boost/math/distributions/fisher_f.hpp>

namespace quorvane {

double FQuantile(int n, int m, double p) {
  return boost::math::quantile(boost::math::fisher_f(n, m), p);
}

double FUpperTail(int n, int m, double f) {
  return boost::math::cdf(boost::math::complement(boost::math::fisher_f(n, m), f));
}

}  // namespace quorvane
