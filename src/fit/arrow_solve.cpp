#include "fit/arrow_solve.h"

#include <algorithm>
#include <numeric>

#include "fit/fit_state.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// A pivot below this share of its diagonal element leaves few of its digits.
constexpr double kDoubtful = 1e-10;
// The elimination takes a pivot near the least single for zero.
constexpr double kLeastPivot = 1e-36;

// For each dataset, from 0, the first one of its group.
std::vector<std::size_t> GroupLeaders(const FitState& fit) {
  std::vector<std::size_t> leader(static_cast<std::size_t>(fit.NumFitSets));
  std::iota(leader.begin(), leader.end(), std::size_t{0});
  if (!fit.FitModel->secondComponent) return leader;
  const auto top = [&](std::size_t d) {
    while (leader[d] != d) d = leader[d];
    return d;
  };
  for (std::size_t d = 0; d < leader.size(); ++d) {
    const std::size_t one = top(d);
    const std::size_t other = top(static_cast<std::size_t>(fit.RefLink[d]));
    leader[std::max(one, other)] = std::min(one, other);
  }
  for (std::size_t d = 0; d < leader.size(); ++d) leader[d] = top(d);
  return leader;
}

}  // namespace

ArrowShape ShapeOf(const FitState& fit) {
  ArrowShape shape;
  const bool grouped = fit.FitModel != nullptr && fit.FitModel->terms != nullptr;
  std::vector<std::size_t> leader;
  if (grouped) leader = GroupLeaders(fit);
  std::vector<std::vector<int>> groups(leader.size());
  int place = 0;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) == 0) continue;
    ++place;
    if (grouped && l <= fit.SharedBase()) {
      groups[leader[static_cast<std::size_t>((l - 1) % fit.NumFitSets)]].push_back(place);
    } else {
      shape.border.push_back(place);
    }
  }
  for (std::vector<int>& group : groups) {
    if (!group.empty()) shape.groups.push_back(std::move(group));
  }
  return shape;
}

ArrowSolver::ArrowSolver(ArrowShape shape) {
  border_.places = std::move(shape.border);
  const std::size_t s = border_.size();
  border_.factor.resize(s * s);
  std::size_t largest = s;
  for (std::vector<int>& places : shape.groups) {
    Dense& group = groups_.emplace_back();
    group.places = std::move(places);
    group.factor.resize(group.size() * group.size());
    group.toBorder.resize(group.size() * s);
    largest = std::max(largest, group.size());
  }
  diagonal_.resize(largest);
  right_.resize(largest);
}

// L below the diagonal, D on it.
bool ArrowSolver::FactorDense(Dense& dense, const std::vector<double>& diagonal) {
  const std::size_t n = dense.size();
  double* m = dense.factor.data();
  for (std::size_t j = 0; j < n; ++j) {
    if (!(m[j * n + j] > kDoubtful * diagonal[j] && m[j * n + j] > kLeastPivot)) {
      doubtfulPlace_ = dense.places[j];
      return false;
    }
    for (std::size_t i = j + 1; i < n; ++i) {
      const double share = m[i * n + j] / m[j * n + j];
      for (std::size_t k = j + 1; k <= i; ++k) m[i * n + k] -= share * m[k * n + j];
    }
    for (std::size_t i = j + 1; i < n; ++i) m[i * n + j] /= m[j * n + j];
  }
  return true;
}

void ArrowSolver::SolveDense(const Dense& dense, double* right, std::size_t stride) {
  const std::size_t n = dense.size();
  const double* m = dense.factor.data();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < i; ++k) right[i * stride] -= m[i * n + k] * right[k * stride];
  }
  for (std::size_t i = 0; i < n; ++i) right[i * stride] /= m[i * n + i];
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t k = i + 1; k < n; ++k) right[i * stride] -= m[k * n + i] * right[k * stride];
  }
}

// Copies the block of `dense` out of alpha, and its diagonal.
void ArrowSolver::TakeBlock(Dense& dense, const Matrix1<double>& alpha, double lambda) {
  const std::size_t n = dense.size();
  for (std::size_t i = 0; i < n; ++i) {
    const double* row = alpha.Row(dense.places[i]) - 1;
    for (std::size_t k = 0; k < n; ++k) dense.factor[i * n + k] = row[dense.places[k]];
    diagonal_[i] = dense.factor[i * n + i] *= 1.0 + lambda;
  }
}

