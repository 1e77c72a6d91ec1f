// What planned scans tell of the shared parameters, as square roots of information matrices: for
// unit noise a root R stands for the information R^T R, whose inverse is the covariance.
// The baselines and reference concentrations of a cell meet no other cell, so that each cell is
// reduced to the shared parameters by itself, once, and cells are joined by their roots. That is
// the Schur complement of the normal equations, found by orthogonal steps, which lose no digits.
// Source: Golub & Van Loan, Matrix Computations, sections 5.2 and 5.3; Bierman, Factorization
// Methods for Discrete Sequential Estimation (1977), chapter 4.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "fit/fit_state.h"

namespace quorvane {

// No model has more shared parameters.
inline constexpr std::size_t kMostShared = 6;

// Upper triangular root over `size` shared parameters.
struct InformationRoot {
  std::size_t size = 0;
  std::array<std::array<double, kMostShared>, kMostShared> r = {};  // [row][column], from 0
};

// The information of `fit`, which has datasets and all that the assembly makes, on its fitted
// shared parameters at FitA: derivatives as the fit takes them, the parameters of its datasets
// eliminated. Throws ArithmeticFault, SubscriptFault for more than kMostShared parameters.
InformationRoot InformationOf(FitState& fit);

// What both together tell; of the same parameters.
InformationRoot Joined(const InformationRoot& one, const InformationRoot& other);

// Covariance of the shared parameters under noise of 1.
struct SharedCovariance {
  // Nothing for a parameter that is not determined: some change of it, along with others, moves no
  // point by more than rounding.
  std::vector<std::optional<double>> variance;
  // [row][column]; nothing where one of the two is not determined.
  std::vector<std::vector<std::optional<double>>> correlation;
};

// By singular values of the root with columns of length 1; those below 1e-8 of the greatest count
// as 0. Source: Jacobi rotations from one side, Golub & Van Loan, section 8.6.3.
SharedCovariance CovarianceOf(const InformationRoot& root);

}  // namespace quorvane
