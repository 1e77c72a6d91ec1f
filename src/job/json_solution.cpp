#include "job/json_solution.h"

#include "job/json_records.h"

namespace quorvane {

Json SolutionJson(const SolutionRequest& request, const SolutionConstants& constants) {
  Json json = DocumentHead();
  json["temperature"] = request.degC;
  if (constants.protein) {
    const ProteinConstants& protein = *constants.protein;
    json["protein"] = {{"residues", protein.residues},
                       {"mass", protein.mass},
                       {"vbar", protein.vbar},
                       {"extinction_280", protein.extinction280},
                       {"a280_1mg_ml", protein.a280}};
  }
  if (constants.density) {
    Json components = Json::array();
    for (const BufferPart& part : *request.buffer) {
      components.push_back({{"name", part.component->name}, {"molar", part.molar}});
    }
    json["buffer"] = {{"density", *constants.density}, {"components", components}};
  }
  if (constants.buoyancy) {
    json["buoyancy"] = *constants.buoyancy;
    json["buoyant_mass"] = *constants.buoyantMass;
  }
  json["remarks"] = constants.remarks;
  return json;
}

}  // namespace quorvane
