// Which of several fits of the same points the data favour, and by how much. What follows is said
// in plain sentences, and so is what does not.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "stats/fit_summary.h"

namespace quorvane {

// Below this probability a test calls the full fit better.
inline constexpr double kTestLevel = 0.05;

// A fit by the name that sentences call it by. `summary` outlives this.
struct NamedFit {
  std::string name;
  const FitSummary* summary;
};

// F = ((S_r - S_f) / numerator) / (S_f / denominator), with numerator = k_f - k_r parameters more
// in the full fit f than in the restricted one r, and denominator = n - k_f; the probability of an
// F of at least that, if the restricted one were true and the noise normal, alike and independent.
// It is exact where the model is linear in what is held, and good for many points elsewhere.
// Source: D. M. Bates & D. G. Watts, Nonlinear Regression Analysis and Its Applications (1988),
// section 3.10.
struct FTest {
  double f = 0.0;
  int numerator = 0;
  int denominator = 0;
  double probability = 0.0;
};

inline constexpr const char* kFFormula =
    "F = ((S_r - S_f) / (k_f - k_r)) / (S_f / (n - k_f)), of restricted r and full f";

enum class Kinship {
  kRestricted,  // `restricted` is `full` with parameters held
  kAlike,       // the same curves with as many parameters: they differ in where they ended
  kLimit,       // `restricted` is `full` only where a constant is 0
  kUnrelated,
};

// Two of the fits, by their places from 0. Where none is the other with parameters held `full` is
// the one with more fitted parameters.
struct FitPair {
  std::size_t restricted = 0;
  std::size_t full = 0;
  Kinship kinship = Kinship::kUnrelated;
  std::vector<std::string> restrictions;  // of kRestricted: what is held, see Nesting
  std::optional<FTest> test;              // of kRestricted, unless the sums of squares forbid it
  std::string sentence;                   // what follows and what does not
};

// By AICc among all fits that have one; absent for others.
struct AkaikeRank {
  std::optional<double> difference;  // to the lowest AICc
  std::optional<double> weight;  // exp(-difference / 2) over their sum: they add up to 1. Source:
                                 // K. P. Burnham & D. R. Anderson, Model Selection and Multimodel
                                 // Inference, 2nd edition (2002), section 2.9.
};

struct FitComparison {
  std::vector<AkaikeRank> ranks;     // one a fit, in their order
  std::vector<FitPair> pairs;        // every pair, by the place of the earlier, then the later
  std::vector<std::string> remarks;  // on all of them together
};

// A probability for tables and sentences: "0.0312", "4.1E-07".
std::string ShownProbability(double p);

// Why the fits cannot be compared: they are not of the same points. Empty if they can.
std::string RefusalOfComparison(std::span<const NamedFit> fits);

// The comparison of fits that RefusalOfComparison does not refuse.
FitComparison CompareFits(std::span<const NamedFit> fits);

}  // namespace quorvane
