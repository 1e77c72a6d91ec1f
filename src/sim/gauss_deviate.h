// The random numbers of the simulator.
#pragma once

#include <cstdint>
#include <random>

namespace quorvane {

// Uniform values in single precision, 0 included and 1 not.
class UniformSource {
 public:
  explicit UniformSource(std::uint64_t seed) : generator_(seed) {}
  float Next();

 private:
  std::mt19937_64 generator_;
};

// A seed that differs from one start of the program to the next.
std::uint64_t SeedFromClock();

// A normal deviate with mean 0 and standard deviation 1.
// Throws ArithmeticFault (invalid operation) if both uniform values hit the centre exactly.
// Source: Marsaglia's polar method; Knuth, The Art of Computer Programming, volume 2, 3.4.1.
double GaussDeviate(UniformSource& uniform);

}  // namespace quorvane
