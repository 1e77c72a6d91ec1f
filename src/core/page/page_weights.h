// The molecular weights that stand behind the buoyant weights of the parameter page.
#pragma once

#include <string>
#include <vector>

#include "core/page/constants.h"

namespace quorvane {

// One weight of the model, M = M_b / (1 - vbar density).
struct PageWeight {
  std::string text;       // "MW(A) = 30,100 Da", or that there is none
  std::string remark;     // why there is none, or what is unusual about it; else empty
  bool computed = false;  // whether the text holds a weight
};

// The weights that the model of the page has, A before B.
std::vector<PageWeight> PageWeights(const QuorvaneModule& module);

// The same for other values of the page.
std::vector<PageWeight> PageWeights(const FitSetup& setup, const FitPage& page);

// The constants that they were computed with: one vbar a weight, then the density.
std::vector<Constant> ConstantsOfWeights(const QuorvaneModule& module);

// "vbar 0.73", "vbar(B) 0.73", "density 1.00".
std::string ConstantText(const QuorvaneModule& module, Constant constant);

}  // namespace quorvane
