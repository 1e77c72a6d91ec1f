#include "job/json_simulation.h"

#include "job/json_records.h"

namespace quorvane {

Json SimModelJson(int index) {
  Json json = DocumentHead();
  json["model"] = SimModelOf(index).caption;
  json["model_index"] = index;
  return json;
}

void AddSimColumn(const Simulator& simulator, const SimReference& reference, Json& json) {
  const SimModel& model = SimModelOf(simulator.Inputs.model);
  const int n = simulator.GridPoints;
  const auto list = [n](const GridArray<double>& values) {
    Json array = Json::array();
    for (int i = 0; i < n; ++i) array.push_back(values[i]);
    return array;
  };
  json["points"] = n;
  json["r"] = list(simulator.Column.r);
  json["signal"] = list(simulator.Column.signal);
  if (model.TotalConcentration()) json["conc"] = list(simulator.Column.conc);
  if (!model.species.empty()) {
    Json& rows = json["species"] = Json::array();
    for (int i = 0; i < n; ++i) {
      const auto& row = simulator.Column.species[i];
      rows.push_back(std::vector<double>(
          row.begin(), row.begin() + static_cast<std::ptrdiff_t>(model.species.size())));
    }
  }
  json["ref_a"] = reference.a;
  json["ref_b"] = reference.b;
  json["text"] = simulator.Text;
}

Json SimScanJson(const SeriesScan& scan) {
  Json json;
  json["file"] = scan.file;
  json["cell"] = scan.cell;
  json["speed"] = NumberIn(scan.inputs, SimBox::kSpeed);
  json["load"] = NumberIn(scan.inputs, SimBox::kLoadC);
  if (UsesBox(scan.inputs.model, SimBox::kLoadCB)) {
    json["load_b"] = NumberIn(scan.inputs, SimBox::kLoadCB);
  }
  return json;
}

}  // namespace quorvane
