// Normal equations in the shape of an arrow: each group of datasets has a few parameters of its
// own, which meet other groups only through the shared ones, the border. Solved by groups, at a
// cost that grows with their number instead of its cube.
// Source: block elimination and the Schur complement; Golub & Van Loan, Matrix Computations,
// sections 3.2 and 4.2.
#pragma once

#include <vector>

#include "base/array1.h"

namespace quorvane {

struct FitState;

// Which fitted parameters, by their places from 1, form groups, and which the border.
struct ArrowShape {
  std::vector<std::vector<int>> groups;
  std::vector<int> border;
};

// The shape of the normal equations of `fit`: datasets whose reference concentrations are linked
// stand in one group. A model without terms has no groups.
ArrowShape ShapeOf(const FitState& fit);

// The work space of a solver, kept from step to step.
class ArrowSolver {
 public:
  ArrowSolver() = default;
  explicit ArrowSolver(ArrowShape shape);

  // Factors alpha [1..n][1..n], symmetric, its diagonal grown by the share lambda. False if a pivot
  // is doubtful, that is, so small beside its diagonal element that rounding would show.
  bool Factor(const Matrix1<double>& alpha, double lambda);

  // The place of the doubtful pivot after a Factor that was false. Within a group and in the border
  // the places rise, and the border comes last.
  int DoubtfulPlace() const { return doubtfulPlace_; }

  // Puts the solution for the right-hand side b [1..n][1] in its place.
  void Solve(Matrix1<double>& b);

  // Writes the inverse to `inverse` [1..n][1..n].
  void Invert(Matrix1<double>& inverse);

 private:
  // A dense symmetric matrix as L D L^T, row by row in `factor`, [size][size] from 0.
  struct Dense {
    std::vector<int> places;
    std::vector<double> factor;
    std::vector<double> toBorder;  // [size][border]: the inverse times the columns of the border
    std::size_t size() const { return places.size(); }
  };

  bool FactorDense(Dense& dense, const std::vector<double>& diagonal);
  static void SolveDense(const Dense& dense, double* right, std::size_t stride);
  static std::vector<double> InverseOf(const Dense& dense);
  void TakeBlock(Dense& dense, const Matrix1<double>& alpha, double lambda);
  void ReduceBorder(const Dense& group, const Matrix1<double>& alpha);
  void InvertGroupRows(const Dense& group, const std::vector<double>& borderInverse,
                       Matrix1<double>& inverse);

  std::vector<Dense> groups_;
  Dense border_;
  std::vector<double> diagonal_;  // of the block at hand before elimination; also a right side
  std::vector<double> right_;     // of the border
  int doubtfulPlace_ = 0;
};

}  // namespace quorvane