bool ArrowSolver::Factor(const Matrix1<double>& alpha, double lambda) {
  const std::size_t s = border_.size();
  TakeBlock(border_, alpha, lambda);
  const std::vector<double> borderDiagonal = diagonal_;
  for (Dense& group : groups_) {
    TakeBlock(group, alpha, lambda);
    if (!FactorDense(group, diagonal_)) return false;
    for (std::size_t i = 0; i < group.size(); ++i) {
      const double* row = alpha.Row(group.places[i]) - 1;
      for (std::size_t k = 0; k < s; ++k) group.toBorder[i * s + k] = row[border_.places[k]];
    }
    for (std::size_t k = 0; k < s; ++k) SolveDense(group, group.toBorder.data() + k, s);
    ReduceBorder(group, alpha);
  }
  return FactorDense(border_, borderDiagonal);
}

// Takes what goes through the group out of the block of the border.
void ArrowSolver::ReduceBorder(const Dense& group, const Matrix1<double>& alpha) {
  const std::size_t s = border_.size();
  for (std::size_t i = 0; i < group.size(); ++i) {
    const double* row = alpha.Row(group.places[i]) - 1;
    for (std::size_t l = 0; l < s; ++l) {
      const double shared = row[border_.places[l]];
      for (std::size_t k = 0; k <= l; ++k) {
        border_.factor[l * s + k] -= shared * group.toBorder[i * s + k];
      }
    }
  }
}

void ArrowSolver::Solve(Matrix1<double>& b) {
  const std::size_t s = border_.size();
  std::vector<double>& z = right_;
  for (std::size_t k = 0; k < s; ++k) z[k] = b(border_.places[k], 1);
  for (const Dense& group : groups_) {
    for (std::size_t i = 0; i < group.size(); ++i) {
      const double own = b(group.places[i], 1);
      for (std::size_t k = 0; k < s; ++k) z[k] -= group.toBorder[i * s + k] * own;
    }
  }
  SolveDense(border_, z.data(), 1);
  for (std::size_t k = 0; k < s; ++k) b(border_.places[k], 1) = z[k];
  for (const Dense& group : groups_) {
    std::vector<double>& own = diagonal_;
    for (std::size_t i = 0; i < group.size(); ++i) own[i] = b(group.places[i], 1);
    SolveDense(group, own.data(), 1);
    for (std::size_t i = 0; i < group.size(); ++i) {
      for (std::size_t k = 0; k < s; ++k) own[i] -= group.toBorder[i * s + k] * z[k];
      b(group.places[i], 1) = own[i];
    }
  }
}

void ArrowSolver::Invert(Matrix1<double>& inverse) {
  const std::size_t s = border_.size();
  const std::vector<double> borderInverse = InverseOf(border_);
  for (std::size_t l = 0; l < s; ++l) {
    for (std::size_t k = 0; k < s; ++k) {
      inverse(border_.places[l], border_.places[k]) = borderInverse[l * s + k];
    }
  }
  for (const Dense& group : groups_) InvertGroupRows(group, borderInverse, inverse);
}

std::vector<double> ArrowSolver::InverseOf(const Dense& dense) {
  const std::size_t n = dense.size();
  std::vector<double> inverse(n * n, 0.0);
  for (std::size_t k = 0; k < n; ++k) {
    inverse[k * n + k] = 1.0;
    SolveDense(dense, inverse.data() + k, n);
  }
  return inverse;
}

// The rows of a group: against the border, then against every group.
void ArrowSolver::InvertGroupRows(const Dense& group, const std::vector<double>& borderInverse,
                                  Matrix1<double>& inverse) {
  const std::size_t s = border_.size();
  const std::vector<double> own = InverseOf(group);
  std::vector<double> through(s);  // a row of toBorder times the inverse of the border
  for (std::size_t i = 0; i < group.size(); ++i) {
    const int row = group.places[i];
    std::fill(through.begin(), through.end(), 0.0);
    for (std::size_t l = 0; l < s; ++l) {
      const double share = group.toBorder[i * s + l];
      for (std::size_t k = 0; k < s; ++k) through[k] += share * borderInverse[l * s + k];
    }
    for (std::size_t k = 0; k < s; ++k) {
      inverse(row, border_.places[k]) = inverse(border_.places[k], row) = -through[k];
    }
    for (const Dense& other : groups_) {
      for (std::size_t j = 0; j < other.size(); ++j) {
        double sum = &other == &group ? own[i * group.size() + j] : 0.0;
        for (std::size_t k = 0; k < s; ++k) sum += through[k] * other.toBorder[j * s + k];
        inverse(row, other.places[j]) = sum;
      }
    }
  }
}

}  // namespace quorvane
