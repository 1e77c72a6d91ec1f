// What the values of a normal sample are expected to be, for a normal-quantile plot.
#pragma once

#include <cstddef>
#include <vector>

namespace quorvane {

// The expected order statistics of `n` standard normal values, rising, by the approximation
//   z_k = Phi^-1((k - 3/8) / (n + 1/4)), k = 1 ... n
// Source: Blom, Statistical Estimates and Transformed Beta-Variables (1958).
std::vector<double> NormalScores(std::size_t n);

}  // namespace quorvane
