// Statistics: approximate quantiles behind the variance ratio of a fit.
#pragma once

namespace quorvane {

class Host;

// Normal deviate exceeded with probability Q, given t = sqrt(-2 ln Q), Q <= 0.5.
// Source: Abramowitz & Stegun, Handbook of Mathematical Functions, 26.2.23.
double NormalDeviate(double t);

// Quantile of the F distribution, n and m degrees of freedom, at probability P. No units.
//   Refused, logged to `host`, returns 0:  P < 0.5, P >= 1, n < 1, m < 1.
//   Throws ArithmeticFault:                n = 1 or m = 1 (divides by zero).
// Source: Abramowitz & Stegun, 26.5.22.
// Kept on purpose: coarse at few degrees of freedom, F(2, 10) at 0.95 gives 5.38 where tables say
// 4.10.
double FSTAT(int n, int m, double P, Host& host);

}  // namespace quorvane
