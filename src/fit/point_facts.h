// What the vector kernel needs to know of the points of a dataset.
#pragma once

struct PointFacts {
  double greatestX = 0.0;  // of |x|, cm^2
  bool plain = false;      // mass conservation sums that the kernel cannot make
};
