#include "sim/plan_information.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "fit/models.h"
#include "fit/partials.h"

namespace quorvane {

namespace {

// A tall matrix, row by row.
struct Rows {
  std::size_t columns = 0;
  std::vector<double> values;
  std::size_t Count() const { return columns == 0 ? 0 : values.size() / columns; }
  double& At(std::size_t row, std::size_t column) { return values[row * columns + column]; }
  double At(std::size_t row, std::size_t column) const { return values[row * columns + column]; }
};

// The fitted parameters, those of the datasets first: their order is that of FitA.
std::vector<int> FittedOf(const FitState& fit) {
  std::vector<int> fitted;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) fitted.push_back(l);
  }
  return fitted;
}

Rows Jacobian(FitState& fit, const std::vector<int>& fitted) {
  Rows rows{fitted.size(), {}};
  rows.values.reserve(rows.columns * static_cast<std::size_t>(fit.FitNumPoints));
  Array1<double> work = fit.FitA;
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    CheckArithmetic([&] {
      double value = 0.0;
      fit.FitModel->funcs(fit, i, work, value);
      for (const int l : fitted) {
        const bool foreign = l <= fit.NumFitSets && l != fit.FitSet(i);  // another's baseline
        rows.values.push_back(foreign ? 0.0 : DerivativeAt(fit, *fit.FitModel, l, i, value, work));
      }
    });
  }
  return rows;
}

double LengthBelow(const Rows& rows, std::size_t top, std::size_t column) {
  double squares = 0.0;
  for (std::size_t j = top; j < rows.Count(); ++j) {
    squares += rows.At(j, column) * rows.At(j, column);
  }
  return std::sqrt(squares);
}

// Reflects rows `top` and below so that column `column` has one element left there, in row `top`.
void Reflect(Rows& rows, std::size_t top, std::size_t column, double length) {
  const double head = rows.At(top, column);
  const double left = head > 0.0 ? -length : length;
  const double scale = 1.0 / (length * (length + std::fabs(head)));
  rows.At(top, column) = head - left;  // the reflector stands in the column from here
  for (std::size_t k = column + 1; k < rows.columns; ++k) {
    double product = 0.0;
    for (std::size_t j = top; j < rows.Count(); ++j) product += rows.At(j, column) * rows.At(j, k);
    product *= scale;
    for (std::size_t j = top; j < rows.Count(); ++j) rows.At(j, k) -= product * rows.At(j, column);
  }
  rows.At(top, column) = left;
  for (std::size_t j = top + 1; j < rows.Count(); ++j) rows.At(j, column) = 0.0;
}

// Brings the columns from the left to triangular form; a column that those before it make up has
// no row of its own, so that it takes nothing from those behind it. The rows used up by the first
// `own` columns.
std::size_t Triangularise(Rows& rows, std::size_t own) {
  constexpr double kNothing = 1e-10;  // of the column, beside those before it
  std::size_t top = 0;
  std::size_t used = 0;
  for (std::size_t k = 0; k < rows.columns && top < rows.Count(); ++k) {
    const double whole = LengthBelow(rows, 0, k);
    const double length = LengthBelow(rows, top, k);
    if (length > (k < own ? kNothing * whole : 0.0)) {
      Reflect(rows, top, k, length);
      ++top;
    } else {
      for (std::size_t j = top; j < rows.Count(); ++j) rows.At(j, k) = 0.0;
    }
    if (k < own) used = top;
  }
  return used;
}

// The rows from `from` on, whose columns before `own` are 0, as a root.
InformationRoot RootFrom(const Rows& rows, std::size_t from, std::size_t own) {
  InformationRoot root{rows.columns - own, {}};
  if (root.size > kMostShared) throw SubscriptFault();
  for (std::size_t j = 0; j < root.size && from + j < rows.Count(); ++j) {
    for (std::size_t k = 0; k < root.size; ++k) root.r[j][k] = rows.At(from + j, own + k);
  }
  return root;
}

using Square = std::array<std::array<double, kMostShared>, kMostShared>;

// Columns of length 1 with their old lengths; a column of zeros stays.
std::array<double, kMostShared> ScaleColumns(Square& a, std::size_t n) {
  std::array<double, kMostShared> lengths{};
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t j = 0; j < n; ++j) lengths[k] = std::hypot(lengths[k], a[j][k]);
    for (std::size_t j = 0; j < n && lengths[k] > 0.0; ++j) a[j][k] /= lengths[k];
  }
  return lengths;
}

void RotateColumns(Square& a, std::size_t n, std::size_t p, std::size_t q, double c, double s) {
  for (std::size_t j = 0; j < n; ++j) {
    const double left = a[j][p];
    const double right = a[j][q];
    a[j][p] = c * left - s * right;
    a[j][q] = s * left + c * right;
  }
}

