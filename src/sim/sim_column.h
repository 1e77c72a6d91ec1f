// SimColumn: the simulated solution column, point by point.
#pragma once

#include <array>
#include <vector>

#include "base/arithmetic.h"

namespace quorvane {

// Values at the grid points, indices 0 to 2048; any other index throws SubscriptFault.
template <class T>
class GridArray {
 public:
  static constexpr int kLast = 2048;

  T& operator[](int i) { return data_[Checked(i)]; }
  const T& operator[](int i) const { return data_[Checked(i)]; }

 private:
  static std::size_t Checked(int i) {
    if (i < 0 || i > kLast) throw SubscriptFault();
    return static_cast<std::size_t>(i);
  }
  std::vector<T> data_ = std::vector<T>(static_cast<std::size_t>(kLast) + 1);
};

// Kept from run to run and overwritten point by point: above the last point of a shorter run stand
// the values of a longer one.
struct SimColumn {
  GridArray<double> r;       // cm
  GridArray<double> conc;    // molar, as monomer; not written by the models with a component B
  GridArray<double> signal;  // noise included
  // One column a species: molar with one component, signal units with two; not written by the
  // ideal, nonideal and isodesmic models.
  GridArray<std::array<double, 6>> species;
};

}  // namespace quorvane
