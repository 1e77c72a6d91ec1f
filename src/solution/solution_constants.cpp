#include "solution/solution_constants.h"

#include "solution/buffer_density.h"
#include "solution/remarks.h"

namespace quorvane {

SolutionConstants CalcSolution(const SolutionRequest& request) {
  SolutionConstants constants;
  const double density = BufferDensity(request.buffer.value_or(BufferRecipe{}), request.degC);
  if (request.buffer) constants.density = density;
  if (request.letters) {
    constants.protein =
        ConstantsOfProtein(*request.letters, request.disulphides.value_or(0), request.degC);
  }
  if (constants.protein && constants.density) {
    constants.buoyancy = 1.0 - constants.protein->vbar * density;
    constants.buoyantMass = constants.protein->mass * *constants.buoyancy;
  }
  constants.remarks = RemarksOn(request);
  return constants;
}

}  // namespace quorvane