// Rotates the columns of `a` until they are orthogonal, and those of `v` with them.
void Orthogonalise(Square& a, Square& v, std::size_t n) {
  constexpr int kMostSweeps = 40;
  constexpr double kOrthogonal = 1e-15;
  for (int sweep = 0; sweep < kMostSweeps; ++sweep) {
    bool rotated = false;
    for (std::size_t p = 0; p + 1 < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        double pp = 0.0;
        double qq = 0.0;
        double pq = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
          pp += a[j][p] * a[j][p];
          qq += a[j][q] * a[j][q];
          pq += a[j][p] * a[j][q];
        }
        if (std::fabs(pq) <= kOrthogonal * std::sqrt(pp * qq)) continue;
        const double zeta = (qq - pp) / (2.0 * pq);
        const double t = std::copysign(1.0, zeta) / (std::fabs(zeta) + std::hypot(1.0, zeta));
        const double c = 1.0 / std::hypot(1.0, t);
        RotateColumns(a, n, p, q, c, c * t);
        RotateColumns(v, n, p, q, c, c * t);
        rotated = true;
      }
    }
    if (!rotated) return;
  }
}

// The singular values that count, as columns of V over them: the covariance is the sum of their
// outer products. `unknown` [parameter] is set where a vector of the rest has a part.
Square InverseRoot(Square a, std::size_t n, std::array<bool, kMostShared>& unknown) {
  constexpr double kNothing = 1e-8;
  constexpr double kPart = 1e-4;  // of a unit vector
  Square v{};
  for (std::size_t k = 0; k < n; ++k) v[k][k] = 1.0;
  Orthogonalise(a, v, n);
  std::array<double, kMostShared> singular{};
  double greatest = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t j = 0; j < n; ++j) singular[k] = std::hypot(singular[k], a[j][k]);
    greatest = std::max(greatest, singular[k]);
  }
  for (std::size_t k = 0; k < n; ++k) {
    const bool counts = singular[k] > kNothing * greatest;
    for (std::size_t j = 0; j < n; ++j) {
      if (!counts && std::fabs(v[j][k]) > kPart) unknown[j] = true;
      v[j][k] = counts ? v[j][k] / singular[k] : 0.0;
    }
  }
  return v;
}

double RowProduct(const Square& v, std::size_t n, std::size_t i, std::size_t j) {
  double sum = 0.0;
  for (std::size_t k = 0; k < n; ++k) sum += v[i][k] * v[j][k];
  return sum;
}

}  // namespace

InformationRoot InformationOf(FitState& fit) {
  const std::vector<int> fitted = FittedOf(fit);
  Rows rows = Jacobian(fit, fitted);
  const auto own = static_cast<std::size_t>(
      std::count_if(fitted.begin(), fitted.end(), [&](int l) { return l <= fit.SharedBase(); }));
  std::size_t used = 0;
  CheckArithmetic([&] { used = Triangularise(rows, own); });
  return RootFrom(rows, used, own);
}

InformationRoot Joined(const InformationRoot& one, const InformationRoot& other) {
  Rows rows{one.size, {}};
  rows.values.reserve(2 * one.size * one.size);
  for (const InformationRoot* root : {&one, &other}) {
    for (std::size_t j = 0; j < root->size; ++j) {
      rows.values.insert(rows.values.end(), root->r[j].begin(),
                         root->r[j].begin() + static_cast<std::ptrdiff_t>(root->size));
    }
  }
  Triangularise(rows, 0);
  return RootFrom(rows, 0, 0);
}

SharedCovariance CovarianceOf(const InformationRoot& root) {
  const std::size_t n = root.size;
  Square scaled = root.r;
  const std::array<double, kMostShared> lengths = ScaleColumns(scaled, n);
  std::array<bool, kMostShared> unknown{};
  const Square v = InverseRoot(scaled, n, unknown);
  SharedCovariance result;
  result.variance.resize(n);
  result.correlation.assign(n, std::vector<std::optional<double>>(n));
  for (std::size_t i = 0; i < n; ++i) {
    if (unknown[i]) continue;
    const double own = RowProduct(v, n, i, i);
    result.variance[i] = own / (lengths[i] * lengths[i]);
    for (std::size_t j = 0; j < n; ++j) {
      if (unknown[j]) continue;
      const double product = RowProduct(v, n, i, j) / std::sqrt(own * RowProduct(v, n, j, j));
      result.correlation[i][j] = i == j ? 1.0 : std::clamp(product, -1.0, 1.0);
    }
  }
  return result;
}

}  // namespace quorvane
