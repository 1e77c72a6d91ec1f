// Quantiles to full precision, for limits that have to agree with other programs to the last digit.
// quantiles.h holds the approximations of the confidence search.
#pragma once

namespace quorvane {

// The F quantile with n and m degrees of freedom at probability p: F(n, m; p). n and m at least 1,
// 0 < p < 1.
double FQuantile(int n, int m, double p);

}  // namespace quorvane
