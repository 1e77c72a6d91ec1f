// Arrays indexed from 1, so that formulas read as in the literature.
#pragma once

#include <cassert>
#include <cstddef>
#include <vector>

namespace quorvane {

// v(1) .. v(size()). Out-of-range indices are a caller's slip: asserted, not thrown.
template <class T>
class Array1 {
 public:
  Array1() = default;
  explicit Array1(int n, const T& value = T()) : data_(static_cast<std::size_t>(n), value) {}

  int size() const { return static_cast<int>(data_.size()); }
  void Resize(int n) { data_.resize(static_cast<std::size_t>(n)); }
  void Append(const T& value) { data_.push_back(value); }

  T& operator()(int i) { return data_[Offset(i)]; }
  const T& operator()(int i) const { return data_[Offset(i)]; }

  // The first element, v(1).
  T* data() { return data_.data(); }
  const T* data() const { return data_.data(); }

  bool operator==(const Array1&) const = default;

 private:
  std::size_t Offset(int i) const {
    assert(i >= 1 && i <= size());
    return static_cast<std::size_t>(i - 1);
  }
  std::vector<T> data_;
};

// m(1, 1) .. m(rows(), cols()), stored row by row.
template <class T>
class Matrix1 {
 public:
  Matrix1() = default;
  Matrix1(int rows, int cols, const T& value = T())
      : rows_(rows),
        cols_(cols),
        data_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), value) {}

  int rows() const { return rows_; }
  int cols() const { return cols_; }

  T& operator()(int i, int j) { return data_[Offset(i, j)]; }
  const T& operator()(int i, int j) const { return data_[Offset(i, j)]; }

  // The first element of row i, m(i, 1).
  T* Row(int i) { return &data_[Offset(i, 1)]; }
  const T* Row(int i) const { return &data_[Offset(i, 1)]; }

  bool operator==(const Matrix1&) const = default;

 private:
  std::size_t Offset(int i, int j) const {
    assert(i >= 1 && i <= rows_ && j >= 1 && j <= cols_);
    return static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(cols_) +
           static_cast<std::size_t>(j - 1);
  }
  int rows_ = 0;
  int cols_ = 0;
  std::vector<T> data_;
};

}  // namespace quorvane
