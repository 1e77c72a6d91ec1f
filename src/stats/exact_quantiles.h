// F quantiles and probabilities to full precision, for numbers that have to agree with other
// programs to the last digit. quantiles.h holds the approximations of the confidence search.
#pragma once

namespace quorvane {

// The F quantile with n and m degrees of freedom at probability p: F(n, m; p). n and m at least 1,
// 0 < p < 1.
double FQuantile(int n, int m, double p);

// The probability of an F of at least `f` with n and m degrees of freedom. n and m at least 1, f at
// least 0 and finite.
double FUpperTail(int n, int m, double f);

}  // namespace quorvane
